// Row and column to the packed entry of the record that holds the cell: two array accesses per
// lookup, a block of 256 entries for each touched row and nothing for untouched ones.
#pragma once
#include <cstdint>
#include <cstring>
#include <vector>

namespace zelvar {

class SheetIndex {
public:
    static constexpr unsigned kRows = 65536;
    static constexpr unsigned kCols = 256;

    SheetIndex() { std::memset(_rows, 0, sizeof _rows); }
    SheetIndex(const SheetIndex& other) : SheetIndex() { copyFrom(other); }
    SheetIndex& operator=(const SheetIndex& other) {
        if (this != &other) {
            clear();
            copyFrom(other);
        }
        return *this;
    }
    ~SheetIndex() { clear(); }

    // The entry of a cell; the row's block is made on first use.
    uint32_t& operator()(unsigned row, unsigned col) {
        uint32_t*& block = _rows[row];
        if (!block) block = newBlock();
        return block[col];
    }
    // Reading needs the row's block to exist: test with operator()(row) first.
    uint32_t operator()(unsigned row, unsigned col) const { return _rows[row][col]; }
    bool operator()(unsigned row) const { return _rows[row] != nullptr; }
    // The entry, or 0 when the row has no block.
    uint32_t get(unsigned row, unsigned col) const { return _rows[row] ? _rows[row][col] : 0; }
    // Gives a row's block back (all its entries must be 0 or no longer wanted).
    void dropRow(unsigned row);
    void clear();

    static uint32_t entry(unsigned kind, unsigned position) { return position << 4 | kind << 1 | 1; }
    static unsigned kind(uint32_t entry) { return (entry >> 1) & 7; }
    static unsigned position(uint32_t entry) { return entry >> 4; }

private:
    // Blocks come from chunks of one huge page; dropped blocks are reused before new ones.
    uint32_t* newBlock();
    void copyFrom(const SheetIndex& other);

    uint32_t* _rows[kRows];
    std::vector<uint32_t*> _chunks;
    std::vector<uint32_t*> _freeBlocks;
    unsigned _usedInChunk = 0;
};

}  // namespace zelvar
