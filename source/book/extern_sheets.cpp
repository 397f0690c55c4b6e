#include "book/extern_sheets.h"

#include <algorithm>

#include "biff/record_ids.h"
#include "frame/little_endian.h"
#include "frame/zverror.h"

namespace zelvar {

namespace {

// The ExternSheet record of a block, at its position in the block, or the block's size when it
// has none.
template <class T>
size_t externSheetAt(const std::vector<Biff<T>>& block) {
    for (size_t r = 0; r < block.size(); ++r)
        if (block[r].id == rt::ExternSheet) return r;
    return block.size();
}

// Where the table's CONTINUE records end.
template <class T>
size_t continuesEnd(const std::vector<Biff<T>>& block, size_t at) {
    size_t end = at + 1;
    while (end < block.size() && block[end].id == rt::Continue) ++end;
    return end;
}

// The table as its bytes: a count, then 6-byte entries (SupBook, first sheet, last sheet). A long
// table goes on in CONTINUE records and its entries may be cut anywhere between them; the bytes
// are the payloads joined. A count beyond the bytes present counts the entries there are.
struct XtiTable {
    std::vector<uint8_t> bytes;

    template <class T>
    static XtiTable join(const std::vector<Biff<T>>& block, size_t at) {
        XtiTable table{block[at].payload};
        for (size_t r = at + 1, end = continuesEnd(block, at); r < end; ++r)
            table.bytes.insert(table.bytes.end(), block[r].payload.begin(), block[r].payload.end());
        return table;
    }
    bool hasCount() const { return bytes.size() >= 2; }
    size_t count() const { return std::min<size_t>(le::get16(bytes.data()), (bytes.size() - 2) / 6); }
    XtiEntry at(size_t i) const {
        const uint8_t* x = bytes.data() + 2 + 6 * i;
        return {le::get16(x), static_cast<int16_t>(le::get16(x + 2)), static_cast<int16_t>(le::get16(x + 4))};
    }
    void set(size_t i, const XtiEntry& entry) {
        uint8_t* x = bytes.data() + 2 + 6 * i;
        le::put16(x, static_cast<uint32_t>(entry.supBook));
        le::put16(x + 2, static_cast<uint32_t>(entry.first));
        le::put16(x + 4, static_cast<uint32_t>(entry.last));
    }

