// The guarded block of the XML sheet's public operations: inner code throws, the block turns the
// failure into the book's message through the sheet's fail() and returns the failure value.
#pragma once
#include <exception>

#define XS_BEGIN try {
#define XS_END(failValue)                     \
    }                                         \
    catch (const std::exception& failure) {   \
        fail(failure.what());                 \
        return failValue;                     \
    }                                         \
    catch (...) {                             \
        fail("general failure");              \
        return failValue;                     \
    }
#define XS_END_VOID                           \
    }                                         \
    catch (const std::exception& failure) {   \
        fail(failure.what());                 \
    }                                         \
    catch (...) {                             \
        fail("general failure");              \
    }
