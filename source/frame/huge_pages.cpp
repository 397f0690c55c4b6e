#include "frame/huge_pages.h"

#include <sys/mman.h>

#include <cstdint>

namespace zelvar {

namespace {
size_t roundUp(size_t bytes) { return (bytes + kHugePage - 1) & ~(kHugePage - 1); }
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
    madvise(reinterpret_cast<void*>(aligned), size, MADV_HUGEPAGE);
#endif
    return reinterpret_cast<void*>(aligned);
}

void freeHuge(void* p, size_t bytes) {
    if (p) munmap(p, roundUp(bytes));
}

void releaseUnused(void* p, size_t used, size_t allocated) {
    if (!p || allocated < kHugeThreshold) return;
    constexpr uintptr_t kPage = 4096;
    uintptr_t start = (reinterpret_cast<uintptr_t>(p) + used + kPage - 1) & ~(kPage - 1);
    uintptr_t end = reinterpret_cast<uintptr_t>(p) + roundUp(allocated);
    if (end > start) madvise(reinterpret_cast<void*>(start), end - start, MADV_DONTNEED);
}

}  // namespace zelvar