    // Puts the bytes back into the block. A table of the same length keeps the pieces the file
    // had; any other is cut anew: the count and as many entries as fit into the first record,
    // then CONTINUEs of whole entries.
    template <class T>
    void store(std::vector<Biff<T>>& block, size_t at) const {
        size_t end = continuesEnd(block, at);
        size_t length = 0;
        for (size_t r = at; r < end; ++r) length += block[r].payload.size();
        if (length == bytes.size()) {
            size_t from = 0;
            for (size_t r = at; r < end; ++r) {
                std::copy(bytes.begin() + static_cast<long>(from),
                          bytes.begin() + static_cast<long>(from + block[r].payload.size()), block[r].payload.begin());
                from += block[r].payload.size();
            }
            return;
        }
        std::vector<Biff<T>> pieces;
        const size_t entriesPerRecord = 8224 / 6;
        size_t first = std::min(bytes.size(), 2 + 6 * entriesPerRecord);
        pieces.emplace_back(rt::ExternSheet);
        pieces.back().payload.assign(bytes.begin(), bytes.begin() + static_cast<long>(first));
        for (size_t from = first; from < bytes.size(); from += 6 * entriesPerRecord) {
            size_t to = std::min(bytes.size(), from + 6 * entriesPerRecord);
            pieces.emplace_back(rt::Continue);
            pieces.back().payload.assign(bytes.begin() + static_cast<long>(from), bytes.begin() + static_cast<long>(to));
        }
        block.erase(block.begin() + static_cast<long>(at), block.begin() + static_cast<long>(end));
        block.insert(block.begin() + static_cast<long>(at), pieces.begin(), pieces.end());
    }
};

// A SupBook of this book itself: the sheet count, then the marker 0x0401.
constexpr uint16_t kSelfReference = 0x0401;

}  // namespace

template <class T>
void ExternSheets<T>::readBlock(XlsStream& xls, uint16_t size) {
    Block block;
    readRaw(xls, rt::SupBook, size, block);
    uint64_t sum = size;
    while (!xls.eof()) {
        uint16_t next = xls.peekInt16();
        if (next != rt::ExternName && next != rt::Xct && next != rt::Crn && next != rt::ExternSheet &&
            next != rt::Continue)
            break;
        uint16_t nextType = 0, nextSize = 0;
        xls.readInt16(&nextType);
        xls.readInt16(&nextSize);
        sum += nextSize + 4u;
        if (sum > xls.fileSize()) throw zverror("SupBookBlock: file is corrupt");
        readRaw(xls, nextType, nextSize, block);
    }
    _blocks.push_back(std::move(block));
}

template <class T>
void ExternSheets<T>::write(XlsStream& xls) const {
    for (const Block& block : _blocks)
        for (const Biff<T>& record : block) record.write(xls);
}

template <class T>
typename ExternSheets<T>::Lookup ExternSheets<T>::find(uint16_t ixti, XtiEntry& out) const {
    for (const Block& block : _blocks) {
        size_t at = externSheetAt(block);
        if (at == block.size()) continue;
        XtiTable table = XtiTable::join(block, at);
        if (!table.hasCount()) continue;
        if (ixti >= table.count()) return Lookup::NoEntry;
        out = table.at(ixti);
        return Lookup::Found;
    }
    return Lookup::NoTable;
}

template <class T>
int ExternSheets<T>::ownSupBook() const {
    for (size_t i = 0; i < _blocks.size(); ++i) {
        const std::vector<uint8_t>& head = _blocks[i].front().payload;
        if (_blocks[i].front().id == rt::SupBook && head.size() == 4 && le::get16(&head[2]) == kSelfReference)
            return static_cast<int>(i);
    }
    return -1;
}

template <class T>
uint16_t ExternSheets<T>::ownXti(int first, int last, size_t sheetCount) {
    int own = ownSupBook();
    if (own < 0) {
        Biff<T> supBook(rt::SupBook);
        le::append16(supBook.payload, static_cast<uint32_t>(sheetCount));
        le::append16(supBook.payload, kSelfReference);
        own = static_cast<int>(_blocks.size());
        _blocks.push_back({supBook});
    }
    // The ExternSheet record, with its continuations, must stand at the end of the last block.
    Block& lastBlock = _blocks.back();
    size_t at = externSheetAt(lastBlock);
    if (at == lastBlock.size()) {
        for (size_t b = 0; b + 1 < _blocks.size(); ++b) {
            Block& block = _blocks[b];
            size_t r = externSheetAt(block);
            if (r == block.size()) continue;
            size_t end = continuesEnd(block, r);
            at = lastBlock.size();
            lastBlock.insert(lastBlock.end(), block.begin() + static_cast<long>(r), block.begin() + static_cast<long>(end));
            block.erase(block.begin() + static_cast<long>(r), block.begin() + static_cast<long>(end));
            break;
        }
    }
    if (at == lastBlock.size()) {
        lastBlock.emplace_back(rt::ExternSheet);
        lastBlock.back().payload = {0, 0};
    }
    XtiTable table = XtiTable::join(lastBlock, at);
    if (!table.hasCount()) table.bytes = {0, 0};
    size_t count = table.count();
    for (size_t i = 0; i < count; ++i) {
        XtiEntry x = table.at(i);
        if (x.supBook == own && x.first == first && x.last == last) return static_cast<uint16_t>(i);
    }
    // The count field holds at most 65535 entries.
    if (count >= 65535) throw zverror("error in record ExternSheet");
    table.bytes.resize(2 + 6 * (count + 1));
    table.set(count, {own, first, last});
    le::put16(table.bytes.data(), static_cast<uint32_t>(count + 1));
    table.store(lastBlock, at);
    return static_cast<uint16_t>(count);
}

template <class T>
void ExternSheets<T>::followSheetList(int index, bool inserted, size_t sheetCount) {
    int own = ownSupBook();
    if (own < 0) return;
    le::put16(_blocks[static_cast<size_t>(own)].front().payload.data(), static_cast<uint32_t>(sheetCount));
    for (Block& block : _blocks) {
        size_t at = externSheetAt(block);
        if (at == block.size()) continue;
        XtiTable table = XtiTable::join(block, at);
        if (!table.hasCount()) continue;
        for (size_t k = 0, count = table.count(); k < count; ++k) {
            XtiEntry x = table.at(k);
            if (x.supBook != own) continue;
            if (inserted) {
                if (x.first >= index) {
                    ++x.first;
                    ++x.last;
                } else if (x.last >= index) {
                    ++x.last;
                }
            } else {
                if (index >= x.first && index <= x.last) x.first = x.last = -1;
                if (x.first > index) --x.first;
                if (x.last > index) --x.last;
            }
            table.set(k, x);
        }
        table.store(block, at);
    }
}

template class ExternSheets<char>;
template class ExternSheets<wchar_t>;

}  // namespace zelvar
