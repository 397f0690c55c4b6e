// The drawing group and its picture store.
#include "officeart/drawing_group.h"

#include <algorithm>
#include <cstring>

#include "frame/zverror.h"
#include "officeart/md4.h"

namespace zelvar {

namespace {

constexpr size_t kFbseFixed = 36;  // FBSE body before the name and the embedded blip

struct KindInfo {
    uint16_t type;
    uint16_t instance;  // the one-uid instance this library writes
    uint8_t fbseType;
    bool metafile;
};

KindInfo info(BlipKind kind) {
    switch (kind) {
        case BlipKind::Png: return {0xF01E, 1760, 6, false};
        case BlipKind::Jpeg: return {0xF01D, 1130, 5, false};
        case BlipKind::Wmf: return {0xF01B, 534, 3, true};
        case BlipKind::Dib: return {0xF01F, 1960, 7, false};
        case BlipKind::Emf: return {0xF01A, 980, 2, true};
        case BlipKind::Pict: return {0xF01C, 1346, 4, true};
        case BlipKind::Tiff: return {0xF020, 1764, 17, false};
    }
    return {0xF01E, 1760, 6, false};
}

bool kindOfType(uint16_t type, BlipKind* kind) {
    switch (type) {
        case 0xF01A: *kind = BlipKind::Emf; return true;
        case 0xF01B: *kind = BlipKind::Wmf; return true;
        case 0xF01C: *kind = BlipKind::Pict; return true;
        case 0xF01D: *kind = BlipKind::Jpeg; return true;
        case 0xF01E: *kind = BlipKind::Png; return true;
        case 0xF01F: *kind = BlipKind::Dib; return true;
        case 0xF020: *kind = BlipKind::Tiff; return true;
        default: return false;
    }
}

// One uid or two, by the blip's instance; false for an instance the kind doesn't have.
bool uidCount(BlipKind kind, unsigned instance, int* uids) {
    auto pair = [&](unsigned one) {
        if (instance == one) return *uids = 1, true;
        if (instance == one + 1) return *uids = 2, true;
        return false;
    };
    switch (kind) {
        case BlipKind::Png: return pair(1760);
        case BlipKind::Jpeg: return pair(1130) || pair(1762);
        case BlipKind::Dib: return pair(1960);
        case BlipKind::Emf: return pair(980);
        case BlipKind::Wmf: return pair(534);
        case BlipKind::Pict: return pair(1346);
        case BlipKind::Tiff: return pair(1764);
    }
    return false;
}

uint32_t be32(const uint8_t* p) {
    return static_cast<uint32_t>(p[0]) << 24 | static_cast<uint32_t>(p[1]) << 16 | static_cast<uint32_t>(p[2]) << 8 | p[3];
}

int clampSize(int64_t v) {
    if (v < 0) v = -v;
    return v > 0x7FFFFFFF ? 0x7FFFFFFF : static_cast<int>(v);
}

}  // namespace

void jpegSize(const uint8_t* data, size_t size, int* width, int* height) {
    *width = *height = 0;
    if (size < 2 || data[0] != 0xFF || data[1] != 0xD8) throw zverror("invalid jpg file");
    size_t p = 2;
    while (p + 4 <= size) {
        if (data[p] == 0xFF && data[p + 1] >= 0xC0 && data[p + 1] <= 0xC3) {
            if (p + 9 > size) return;
            *height = data[p + 5] << 8 | data[p + 6];
            *width = data[p + 7] << 8 | data[p + 8];
            return;
        }
        p += 2 + (static_cast<size_t>(data[p + 2]) << 8 | data[p + 3]);
    }
}

BlipView readBlip(const OfficeArtRecordHeader& header, const uint8_t* body, size_t len) {
    BlipView view;
    if (!kindOfType(header.type, &view.kind)) throw zverror("OfficeArtBStoreContainer: file is corrupt");
    const KindInfo ki = info(view.kind);
    const std::string error = std::string("error in record ") + officeArtName(header.type);
    int uids = 0;
    if (!uidCount(view.kind, header.instance(), &uids)) throw zverror(error);
    size_t skip = 16 * static_cast<size_t>(uids) + (ki.metafile ? 34 : 1);
    if (len < skip) throw zverror(error);
    view.data = body + skip;
    view.size = len - skip;
    const uint8_t* d = view.data;
    switch (view.kind) {
        case BlipKind::Png:
            if (view.size >= 24) view.width = clampSize(be32(d + 16)), view.height = clampSize(be32(d + 20));
            break;
        case BlipKind::Jpeg:
            // A stored JPEG that is not one keeps a size of 0 rather than failing the load.
            if (view.size >= 2 && d[0] == 0xFF && d[1] == 0xD8) jpegSize(d, view.size, &view.width, &view.height);
            break;
        case BlipKind::Dib:
            if (view.size >= 12)
                view.width = clampSize(static_cast<int32_t>(le::get32(d + 4))), view.height = clampSize(static_cast<int32_t>(le::get32(d + 8)));
            break;
        case BlipKind::Emf:
            if (view.size >= 24)
                view.width = clampSize(static_cast<int32_t>(le::get32(d + 16))), view.height = clampSize(static_cast<int32_t>(le::get32(d + 20)));
            break;
        case BlipKind::Wmf: view.width = view.height = 200; break;
        default: break;
    }
    return view;
}

ArtNode makeBlip(BlipKind kind, const uint8_t* data, size_t size, uint8_t uid[16]) {
    // The placeable header of a metafile and the file header of a bitmap are not stored.
    static const uint8_t placeable[4] = {0xD7, 0xCD, 0xC6, 0x9A};
    if (size > 22 && std::memcmp(data, placeable, 4) == 0) data += 22, size -= 22;
    if (size > 14 && data[0] == 'B' && data[1] == 'M') data += 14, size -= 14;
    if (size > 0xFFFFFFFFu - 100) throw zverror("picture is too big");
    const KindInfo ki = info(kind);
    md4(data, size, uid);
    std::vector<uint8_t> body(uid, uid + 16);
    if (ki.metafile) {
        le::append32(body, static_cast<uint32_t>(size));  // uncompressed size
        for (uint32_t v : {0u, 0u, 960u, 720u}) le::append32(body, v);
        le::append32(body, 0);
        le::append32(body, 0);
        le::append32(body, static_cast<uint32_t>(size));  // stored size: nothing is compressed
        body.push_back(254);
        body.push_back(254);
    } else {
        body.push_back(255);
    }
    body.insert(body.end(), data, data + size);
    return makeAtom(OfficeArtRecordHeader(0, ki.instance, ki.type, 0), std::move(body));
}

BlipKind sniffPicture(const uint8_t* d, size_t size) {
    if (!d || size <= 4) throw zverror("unknown picture format");
    if (d[0] == 137 && d[1] == 'P' && d[2] == 'N' && d[3] == 'G') return BlipKind::Png;
    // Any JPEG: its first marker segment (JFIF, EXIF or other) does not matter to the store.
    if (d[0] == 0xFF && d[1] == 0xD8 && d[2] == 0xFF) return BlipKind::Jpeg;
    if (d[0] == 0xD7 && d[1] == 0xCD && d[2] == 0xC6 && d[3] == 0x9A) return BlipKind::Wmf;
    if (d[0] == 1 && d[1] == 0) return BlipKind::Emf;
    if (d[0] == 'B' && d[1] == 'M') return BlipKind::Dib;
    if (d[0] == 12 || d[0] == 40 || d[0] == 64 || d[0] == 108 || d[0] == 124) return BlipKind::Dib;
    throw zverror("unknown picture format");
}

BlipKind pictureKindByName(const std::wstring& name) {
    if (name.size() <= 4) throw zverror("unknown picture format");
    std::wstring end = name.substr(name.size() - 4);
    struct Ending {
        const wchar_t *lower, *upper;
        BlipKind kind;
    };
    static const Ending endings[] = {{L".png", L".PNG", BlipKind::Png}, {L".jpg", L".JPG", BlipKind::Jpeg},
                                     {L".wmf", L".WMF", BlipKind::Wmf}, {L".bmp", L".BMP", BlipKind::Dib},
                                     {L".dib", L".DIB", BlipKind::Dib}, {L".emf", L".EMF", BlipKind::Emf}};
    for (const auto& e : endings)
        if (end == e.lower || end == e.upper) return e.kind;
    throw zverror("unknown picture format");
}

void DrawingGroup::clear() {
    _records.clear();
    _error.clear();
    _fromFile = _modified = false;
}

void DrawingGroup::load(const std::vector<uint8_t>& bytes) {
    clear();
    _fromFile = true;
    try {
        _records = parseOfficeArt(bytes.data(), bytes.size());
        const ArtNode* group = dgg();
        if (!group) throw zverror("error in record MsoDrawingGroup");
        // Every picture of the store must be a blip this library knows: reading it now reports a
        // broken store before anything is added to it.
        if (const ArtNode* bstore = store()) {
            for (const auto& entry : bstore->children) {
                OfficeArtRecordHeader h;
                const uint8_t* body;
                size_t len;
                if (entry.header.type == OfficeArtFBSE::kType && entry.body.size() < kFbseFixed)
                    throw zverror("error in record OfficeArtFBSE #1");
                if (blipOf(entry, h, body, len)) readBlip(h, body, len);
            }
        }
        if (const ArtNode* fdgg = group->find(OfficeArtFDGGBlock::kType))
            if (fdgg->body.size() < 16) throw zverror("error in record OfficeArtFDGGBlock");
    } catch (const zverror& e) {
        _records.clear();
        _error = e.what();
        // A record that cannot be present at all stands for the group itself.
        if (_error == "error in record OfficeArtRecord") _error = "error in record MsoDrawingGroup";
    }
}

void DrawingGroup::usable() const {
    if (!_error.empty()) throw zverror(_error);
}

void DrawingGroup::initDefault() {
    usable();
    if (present()) return;
    ArtNode group = makeContainer(OfficeArtDggContainer::kType);
    Numbers n;
    n.spidMax = 1027;
    n.cidcl = 2;
    n.cspSaved = 3;
    n.cdgSaved = 1;
    n.clusters.push_back({1, 3});
    group.children.push_back(makeAtom(OfficeArtFDGGBlock::header(0, 0), {}));
    group.children.push_back(makeContainer(OfficeArtBStoreContainer::kType, 0));
    OfficeArtRGFOPTE props;
    props.addProperty({191, false, false, 0x8000041});
    props.addProperty({385, false, false, 0x8000041});
    props.addProperty({448, false, false, 0x8000040});
    group.children.push_back(props.toNode());
    std::vector<uint8_t> colors;
    for (uint32_t v : {0x800000Du, 0x800000Cu, 0x8000017u, 0x100000F7u}) le::append32(colors, v);
    group.children.push_back(makeAtom(OfficeArtSplitMenuColorContainer::header(4, 16), colors));
    _records.push_back(std::move(group));
    setNumbers(n);
    _fromFile = false;
    _modified = true;
}

std::vector<uint8_t> DrawingGroup::bytes() const {
    std::vector<uint8_t> out;
    for (ArtNode record : _records) {
        // Lengths follow what the containers hold now; a loaded group's records already agree.
        record.recalcLen();
        record.write(out);
    }
    return out;
}

ArtNode* DrawingGroup::dgg() {
    for (auto& r : _records)
        if (OfficeArtDggContainer::check(r.header)) return &r;
    return nullptr;
}
const ArtNode* DrawingGroup::dgg() const { return const_cast<DrawingGroup*>(this)->dgg(); }

ArtNode* DrawingGroup::store() {
    ArtNode* group = dgg();
    if (!group) return nullptr;
    for (auto& child : group->children)
        if (OfficeArtBStoreContainer::check(child.header)) return &child;
    return nullptr;
}
const ArtNode* DrawingGroup::store() const { return const_cast<DrawingGroup*>(this)->store(); }

bool DrawingGroup::blipOf(const ArtNode& entry, OfficeArtRecordHeader& header, const uint8_t*& body, size_t& len) {
    if (entry.header.type == OfficeArtFBSE::kType) {
        if (entry.body.size() < kFbseFixed) return false;
        size_t at = kFbseFixed + entry.body[33];  // cbName
        if (entry.body.size() < at + OfficeArtRecordHeader::size()) return false;
        header.read(entry.body.data() + at);
        size_t room = entry.body.size() - at - OfficeArtRecordHeader::size();
        if (header.len > room) throw zverror("error in record OfficeArtFBSE #1");
        body = entry.body.data() + at + OfficeArtRecordHeader::size();
        len = header.len;
        return true;
    }
    BlipKind kind;
    if (!kindOfType(entry.header.type, &kind)) throw zverror("OfficeArtBStoreContainer: file is corrupt");
    header = entry.header;
    body = entry.body.data();
    len = entry.body.size();
    return true;
}

int DrawingGroup::addPicture(BlipKind kind, const uint8_t* data, size_t size) {
    initDefault();
    ArtNode* bstore = store();
    if (!bstore) {
        // A loaded group without a store gets one behind its numbering block.
        ArtNode* group = dgg();
        if (!group) throw zverror("error in record MsoDrawingGroup");
        auto at = group->children.begin();
        if (at != group->children.end() && at->header.type == OfficeArtFDGGBlock::kType) ++at;
        group->children.insert(at, makeContainer(OfficeArtBStoreContainer::kType, 0));
        bstore = store();
    }
    uint8_t uid[16];
    ArtNode blip = makeBlip(kind, data, size, uid);
    const KindInfo ki = info(kind);
    std::vector<uint8_t> body;
    body.push_back(ki.fbseType);  // btWin32
    body.push_back(ki.fbseType);  // btMacOS
    body.insert(body.end(), uid, uid + 16);
    le::append16(body, 255);  // tag
    le::append32(body, static_cast<uint32_t>(blip.size()));
    le::append32(body, 0);  // cRef: no sheet uses it yet
    le::append32(body, 0);  // foDelay
    for (int i = 0; i < 4; ++i) body.push_back(0);
    blip.write(body);
    bstore->children.push_back(makeAtom(OfficeArtRecordHeader(2, ki.fbseType, OfficeArtFBSE::kType, 0), std::move(body)));
    unsigned count = 0;
    for (const auto& child : bstore->children) count += child.header.type == OfficeArtFBSE::kType;
    bstore->header.setInstance(count);
    _modified = true;
    return pictureCount() - 1;
}

std::vector<const ArtNode*> DrawingGroup::fbses() const {
    std::vector<const ArtNode*> out;
    if (const ArtNode* bstore = store())
        for (const auto& child : bstore->children)
            if (child.header.type == OfficeArtFBSE::kType) out.push_back(&child);
    return out;
}

int DrawingGroup::fbseCount() const { return static_cast<int>(fbses().size()); }

int DrawingGroup::pictureCount() const {
    usable();
    int count = 0;
    if (const ArtNode* bstore = store())
        for (const auto& child : bstore->children) {
            OfficeArtRecordHeader h;
            const uint8_t* body;
            size_t len;
            if (blipOf(child, h, body, len)) ++count;
        }
    return count;
}

BlipView DrawingGroup::picture(int index) const {
    usable();
    const ArtNode* bstore = store();
    if (bstore && index >= 0) {
        int at = 0;
        for (const auto& child : bstore->children) {
            OfficeArtRecordHeader h;
            const uint8_t* body;
            size_t len;
            if (!blipOf(child, h, body, len)) continue;
            if (at++ == index) return readBlip(h, body, len);
        }
    }
    throw zverror("index is out of range");
}

int DrawingGroup::blipIndexForPib(int pib) const {
    const ArtNode* bstore = store();
    if (!bstore || pib < 1) return -1;
    int fbse = 0, blips = 0;
    for (const auto& child : bstore->children) {
        OfficeArtRecordHeader h;
        const uint8_t* body;
        size_t len;
        bool hasBlip = blipOf(child, h, body, len);
        if (child.header.type == OfficeArtFBSE::kType && ++fbse == pib) return hasBlip ? blips : -1;
        if (hasBlip) ++blips;
    }
    return -1;
}

int DrawingGroup::pibForPicture(int index) const {
    const ArtNode* bstore = store();
    int fbse = 0, blips = 0;
    if (bstore && index >= 0)
        for (const auto& child : bstore->children) {
            OfficeArtRecordHeader h;
            const uint8_t* body;
            size_t len;
            bool isFbse = child.header.type == OfficeArtFBSE::kType;
            if (isFbse) ++fbse;
            if (blipOf(child, h, body, len) && blips++ == index) {
                if (!isFbse) break;
                return fbse;
            }
        }
    throw zverror("pictureId is out of range");
}

void DrawingGroup::addPicRef(int pib) {
    ArtNode* bstore = store();
    int at = 0;
    if (bstore && pib >= 1)
        for (auto& child : bstore->children)
            if (child.header.type == OfficeArtFBSE::kType && ++at == pib) {
                if (child.body.size() < kFbseFixed) break;
                le::put32(child.body.data() + 24, le::get32(child.body.data() + 24) + 1);
                _modified = true;
                return;
            }
    throw zverror("pictureId is out of range");
}

uint32_t DrawingGroup::cRef(int pib) const {
    auto list = fbses();
    if (pib < 1 || pib > static_cast<int>(list.size()) || list[pib - 1]->body.size() < kFbseFixed) return 0;
    return le::get32(list[pib - 1]->body.data() + 24);
}

DrawingGroup::Numbers DrawingGroup::numbers() const {
    Numbers n;
    const ArtNode* group = dgg();
    const ArtNode* fdgg = group ? group->find(OfficeArtFDGGBlock::kType) : nullptr;
    if (!fdgg || fdgg->body.size() < 16) return n;
    const uint8_t* b = fdgg->body.data();
    n.spidMax = le::get32(b);
    n.cidcl = le::get32(b + 4);
    n.cspSaved = le::get32(b + 8);
    n.cdgSaved = le::get32(b + 12);
    for (size_t at = 16; at + 8 <= fdgg->body.size(); at += 8) n.clusters.push_back({le::get32(b + at), le::get32(b + at + 4)});
    return n;
}

void DrawingGroup::setNumbers(const Numbers& n) {
    ArtNode* group = dgg();
    if (!group) return;
    ArtNode* fdgg = group->find(OfficeArtFDGGBlock::kType);
    if (!fdgg) {
        group->children.insert(group->children.begin(), makeAtom(OfficeArtFDGGBlock::header(0, 0), {}));
        fdgg = &group->children.front();
    }
    std::vector<uint8_t> body;
    le::append32(body, n.spidMax);
    le::append32(body, static_cast<uint32_t>(n.clusters.size() + 1));
    le::append32(body, n.cspSaved);
    le::append32(body, n.cdgSaved);
    for (const auto& c : n.clusters) {
        le::append32(body, c.dgid);
        le::append32(body, c.cspidCur);
    }
    fdgg->body = std::move(body);
    fdgg->header.len = static_cast<uint32_t>(fdgg->body.size());
    _modified = true;
}

uint32_t DrawingGroup::newDrawingId() {
    Numbers n = numbers();
    uint32_t dgid = 0;
    for (const auto& c : n.clusters) dgid = std::max(dgid, c.dgid);
    ++n.cdgSaved;
    setNumbers(n);
    return dgid + 1;
}

uint32_t DrawingGroup::allocateShape(uint32_t dgid, uint32_t preferred, bool drawingsCluster) {
    Numbers n = numbers();
    uint32_t spid = 0;
    if (preferred >= 1024 && preferred % 1024 != 0) {
        size_t cluster = preferred / 1024 - 1;
        if (cluster < n.clusters.size() && (drawingsCluster || n.clusters[cluster].dgid == dgid)) spid = preferred;
    }
    if (!spid) {
        if (n.clusters.size() >= 0x3FFF) throw zverror("too many shapes");
        n.clusters.push_back({dgid, 0});
        spid = static_cast<uint32_t>(n.clusters.size()) * 1024;
    }
    Cluster& c = n.clusters[spid / 1024 - 1];
    c.cspidCur = std::max(c.cspidCur, spid % 1024 + 1);
    n.spidMax = std::max(n.spidMax, spid + 1);
    ++n.cspSaved;
    setNumbers(n);
    return spid;
}

}  // namespace zelvar
