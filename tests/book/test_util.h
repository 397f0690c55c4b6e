// Helpers shared by the binary book tests: literals in both text widths and book ownership.
#pragma once
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "zelvar.h"

namespace zvtest {

// ASCII literal in the text width of T.
template <class T>
std::basic_string<T> S(const char* text) {
    return std::basic_string<T>(text, text + std::char_traits<char>::length(text));
}

template <class T>
zelvar::IBookT<T>* createBook();
template <>
inline zelvar::IBookT<char>* createBook<char>() { return zvCreateBookA(); }
template <>
inline zelvar::IBookT<wchar_t>* createBook<wchar_t>() { return zvCreateBookW(); }

template <class T>
struct BookDeleter {
    void operator()(zelvar::IBookT<T>* book) const { book->release(); }
};
template <class T>
using BookPtr = std::unique_ptr<zelvar::IBookT<T>, BookDeleter<T>>;

template <class T>
BookPtr<T> newBook() {
    return BookPtr<T>(createBook<T>());
}

using Widths = ::testing::Types<char, wchar_t>;

}  // namespace zvtest
