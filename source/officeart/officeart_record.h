// OfficeArt records, the drawing format that pictures and comment shapes are stored in inside the
// binary workbook. Every record has an 8-byte header; a container (version 15) holds further
// records, an atom holds a body of bytes. Records are kept as a tree of nodes so that what this
// library does not interpret is written back exactly as it was read.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "frame/little_endian.h"

namespace zelvar {

struct OfficeArtRecordHeader {
    uint16_t verInstance = 0;
    uint16_t type = 0;
    uint32_t len = 0;

    OfficeArtRecordHeader() = default;
    OfficeArtRecordHeader(unsigned ver, unsigned instance, unsigned recType, uint32_t length)
        : verInstance(static_cast<uint16_t>((ver & 0xF) | (instance << 4))),
          type(static_cast<uint16_t>(recType)),
          len(length) {}
    unsigned ver() const { return verInstance & 0xF; }
    void setVer(unsigned v) { verInstance = static_cast<uint16_t>((verInstance & 0xFFF0) | (v & 0xF)); }
    unsigned instance() const { return verInstance >> 4; }
    void setInstance(unsigned i) { verInstance = static_cast<uint16_t>((verInstance & 0xF) | (i << 4)); }
    static constexpr size_t size() { return 8; }
    void read(const uint8_t* p) {
        verInstance = le::get16(p);
        type = le::get16(p + 2);
        len = le::get32(p + 4);
    }
    void write(std::vector<uint8_t>& out) const {
        le::append16(out, verInstance);
        le::append16(out, type);
        le::append32(out, len);
    }
};

constexpr unsigned kAnyValue = 0xFFFFFFFFu;

// A record kind fixed by its header constants. check tests the fields that mask selects: bit 0
// the type, bit 1 the version, bit 2 the instance, bit 3 the length. A header that fails the
// check is not this record: an optional child of another kind is simply absent.
template <unsigned mask, unsigned ver, unsigned instance, unsigned type, unsigned len>
struct OfficeArtRecord {
    static constexpr unsigned kType = type, kVer = ver, kInstance = instance, kLen = len;
    static bool check(const OfficeArtRecordHeader& h) {
        if ((mask & 1) && h.type != type) return false;
        if ((mask & 2) && h.ver() != ver) return false;
        if ((mask & 4) && h.instance() != instance) return false;
        if ((mask & 8) && h.len != len) return false;
        return true;
    }
    static OfficeArtRecordHeader header(unsigned inst = instance, uint32_t length = len) {
        return OfficeArtRecordHeader(ver, inst == kAnyValue ? 0 : inst, type, length == kAnyValue ? 0 : length);
    }
};

using OfficeArtDggContainer = OfficeArtRecord<7, 15, 0, 0xF000, kAnyValue>;
using OfficeArtBStoreContainer = OfficeArtRecord<3, 15, kAnyValue, 0xF001, kAnyValue>;
using OfficeArtDgContainer = OfficeArtRecord<7, 15, 0, 0xF002, kAnyValue>;
using OfficeArtSpgrContainer = OfficeArtRecord<7, 15, 0, 0xF003, kAnyValue>;
using OfficeArtSpContainer = OfficeArtRecord<7, 15, 0, 0xF004, kAnyValue>;
using OfficeArtSolverContainer = OfficeArtRecord<3, 15, kAnyValue, 0xF005, kAnyValue>;
using OfficeArtFDGGBlock = OfficeArtRecord<7, 0, 0, 0xF006, kAnyValue>;
using OfficeArtFBSE = OfficeArtRecord<3, 2, kAnyValue, 0xF007, kAnyValue>;
using OfficeArtFDG = OfficeArtRecord<11, 0, kAnyValue, 0xF008, 8>;
using OfficeArtFSPGR = OfficeArtRecord<15, 1, 0, 0xF009, 16>;
using OfficeArtFSP = OfficeArtRecord<11, 2, kAnyValue, 0xF00A, 8>;
using OfficeArtFOPT = OfficeArtRecord<3, 3, kAnyValue, 0xF00B, kAnyValue>;
using OfficeArtClientTextbox = OfficeArtRecord<15, 0, 0, 0xF00D, 0>;
using OfficeArtChildAnchor = OfficeArtRecord<15, 0, 0, 0xF00F, 16>;
using OfficeArtClientAnchorSheet = OfficeArtRecord<15, 0, 0, 0xF010, 18>;
using OfficeArtClientData = OfficeArtRecord<15, 0, 0, 0xF011, 0>;
using OfficeArtFRITContainer = OfficeArtRecord<3, 0, kAnyValue, 0xF118, kAnyValue>;
using OfficeArtColorMRUContainer = OfficeArtRecord<3, 0, kAnyValue, 0xF11A, kAnyValue>;
using OfficeArtSplitMenuColorContainer = OfficeArtRecord<15, 0, 4, 0xF11E, 16>;
using OfficeArtSecondaryFOPT = OfficeArtRecord<3, 3, kAnyValue, 0xF121, kAnyValue>;
using OfficeArtTertiaryFOPT = OfficeArtRecord<3, 3, kAnyValue, 0xF122, kAnyValue>;

// The class name of a record type, for messages ("error in record OfficeArtFDG").
const char* officeArtName(uint16_t type);

// One record: its header and either its children (containers) or its body (atoms).
struct ArtNode {
    OfficeArtRecordHeader header;
    std::vector<uint8_t> body;
    std::vector<ArtNode> children;

