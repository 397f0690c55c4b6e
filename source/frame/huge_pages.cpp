#include "frame/huge_pages.h"

#include <sys/mman.h>

#include <cstdint>

namespace zelvar {

namespace {
constexpr uintptr_t kPage = 4096;
size_t roundUp(size_t bytes) { return (bytes + kHugePage - 1) & ~(kHugePage - 1); }
size_t roundUpPage(size_t bytes) { return (bytes + kPage - 1) & ~(kPage - 1); }
}  // namespace

void* allocHuge(size_t bytes) {
    size_t size = roundUp(bytes);
    // Map one huge page more than needed and trim, so the block starts on a huge-page boundary.
    size_t mapped = size + kHugePage;
    void* raw = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (raw == MAP_FAILED) throw std::bad_alloc();
    uintptr_t start = reinterpret_cast<uintptr_t>(raw);
    uintptr_t aligned = (start + kHugePage - 1) & ~(static_cast<uintptr_t>(kHugePage) - 1);
    if (aligned > start) munmap(raw, aligned - start);
    uintptr_t end = start + mapped;
    if (end > aligned + size) munmap(reinterpret_cast<void*>(aligned + size), end - (aligned + size));
#ifdef MADV_HUGEPAGE
    // Only whole huge pages within the request: the part of a last one that the request does not
    // reach would be memory held for nothing once touched. That part takes ordinary pages.
    size_t whole = bytes & ~(kHugePage - 1);
    if (whole) madvise(reinterpret_cast<void*>(aligned), whole, MADV_HUGEPAGE);
#endif
    return reinterpret_cast<void*>(aligned);
}

void freeHuge(void* p, size_t bytes) {
    if (p) munmap(p, roundUp(bytes));
}

void releaseUnused(void* p, size_t used, size_t allocated) {
    if (!p || allocated < kHugeThreshold) return;
    uintptr_t start = (reinterpret_cast<uintptr_t>(p) + used + kPage - 1) & ~(kPage - 1);
    uintptr_t end = reinterpret_cast<uintptr_t>(p) + roundUp(allocated);
    if (end > start) madvise(reinterpret_cast<void*>(start), end - start, MADV_DONTNEED);
}

void* allocPages(size_t bytes) {
    void* p = mmap(nullptr, roundUpPage(bytes), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED) throw std::bad_alloc();
    return p;
}

void freePages(void* p, size_t bytes) {
    if (p) munmap(p, roundUpPage(bytes));
}

void preferSmallPages(void* p, size_t bytes) {
#ifdef MADV_NOHUGEPAGE
    if (p && bytes >= kHugeThreshold) madvise(p, roundUp(bytes), MADV_NOHUGEPAGE);
#endif
}

}  // namespace zelvar
