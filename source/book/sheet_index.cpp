#include "book/sheet_index.h"

#include <cstdlib>
#include <new>

#include "frame/huge_pages.h"

namespace zelvar {

namespace {
// The first chunk holds a few rows: a small sheet stays small. Chunks double from there until
// they reach a huge page, from which point every chunk is one.
constexpr size_t kFirstChunkBlocks = 4;
}  // namespace

SheetIndex::Block* SheetIndex::addRow(unsigned row) {
    if (row >= _capacity) growTable(row);
    Block* block = newBlock();
    block->colBegin = kCols;
    block->colEnd = 0;
    _rows[row] = block;
    _present[row >> 6] |= 1ull << (row & 63);
    return block;
}

void SheetIndex::growTable(unsigned row) {
    unsigned capacity = _capacity ? _capacity : 64;
    while (capacity <= row) capacity *= 2;
    if (capacity > kRows) capacity = kRows;
    Block** rows = static_cast<Block**>(std::calloc(capacity, sizeof(Block*)));
    if (!rows) throw std::bad_alloc();
    if (_rows) std::memcpy(rows, _rows, _capacity * sizeof(Block*));
    std::free(_rows);
    _rows = rows;
    _capacity = capacity;
}

SheetIndex::Block* SheetIndex::newBlock() {
    if (!_freeBlocks.empty()) {
        Block* block = _freeBlocks.back();
        _freeBlocks.pop_back();
        std::memset(block, 0, sizeof(Block));
        return block;
    }
    if (_chunkLeft == 0) {
        size_t blocks = _chunks.empty() ? kFirstChunkBlocks : _chunks.back().bytes / sizeof(Block) * 2;
        size_t bytes = blocks * sizeof(Block);
        Chunk chunk;
        chunk.huge = bytes >= kHugeThreshold;
        if (chunk.huge) {
            bytes = kHugePage;
            chunk.memory = allocHuge(bytes);  // fresh mappings are zero already
        } else {
            chunk.memory = std::calloc(1, bytes);
            if (!chunk.memory) throw std::bad_alloc();
        }
        chunk.bytes = bytes;
        _chunks.reserve(_chunks.size() + 1);
        _chunks.push_back(chunk);
        _chunkNext = static_cast<Block*>(chunk.memory);
        _chunkLeft = bytes / sizeof(Block);
    }
    --_chunkLeft;
    return _chunkNext++;
}

void SheetIndex::dropRow(unsigned row) {
    if (!(*this)(row)) return;
    _freeBlocks.push_back(_rows[row]);
    _rows[row] = nullptr;
    _present[row >> 6] &= ~(1ull << (row & 63));
}

void SheetIndex::clear() {
    std::free(_rows);
    _rows = nullptr;
    _capacity = 0;
    std::memset(_present, 0, sizeof _present);
    for (const Chunk& chunk : _chunks) {
        if (chunk.huge)
            freeHuge(chunk.memory, chunk.bytes);
        else
            std::free(chunk.memory);
    }
    _chunks.clear();
    _freeBlocks.clear();
    _chunkNext = nullptr;
    _chunkLeft = 0;
}

void SheetIndex::copyFrom(const SheetIndex& other) {
    for (unsigned r = other.nextRow(0); r < kRows; r = other.nextRow(r + 1)) {
        Block* block = addRow(r);
        std::memcpy(block, other._rows[r], sizeof(Block));
    }
}

}  // namespace zelvar
