// Large allocations on transparent huge pages. A sheet of a million cells touches tens of
// megabytes at once; taking them in 2 MB pages instead of 4 kB ones saves thousands of page
// faults, which dominate the cost of filling a sheet on virtualised machines.
#pragma once
#include <cstddef>
#include <new>

namespace zelvar {

constexpr size_t kHugePage = 2u << 20;
// Allocations of at least this size go to their own huge-page-advised mapping.
constexpr size_t kHugeThreshold = 1u << 20;

// Zero-filled memory aligned to a huge page; throws std::bad_alloc.
void* allocHuge(size_t bytes);
void freeHuge(void* p, size_t bytes);
// Gives back the pages of an allocation of `allocated` bytes beyond its first `used` bytes; they
// read as zero when touched again. Only huge-page allocations are concerned: a huge page faulted
// in by the last bytes in use would otherwise stay whole.
void releaseUnused(void* p, size_t used, size_t allocated);
// Zero-filled memory of its own mapping, in ordinary pages; throws std::bad_alloc.
void* allocPages(size_t bytes);
void freePages(void* p, size_t bytes);
// Asks for ordinary pages in a huge-page allocation not yet touched: for space that is reserved
// generously and may stay mostly unused, where a huge page would hold memory for nothing.
void preferSmallPages(void* p, size_t bytes);

// Allocator for the big record vectors: small requests from the heap, big ones on huge pages.
template <class T>
struct HugeAllocator {
    using value_type = T;
    HugeAllocator() noexcept = default;
    template <class U>
    HugeAllocator(const HugeAllocator<U>&) noexcept {}

    T* allocate(size_t n) {
        size_t bytes = n * sizeof(T);
        if (bytes >= kHugeThreshold) return static_cast<T*>(allocHuge(bytes));
        return static_cast<T*>(::operator new(bytes));
    }
    void deallocate(T* p, size_t n) noexcept {
        size_t bytes = n * sizeof(T);
        if (bytes >= kHugeThreshold)
            freeHuge(p, bytes);
        else
            ::operator delete(p);
    }
    template <class U>
    bool operator==(const HugeAllocator<U>&) const noexcept { return true; }
    template <class U>
    bool operator!=(const HugeAllocator<U>&) const noexcept { return false; }
};

// A vector that holds no memory beyond its size. A small one is copied to its size; a big one
// keeps its place and gives back the pages past its end, which saves the copy and the peak of
// holding both (the capacity left over is address space, not memory).
template <class Vector>
void fitToSize(Vector& v) {
    using R = typename Vector::value_type;
    if (v.capacity() * sizeof(R) < kHugeThreshold)
        v.shrink_to_fit();
    else
        releaseUnused(v.data(), v.size() * sizeof(R), v.capacity() * sizeof(R));
}

}  // namespace zelvar
