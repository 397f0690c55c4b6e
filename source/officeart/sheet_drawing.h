// A sheet's drawing as the binary stream carries it: one OfficeArtDgContainer spread over the
// MsoDrawing records, each shape's records followed by the Obj record of that shape (and, for a
// comment, the TextObject of its text box). The records stay as they were read; what is added
// goes in as new records, and only the lengths and counters of the container and its shape group
// change in the records already there, so that everything else is written back byte for byte.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "biff/record_ids.h"
#include "officeart/drawing_group.h"
#include "officeart/officeart_record.h"

namespace zelvar {

// A sheet record as the drawing code needs it: id and payload.
struct DrawingRecord {
    uint16_t id = 0;
    std::vector<uint8_t> payload;
};

// Client anchor of a shape: column and row of each corner, and the offsets inside those cells
// (1024ths of the column width, 256ths of the row height).
struct OfficeArtCoord {
    uint16_t colL = 0, dxL = 0, rwT = 0, dyT = 0, colR = 0, dxR = 0, rwB = 0, dyB = 0;
};

struct ShapeInfo {
    uint32_t spid = 0;
    unsigned shapeType = 0;
    bool hasPib = false;
    int32_t pib = -1;
    bool hasAnchor = false;
    OfficeArtCoord anchor;
};

// The OfficeArt bytes of the sheet's MsoDrawing records (and CONTINUE records directly behind
// them), joined, with where each piece came from.
struct DrawingMap {
    struct Piece {
        size_t record = 0, offset = 0, size = 0;
    };
    std::vector<uint8_t> bytes;
    std::vector<Piece> pieces;
    bool empty() const { return pieces.empty(); }
};

template <class Rec>
DrawingMap mapDrawing(const std::vector<Rec>& objects);
// The shapes of a drawing, depth first; an unreadable drawing has none.
std::vector<ShapeInfo> drawingShapes(const DrawingMap& map);
// Shapes that show a picture of the store: a picture number and an anchor in the sheet.
template <class Rec>
std::vector<ShapeInfo> drawingPictures(const std::vector<Rec>& objects);

// A shape to add: its OfficeArt records as the first MsoDrawing of the shape carries them, the
// records that follow (its Obj), and an optional text box part with its own records.
struct NewShape {
    std::vector<uint8_t> art;
    std::vector<DrawingRecord> objects;
    std::vector<uint8_t> textboxArt;
    std::vector<DrawingRecord> textboxObjects;
};

enum class ShapeRole { Picture, Comment };

// The numbers of a shape about to be added: its id, and the drawing's id, shape count and last id
// afterwards; for a sheet without a drawing also the id of the new group shape.
struct ShapePlan {
    uint32_t spid = 0;
    bool newDrawing = false;
    uint32_t dgid = 0, csp = 0, spidCur = 0, groupSpid = 1024;
};

// Numbers the shape: the fixed numbering of a group this book made, or for a loaded group the
// cluster table, which then counts the shape. Then insertShape adds its records, creating the
// drawing when the sheet has none, and sets the container's lengths and the drawing's counters.
template <class Rec>
ShapePlan reserveShape(const std::vector<Rec>& objects, DrawingGroup& group, ShapeRole role);
template <class Rec>
void insertShape(std::vector<Rec>& objects, const ShapePlan& plan, const NewShape& shape);

// OfficeArt records of the shapes this library makes.
std::vector<uint8_t> pictureShape(uint32_t spid, int pib, const OfficeArtCoord& coord);
// A comment's shape without its text box record, the container's length counting it.
std::vector<uint8_t> commentShape(uint32_t spid, const OfficeArtCoord& coord);
std::vector<uint8_t> clientTextbox();

// Obj records: a picture (ot 8) and a comment (ot 25 with its note sub-record).
std::vector<uint8_t> pictureObj(uint16_t id);
std::vector<uint8_t> commentObj(uint16_t id);
// The object id of an Obj record, and its object type; false for a payload too short.
bool objIdAndType(const std::vector<uint8_t>& payload, uint16_t* id, uint16_t* ot);
// A free object id: from start up, skipping the ones the sheet's Obj records hold.
template <class Rec>
uint16_t freeObjectId(const std::vector<Rec>& objects, unsigned start);
template <class Rec>
unsigned maxObjectId(const std::vector<Rec>& objects, bool* any);

// The TextObject of a comment and its CONTINUE records: text and runs (font for the text).
std::vector<DrawingRecord> commentText(const std::wstring& units, uint16_t font);
// The text of the comment whose Obj has this id, or false.
template <class Rec>
bool findCommentText(const std::vector<Rec>& objects, uint16_t objId, std::wstring* text);

// A NoteSh record: cell, flags, object id, author.
struct NoteView {
    uint16_t row = 0, col = 0, grbit = 0, idObj = 0;
    std::wstring author;
};
bool readNote(const std::vector<uint8_t>& payload, NoteView* note);
std::vector<uint8_t> makeNote(const NoteView& note);

}  // namespace zelvar
