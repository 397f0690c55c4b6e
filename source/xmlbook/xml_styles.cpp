#include "xmlbook/xml_styles.h"

#include <cmath>
#include <set>

namespace zelvar {

const unsigned char defaultPalette[64][3] = {
    {0, 0, 0},       {255, 255, 255}, {255, 0, 0},     {0, 255, 0},     {0, 0, 255},     {255, 255, 0},
    {255, 0, 255},   {0, 255, 255},   {0, 0, 0},       {255, 255, 255}, {255, 0, 0},     {0, 255, 0},
    {0, 0, 255},     {255, 255, 0},   {255, 0, 255},   {0, 255, 255},   {128, 0, 0},     {0, 128, 0},
    {0, 0, 128},     {128, 128, 0},   {128, 0, 128},   {0, 128, 128},   {192, 192, 192}, {128, 128, 128},
    {153, 153, 255}, {153, 51, 102},  {255, 255, 204}, {204, 255, 255}, {102, 0, 102},   {255, 128, 128},
    {0, 102, 204},   {204, 204, 255}, {0, 0, 128},     {255, 0, 255},   {255, 255, 0},   {0, 255, 255},
    {128, 0, 128},   {128, 0, 0},     {0, 128, 128},   {0, 0, 255},     {0, 204, 255},   {204, 255, 255},
    {204, 255, 204}, {255, 255, 153}, {153, 204, 255}, {255, 153, 204}, {204, 153, 255}, {255, 204, 153},
    {51, 102, 255},  {51, 204, 204},  {153, 204, 0},   {255, 204, 0},   {255, 153, 0},   {255, 102, 0},
    {102, 102, 153}, {150, 150, 150}, {0, 51, 102},    {51, 153, 102},  {0, 51, 0},      {51, 51, 0},
    {153, 51, 0},    {153, 51, 102},  {51, 51, 153},   {51, 51, 51}};

namespace {

const wchar_t* const alignHNames[] = {L"general", L"left",    L"center",           L"right",
                                      L"fill",    L"justify", L"centerContinuous", L"distributed"};
const wchar_t* const alignVNames[] = {L"top", L"center", L"bottom", L"justify", L"distributed"};
const wchar_t* const borderNames[] = {L"none",         L"thin",          L"medium",     L"dashed",
                                      L"dotted",       L"thick",         L"double",     L"hair",
                                      L"mediumDashed", L"dashDot",       L"mediumDashDot", L"dashDotDot",
                                      L"mediumDashDotDot", L"slantDashDot"};
const wchar_t* const fillNames[] = {L"none",          L"solid",          L"mediumGray",    L"darkGray",
                                    L"lightGray",     L"darkHorizontal", L"darkVertical",  L"darkDown",
                                    L"darkUp",        L"darkGrid",       L"darkTrellis",   L"lightHorizontal",
                                    L"lightVertical", L"lightDown",      L"lightUp",       L"lightGrid",
                                    L"lightTrellis",  L"gray125",        L"gray0625"};

template <size_t N>
int nameIndex(const wchar_t* const (&names)[N], const std::wstring& text, int otherwise) {
    for (size_t i = 0; i < N; ++i)
        if (text == names[i]) return static_cast<int>(i);
    return otherwise;
}

}  // namespace

// ---------------------------------------------------------------- fonts

template <class T, class Tag>
XMLFontImplT<T, Tag>::XMLFontImplT(Styles<T, Tag>* styles, const XMLFontImplT* init) : _font(nullptr), _styles(styles) {
    auto& sheet = styles->xml();
    if (!sheet.isset_fonts()) throw zverror("fonts are not found");
    auto& fonts = sheet.get_fonts();
    _font = &fonts.append_font();
    if (init) *_font = *init->_font;
    fonts.set_count(static_cast<uint32_t>(fonts.size_font()));
}

template <class T, class Tag>
typename XMLFontImplT<T, Tag>::X::FontItem* XMLFontImplT<T, Tag>::findItem(unsigned selection) const {
    int i = findIndex(selection);
    return i < 0 ? nullptr : &_font->get_inner_CT_Font(static_cast<size_t>(i));
}

template <class T, class Tag>
int XMLFontImplT<T, Tag>::findIndex(unsigned selection) const {
    for (size_t i = 0; i < _font->size_inner_CT_Font(); ++i)
        if (_font->get_inner_CT_Font(i).get_choice() == selection) return static_cast<int>(i);
    return -1;
}

template <class T, class Tag>
typename XMLFontImplT<T, Tag>::X::FontItem& XMLFontImplT<T, Tag>::appendItem() {
    return _font->append_inner_CT_Font();
}

template <class T, class Tag>
void XMLFontImplT<T, Tag>::setFlag(unsigned selection, bool on) {
    int i = findIndex(selection);
    if (on && i < 0) {
        auto& item = appendItem();
        if (selection == 3) item.get_b();
        else if (selection == 4) item.get_i();
        else item.get_strike();
    } else if (!on && i >= 0) {
        _font->delete_inner_CT_Font(static_cast<size_t>(i));
    }
}

template <class T, class Tag>
int XMLFontImplT<T, Tag>::size() const {
    if (auto* item = findItem(11)) return static_cast<int>(item->get_sz().get_val());
    int size = 0;
    _styles->defaultFont(&size);
    return size;
}

template <class T, class Tag>
void XMLFontImplT<T, Tag>::setSize(int size) {
    auto* item = findItem(11);
    (item ? *item : appendItem()).get_sz().set_val(static_cast<double>(size));
}

template <class T, class Tag>
Color XMLFontImplT<T, Tag>::color() const {
    if (auto* item = findItem(10)) return _styles->colorFromXML(item->get_color());
    return _styles->rgbMode() ? _styles->colorPack(0, 0, 0) : ColorBlack;
}

template <class T, class Tag>
void XMLFontImplT<T, Tag>::setColor(Color color) {
    if (color == -1) return;
    auto* item = findItem(10);
    typename X::Color value;
    _styles->makeColorElement(color, value);
    (item ? *item : appendItem()).get_color() = value;
}

template <class T, class Tag>
Script XMLFontImplT<T, Tag>::script() const {
    auto* item = findItem(13);
    if (!item) return ScriptNormal;
    std::wstring val = item->get_vertAlign().get_val();
    if (val == L"superscript") return ScriptSuper;
    if (val == L"subscript") return ScriptSub;
    return ScriptNormal;
}

template <class T, class Tag>
void XMLFontImplT<T, Tag>::setScript(Script script) {
    int i = findIndex(13);
    if (script == ScriptNormal) {
        if (i >= 0) _font->delete_inner_CT_Font(static_cast<size_t>(i));
        return;
    }
    auto& item = i >= 0 ? _font->get_inner_CT_Font(static_cast<size_t>(i)) : appendItem();
    item.get_vertAlign().set_val(script == ScriptSuper ? L"superscript" : L"subscript");
}

template <class T, class Tag>
Underline XMLFontImplT<T, Tag>::underline() const {
    auto* item = findItem(12);
    if (!item) return UnderlineNone;
    std::wstring val = item->get_u().get_val();
    if (val == L"single") return UnderlineSingle;
    if (val == L"double") return UnderlineDouble;
    if (val == L"singleAccounting") return UnderlineSingleAccounting;
    if (val == L"doubleAccounting") return UnderlineDoubleAccounting;
    return UnderlineNone;
}

template <class T, class Tag>
void XMLFontImplT<T, Tag>::setUnderline(Underline underline) {
    int i = findIndex(12);
    if (underline == UnderlineNone) {
        if (i >= 0) _font->delete_inner_CT_Font(static_cast<size_t>(i));
        return;
    }
    const wchar_t* val = underline == UnderlineDouble             ? L"double"
                         : underline == UnderlineSingleAccounting ? L"singleAccounting"
                         : underline == UnderlineDoubleAccounting ? L"doubleAccounting"
                                                                  : L"single";
    auto& item = i >= 0 ? _font->get_inner_CT_Font(static_cast<size_t>(i)) : appendItem();
    item.get_u().set_val(val);
}

template <class T, class Tag>
std::wstring XMLFontImplT<T, Tag>::wideName() const {
    if (auto* item = findItem(0)) return item->get_name().get_val();
    std::wstring name;
    const typename X::Stylesheet& sheet = _styles->xml();
    if (sheet.get_fonts() && sheet.get_fonts()->size_font() > 0) {
        const auto& first = sheet.get_fonts()->get_font(0);
        for (size_t i = 0; i < first.size_inner_CT_Font(); ++i)
            if (first.get_inner_CT_Font(i).get_choice() == 0) name = first.get_inner_CT_Font(i).get_name()->get_val();
    }
    return name;
}

template <class T, class Tag>
const T* XMLFontImplT<T, Tag>::name() const {
    std::wstring text = wideName();
    _result.assign(text.c_str());
    return _result.template c_str<T>(_styles->utf8());
}

template <class T, class Tag>
bool XMLFontImplT<T, Tag>::setName(const T* name) {
    if (!name) return false;
    std::wstring text;
    try {
        toWide(name, _styles->utf8(), text);
    } catch (...) {
        return false;
    }
    setWideName(text);
    return true;
}

template <class T, class Tag>
void XMLFontImplT<T, Tag>::setWideName(const std::wstring& name) {
    auto* item = findItem(0);
    (item ? *item : appendItem()).get_name().set_val(name);
}

// ---------------------------------------------------------------- formats

template <class T, class Tag>
XMLFormatImplT<T, Tag>::XMLFormatImplT(Styles<T, Tag>* styles, const XMLFormatImplT* init) : _xf(nullptr), _styles(styles) {
    addXF();
    setFillPattern(FillNone);
    addBorder();
    if (!init) {
        _xf->set_numFmtId(0);
        _xf->set_fontId(0);
        _xf->set_xfId(0);
    } else {
        *_xf = *init->_xf;
        if (init->_border) *_border = *init->_border;
        _xf->set_borderId(static_cast<uint32_t>(_styles->xml().get_borders().size_border() - 1));
        if (init->_fill) {
            addFill();
            *_fill = *init->_fill;
        }
    }
}

template <class T, class Tag>
XMLFormatImplT<T, Tag>::XMLFormatImplT(Styles<T, Tag>* styles, typename X::Xf* xf) : _xf(xf), _styles(styles) {
    auto& sheet = styles->xml();
    if (xf->isset_borderId() && sheet.isset_borders()) {
        auto& borders = sheet.get_borders();
        while (borders.size_border() <= xf->get_borderId()) borders.append_border();
        _border = &borders.get_border(xf->get_borderId());
    }
    if (xf->isset_fillId() && sheet.isset_fills()) {
        auto& fills = sheet.get_fills();
        while (fills.size_fill() <= xf->get_fillId()) fills.append_fill();
        _fill = &fills.get_fill(xf->get_fillId());
    }
}

template <class T, class Tag>
void XMLFormatImplT<T, Tag>::addXF() {
    auto& xfs = _styles->xml().get_cellXfs();
    _xf = &xfs.append_xf();
    xfs.set_count(static_cast<uint32_t>(xfs.size_xf()));
}

template <class T, class Tag>
void XMLFormatImplT<T, Tag>::addBorder() {
    auto& borders = _styles->xml().get_borders();
    _border = &borders.append_border();
    borders.set_count(static_cast<uint32_t>(borders.size_border()));
    _xf->set_borderId(static_cast<uint32_t>(borders.size_border() - 1));
}

template <class T, class Tag>
void XMLFormatImplT<T, Tag>::addFill() {
    auto& fills = _styles->xml().get_fills();
    _fill = &fills.append_fill();
    fills.set_count(static_cast<uint32_t>(fills.size_fill()));
    _xf->set_fillId(static_cast<uint32_t>(fills.size_fill() - 1));
}

template <class T, class Tag>
IFontT<T>* XMLFormatImplT<T, Tag>::font() const {
    if (!_xf->isset_fontId()) return nullptr;
    int index = static_cast<int>(_xf->get_fontId());
    return index < _styles->fontSize() ? _styles->font(index) : nullptr;
}

template <class T, class Tag>
bool XMLFormatImplT<T, Tag>::setFont(IFontT<T>* font) {
    int index = _styles->fontIndex(font);
    if (index < 0) return false;
    _xf->set_fontId(static_cast<uint32_t>(index));
    return true;
}

template <class T, class Tag>
AlignH XMLFormatImplT<T, Tag>::alignH() const {
    const typename X::Xf* xf = _xf;
    auto* alignment = xf->get_alignment();
    if (!alignment || !alignment->isset_horizontal()) return HAlignGeneral;
    return static_cast<AlignH>(nameIndex(alignHNames, alignment->get_horizontal(), 0));
}

template <class T, class Tag>
void XMLFormatImplT<T, Tag>::setAlignH(AlignH align) {
    if (align < 0 || align > 7) return;
    _xf->get_alignment().set_horizontal(alignHNames[align]);
}

template <class T, class Tag>
AlignV XMLFormatImplT<T, Tag>::alignV() const {
    const typename X::Xf* xf = _xf;
    auto* alignment = xf->get_alignment();
    if (!alignment || !alignment->isset_vertical()) return VAlignBottom;
    return static_cast<AlignV>(nameIndex(alignVNames, alignment->get_vertical(), 2));
}

template <class T, class Tag>
void XMLFormatImplT<T, Tag>::setAlignV(AlignV align) {
    if (align < 0 || align > 4) return;
    _xf->get_alignment().set_vertical(alignVNames[align]);
}

template <class T, class Tag>
bool XMLFormatImplT<T, Tag>::wrap() const {
    const typename X::Xf* xf = _xf;
    auto* alignment = xf->get_alignment();
    return alignment && alignment->isset_wrapText() && alignment->get_wrapText();
}

template <class T, class Tag>
int XMLFormatImplT<T, Tag>::rotation() const {
    const typename X::Xf* xf = _xf;
    auto* alignment = xf->get_alignment();
    if (!alignment || !alignment->isset_textRotation()) return 0;
    try {
        return static_cast<int>(Converter::stringToInt(alignment->get_textRotation()));
    } catch (...) {
        return 0;
    }
}

template <class T, class Tag>
bool XMLFormatImplT<T, Tag>::setRotation(int rotation) {
    _xf->get_alignment().set_textRotation(Converter::intToString(rotation));
    return true;
}

template <class T, class Tag>
int XMLFormatImplT<T, Tag>::indent() const {
    const typename X::Xf* xf = _xf;
    auto* alignment = xf->get_alignment();
    return alignment && alignment->isset_indent() ? static_cast<int>(alignment->get_indent()) : 0;
}

template <class T, class Tag>
bool XMLFormatImplT<T, Tag>::shrinkToFit() const {
    const typename X::Xf* xf = _xf;
    auto* alignment = xf->get_alignment();
    return alignment && alignment->isset_shrinkToFit() && alignment->get_shrinkToFit();
}

template <class T, class Tag>
typename XMLFormatImplT<T, Tag>::X::Border& XMLFormatImplT<T, Tag>::border() {
    if (!_border) addBorder();
    return *_border;
}

template <class T, class Tag>
const typename XMLFormatImplT<T, Tag>::X::BorderPr* XMLFormatImplT<T, Tag>::sidePtr(Side side) const {
    if (!_border) return nullptr;
    const typename X::Border& b = *_border;
    switch (side) {
        case SideLeft: return X::leftOf(b);
        case SideRight: return X::rightOf(b);
        case SideTop: return b.get_top();
        case SideBottom: return b.get_bottom();
        default: return b.get_diagonal();
    }
}

template <class T, class Tag>
typename XMLFormatImplT<T, Tag>::X::BorderPr& XMLFormatImplT<T, Tag>::sideRef(Side side) {
    typename X::Border& b = border();
    switch (side) {
        case SideLeft: return X::leftOf(b);
        case SideRight: return X::rightOf(b);
        case SideTop: return b.get_top();
        case SideBottom: return b.get_bottom();
        default: return b.get_diagonal();
    }
}

template <class T, class Tag>
BorderStyle XMLFormatImplT<T, Tag>::sideStyle(Side side) const {
    auto* pr = sidePtr(side);
    if (!pr || !pr->isset_style()) return BorderNone;
    return BorderStyleFromString(pr->get_style());
}

template <class T, class Tag>
Color XMLFormatImplT<T, Tag>::sideColor(Side side) const {
    auto* pr = sidePtr(side);
    if (!pr || !pr->get_color()) return static_cast<Color>(-1);
    return _styles->colorFromXML(*pr->get_color());
}

template <class T, class Tag>
void XMLFormatImplT<T, Tag>::setSideStyle(Side side, BorderStyle style) {
    sideRef(side).set_style(StringFromBorderStyle(style));
}

template <class T, class Tag>
void XMLFormatImplT<T, Tag>::setSideColor(Side side, Color color) {
    if (color == -1) return;
    typename X::Color value;
    _styles->makeColorElement(color, value);
    sideRef(side).get_color() = value;
}

template <class T, class Tag>
void XMLFormatImplT<T, Tag>::setBorder(BorderStyle style) {
    setBorderLeft(style);
    setBorderRight(style);
    setBorderTop(style);
    setBorderBottom(style);
}

template <class T, class Tag>
void XMLFormatImplT<T, Tag>::setBorderColor(Color color) {
    setBorderLeftColor(color);
    setBorderRightColor(color);
    setBorderTopColor(color);
    setBorderBottomColor(color);
}

template <class T, class Tag>
BorderDiagonal XMLFormatImplT<T, Tag>::borderDiagonal() const {
    if (!_border) return DiagonalNone;
    bool down = _border->isset_diagonalDown() && _border->get_diagonalDown();
    bool up = _border->isset_diagonalUp() && _border->get_diagonalUp();
    return static_cast<BorderDiagonal>((down ? 1 : 0) | (up ? 2 : 0));
}

template <class T, class Tag>
void XMLFormatImplT<T, Tag>::setBorderDiagonal(BorderDiagonal value) {
    typename X::Border& b = border();
    b.set_diagonalDown((value & 1) != 0);
    b.set_diagonalUp((value & 2) != 0);
}

template <class T, class Tag>
const wchar_t* XMLFormatImplT<T, Tag>::StringFromBorderStyle(BorderStyle style) {
    return style >= 0 && style <= 13 ? borderNames[style] : borderNames[0];
}

template <class T, class Tag>
BorderStyle XMLFormatImplT<T, Tag>::BorderStyleFromString(const std::wstring& text) {
    return static_cast<BorderStyle>(nameIndex(borderNames, text, 0));
}

template <class T, class Tag>
const typename XMLFormatImplT<T, Tag>::X::PatternFill* XMLFormatImplT<T, Tag>::patternFillPtr() const {
    if (!_fill) return nullptr;
    const typename X::Fill& fill = *_fill;
    return fill.get_patternFill();
}

template <class T, class Tag>
typename XMLFormatImplT<T, Tag>::X::PatternFill& XMLFormatImplT<T, Tag>::patternFill() {
    if (!_fill) addFill();
    return _fill->get_patternFill();
}

template <class T, class Tag>
FillPattern XMLFormatImplT<T, Tag>::fillPattern() const {
    auto* pattern = patternFillPtr();
    if (!pattern || !pattern->isset_patternType()) return FillNone;
    return static_cast<FillPattern>(nameIndex(fillNames, pattern->get_patternType(), 0));
}

template <class T, class Tag>
void XMLFormatImplT<T, Tag>::setFillPattern(FillPattern pattern) {
    if (pattern == FillNone) {
        _xf->set_fillId(0);
        return;
    }
    if (pattern < 0 || pattern > 18) return;
    patternFill().set_patternType(fillNames[pattern]);
}

template <class T, class Tag>
Color XMLFormatImplT<T, Tag>::patternForegroundColor() const {
    auto* pattern = patternFillPtr();
    if (!pattern || !pattern->get_fgColor())
        return _styles->rgbMode() ? static_cast<Color>(-1) : ColorSystemForeground;
    return _styles->colorFromXML(*pattern->get_fgColor());
}

template <class T, class Tag>
void XMLFormatImplT<T, Tag>::setPatternForegroundColor(Color color) {
    if (color == -1) return;
    typename X::Color value;
    _styles->makeColorElement(color, value);
    patternFill().get_fgColor() = value;
}

template <class T, class Tag>
Color XMLFormatImplT<T, Tag>::patternBackgroundColor() const {
    auto* pattern = patternFillPtr();
    if (!pattern || !pattern->get_bgColor())
        return _styles->rgbMode() ? static_cast<Color>(-1) : ColorSystemForeground;
    return _styles->colorFromXML(*pattern->get_bgColor());
}

template <class T, class Tag>
void XMLFormatImplT<T, Tag>::setPatternBackgroundColor(Color color) {
    if (color == -1) return;
    typename X::Color value;
    _styles->makeColorElement(color, value);
    patternFill().get_bgColor() = value;
}

template <class T, class Tag>
bool XMLFormatImplT<T, Tag>::locked() const {
    const typename X::Xf* xf = _xf;
    auto* protection = xf->get_protection();
    return !protection || !protection->isset_locked() || protection->get_locked();
}

template <class T, class Tag>
bool XMLFormatImplT<T, Tag>::hidden() const {
    const typename X::Xf* xf = _xf;
    auto* protection = xf->get_protection();
    return protection && protection->isset_hidden() && protection->get_hidden();
}

// ---------------------------------------------------------------- stylesheet

template <class T, class Tag>
Styles<T, Tag>::Styles(bool utf8) : _utf8(utf8) {
    buildDefault();
    makeObjects();
}

template <class T, class Tag>
Styles<T, Tag>::Styles(const char* data, unsigned size, bool utf8)
    : XmlFile<typename X::Stylesheet>(data, size), _utf8(utf8) {
    makeObjects();
}

template <class T, class Tag>
Styles<T, Tag>::~Styles() {
    for (Format* f : _formats) delete f;
    for (FontImpl* f : _fonts) delete f;
}

template <class T, class Tag>
void Styles<T, Tag>::buildDefault() {
    auto& sheet = this->tree;
    auto& borders = sheet.get_borders();
    auto& border = borders.append_border();
    X::leftOf(border);
    X::rightOf(border);
    border.get_top();
    border.get_bottom();
    border.get_diagonal();
    borders.set_count(1);

    auto& fills = sheet.get_fills();
    fills.append_fill().get_patternFill().set_patternType(L"none");
    fills.append_fill().get_patternFill().set_patternType(L"gray125");
    fills.set_count(2);

    auto& xfs = sheet.get_cellXfs();
    auto& xf = xfs.append_xf();
    xf.set_numFmtId(0);
    xf.set_fontId(0);
    xf.set_fillId(0);
    xf.set_borderId(0);
    xf.set_xfId(0);
    xfs.set_count(1);

    auto& fonts = sheet.get_fonts();
    auto& font = fonts.append_font();
    font.append_inner_CT_Font().get_sz().set_val(11.0);
    font.append_inner_CT_Font().get_name().set_val(L"Calibri");
    fonts.set_count(1);

    auto& styleXfs = sheet.get_cellStyleXfs();
    auto& styleXf = styleXfs.append_xf();
    styleXf.set_numFmtId(0);
    styleXf.set_fontId(0);
    styleXf.set_fillId(0);
    styleXf.set_borderId(0);
    styleXfs.set_count(1);

    auto& cellStyles = sheet.get_cellStyles();
    auto& normal = cellStyles.append_cellStyle();
    normal.set_name(L"Normal");
    normal.set_xfId(0);
    normal.set_builtinId(0);
    cellStyles.set_count(1);
}

template <class T, class Tag>
void Styles<T, Tag>::makeObjects() {
    auto& sheet = this->tree;
    if (sheet.isset_cellXfs()) {
        auto& xfs = sheet.get_cellXfs();
        _formats.reserve(xfs.size_xf());
        for (size_t i = 0; i < xfs.size_xf(); ++i) _formats.push_back(new Format(this, &xfs.get_xf(i)));
    }
    if (sheet.isset_fonts()) {
        auto& fonts = sheet.get_fonts();
        for (size_t i = 0; i < fonts.size_font(); ++i) _fonts.push_back(new FontImpl(this, &fonts.get_font(i)));
    }
}

template <class T, class Tag>
void Styles<T, Tag>::prepareSave() {
    auto& sheet = this->tree;
    sheet.unset_extLst();
    if (sheet.isset_fonts()) sheet.get_fonts().any_attributes().clear();
    sheet.any_attributes().clear();
}

template <class T, class Tag>
IFormatT<T>* Styles<T, Tag>::addFormat(IFormatT<T>* init) {
    const Format* source = init ? dynamic_cast<const Format*>(init) : nullptr;
    Format* format = new Format(this, source);
    _formats.push_back(format);
    return format;
}

template <class T, class Tag>
IFontT<T>* Styles<T, Tag>::addFont(IFontT<T>* init) {
    const FontImpl* source = init ? dynamic_cast<const FontImpl*>(init) : nullptr;
    FontImpl* font = new FontImpl(this, source);
    _fonts.push_back(font);
    return font;
}

template <class T, class Tag>
IFormatT<T>* Styles<T, Tag>::format(int index) const {
    if (index < 0 || index >= formatSize()) throw zverror("index is out of range");
    return _formats[static_cast<size_t>(index)];
}

template <class T, class Tag>
IFontT<T>* Styles<T, Tag>::font(int index) const {
    if (index < 0 || index >= fontSize()) throw zverror("index is out of range");
    return _fonts[static_cast<size_t>(index)];
}

template <class T, class Tag>
unsigned Styles<T, Tag>::getStyleID(IFormatT<T>* format) const {
    // The format knows its xf; its place in the list is found from the back, where new formats
    // stand, and the common case of a few formats costs a handful of compares.
    for (size_t i = _formats.size(); i-- > 0;)
        if (_formats[i] == format) return static_cast<unsigned>(i);
    throw zverror("unknown format");
}

template <class T, class Tag>
int Styles<T, Tag>::fontIndex(const IFontT<T>* font) const {
    for (size_t i = 0; i < _fonts.size(); ++i)
        if (_fonts[i] == font) return static_cast<int>(i);
    return -1;
}

template <class T, class Tag>
int Styles<T, Tag>::addCustomNumFormat(const std::wstring& text) {
    auto& sheet = this->tree;
    std::set<unsigned> used;
    if (sheet.isset_numFmts()) {
        auto& fmts = sheet.get_numFmts();
        for (size_t i = 0; i < fmts.size_numFmt(); ++i) {
            auto& fmt = fmts.get_numFmt(i);
            if (fmt.get_formatCode() == text) return static_cast<int>(fmt.get_numFmtId());
            used.insert(fmt.get_numFmtId());
        }
    }
    unsigned id = 166;
    while (id <= 392 && used.count(id)) ++id;
    if (id > 392) throw zverror("maximum number of custom formats is exceeded");
    auto& fmts = sheet.get_numFmts();
    auto& fmt = fmts.append_numFmt();
    fmt.set_numFmtId(id);
    fmt.set_formatCode(text);
    fmts.set_count(static_cast<uint32_t>(fmts.size_numFmt()));
    return static_cast<int>(id);
}

template <class T, class Tag>
bool Styles<T, Tag>::customNumFormatText(int id, std::wstring& out) const {
    const typename X::Stylesheet& sheet = this->tree;
    if (!sheet.get_numFmts()) return false;
    auto* fmts = sheet.get_numFmts();
    for (size_t i = 0; i < fmts->size_numFmt(); ++i) {
        const auto& fmt = fmts->get_numFmt(i);
        if (static_cast<int>(fmt.get_numFmtId()) == id) {
            out = fmt.get_formatCode();
            return true;
        }
    }
    return false;
}

template <class T, class Tag>
const T* Styles<T, Tag>::customNumFormat(int id) {
    std::wstring text;
    if (!customNumFormatText(id, text)) return nullptr;
    _result.assign(text.c_str());
    return _result.template c_str<T>(_utf8);
}

template <class T, class Tag>
const T* Styles<T, Tag>::defaultFont(int* size) {
    if (size) *size = 0;
    std::wstring name;
    const typename X::Stylesheet& sheet = this->tree;
    if (sheet.get_fonts() && sheet.get_fonts()->size_font() > 0) {
        const auto& font = sheet.get_fonts()->get_font(0);
        for (size_t i = 0; i < font.size_inner_CT_Font(); ++i) {
            const auto& item = font.get_inner_CT_Font(i);
            if (item.get_choice() == 11 && size) *size = static_cast<int>(item.get_sz()->get_val());
            if (item.get_choice() == 0) name = item.get_name()->get_val();
        }
    }
    _result.assign(name.c_str());
    return _result.template c_str<T>(_utf8);
}

template <class T, class Tag>
void Styles<T, Tag>::setDefaultFont(const std::wstring& name, int size) {
    auto& sheet = this->tree;
    if (!sheet.isset_fonts() || sheet.get_fonts().size_font() == 0) throw zverror("fonts are not found");
    auto& font = sheet.get_fonts().get_font(0);
    bool hasSize = false, hasName = false;
    for (size_t i = 0; i < font.size_inner_CT_Font(); ++i) {
        auto& item = font.get_inner_CT_Font(i);
        if (item.get_choice() == 11) {
            item.get_sz().set_val(static_cast<double>(size));
            hasSize = true;
        } else if (item.get_choice() == 0) {
            item.get_name().set_val(name);
            hasName = true;
        }
    }
    if (!hasSize) font.append_inner_CT_Font().get_sz().set_val(static_cast<double>(size));
    if (!hasName) font.append_inner_CT_Font().get_name().set_val(name);
}

template <class T, class Tag>
void Styles<T, Tag>::colorUnpack(Color color, int* r, int* g, int* b) const {
    unsigned value = static_cast<unsigned>(color);
    if (r) *r = (value >> 16) & 255;
    if (g) *g = (value >> 8) & 255;
    if (b) *b = value & 255;
}

template <class T, class Tag>
Color Styles<T, Tag>::colorFromXML(const typename X::Color& color) const {
    if (color.isset_rgb()) return colorFromRGB(color.get_rgb());
    if (color.isset_indexed()) return colorFromIndex(color.get_indexed());
    return static_cast<Color>(-1);
}

template <class T, class Tag>
Color Styles<T, Tag>::colorFromRGB(const lmx::c_binary& bytes) const {
    if (bytes.size() != 4) throw zverror("rgb color is invalid");
    const auto& b = bytes.get();
    if (_rgbMode) return colorPack(b[1], b[2], b[3]);
    if (b[0] != 255) return static_cast<Color>(-1);
    for (int i = 8; i < 64; ++i)
        if (defaultPalette[i][0] == b[1] && defaultPalette[i][1] == b[2] && defaultPalette[i][2] == b[3])
            return static_cast<Color>(i);
    return static_cast<Color>(-1);
}

template <class T, class Tag>
Color Styles<T, Tag>::colorFromIndex(unsigned index) const {
    if (!_rgbMode) return static_cast<Color>(index);
    const typename X::Stylesheet& sheet = this->tree;
    if (sheet.get_colors() && sheet.get_colors()->get_indexedColors()) {
        const auto* list = sheet.get_colors()->get_indexedColors();
        if (index < list->size_rgbColor()) {
            lmx::c_binary bytes = list->get_rgbColor(index).get_rgb();
            const auto& rgb = bytes.get();
            if (rgb.size() == 4) return colorPack(rgb[1], rgb[2], rgb[3]);
            return static_cast<Color>(-1);
        }
    }
    if (index > 63) return static_cast<Color>(-1);
    return colorPack(defaultPalette[index][0], defaultPalette[index][1], defaultPalette[index][2]);
}

template <class T, class Tag>
void Styles<T, Tag>::makeColorElement(Color color, typename X::Color& out) const {
    if (_rgbMode) {
        int r, g, b;
        colorUnpack(color, &r, &g, &b);
        unsigned char bytes[4] = {255, static_cast<unsigned char>(r), static_cast<unsigned char>(g),
                                  static_cast<unsigned char>(b)};
        out.set_rgb(lmx::c_binary(bytes, 4));
    } else {
        out.set_indexed(static_cast<uint32_t>(color));
    }
}

template class XMLFontImplT<char, excelNormal_tag>;
template class XMLFontImplT<wchar_t, excelNormal_tag>;
template class XMLFontImplT<char, excelStrict_tag>;
template class XMLFontImplT<wchar_t, excelStrict_tag>;
template class XMLFormatImplT<char, excelNormal_tag>;
template class XMLFormatImplT<wchar_t, excelNormal_tag>;
template class XMLFormatImplT<char, excelStrict_tag>;
template class XMLFormatImplT<wchar_t, excelStrict_tag>;
template class Styles<char, excelNormal_tag>;
template class Styles<wchar_t, excelNormal_tag>;
template class Styles<char, excelStrict_tag>;
template class Styles<wchar_t, excelStrict_tag>;

}  // namespace zelvar