    bool isContainer() const { return header.ver() == 15; }
    // Bytes on disk, header included, with containers' lengths as their children sum up.
    size_t size() const;
    // Sets every container's len to what its children sum up to, atoms' to their body.
    void recalcLen();
    void write(std::vector<uint8_t>& out) const;
    ArtNode* find(uint16_t type);
    const ArtNode* find(uint16_t type) const;
};

// Reads the records in [data, data + size). A record whose length runs past the end of what
// holds it raises "error in record <Class>". Nesting deeper than a sane drawing stops as well.
std::vector<ArtNode> parseOfficeArt(const uint8_t* data, size_t size);
ArtNode parseOfficeArtRecord(const uint8_t* data, size_t size, size_t* used);

ArtNode makeAtom(const OfficeArtRecordHeader& header, std::vector<uint8_t> body);
ArtNode makeContainer(uint16_t type, unsigned instance = 0);

// A property: 14-bit id, the blip-id and complex flags, and the value (or the length of the
// complex data, which follows the table in the order of the entries).
struct OfficeArtFOPTE {
    uint16_t opid = 0;
    bool fBid = false, fComplex = false;
    int32_t op = 0;
};

// The property table of an OfficeArtFOPT record: its instance counts the entries.
class OfficeArtRGFOPTE {
public:
    OfficeArtRGFOPTE() = default;
    // The properties of a picture shape: the 1-based picture number and its name.
    explicit OfficeArtRGFOPTE(int pib);
    void clear() {
        _entries.clear();
        _data.clear();
    }
    void addProperty(const OfficeArtFOPTE& entry, const std::vector<uint8_t>& data = {});
    // Reads count entries and the complex data behind them; raises "error in record
    // OfficeArtRGFOPTE" when the body is shorter than the table says.
    void read(const uint8_t* body, size_t size, unsigned count);
    void write(std::vector<uint8_t>& out) const;
    size_t size() const { return 6 * _entries.size() + _data.size(); }
    const std::vector<OfficeArtFOPTE>& entries() const { return _entries; }
    // The value of a property, or false when the table lacks it.
    bool get(uint16_t opid, int32_t* value) const;
    // The whole record (header with the entry count as instance).
    ArtNode toNode(uint16_t type = OfficeArtFOPT::kType) const;

private:
    std::vector<OfficeArtFOPTE> _entries;
    std::vector<uint8_t> _data;
};

}  // namespace zelvar
