// Reading and writing the OfficeArt record tree, and property tables.
#include "officeart/officeart_record.h"

#include "frame/zverror.h"

namespace zelvar {

namespace {

// Drawings nest group shapes inside group shapes; real files stay far below this.
constexpr int kMaxDepth = 64;

ArtNode parseRecord(const uint8_t* data, size_t size, size_t* used, int depth);

void parseList(const uint8_t* data, size_t size, std::vector<ArtNode>& out, int depth) {
    size_t pos = 0;
    while (size - pos >= OfficeArtRecordHeader::size()) {
        size_t n = 0;
        out.push_back(parseRecord(data + pos, size - pos, &n, depth));
        pos += n;
    }
    // Fewer than 8 bytes left over cannot be a record.
    if (pos != size) throw zverror("error in record " + std::string(out.empty() ? "OfficeArtRecord" : officeArtName(out.back().header.type)));
}

ArtNode parseRecord(const uint8_t* data, size_t size, size_t* used, int depth) {
    if (depth > kMaxDepth) throw zverror("error in record OfficeArtSpgrContainer");
    ArtNode node;
    node.header.read(data);
    size_t len = node.header.len;
    if (len > size - OfficeArtRecordHeader::size())
        throw zverror(std::string("error in record ") + officeArtName(node.header.type));
    const uint8_t* body = data + OfficeArtRecordHeader::size();
    if (node.isContainer())
        parseList(body, len, node.children, depth + 1);
    else
        node.body.assign(body, body + len);
    *used = OfficeArtRecordHeader::size() + len;
    return node;
}

}  // namespace

const char* officeArtName(uint16_t type) {
    switch (type) {
        case 0xF000: return "OfficeArtDggContainer";
        case 0xF001: return "OfficeArtBStoreContainer";
        case 0xF002: return "OfficeArtDgContainer";
        case 0xF003: return "OfficeArtSpgrContainer";
        case 0xF004: return "OfficeArtSpContainer";
        case 0xF005: return "OfficeArtSolverContainer";
        case 0xF006: return "OfficeArtFDGGBlock";
        case 0xF007: return "OfficeArtFBSE";
        case 0xF008: return "OfficeArtFDG";
        case 0xF009: return "OfficeArtFSPGR";
        case 0xF00A: return "OfficeArtFSP";
        case 0xF00B: return "OfficeArtFOPT";
        case 0xF00D: return "OfficeArtClientTextbox";
        case 0xF00F: return "OfficeArtChildAnchor";
        case 0xF010: return "OfficeArtClientAnchorSheet";
        case 0xF011: return "OfficeArtClientData";
        case 0xF012: return "OfficeArtFConnectorRule";
        case 0xF014: return "OfficeArtFArcRule";
        case 0xF017: return "OfficeArtFCalloutRule";
        case 0xF01A: return "OfficeArtBlipEMF";
        case 0xF01B: return "OfficeArtBlipWMF";
        case 0xF01C: return "OfficeArtBlipPICT";
        case 0xF01D: return "OfficeArtBlipJPEG";
        case 0xF01E: return "OfficeArtBlipPNG";
        case 0xF01F: return "OfficeArtBlipDIB";
        case 0xF020: return "OfficeArtBlipTIFF";
        case 0xF118: return "OfficeArtFRITContainer";
        case 0xF119: return "OfficeArtFDGSL";
        case 0xF11A: return "OfficeArtColorMRUContainer";
        case 0xF11D: return "OfficeArtFPSPL";
        case 0xF11E: return "OfficeArtSplitMenuColorContainer";
        case 0xF121: return "OfficeArtSecondaryFOPT";
        case 0xF122: return "OfficeArtTertiaryFOPT";
        default: return "OfficeArtRecord";
    }
}

size_t ArtNode::size() const {
    if (!isContainer()) return OfficeArtRecordHeader::size() + body.size();
    size_t total = OfficeArtRecordHeader::size();
    for (const auto& child : children) total += child.size();
    return total;
}

void ArtNode::recalcLen() {
    if (!isContainer()) {
        header.len = static_cast<uint32_t>(body.size());
        return;
    }
    for (auto& child : children) child.recalcLen();
    header.len = static_cast<uint32_t>(size() - OfficeArtRecordHeader::size());
}

void ArtNode::write(std::vector<uint8_t>& out) const {
    header.write(out);
    if (isContainer())
        for (const auto& child : children) child.write(out);
    else
        out.insert(out.end(), body.begin(), body.end());
}

ArtNode* ArtNode::find(uint16_t type) {
    for (auto& child : children)
        if (child.header.type == type) return &child;
    return nullptr;
}

const ArtNode* ArtNode::find(uint16_t type) const {
    for (const auto& child : children)
        if (child.header.type == type) return &child;
    return nullptr;
}

std::vector<ArtNode> parseOfficeArt(const uint8_t* data, size_t size) {
    std::vector<ArtNode> out;
    parseList(data, size, out, 0);
    return out;
}

ArtNode parseOfficeArtRecord(const uint8_t* data, size_t size, size_t* used) {
    if (size < OfficeArtRecordHeader::size()) throw zverror("error in record OfficeArtRecord");
    return parseRecord(data, size, used, 0);
}

ArtNode makeAtom(const OfficeArtRecordHeader& header, std::vector<uint8_t> body) {
    ArtNode node;
    node.header = header;
    node.body = std::move(body);
    node.header.len = static_cast<uint32_t>(node.body.size());
    return node;
}

ArtNode makeContainer(uint16_t type, unsigned instance) {
    ArtNode node;
    node.header = OfficeArtRecordHeader(15, instance, type, 0);
    return node;
}

OfficeArtRGFOPTE::OfficeArtRGFOPTE(int pib) {
    addProperty({260, true, false, pib});
    addProperty({261, true, true, 4}, {'3', 0, 0, 0});
}

void OfficeArtRGFOPTE::addProperty(const OfficeArtFOPTE& entry, const std::vector<uint8_t>& data) {
    OfficeArtFOPTE e = entry;
    if (e.fComplex) e.op = static_cast<int32_t>(data.size());
    _entries.push_back(e);
    _data.insert(_data.end(), data.begin(), data.end());
}

void OfficeArtRGFOPTE::read(const uint8_t* body, size_t size, unsigned count) {
    clear();
    if (size / 6 < count) throw zverror("error in record OfficeArtRGFOPTE");
    _entries.resize(count);
    size_t complex = 0;
    for (unsigned i = 0; i < count; ++i) {
        uint16_t id = le::get16(body + 6 * i);
        OfficeArtFOPTE& e = _entries[i];
        e.opid = id & 0x3FFF;
        e.fBid = (id & 0x4000) != 0;
        e.fComplex = (id & 0x8000) != 0;
        e.op = static_cast<int32_t>(le::get32(body + 6 * i + 2));
        if (e.fComplex) complex += static_cast<uint32_t>(e.op);
    }
    size_t rest = size - 6 * count;
    // Complex data longer than the record is a broken table; shorter data are kept as found.
    if (complex > rest) throw zverror("error in record OfficeArtRGFOPTE");
    _data.assign(body + 6 * count, body + size);
}

void OfficeArtRGFOPTE::write(std::vector<uint8_t>& out) const {
    for (const auto& e : _entries) {
        le::append16(out, static_cast<uint32_t>(e.opid) | (e.fBid ? 0x4000u : 0) | (e.fComplex ? 0x8000u : 0));
        le::append32(out, static_cast<uint32_t>(e.op));
    }
    out.insert(out.end(), _data.begin(), _data.end());
}

bool OfficeArtRGFOPTE::get(uint16_t opid, int32_t* value) const {
    for (const auto& e : _entries)
        if (e.opid == opid) {
            if (value) *value = e.op;
            return true;
        }
    return false;
}

ArtNode OfficeArtRGFOPTE::toNode(uint16_t type) const {
    std::vector<uint8_t> body;
    write(body);
    return makeAtom(OfficeArtRecordHeader(3, static_cast<unsigned>(_entries.size()), type, 0), std::move(body));
}

}  // namespace zelvar
