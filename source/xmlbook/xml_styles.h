// The stylesheet of an XML book and the public format and font objects over its xf and font
// elements. Setters change the tree itself; no copy of a format is kept beside it.
#pragma once
#include <string>
#include <vector>

#include "frame/text.h"
#include "xmlbook/xml_package.h"
#include "xmlbook/xml_traits.h"
#include "zelvar.h"

namespace zelvar {

template <class T, class Tag>
class Styles;

template <class T, class Tag>
class XMLFontImplT : public IFontT<T> {
public:
    typedef excel_format_traits<Tag> X;
    // A new font appended to the stylesheet, copying init's element when given.
    XMLFontImplT(Styles<T, Tag>* styles, const XMLFontImplT* init);
    // A font over an element already in the tree.
    XMLFontImplT(Styles<T, Tag>* styles, typename X::Font* font) : _font(font), _styles(styles) {}

    int size() const override;
    void setSize(int size) override;
    bool italic() const override { return findItem(4) != nullptr; }
    void setItalic(bool italic = true) override { setFlag(4, italic); }
    bool strikeOut() const override { return findItem(5) != nullptr; }
    void setStrikeOut(bool strikeOut = true) override { setFlag(5, strikeOut); }
    Color color() const override;
    void setColor(Color color) override;
    bool bold() const override { return findItem(3) != nullptr; }
    void setBold(bool bold = true) override { setFlag(3, bold); }
    Script script() const override;
    void setScript(Script script) override;
    Underline underline() const override;
    void setUnderline(Underline underline) override;
    const T* name() const override;
    bool setName(const T* name) override;

    bool isName() const { return findItem(0) != nullptr; }
    bool isUnderline() const { return findItem(12) != nullptr; }
    bool isScript() const { return findItem(13) != nullptr; }
    bool isBold() const { return bold(); }
    bool isColor() const { return findItem(10) != nullptr; }
    bool isStrikeOut() const { return strikeOut(); }
    bool isItalic() const { return italic(); }
    bool isSize() const { return findItem(11) != nullptr; }
    std::wstring wideName() const;
    void setWideName(const std::wstring& name);
    typename X::Font* element() const { return _font; }
    Styles<T, Tag>* styles() const { return _styles; }

private:
    typename X::FontItem* findItem(unsigned selection) const;
    int findIndex(unsigned selection) const;
    typename X::FontItem& appendItem();
    void setFlag(unsigned selection, bool on);

    typename X::Font* _font;
    mutable XString _result;
    Styles<T, Tag>* _styles;
};

template <class T, class Tag>
class XMLFormatImplT : public IFormatT<T> {
public:
    typedef excel_format_traits<Tag> X;
    // A new format: its own xf and border, fill id 0.
    XMLFormatImplT(Styles<T, Tag>* styles, const XMLFormatImplT* init);
    // A format over an xf already in the tree.
    XMLFormatImplT(Styles<T, Tag>* styles, typename X::Xf* xf);

    IFontT<T>* font() const override;
    bool setFont(IFontT<T>* font) override;
    int numFormat() const override { return _xf->isset_numFmtId() ? static_cast<int>(_xf->get_numFmtId()) : 0; }
    void setNumFormat(int numFormat) override { _xf->set_numFmtId(static_cast<uint32_t>(numFormat)); }
    AlignH alignH() const override;
    void setAlignH(AlignH align) override;
    AlignV alignV() const override;
    void setAlignV(AlignV align) override;
    bool wrap() const override;
    void setWrap(bool wrap = true) override { _xf->get_alignment().set_wrapText(wrap); }
    int rotation() const override;
    bool setRotation(int rotation) override;
    int indent() const override;
    void setIndent(int indent) override { _xf->get_alignment().set_indent(static_cast<uint32_t>(indent)); }
    bool shrinkToFit() const override;
    void setShrinkToFit(bool shrinkToFit = true) override { _xf->get_alignment().set_shrinkToFit(shrinkToFit); }
    void setBorder(BorderStyle style = BorderThin) override;
    void setBorderColor(Color color) override;
    BorderStyle borderLeft() const override { return sideStyle(SideLeft); }
    void setBorderLeft(BorderStyle style = BorderThin) override { setSideStyle(SideLeft, style); }
    BorderStyle borderRight() const override { return sideStyle(SideRight); }
    void setBorderRight(BorderStyle style = BorderThin) override { setSideStyle(SideRight, style); }
    BorderStyle borderTop() const override { return sideStyle(SideTop); }
    void setBorderTop(BorderStyle style = BorderThin) override { setSideStyle(SideTop, style); }
    BorderStyle borderBottom() const override { return sideStyle(SideBottom); }
    void setBorderBottom(BorderStyle style = BorderThin) override { setSideStyle(SideBottom, style); }
    Color borderLeftColor() const override { return sideColor(SideLeft); }
    void setBorderLeftColor(Color color) override { setSideColor(SideLeft, color); }
    Color borderRightColor() const override { return sideColor(SideRight); }
    void setBorderRightColor(Color color) override { setSideColor(SideRight, color); }
    Color borderTopColor() const override { return sideColor(SideTop); }
    void setBorderTopColor(Color color) override { setSideColor(SideTop, color); }
    Color borderBottomColor() const override { return sideColor(SideBottom); }
    void setBorderBottomColor(Color color) override { setSideColor(SideBottom, color); }
    BorderDiagonal borderDiagonal() const override;
    void setBorderDiagonal(BorderDiagonal border) override;
    BorderStyle borderDiagonalStyle() const override { return sideStyle(SideDiagonal); }
    void setBorderDiagonalStyle(BorderStyle style) override { setSideStyle(SideDiagonal, style); }
    Color borderDiagonalColor() const override { return sideColor(SideDiagonal); }
    void setBorderDiagonalColor(Color color) override { setSideColor(SideDiagonal, color); }
    FillPattern fillPattern() const override;
    void setFillPattern(FillPattern pattern) override;
    Color patternForegroundColor() const override;
    void setPatternForegroundColor(Color color) override;
    Color patternBackgroundColor() const override;
    void setPatternBackgroundColor(Color color) override;
    bool locked() const override;
    void setLocked(bool locked = true) override { _xf->get_protection().set_locked(locked); }
    bool hidden() const override;
    void setHidden(bool hidden = true) override { _xf->get_protection().set_hidden(hidden); }

