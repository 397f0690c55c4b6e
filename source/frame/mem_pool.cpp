#include "frame/mem_pool.h"

#include <cwchar>

namespace zelvar {

namespace {
// Blocks are not zeroed: untouched pages of a fresh block cost no resident memory.
template <class C>
C* take(std::vector<C*>& blocks, unsigned& used, unsigned n) {
    if (n == 0) return nullptr;
    if (n > MemPool::kBlockUnits) {
        // Larger than a block: give it a block of its own behind the current one.
        C* big = new C[n];
        blocks.insert(blocks.empty() ? blocks.end() : blocks.end() - 1, big);
        return big;
    }
    if (static_cast<unsigned long long>(used) + n > MemPool::kBlockUnits) {
        blocks.push_back(new C[MemPool::kBlockUnits]);
        used = 0;
    }
    C* at = blocks.back() + used;
    used += n;
    return at;
}
}  // namespace

char* MemPool::allocA(unsigned n) { return take(_blocksA, _usedA, n); }

wchar_t* MemPool::allocW(unsigned n) { return take(_blocksW, _usedW, n); }

wchar_t* MemPool::copyW(const wchar_t* text, size_t n) {
    wchar_t* out = allocW(static_cast<unsigned>(n + 1));
    if (n) wmemcpy(out, text, n);
    out[n] = 0;
    return out;
}

void MemPool::free() {
    for (char* b : _blocksA) delete[] b;
    for (wchar_t* b : _blocksW) delete[] b;
    for (BaseClass* o : _objects) delete o;
    _blocksA.clear();
    _blocksW.clear();
    _objects.clear();
    _usedA = kBlockUnits;
    _usedW = kBlockUnits;
}

}  // namespace zelvar
