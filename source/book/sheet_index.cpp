#include "book/sheet_index.h"

#include <cstdlib>
#include <new>

#include "frame/huge_pages.h"

namespace zelvar {

namespace {
constexpr size_t kBlockBytes = SheetIndex::kCols * sizeof(uint32_t);
// The first chunk holds a few rows: a small sheet stays small. Chunks double from there until
// they reach a huge page, from which point every chunk is one.
constexpr size_t kFirstChunkBlocks = 4;
}  // namespace

uint32_t* SheetIndex::addRow(unsigned row) {
    if (row >= _capacity) growTable(row);
    uint32_t* block = newBlock();
    _rows[row] = block;
    _cols[row].begin = kCols;
    _cols[row].end = 0;
    _present[row >> 6] |= 1ull << (row & 63);
    return block;
}

void SheetIndex::growTable(unsigned row) {
    unsigned capacity = _capacity ? _capacity : 64;
    while (capacity <= row) capacity *= 2;
    if (capacity > kRows) capacity = kRows;
    uint32_t** rows = static_cast<uint32_t**>(std::calloc(capacity, sizeof(uint32_t*)));
    Span* cols = static_cast<Span*>(std::malloc(capacity * sizeof(Span)));
    if (!rows || !cols) {
        std::free(rows);
        std::free(cols);
        throw std::bad_alloc();
    }
    if (_capacity) {
        std::memcpy(rows, _rows, _capacity * sizeof(uint32_t*));
        std::memcpy(cols, _cols, _capacity * sizeof(Span));
    }
    std::free(_rows);
    std::free(_cols);
    _rows = rows;
    _cols = cols;
    _capacity = capacity;
}

uint32_t* SheetIndex::newBlock() {
    if (!_freeBlocks.empty()) {
        uint32_t* block = _freeBlocks.back();
        _freeBlocks.pop_back();
        std::memset(block, 0, kBlockBytes);
        return block;
    }
    if (_chunkLeft == 0) {
        size_t blocks = _chunks.empty() ? kFirstChunkBlocks : _chunks.back().bytes / kBlockBytes * 2;
        size_t bytes = blocks * kBlockBytes;
        size_t expectedLeft = _expectedRows > _blocksMade ? _expectedRows - _blocksMade : 0;
        Chunk chunk;
        if (bytes >= kHugeThreshold && expectedLeft && expectedLeft * kBlockBytes < kHugePage) {
            // The last rows a loaded sheet announced: just as many blocks, in ordinary pages.
            bytes = expectedLeft * kBlockBytes;
            chunk.kind = kPages;
            chunk.memory = allocPages(bytes);
        } else if (bytes >= kHugeThreshold) {
            bytes = kHugePage;
            chunk.kind = kHuge;
            chunk.memory = allocHuge(bytes);  // fresh mappings are zero already
        } else {
            chunk.kind = kHeap;
            chunk.memory = std::calloc(1, bytes);
            if (!chunk.memory) throw std::bad_alloc();
        }
        chunk.bytes = bytes;
        _chunks.reserve(_chunks.size() + 1);
        _chunks.push_back(chunk);
        _chunkNext = static_cast<uint32_t*>(chunk.memory);
        _chunkLeft = bytes / kBlockBytes;
        _blocksMade += _chunkLeft;
    }
    --_chunkLeft;
    uint32_t* block = _chunkNext;
    _chunkNext += kCols;
    return block;
}

void SheetIndex::dropRow(unsigned row) {
    if (!(*this)(row)) return;
    _freeBlocks.push_back(_rows[row]);
    _rows[row] = nullptr;
    _present[row >> 6] &= ~(1ull << (row & 63));
}

void SheetIndex::clear() {
    std::free(_rows);
    std::free(_cols);
    _rows = nullptr;
    _cols = nullptr;
    _capacity = 0;
    std::memset(_present, 0, sizeof _present);
    for (const Chunk& chunk : _chunks) {
        if (chunk.kind == kHuge)
            freeHuge(chunk.memory, chunk.bytes);
        else if (chunk.kind == kPages)
            freePages(chunk.memory, chunk.bytes);
        else
            std::free(chunk.memory);
    }
    _chunks.clear();
    _freeBlocks.clear();
    _chunkNext = nullptr;
    _chunkLeft = 0;
    _blocksMade = 0;
    _expectedRows = 0;
}

void SheetIndex::copyFrom(const SheetIndex& other) {
    for (unsigned r = other.nextRow(0); r < kRows; r = other.nextRow(r + 1)) {
        uint32_t* block = addRow(r);
        std::memcpy(block, other._rows[r], kBlockBytes);
        _cols[r] = other._cols[r];
    }
}

}  // namespace zelvar
