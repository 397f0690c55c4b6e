#include "book/sheet_index.h"

#include "frame/huge_pages.h"

namespace zelvar {

namespace {
constexpr unsigned kBlocksPerChunk = static_cast<unsigned>(kHugePage / (SheetIndex::kCols * sizeof(uint32_t)));
}

uint32_t* SheetIndex::newBlock() {
    if (!_freeBlocks.empty()) {
        uint32_t* block = _freeBlocks.back();
        _freeBlocks.pop_back();
        std::memset(block, 0, kCols * sizeof(uint32_t));
        return block;
    }
    if (_chunks.empty() || _usedInChunk == kBlocksPerChunk) {
        _chunks.push_back(static_cast<uint32_t*>(allocHuge(kHugePage)));
        _usedInChunk = 0;
    }
    // Fresh mappings are zero already.
    return _chunks.back() + static_cast<size_t>(_usedInChunk++) * kCols;
}

void SheetIndex::dropRow(unsigned row) {
    if (!_rows[row]) return;
    _freeBlocks.push_back(_rows[row]);
    _rows[row] = nullptr;
}

void SheetIndex::clear() {
    std::memset(_rows, 0, sizeof _rows);
    for (uint32_t* chunk : _chunks) freeHuge(chunk, kHugePage);
    _chunks.clear();
    _freeBlocks.clear();
    _usedInChunk = 0;
}

void SheetIndex::copyFrom(const SheetIndex& other) {
    for (unsigned r = 0; r < kRows; ++r) {
        if (!other._rows[r]) continue;
        _rows[r] = newBlock();
        std::memcpy(_rows[r], other._rows[r], kCols * sizeof(uint32_t));
    }
}

}  // namespace zelvar
