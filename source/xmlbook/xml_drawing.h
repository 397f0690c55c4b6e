// Drawing parts of an XML workbook: the anchors that place pictures on a sheet, and what the book
// knows of a picture part (its pixel size and kind).
#pragma once
#include <string>
#include <vector>

#include "ooxml/dml-spreadsheetDrawing.h"
#include "ooxml/strictDrawing.h"
#include "xmlbook/xml_package.h"
#include "xmlbook/xml_traits.h"

namespace zelvar {

template <class Tag>
struct drawing_traits;
template <>
struct drawing_traits<excelNormal_tag> {
    typedef drawing::c_wsDr Root;
};
template <>
struct drawing_traits<excelStrict_tag> {
    typedef strictdrawing::c_wsDr Root;
};

// EMU per pixel: the file measures in EMU, the interface in pixels.
const long long kEmuPerPixel = 9525;

// A drawing part: a list of anchors, of which only pictures in two-cell or one-cell anchors are
// counted; every other object is kept as it is.
template <class Tag>
class Drawing : public XmlFile<typename drawing_traits<Tag>::Root> {
public:
    Drawing() = default;
    Drawing(const char* data, unsigned size) : XmlFile<typename drawing_traits<Tag>::Root>(data, size) {}

    // Appends a two-cell anchor holding a picture; offsets in pixels.
    void addAnchor(int rowFrom, int colFrom, int rowTo, int colTo, int rowOffFrom, int colOffFrom, int rowOffTo,
                   int colOffTo, const std::wstring& embedId);
    int pictureSize() const;
    // The position in the anchor list of the index-th picture; -1 when there are fewer.
    long pictureAnchor(int index) const;
    void prepareSave() override;
};

// Kind of a picture by the extension of its part: the public picture type numbers.
int pictureTypeOf(const std::wstring& extension);
// Pixel size read from the image header; 0 by 0 when it can't be told.
void pictureDimensions(const std::vector<char>& data, const std::wstring& extension, int* width, int* height);

}  // namespace zelvar
