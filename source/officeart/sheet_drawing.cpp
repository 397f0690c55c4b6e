// Reading the shapes of a sheet's drawing and adding pictures and comments to it.
#include "officeart/sheet_drawing.h"

#include <algorithm>

#include "biff/biff_record.h"
#include "frame/zverror.h"

namespace zelvar {

namespace {

// Finds the drawing's container, its OfficeArtFDG and its shape group in the joined bytes.
struct DrawingLayout {
    size_t fdg = 0, spgr = 0;
    uint32_t dgLen = 0, spgrLen = 0;
};

DrawingLayout layoutOf(const DrawingMap& map) {
    const std::vector<uint8_t>& b = map.bytes;
    OfficeArtRecordHeader h;
    if (b.size() < 8) throw zverror("error in record MsoDrawing");
    h.read(b.data());
    if (!OfficeArtDgContainer::check(h)) throw zverror("error in record OfficeArtDgContainer");
    DrawingLayout layout;
    layout.dgLen = h.len;
    size_t end = std::min(b.size(), static_cast<size_t>(8) + h.len);
    bool haveFdg = false, haveSpgr = false;
    for (size_t at = 8; at + 8 <= end;) {
        OfficeArtRecordHeader child;
        child.read(b.data() + at);
        if (!haveFdg && OfficeArtFDG::check(child)) {
            layout.fdg = at;
            haveFdg = true;
        } else if (!haveSpgr && OfficeArtSpgrContainer::check(child)) {
            layout.spgr = at;
            layout.spgrLen = child.len;
            haveSpgr = true;
        }
        if (child.len > end - at - 8) break;
        at += 8 + child.len;
    }
    if (!haveFdg) throw zverror("error in record OfficeArtFDG");
    if (!haveSpgr) throw zverror("error in record OfficeArtSpgrContainer");
    return layout;
}

uint32_t mapU32(const DrawingMap& map, size_t at) {
    if (at + 4 > map.bytes.size()) throw zverror("error in record MsoDrawing");
    return le::get32(map.bytes.data() + at);
}

template <class Rec>
void patch32(std::vector<Rec>& objects, const DrawingMap& map, size_t at, uint32_t value) {
    for (int i = 0; i < 4; ++i, ++at) {
        for (const auto& piece : map.pieces)
            if (at >= piece.offset && at < piece.offset + piece.size) {
                objects[piece.record].payload[at - piece.offset] = static_cast<uint8_t>(value >> (8 * i));
                break;
            }
    }
}

void collectShapes(const std::vector<ArtNode>& nodes, std::vector<ShapeInfo>& out) {
    for (const auto& node : nodes) {
        if (node.header.type == OfficeArtSpContainer::kType && node.isContainer()) {
            ShapeInfo info;
            for (const auto& child : node.children) {
                if (OfficeArtFSP::check(child.header) && child.body.size() >= 8) {
                    info.spid = le::get32(child.body.data());
                    info.shapeType = child.header.instance();
                } else if (child.header.type == OfficeArtFOPT::kType && !child.isContainer()) {
                    OfficeArtRGFOPTE props;
                    try {
                        props.read(child.body.data(), child.body.size(), child.header.instance());
                        info.hasPib = props.get(260, &info.pib);
                    } catch (const zverror&) {
                    }
                } else if (child.header.type == OfficeArtClientAnchorSheet::kType && child.body.size() >= 18) {
                    const uint8_t* b = child.body.data() + 2;
                    OfficeArtCoord& c = info.anchor;
                    uint16_t* fields[8] = {&c.colL, &c.dxL, &c.rwT, &c.dyT, &c.colR, &c.dxR, &c.rwB, &c.dyB};
                    for (int i = 0; i < 8; ++i) *fields[i] = le::get16(b + 2 * i);
                    info.hasAnchor = true;
                }
            }
            out.push_back(info);
        }
        if (node.isContainer()) collectShapes(node.children, out);
    }
}

void addFtCmo(std::vector<uint8_t>& out, uint16_t ot, uint16_t id, uint16_t grbit) {
    le::append16(out, 0x15);
    le::append16(out, 18);
    le::append16(out, ot);
    le::append16(out, id);
    le::append16(out, grbit);
    out.insert(out.end(), 12, 0);
}

std::wstring fromUnits(const std::vector<uint16_t>& units) {
    std::wstring out;
    out.reserve(units.size());
    for (size_t i = 0; i < units.size(); ++i) {
        uint32_t u = units[i];
        if (u >= 0xD800 && u < 0xDC00 && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000) {
            u = 0x10000 + ((u - 0xD800) << 10) + (units[i + 1] - 0xDC00);
            ++i;
        }
        out.push_back(static_cast<wchar_t>(u));
    }
    return out;
}

}  // namespace

template <class Rec>
DrawingMap mapDrawing(const std::vector<Rec>& objects) {
    // CONTINUE records carry the drawing too, behind an MsoDrawing or an Obj, except those that
    // hold a TextObject's text and runs; an embedded chart's substream is no part of it.
    DrawingMap map;
    bool inDrawing = false;
    int depth = 0;
    size_t textUnits = 0, runBytes = 0;  // what the last TextObject's CONTINUEs still hold
    for (size_t i = 0; i < objects.size(); ++i) {
        const Rec& r = objects[i];
        if (r.id == rt::Bof) ++depth;
        if (depth > 0) {
            // Behind a chart the drawing may go on in CONTINUE records.
            if (r.id == rt::Eof) --depth;
            inDrawing = depth == 0;
            continue;
        }
        if (r.id == rt::Continue && (textUnits || runBytes)) {
            const auto& p = r.payload;
            if (textUnits) {
                if (!p.empty()) {
                    size_t room = (p[0] & 1) ? (p.size() - 1) / 2 : p.size() - 1;
                    textUnits -= std::min(textUnits, room);
                }
            } else {
                runBytes -= std::min(runBytes, p.size());
            }
            continue;
        }
        if (r.id == rt::MsoDrawing || (inDrawing && r.id == rt::Continue)) {
            map.pieces.push_back({i, map.bytes.size(), r.payload.size()});
            map.bytes.insert(map.bytes.end(), r.payload.begin(), r.payload.end());
            inDrawing = true;
        } else if (r.id == rt::TextObject) {
            textUnits = r.payload.size() >= 14 ? le::get16(r.payload.data() + 10) : 0;
            runBytes = textUnits && r.payload.size() >= 14 ? le::get16(r.payload.data() + 12) : 0;
            inDrawing = true;
        } else {
            inDrawing = r.id == rt::Obj;
        }
    }
    return map;
}

std::vector<ShapeInfo> drawingShapes(const DrawingMap& map) {
    std::vector<ShapeInfo> out;
    if (map.bytes.size() < 8) return out;
    try {
        // The container's length may claim more than the records hold in a damaged file; the
        // records that are there still count.
        OfficeArtRecordHeader h;
        h.read(map.bytes.data());
        size_t len = std::min(map.bytes.size() - 8, static_cast<size_t>(h.len));
        if (!OfficeArtDgContainer::check(h)) return out;
        size_t pos = 8, end = 8 + len;
        std::vector<ArtNode> nodes;
        while (end - pos >= 8) {
            size_t used = 0;
            nodes.push_back(parseOfficeArtRecord(map.bytes.data() + pos, end - pos, &used));
            pos += used;
        }
        collectShapes(nodes, out);
    } catch (const zverror&) {
    }
    return out;
}

template <class Rec>
std::vector<ShapeInfo> drawingPictures(const std::vector<Rec>& objects) {
    std::vector<ShapeInfo> out;
    for (const auto& shape : drawingShapes(mapDrawing(objects)))
        if (shape.hasPib && shape.hasAnchor) out.push_back(shape);
    return out;
}

template <class Rec>
ShapePlan reserveShape(const std::vector<Rec>& objects, DrawingGroup& group, ShapeRole role) {
    ShapePlan plan;
    DrawingMap map = mapDrawing(objects);
    const bool picture = role == ShapeRole::Picture;
    if (map.empty()) {
        plan.newDrawing = true;
        if (!group.fromFile()) {
            // A book that had no drawings numbers by fixed rules: pictures in drawing 0, a drawing
            // begun by a comment is drawing 1 and its shape shares the group shape's id.
            plan.dgid = picture ? 0 : 1;
            plan.groupSpid = 1024;
            plan.spid = picture ? 1025 : 1024;
            plan.csp = picture ? 3 : 1;
            plan.spidCur = picture ? 1026 : 1024;
        } else {
            plan.dgid = group.newDrawingId();
            plan.groupSpid = group.allocateShape(plan.dgid, 0);
            plan.spid = group.allocateShape(plan.dgid, plan.groupSpid + 1);
            plan.csp = 2;
            plan.spidCur = plan.spid;
        }
        return plan;
    }
    DrawingLayout layout = layoutOf(map);
    OfficeArtRecordHeader fdg;
    fdg.read(map.bytes.data() + layout.fdg);
    plan.dgid = fdg.instance();
    plan.csp = mapU32(map, layout.fdg + 8);
    plan.spidCur = mapU32(map, layout.fdg + 12);
    if (!group.fromFile()) {
        if (picture) {
            plan.spid = 1026;
        } else {
            plan.spid = plan.spidCur + 1;
            plan.spidCur = plan.spid;
            ++plan.csp;
        }
        return plan;
    }
    uint32_t last = plan.spidCur;
    for (const auto& shape : drawingShapes(map)) last = std::max(last, shape.spid);
    plan.spid = group.allocateShape(plan.dgid, last + 1, last >= 1024);
    plan.spidCur = std::max(plan.spidCur, plan.spid);
    ++plan.csp;
    return plan;
}

template <class Rec>
void insertShape(std::vector<Rec>& objects, const ShapePlan& plan, const NewShape& shape) {
    std::vector<Rec> added;
    auto push = [&](uint16_t id, const std::vector<uint8_t>& payload) {
        if (payload.size() > 8224) throw zverror("record is too long");
        Rec r;
        r.id = id;
        r.payload = payload;
        added.push_back(std::move(r));
    };
    const uint32_t artAdded = static_cast<uint32_t>(shape.art.size() + shape.textboxArt.size());
    std::vector<uint8_t> first;
    DrawingMap map = mapDrawing(objects);
    if (plan.newDrawing) {
        std::vector<uint8_t> groupShape;
        OfficeArtRecordHeader(15, 0, OfficeArtSpContainer::kType, 48 - 8).write(groupShape);
        OfficeArtRecordHeader(1, 0, OfficeArtFSPGR::kType, 16).write(groupShape);
        groupShape.insert(groupShape.end(), 16, 0);
        OfficeArtRecordHeader(2, 0, OfficeArtFSP::kType, 8).write(groupShape);
        le::append32(groupShape, plan.groupSpid);
        le::append32(groupShape, 5);  // a group shape, and the top one
        const uint32_t spgrLen = static_cast<uint32_t>(groupShape.size()) + artAdded;
        OfficeArtRecordHeader(15, 0, OfficeArtDgContainer::kType, 16 + 8 + spgrLen).write(first);
        OfficeArtRecordHeader(0, plan.dgid, OfficeArtFDG::kType, 8).write(first);
        le::append32(first, plan.csp);
        le::append32(first, plan.spidCur);
        OfficeArtRecordHeader(15, 0, OfficeArtSpgrContainer::kType, spgrLen).write(first);
        first.insert(first.end(), groupShape.begin(), groupShape.end());
    }
    first.insert(first.end(), shape.art.begin(), shape.art.end());
    push(rt::MsoDrawing, first);
    for (const auto& r : shape.objects) push(r.id, r.payload);
    if (!shape.textboxArt.empty()) {
        push(rt::MsoDrawing, shape.textboxArt);
        for (const auto& r : shape.textboxObjects) push(r.id, r.payload);
    }
    size_t index = objects.size();
    if (!plan.newDrawing) {
        DrawingLayout layout = layoutOf(map);
        patch32(objects, map, 4, layout.dgLen + artAdded);
        patch32(objects, map, layout.spgr + 4, layout.spgrLen + artAdded);
        patch32(objects, map, layout.fdg + 8, plan.csp);
        patch32(objects, map, layout.fdg + 12, plan.spidCur);
        OfficeArtRecordHeader fdg;
        fdg.read(map.bytes.data() + layout.fdg);
        // The new shape goes behind the last one of the group, which is where the group's records
        // end; records that follow the group (solver rules) stay behind it.
        const size_t at = layout.spgr + 8 + layout.spgrLen;
        for (size_t k = 0; k < map.pieces.size(); ++k) {
            const auto& piece = map.pieces[k];
            if (at < piece.offset || at >= piece.offset + piece.size) continue;
            if (at == piece.offset) {
                index = piece.record;
                if (objects[index].id == rt::Continue) objects[index].id = rt::MsoDrawing;
            } else {
                // The group ends inside this record: its rest becomes a record of its own, behind
                // the objects of the shape that ends here, and the new shape goes before it.
                Rec tail;
                tail.id = rt::MsoDrawing;
                auto& payload = objects[piece.record].payload;
                tail.payload.assign(payload.begin() + static_cast<long>(at - piece.offset), payload.end());
                payload.resize(at - piece.offset);
                index = k + 1 < map.pieces.size() ? map.pieces[k + 1].record : objects.size();
                objects.insert(objects.begin() + static_cast<long>(index), std::move(tail));
            }
            break;
        }
    }
    objects.insert(objects.begin() + static_cast<long>(index), added.begin(), added.end());
}

// The cell anchor of a shape and its empty client data, which close every shape we add.
static void addAnchorAndClientData(ArtNode& sp, const OfficeArtCoord& c) {
    std::vector<uint8_t> anchor;
    le::append16(anchor, 0);
    for (uint16_t v : {c.colL, c.dxL, c.rwT, c.dyT, c.colR, c.dxR, c.rwB, c.dyB}) le::append16(anchor, v);
    sp.children.push_back(makeAtom(OfficeArtClientAnchorSheet::header(), anchor));
    sp.children.push_back(makeAtom(OfficeArtClientData::header(), {}));
}

std::vector<uint8_t> pictureShape(uint32_t spid, int pib, const OfficeArtCoord& c) {
    ArtNode sp = makeContainer(OfficeArtSpContainer::kType);
    std::vector<uint8_t> fsp;
    le::append32(fsp, spid);
    le::append32(fsp, 0xA00);  // has an anchor, has a shape type
    sp.children.push_back(makeAtom(OfficeArtRecordHeader(2, 75, OfficeArtFSP::kType, 0), fsp));
    sp.children.push_back(OfficeArtRGFOPTE(pib).toNode());
    addAnchorAndClientData(sp, c);
    sp.recalcLen();
    std::vector<uint8_t> out;
    sp.write(out);
    return out;
}

std::vector<uint8_t> commentShape(uint32_t spid, const OfficeArtCoord& c) {
    ArtNode sp = makeContainer(OfficeArtSpContainer::kType);
    std::vector<uint8_t> fsp;
    le::append32(fsp, spid);
    le::append32(fsp, 0xA00);
    sp.children.push_back(makeAtom(OfficeArtRecordHeader(2, 202, OfficeArtFSP::kType, 0), fsp));
    OfficeArtRGFOPTE props;
    const std::pair<uint16_t, uint32_t> values[] = {{128, 14223548}, {191, 0x80008},  {344, 0},
                                                    {385, 0x8000050}, {387, 0x8000050}, {447, 0x110010},
                                                    {513, 0},         {575, 0x30003},   {959, 0xA0002}};
    for (const auto& v : values) props.addProperty({v.first, false, false, static_cast<int32_t>(v.second)});
    sp.children.push_back(props.toNode());
    addAnchorAndClientData(sp, c);
    sp.recalcLen();
    // The text box record rides in the next MsoDrawing, behind the comment's Obj, but belongs
    // to this shape: the container's length counts it.
    sp.header.len += 8;
    std::vector<uint8_t> out;
    sp.write(out);
    return out;
}

std::vector<uint8_t> clientTextbox() {
    std::vector<uint8_t> out;
    OfficeArtClientTextbox::header().write(out);
    return out;
}

std::vector<uint8_t> pictureObj(uint16_t id) {
    std::vector<uint8_t> out;
    addFtCmo(out, 8, id, 0x6011);
    le::append16(out, 7);  // FtCf: the picture's format
    le::append16(out, 2);
    le::append16(out, 0xFFFF);
    le::append16(out, 8);  // FtPioGrbit
    le::append16(out, 2);
    le::append16(out, 2);
    le::append16(out, 0);  // end
    le::append16(out, 0);
    return out;
}

std::vector<uint8_t> commentObj(uint16_t id) {
    static const uint8_t noteId[16] = {0xFC, 0x53, 0x24, 0xBA, 0x0A, 0xC7, 0x3E, 0x43,
                                       0xB3, 0x4B, 0xA4, 0xE0, 0xCB, 0xE0, 0xAC, 0x98};
    std::vector<uint8_t> out;
    addFtCmo(out, 25, id, 0x4011);
    le::append16(out, 13);  // FtNts
    le::append16(out, 22);
    out.insert(out.end(), noteId, noteId + 16);
    le::append16(out, 16);
    out.insert(out.end(), 4, 0);
    le::append16(out, 0);
    le::append16(out, 0);
    return out;
}

bool objIdAndType(const std::vector<uint8_t>& payload, uint16_t* id, uint16_t* ot) {
    if (payload.size() < 8 || le::get16(payload.data()) != 0x15) return false;
    *ot = le::get16(payload.data() + 4);
    *id = le::get16(payload.data() + 6);
    return true;
}

template <class Rec>
unsigned maxObjectId(const std::vector<Rec>& objects, bool* any) {
    unsigned best = 0;
    *any = false;
    for (const auto& r : objects) {
        uint16_t id, ot;
        if (r.id == rt::Obj && objIdAndType(r.payload, &id, &ot)) {
            best = std::max<unsigned>(best, id);
            *any = true;
        }
    }
    return best;
}

template <class Rec>
uint16_t freeObjectId(const std::vector<Rec>& objects, unsigned start) {
    std::vector<bool> used(65536, false);
    for (const auto& r : objects) {
        uint16_t id, ot;
        if (r.id == rt::Obj && objIdAndType(r.payload, &id, &ot)) used[id] = true;
    }
    for (unsigned id = start; id < 65536; ++id)
        if (!used[id]) return static_cast<uint16_t>(id);
    for (unsigned id = 1; id < start && id < 65536; ++id)
        if (!used[id]) return static_cast<uint16_t>(id);
    throw zverror("too many objects in sheet");
}

std::vector<DrawingRecord> commentText(const std::wstring& units, uint16_t font) {
    if (units.size() > 0xFFFF) throw zverror("comment is too long");
    std::vector<DrawingRecord> out;
    DrawingRecord txo;
    txo.id = rt::TextObject;
    le::append16(txo.payload, 530);  // grbit: left aligned, top, locked text
    le::append16(txo.payload, 0);    // rot
    txo.payload.insert(txo.payload.end(), 6, 0);
    le::append16(txo.payload, static_cast<uint32_t>(units.size()));
    le::append16(txo.payload, units.empty() ? 0 : 16);
    le::append16(txo.payload, 0);  // ifntEmpty
    le::append16(txo.payload, 0);  // no kept formula bytes
    out.push_back(txo);
    if (units.empty()) return out;
    // The text in 16-bit form, a flag byte in front of each CONTINUE's part.
    constexpr size_t kPerRecord = (8224 - 1) / 2;
    for (size_t at = 0; at < units.size(); at += kPerRecord) {
        DrawingRecord part;
        part.id = rt::Continue;
        part.payload.push_back(1);
        for (size_t i = at; i < std::min(units.size(), at + kPerRecord); ++i) le::append16(part.payload, static_cast<uint32_t>(units[i]));
        out.push_back(std::move(part));
    }
    DrawingRecord runs;
    runs.id = rt::Continue;
    le::append16(runs.payload, 0);
    le::append16(runs.payload, font);
    runs.payload.insert(runs.payload.end(), 4, 0);
    le::append16(runs.payload, static_cast<uint32_t>(units.size()));
    le::append16(runs.payload, 0);
    runs.payload.insert(runs.payload.end(), 4, 0);
    out.push_back(std::move(runs));
    return out;
}

template <class Rec>
bool findCommentText(const std::vector<Rec>& objects, uint16_t objId, std::wstring* text) {
    for (size_t i = 0; i < objects.size(); ++i) {
        uint16_t id, ot;
        if (objects[i].id != rt::Obj || !objIdAndType(objects[i].payload, &id, &ot) || id != objId || ot != 25) continue;
        size_t j = i + 1;
        while (j < objects.size() && objects[j].id != rt::TextObject && objects[j].id != rt::Obj) ++j;
        if (j >= objects.size() || objects[j].id != rt::TextObject) return false;
        const auto& txo = objects[j].payload;
        if (txo.size() < 12) return false;
        size_t remaining = le::get16(txo.data() + 10);
        std::vector<uint16_t> units;
        for (size_t k = j + 1; remaining > 0 && k < objects.size() && objects[k].id == rt::Continue; ++k) {
            const auto& p = objects[k].payload;
            if (p.empty()) continue;
            bool wide = p[0] & 1;
            size_t room = wide ? (p.size() - 1) / 2 : p.size() - 1;
            size_t n = std::min(remaining, room);
            for (size_t c = 0; c < n; ++c) units.push_back(wide ? le::get16(p.data() + 1 + 2 * c) : p[1 + c]);
            remaining -= n;
        }
        *text = fromUnits(units);
        return true;
    }
    return false;
}

bool readNote(const std::vector<uint8_t>& p, NoteView* note) {
    if (p.size() < 11) return false;
    note->row = le::get16(p.data());
    note->col = le::get16(p.data() + 2);
    note->grbit = le::get16(p.data() + 4);
    note->idObj = le::get16(p.data() + 6);
    size_t cch = le::get16(p.data() + 8);
    bool wide = p[10] & 1;
    size_t need = 11 + (wide ? 2 * cch : cch);
    if (p.size() < need) return false;
    std::vector<uint16_t> units;
    for (size_t c = 0; c < cch; ++c) units.push_back(wide ? le::get16(p.data() + 11 + 2 * c) : p[11 + c]);
    note->author = fromUnits(units);
    return true;
}

std::vector<uint8_t> makeNote(const NoteView& note) {
    std::vector<uint8_t> out;
    le::append16(out, note.row);
    le::append16(out, note.col);
    le::append16(out, note.grbit);
    le::append16(out, note.idObj);
    std::wstring units = RecordWriter::utf16Units(note.author);
    if (units.size() > 0xFFFF) throw zverror("author is too long");
    le::append16(out, static_cast<uint32_t>(units.size()));
    out.push_back(1);
    for (wchar_t c : units) le::append16(out, static_cast<uint32_t>(c));
    out.push_back(0);
    return out;
}

#define ZV_DRAWING_INSTANTIATE(Rec)                                                                   \
    template DrawingMap mapDrawing<Rec>(const std::vector<Rec>&);                                      \
    template std::vector<ShapeInfo> drawingPictures<Rec>(const std::vector<Rec>&);                     \
    template ShapePlan reserveShape<Rec>(const std::vector<Rec>&, DrawingGroup&, ShapeRole);           \
    template void insertShape<Rec>(std::vector<Rec>&, const ShapePlan&, const NewShape&);              \
    template unsigned maxObjectId<Rec>(const std::vector<Rec>&, bool*);                                \
    template uint16_t freeObjectId<Rec>(const std::vector<Rec>&, unsigned);                            \
    template bool findCommentText<Rec>(const std::vector<Rec>&, uint16_t, std::wstring*);

ZV_DRAWING_INSTANTIATE(DrawingRecord)
ZV_DRAWING_INSTANTIATE(Biff<char>)
ZV_DRAWING_INSTANTIATE(Biff<wchar_t>)

}  // namespace zelvar