    void addXF();
    void addBorder();
    void addFill();
    static const wchar_t* StringFromBorderStyle(BorderStyle style);
    static BorderStyle BorderStyleFromString(const std::wstring& text);
    typename X::Xf* element() const { return _xf; }
    Styles<T, Tag>* styles() const { return _styles; }

private:
    enum Side { SideLeft, SideRight, SideTop, SideBottom, SideDiagonal };
    const typename X::BorderPr* sidePtr(Side side) const;
    typename X::BorderPr& sideRef(Side side);
    BorderStyle sideStyle(Side side) const;
    Color sideColor(Side side) const;
    void setSideStyle(Side side, BorderStyle style);
    void setSideColor(Side side, Color color);
    typename X::Border& border();
    typename X::PatternFill& patternFill();
    const typename X::PatternFill* patternFillPtr() const;

    typename X::Xf* _xf;
    Styles<T, Tag>* _styles;
    typename X::Border* _border = nullptr;
    typename X::Fill* _fill = nullptr;
};

template <class T, class Tag>
class Styles : public XmlFile<typename excel_format_traits<Tag>::Stylesheet> {
public:
    typedef excel_format_traits<Tag> X;
    typedef XMLFormatImplT<T, Tag> Format;
    typedef XMLFontImplT<T, Tag> FontImpl;

    // The default stylesheet of a new book.
    explicit Styles(bool utf8);
    Styles(const char* data, unsigned size, bool utf8);
    ~Styles();
    Styles(const Styles&) = delete;
    Styles& operator=(const Styles&) = delete;

    void prepareSave() override;

    IFormatT<T>* addFormat(IFormatT<T>* init);
    IFontT<T>* addFont(IFontT<T>* init);
    IFormatT<T>* format(int index) const;
    IFontT<T>* font(int index) const;
    int formatSize() const { return static_cast<int>(_formats.size()); }
    int fontSize() const { return static_cast<int>(_fonts.size()); }
    // The position of the format; "unknown format" for a pointer that is not one of ours.
    unsigned getStyleID(IFormatT<T>* format) const;
    int fontIndex(const IFontT<T>* font) const;
    int addCustomNumFormat(const std::wstring& text);
    // The format code of a custom number format, or null.
    const T* customNumFormat(int id);
    bool customNumFormatText(int id, std::wstring& out) const;
    const T* defaultFont(int* size);
    void setDefaultFont(const std::wstring& name, int size);
    bool rgbMode() const { return _rgbMode; }
    void setRgbMode(bool on) { _rgbMode = on; }
    Color colorPack(int r, int g, int b) const { return static_cast<Color>(((r & 255) << 16) | ((g & 255) << 8) | (b & 255)); }
    void colorUnpack(Color color, int* r, int* g, int* b) const;
    Color colorFromXML(const typename X::Color& color) const;
    Color colorFromRGB(const lmx::c_binary& bytes) const;
    Color colorFromIndex(unsigned index) const;
    void makeColorElement(Color color, typename X::Color& out) const;
    int maxDigWidth() const { return 7; }
    bool utf8() const { return _utf8; }
    void setUtf8(bool on) { _utf8 = on; }
    typename X::Stylesheet& xml() { return this->tree; }

private:
    void buildDefault();
    void makeObjects();

    std::vector<Format*> _formats;
    std::vector<FontImpl*> _fonts;
    bool _rgbMode = false;
    bool _utf8;
    XString _result;
};

// The default palette: red, green and blue of indexes 0 to 63.
extern const unsigned char defaultPalette[64][3];

}  // namespace zelvar
