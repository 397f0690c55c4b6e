/*
 * zelvar: create, read and change spreadsheet workbooks without a spreadsheet application.
 *
 * The C++ interface. A book comes from a factory (zvCreateBookA / zvCreateBookW for the binary
 * .xls family, zvCreateXMLBookA / zvCreateXMLBookW for the XML .xlsx family), hands out sheets,
 * formats and fonts, and is ended with release().
 *
 *     zelvar::IBookT<char>* book = zvCreateBookA();
 *     zelvar::ISheetT<char>* sheet = book->addSheet("Sales", nullptr);
 *     sheet->writeNum(0, 0, 42.0, nullptr);
 *     book->release();
 *
 * Result convention: every operation that can fail stores its outcome in the book's message,
 * "ok" after success and a sentence otherwise, readable through errorMessage(). On failure an
 * operation returns false, a null pointer, or the failure value named in its comment. No
 * exception ever leaves the library. A message that begins with "warning:" comes with a success.
 *
 * Each operation's comment says what it does, then "Fails with:" and the messages it can set
 * ("none": it can't fail and may leave the message as it was), then a two-line example. The
 * examples use char text with `using namespace zelvar;` and a book, sheet, fmt (a format) and
 * font of that book. Where XML books (.xlsx) answer differently, a note "XML books:" says how.
 *
 * Coordinates are zero-based. Ranges are given as first and last, both included; lastRow() and
 * lastCol() alone are one past the end. Text results (const T*) are owned by the object that
 * returned them and stay valid until its next text-returning operation. 8-bit text is converted
 * as IBookT::setLocale says; the wide (wchar_t) instantiation behaves the same.
 */
#ifndef ZELVAR_H
#define ZELVAR_H

#if defined(_WIN32)
#  define ZELVAR_API __declspec(dllexport)
#else
#  define ZELVAR_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus

namespace zelvar {

/* Every enumeration has int as its underlying type, so any number read from a file is a valid
 * value of its type. */

/* Colours. Index coding (default): 8..63 are the 56 palette entries, 0..7 fixed colours with the
 * RGB of 8..15, 64/65 system foreground/background, 32767 automatic. In the XML family with
 * rgbMode on, a colour is red << 16 | green << 8 | blue and -1 means none. */
enum Color : int {
    ColorBlack = 8, ColorWhite = 9, ColorRed = 10, ColorLime = 11, ColorBlue = 12, ColorYellow = 13,
    ColorMagenta = 14, ColorCyan = 15, ColorMaroon = 16, ColorGreen = 17, ColorNavy = 18,
    ColorOlive = 19, ColorPurple = 20, ColorTeal = 21, ColorSilver = 22, ColorGray = 23,
    ColorIndex24 = 24, ColorIndex25, ColorIndex26, ColorIndex27, ColorIndex28, ColorIndex29,
    ColorIndex30, ColorIndex31, ColorIndex32, ColorIndex33, ColorIndex34, ColorIndex35,
    ColorIndex36, ColorIndex37, ColorIndex38, ColorIndex39, ColorIndex40, ColorIndex41,
    ColorIndex42, ColorIndex43, ColorIndex44, ColorIndex45, ColorIndex46, ColorIndex47,
    ColorIndex48, ColorIndex49, ColorIndex50, ColorIndex51, ColorIndex52, ColorIndex53,
    ColorIndex54, ColorIndex55, ColorIndex56, ColorIndex57, ColorIndex58, ColorIndex59,
    ColorIndex60, ColorIndex61, ColorIndex62, ColorIndex63,
    ColorSystemForeground = 64, ColorSystemBackground = 65, ColorAutomatic = 32767
};

/* Paper size codes of the published formats; the library passes any number through unchanged. */
enum Paper : int {
    PaperDefault = 0, PaperLetter = 1, PaperLetterSmall = 2, PaperTabloid = 3, PaperLedger = 4,
    PaperLegal = 5, PaperStatement = 6, PaperExecutive = 7, PaperA3 = 8, PaperA4 = 9,
    PaperA4Small = 10, PaperA5 = 11, PaperB4 = 12, PaperB5 = 13, PaperFolio = 14, PaperQuatro = 15,
    Paper10x14 = 16, Paper10x17 = 17, PaperNote = 18, PaperEnvelope9 = 19, PaperEnvelope10 = 20,
    PaperEnvelope11 = 21, PaperEnvelope12 = 22, PaperEnvelope14 = 23, PaperCSheet = 24,
    PaperDSheet = 25, PaperESheet = 26, PaperEnvelopeDL = 27, PaperEnvelopeC5 = 28,
    PaperEnvelopeC3 = 29, PaperEnvelopeC4 = 30, PaperEnvelopeC6 = 31, PaperEnvelopeC65 = 32,
    PaperEnvelopeB4 = 33, PaperEnvelopeB5 = 34, PaperEnvelopeB6 = 35, PaperEnvelope = 36,
    PaperEnvelopeMonarch = 37, PaperUSEnvelope = 38, PaperFanfold = 39, PaperGermanStdFanfold = 40,
    PaperGermanLegalFanfold = 41
};

enum SheetState : int { SheetVisible = 0, SheetHidden = 1, SheetVeryHidden = 2 };

enum CellType : int { CellEmpty = 0, CellNumber = 1, CellString = 2, CellBoolean = 3, CellBlank = 4, CellError = 5 };

enum SheetType : int { SheetTypeWorksheet = 0, SheetTypeChart = 1, SheetTypeOther = 2 };

enum ErrorType : int {
    ErrorNull = 0, ErrorDiv0 = 7, ErrorValue = 15, ErrorRef = 23, ErrorName = 29, ErrorNum = 36,
    ErrorNA = 42, ErrorNone = 255
};

enum PictureType : int {
    PicturePng = 0, PictureJpeg = 1, PictureWmf = 2, PictureDib = 3, PictureEmf = 4,
    PicturePict = 5, PictureTiff = 6, PictureError = 255
};

enum AlignH : int {
    HAlignGeneral = 0, HAlignLeft = 1, HAlignCenter = 2, HAlignRight = 3, HAlignFill = 4,
    HAlignJustify = 5, HAlignCenterAcross = 6, HAlignDistributed = 7
};

enum AlignV : int { VAlignTop = 0, VAlignCenter = 1, VAlignBottom = 2, VAlignJustify = 3, VAlignDistributed = 4 };

enum BorderStyle : int {
    BorderNone = 0, BorderThin = 1, BorderMedium = 2, BorderDashed = 3, BorderDotted = 4,
    BorderThick = 5, BorderDouble = 6, BorderHair = 7, BorderMediumDashed = 8, BorderDashDot = 9,
    BorderMediumDashDot = 10, BorderDashDotDot = 11, BorderMediumDashDotDot = 12,
    BorderSlantDashDot = 13
};

/* Bit 0 is the line from top left to bottom right, bit 1 the line from bottom left to top right. */
enum BorderDiagonal : int { DiagonalNone = 0, DiagonalDown = 1, DiagonalUp = 2, DiagonalBoth = 3 };

enum FillPattern : int {
    FillNone = 0, FillSolid = 1, FillMediumGray = 2, FillDarkGray = 3, FillLightGray = 4,
    FillDarkHorizontal = 5, FillDarkVertical = 6, FillDarkDown = 7, FillDarkUp = 8,
    FillDarkGrid = 9, FillDarkTrellis = 10, FillLightHorizontal = 11, FillLightVertical = 12,
    FillLightDown = 13, FillLightUp = 14, FillLightGrid = 15, FillLightTrellis = 16,
    FillGray125 = 17, FillGray0625 = 18
};

enum Script : int { ScriptNormal = 0, ScriptSuper = 1, ScriptSub = 2 };

/* The jump from 2 to 33 is the binary format's own coding. */
enum Underline : int {
    UnderlineNone = 0, UnderlineSingle = 1, UnderlineDouble = 2, UnderlineSingleAccounting = 33,
    UnderlineDoubleAccounting = 34
};

/* Built-in number formats; ids from 164 up come from addCustomNumFormat. Ids 14 to 22 and 45 to 47
 * are dates. */
enum NumFormat : int {
    NumFormatGeneral = 0, NumFormatNumber = 1, NumFormatNumberD2 = 2, NumFormatNumberSep = 3,
    NumFormatNumberSepD2 = 4, NumFormatCurrencyNegBra = 5, NumFormatCurrencyNegBraRed = 6,
    NumFormatCurrencyD2NegBra = 7, NumFormatCurrencyD2NegBraRed = 8, NumFormatPercent = 9,
    NumFormatPercentD2 = 10, NumFormatScientificD2 = 11, NumFormatFraction1 = 12,
    NumFormatFraction2 = 13, NumFormatDate = 14, NumFormatCustomDMonYY = 15,
    NumFormatCustomDMon = 16, NumFormatCustomMonYY = 17, NumFormatCustomHMM_AM = 18,
    NumFormatCustomHMMSS_AM = 19, NumFormatCustomHMM = 20, NumFormatCustomHMMSS = 21,
    NumFormatCustomMDYYYY_HMM = 22, NumFormatNumberSepNegBra = 37, NumFormatNumberSepNegBraRed = 38,
    NumFormatNumberD2SepNegBra = 39, NumFormatNumberD2SepNegBraRed = 40, NumFormatAccount = 41,
    NumFormatAccountCur = 42, NumFormatAccountD2 = 43, NumFormatAccountD2Cur = 44,
    NumFormatCustomMMSS = 45, NumFormatCustomH0MMSS = 46, NumFormatCustomMMSS0 = 47,
    NumFormatCustom000P0E_PLUS0 = 48, NumFormatText = 49
};

template <class T> class IFontT;
template <class T> class IFormatT;
template <class T> class ISheetT;
template <class T> class IBookT;

/* A font of a book: made by IBookT::addFont, owned by the book, valid until the book is loaded
 * again or released. Its failures go to the message of its book. */
template <class T>
class IFontT {
public:
    /* Size in points. The binary family stores twentieths of a point, so 409 points is the most
     * that comes back unchanged.
     * Fails with: none.
     *     font->setSize(14);
     *     int points = font->size();  // 14 */
    virtual int size() const = 0;
    /* Sets the size in points; larger values are capped at 8191 twentieths of a point.
     * Fails with: none.
     *     IFontA* big = book->addFont(font);
     *     big->setSize(24); */
    virtual void setSize(int size) = 0;
    /* Whether the font is italic.
     * Fails with: none.
     *     font->setItalic(true);
     *     if (font->italic()) puts("italic"); */
    virtual bool italic() const = 0;
    /* Makes the font italic or upright.
     * Fails with: none.
     *     font->setItalic();
     *     font->setItalic(false); */
    virtual void setItalic(bool italic = true) = 0;
    /* Whether the text is struck through.
     * Fails with: none.
     *     font->setStrikeOut(true);
     *     bool struck = font->strikeOut(); */
    virtual bool strikeOut() const = 0;
    /* Strikes the text through, or not.
     * Fails with: none.
     *     font->setStrikeOut();
     *     font->setStrikeOut(false); */
    virtual void setStrikeOut(bool strikeOut = true) = 0;
    /* Colour of the text in the book's coding (see Color); ColorAutomatic unless set.
     * Fails with: none.
     *     font->setColor(ColorRed);
     *     Color c = font->color();  // ColorRed */
    virtual Color color() const = 0;
    /* Sets the colour of the text (see Color; IBookT::colorPack makes one from RGB).
     * Fails with: none.
     *     font->setColor(ColorNavy);
     *     font->setColor(book->colorPack(0, 97, 168)); */
    virtual void setColor(Color color) = 0;
    /* Whether the font is bold.
     * Fails with: none.
     *     font->setBold(true);
     *     bool heavy = font->bold(); */
    virtual bool bold() const = 0;
    /* Makes the font bold or normal.
     * Fails with: none.
     *     font->setBold();
     *     fmt->setFont(font); */
    virtual void setBold(bool bold = true) = 0;
    /* Superscript, subscript or normal (Script).
     * Fails with: none.
     *     font->setScript(ScriptSuper);
     *     Script s = font->script();  // ScriptSuper */
    virtual Script script() const = 0;
    /* Sets superscript, subscript or normal.
     * Fails with: none.
     *     font->setScript(ScriptSub);
     *     font->setScript(ScriptNormal); */
    virtual void setScript(Script script) = 0;
    /* The underline (Underline).
     * Fails with: none.
     *     font->setUnderline(UnderlineDouble);
     *     Underline u = font->underline();  // UnderlineDouble */
    virtual Underline underline() const = 0;
    /* Sets the underline: none, single, double, or their accounting forms.
     * Fails with: none.
     *     font->setUnderline(UnderlineSingle);
     *     font->setUnderline(UnderlineNone); */
    virtual void setUnderline(Underline underline) = 0;
    /* Font family name, in the font's own text buffer.
     * Fails with: "warning: some characters have not been converted properly" (a warning: the
     * text still comes back) when the name has characters the 8-bit coding can't show.
     *     font->setName("Courier New");
     *     const char* family = font->name();  // "Courier New" */
    virtual const T* name() const = 0;
    /* Sets the font family name; null gives an empty name.
     * Fails with: "string is too long" at 256 characters or more; the name stays as it was.
     *     if (!font->setName("DejaVu Sans"))
     *         puts(book->errorMessage()); */
    virtual bool setName(const T* name) = 0;
    virtual ~IFontT() {}
};

/* A cell format (alignment, borders, fill, protection, number format and font): made by
 * IBookT::addFormat, owned by the book, valid until the book is loaded again or released. A cell
 * takes it by pointer, and only a format of the same book. */
template <class T>
class IFormatT {
public:
    /* The format's font, or null when a loaded file points the format at no font.
     * Fails with: "incorrect font".
     *     IFontA* f = fmt->font();
     *     if (f) f->setBold(true); */
    virtual IFontT<T>* font() const = 0;
    /* Gives the format a font of the same book.
     * Fails with: "specified font not found" for a font of another book or null.
     *     IFontA* bold = book->addFont(nullptr);
     *     bold->setBold(); fmt->setFont(bold); */
    virtual bool setFont(IFontT<T>* font) = 0;
    /* Number-format id: a built-in id below 164 (NumFormat) or one from
     * IBookT::addCustomNumFormat.
     * Fails with: none.
     *     int id = fmt->numFormat();
     *     const char* text = id >= 164 ? book->customNumFormat(id) : nullptr; */
    virtual int numFormat() const = 0;
    /* Sets the number-format id. No check is made; an id that names no format shows as General
     * in most readers.
     * Fails with: none.
     *     fmt->setNumFormat(NumFormatPercentD2);
     *     fmt->setNumFormat(book->addCustomNumFormat("0.000")); */
    virtual void setNumFormat(int numFormat) = 0;
    /* Horizontal alignment (AlignH).
     * Fails with: none.
     *     fmt->setAlignH(HAlignCenter);
     *     AlignH h = fmt->alignH();  // HAlignCenter */
    virtual AlignH alignH() const = 0;
    /* Sets the horizontal alignment.
     * Fails with: none.
     *     fmt->setAlignH(HAlignRight);
     *     sheet->writeNum(0, 0, 12.5, fmt); */
    virtual void setAlignH(AlignH align) = 0;
    /* Vertical alignment (AlignV); bottom unless set.
     * Fails with: none.
     *     fmt->setAlignV(VAlignTop);
     *     AlignV v = fmt->alignV();  // VAlignTop */
    virtual AlignV alignV() const = 0;
    /* Sets the vertical alignment.
     * Fails with: none.
     *     fmt->setAlignV(VAlignCenter);
     *     sheet->setRow(0, 30, fmt); */
    virtual void setAlignV(AlignV align) = 0;
    /* Whether text wraps inside the cell.
     * Fails with: none.
     *     fmt->setWrap(true);
     *     bool wraps = fmt->wrap(); */
    virtual bool wrap() const = 0;
    /* Wraps text inside the cell, or not.
     * Fails with: none.
     *     fmt->setWrap();
     *     sheet->writeStr(0, 0, "a long text that wraps", fmt); */
    virtual void setWrap(bool wrap = true) = 0;
    /* Text rotation: 0 to 90 counter-clockwise degrees, 91 to 180 for 1 to 90 degrees clockwise,
     * 255 for letters stacked top to bottom.
     * Fails with: none.
     *     fmt->setRotation(45);
     *     int degrees = fmt->rotation();  // 45 */
    virtual int rotation() const = 0;
    /* Sets the text rotation (see rotation()).
     * Fails with: "rotation must be in range 0-180 or 255"; the rotation stays as it was. XML
     * books: none, any value is stored.
     *     fmt->setRotation(90);
     *     if (!fmt->setRotation(200)) puts(book->errorMessage()); */
    virtual bool setRotation(int rotation) = 0;
    /* Indent level of the text.
     * Fails with: none.
     *     fmt->setIndent(2);
     *     int level = fmt->indent();  // 2 */
    virtual int indent() const = 0;
    /* Sets the indent level, 0 to 15; the binary family keeps the low four bits of larger values.
     * Fails with: none.
     *     fmt->setAlignH(HAlignLeft);
     *     fmt->setIndent(3); */
    virtual void setIndent(int indent) = 0;
    /* Whether text shrinks to fit the cell.
     * Fails with: none.
     *     fmt->setShrinkToFit(true);
     *     bool shrinks = fmt->shrinkToFit(); */
    virtual bool shrinkToFit() const = 0;
    /* Shrinks text to fit the cell, or not.
     * Fails with: none.
     *     fmt->setShrinkToFit();
     *     fmt->setShrinkToFit(false); */
    virtual void setShrinkToFit(bool shrinkToFit = true) = 0;
    /* Sets the style of all four sides at once.
     * Fails with: none.
     *     fmt->setBorder(BorderThin);
     *     fmt->setBorderColor(ColorGray); */
    virtual void setBorder(BorderStyle style = BorderThin) = 0;
    /* Sets the colour of all four sides at once.
     * Fails with: none.
     *     fmt->setBorder(BorderMedium);
     *     fmt->setBorderColor(ColorBlue); */
    virtual void setBorderColor(Color color) = 0;
    /* Style of the left side (BorderStyle).
     * Fails with: none.
     *     fmt->setBorderLeft(BorderDashed);
     *     BorderStyle s = fmt->borderLeft();  // BorderDashed */
    virtual BorderStyle borderLeft() const = 0;
    /* Sets the style of the left side.
     * Fails with: none.
     *     fmt->setBorderLeft(BorderThick);
     *     fmt->setBorderLeftColor(ColorRed); */
    virtual void setBorderLeft(BorderStyle style = BorderThin) = 0;
    /* Style of the right side (BorderStyle).
     * Fails with: none.
     *     fmt->setBorderRight(BorderDotted);
     *     BorderStyle s = fmt->borderRight();  // BorderDotted */
    virtual BorderStyle borderRight() const = 0;
    /* Sets the style of the right side.
     * Fails with: none.
     *     fmt->setBorderRight();
     *     fmt->setBorderRightColor(ColorGray); */
    virtual void setBorderRight(BorderStyle style = BorderThin) = 0;
    /* Style of the top side (BorderStyle).
     * Fails with: none.
     *     fmt->setBorderTop(BorderDouble);
     *     BorderStyle s = fmt->borderTop();  // BorderDouble */
    virtual BorderStyle borderTop() const = 0;
    /* Sets the style of the top side.
     * Fails with: none.
     *     fmt->setBorderTop(BorderMedium);
     *     fmt->setBorderTopColor(ColorBlack); */
    virtual void setBorderTop(BorderStyle style = BorderThin) = 0;
    /* Style of the bottom side (BorderStyle).
     * Fails with: none.
     *     fmt->setBorderBottom(BorderHair);
     *     BorderStyle s = fmt->borderBottom();  // BorderHair */
    virtual BorderStyle borderBottom() const = 0;
    /* Sets the style of the bottom side.
     * Fails with: none.
     *     fmt->setBorderBottom(BorderDouble);
     *     sheet->writeNum(9, 1, 1250.0, fmt); */
    virtual void setBorderBottom(BorderStyle style = BorderThin) = 0;
    /* Colour of the left side (see Color).
     * Fails with: none.
     *     fmt->setBorderLeftColor(ColorGreen);
     *     Color c = fmt->borderLeftColor();  // ColorGreen */
    virtual Color borderLeftColor() const = 0;
    /* Sets the colour of the left side.
     * Fails with: none.
     *     fmt->setBorderLeft(BorderThin);
     *     fmt->setBorderLeftColor(ColorTeal); */
    virtual void setBorderLeftColor(Color color) = 0;
    /* Colour of the right side (see Color).
     * Fails with: none.
     *     fmt->setBorderRightColor(ColorGreen);
     *     Color c = fmt->borderRightColor();  // ColorGreen */
    virtual Color borderRightColor() const = 0;
    /* Sets the colour of the right side.
     * Fails with: none.
     *     fmt->setBorderRight(BorderThin);
     *     fmt->setBorderRightColor(ColorTeal); */
    virtual void setBorderRightColor(Color color) = 0;
    /* Colour of the top side (see Color).
     * Fails with: none.
     *     fmt->setBorderTopColor(ColorMaroon);
     *     Color c = fmt->borderTopColor();  // ColorMaroon */
    virtual Color borderTopColor() const = 0;
    /* Sets the colour of the top side.
     * Fails with: none.
     *     fmt->setBorderTop(BorderThin);
     *     fmt->setBorderTopColor(ColorOlive); */
    virtual void setBorderTopColor(Color color) = 0;
    /* Colour of the bottom side (see Color).
     * Fails with: none.
     *     fmt->setBorderBottomColor(ColorMaroon);
     *     Color c = fmt->borderBottomColor();  // ColorMaroon */
    virtual Color borderBottomColor() const = 0;
    /* Sets the colour of the bottom side.
     * Fails with: none.
     *     fmt->setBorderBottom(BorderThick);
     *     fmt->setBorderBottomColor(ColorNavy); */
    virtual void setBorderBottomColor(Color color) = 0;
    /* Which diagonal lines the cell has (BorderDiagonal).
     * Fails with: none.
     *     fmt->setBorderDiagonal(DiagonalBoth);
     *     BorderDiagonal d = fmt->borderDiagonal();  // DiagonalBoth */
    virtual BorderDiagonal borderDiagonal() const = 0;
    /* Draws the diagonal from top left, from bottom left, both or none.
     * Fails with: none.
     *     fmt->setBorderDiagonal(DiagonalDown);
     *     fmt->setBorderDiagonalStyle(BorderThin); */
    virtual void setBorderDiagonal(BorderDiagonal border) = 0;
    /* Line style of the diagonals (BorderStyle).
     * Fails with: none.
     *     fmt->setBorderDiagonalStyle(BorderDashed);
     *     BorderStyle s = fmt->borderDiagonalStyle();  // BorderDashed */
    virtual BorderStyle borderDiagonalStyle() const = 0;
    /* Sets the line style of the diagonals.
     * Fails with: none.
     *     fmt->setBorderDiagonal(DiagonalUp);
     *     fmt->setBorderDiagonalStyle(BorderMedium); */
    virtual void setBorderDiagonalStyle(BorderStyle style) = 0;
    /* Colour of the diagonals (see Color).
     * Fails with: none.
     *     fmt->setBorderDiagonalColor(ColorRed);
     *     Color c = fmt->borderDiagonalColor();  // ColorRed */
    virtual Color borderDiagonalColor() const = 0;
    /* Sets the colour of the diagonals.
     * Fails with: none.
     *     fmt->setBorderDiagonal(DiagonalBoth);
     *     fmt->setBorderDiagonalColor(ColorRed); */
    virtual void setBorderDiagonalColor(Color color) = 0;
    /* Fill pattern of the cell background (FillPattern).
     * Fails with: none.
     *     fmt->setFillPattern(FillSolid);
     *     FillPattern p = fmt->fillPattern();  // FillSolid */
    virtual FillPattern fillPattern() const = 0;
    /* Sets the fill pattern; FillSolid with a foreground colour gives a plain coloured cell.
     * Fails with: none.
     *     fmt->setFillPattern(FillSolid);
     *     fmt->setPatternForegroundColor(ColorYellow); */
    virtual void setFillPattern(FillPattern pattern) = 0;
    /* Foreground colour of the fill pattern (see Color).
     * Fails with: none.
     *     fmt->setPatternForegroundColor(ColorSilver);
     *     Color c = fmt->patternForegroundColor();  // ColorSilver */
    virtual Color patternForegroundColor() const = 0;
    /* Sets the foreground colour of the fill pattern: the colour of a solid fill.
     * Fails with: none.
     *     fmt->setFillPattern(FillSolid);
     *     fmt->setPatternForegroundColor(ColorCyan); */
    virtual void setPatternForegroundColor(Color color) = 0;
    /* Background colour of the fill pattern (see Color).
     * Fails with: none.
     *     fmt->setPatternBackgroundColor(ColorWhite);
     *     Color c = fmt->patternBackgroundColor();  // ColorWhite */
    virtual Color patternBackgroundColor() const = 0;
    /* Sets the background colour of the fill pattern, seen between the pattern's dots.
     * Fails with: none.
     *     fmt->setFillPattern(FillLightGrid);
     *     fmt->setPatternBackgroundColor(ColorWhite); */
    virtual void setPatternBackgroundColor(Color color) = 0;
    /* Whether the cell is locked when its sheet is protected (ISheetT::setProtect).
     * Fails with: none.
     *     fmt->setLocked(false);
     *     bool editable = !fmt->locked(); */
    virtual bool locked() const = 0;
    /* Locks the cell against editing on a protected sheet, or leaves it open.
     * Fails with: none.
     *     fmt->setLocked(false);
     *     sheet->setProtect(true); */
    virtual void setLocked(bool locked = true) = 0;
    /* Whether the formula of the cell is hidden when its sheet is protected.
     * Fails with: none.
     *     fmt->setHidden(true);
     *     bool secret = fmt->hidden(); */
    virtual bool hidden() const = 0;
    /* Hides the formula of the cell on a protected sheet, or shows it.
     * Fails with: none.
     *     fmt->setHidden();
     *     sheet->setProtect(true); */
    virtual void setHidden(bool hidden = true) = 0;
    virtual ~IFormatT() {}
};

/* A sheet of a book: made by IBookT::addSheet or insertSheet, or read by load; owned by the book
 * and valid until delSheet of this sheet, the next load, or release. Its failures go to the
 * message of its book.
 *
 * Range messages are quoted with the binary family's limits, "row must be in range 0-65535" and
 * "col must be in range 0-255"; XML books say "row must be in range 0-1048575" and "col must be
 * in range 0-16383" instead. A format given to a write must belong to the same book; null keeps
 * the cell's format, or gives a new cell the default format. */
template <class T>
class ISheetT {
public:
    /* The kind of value stored at the cell (CellType); a formula answers the kind of its cached
     * result. Places outside the grid are empty.
     * Fails with: none.
     *     if (sheet->cellType(2, 1) == CellNumber)
     *         printf("%g\n", sheet->readNum(2, 1)); */
    virtual int cellType(int row, int col) const = 0;
    /* Whether the cell holds a formula; false outside the grid.
     * Fails with: none.
     *     if (sheet->isFormula(5, 0))
     *         puts(sheet->readFormula(5, 0)); */
    virtual bool isFormula(int row, int col) const = 0;
    /* The cell's format; for an absent cell that of its row, then of its column, then format 0.
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "formats are not
     * found", "format not found".
     *     IFormatA* f = sheet->cellFormat(0, 0);
     *     if (f && f->wrap()) puts("wraps"); */
    virtual IFormatT<T>* cellFormat(int row, int col) const = 0;
    /* Changes the cell's format and keeps its value; an absent cell becomes a blank with it.
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "specified
     * format is not found" for a null format or one of another book.
     *     fmt->setFillPattern(FillSolid);
     *     sheet->setCellFormat(3, 2, fmt); */
    virtual void setCellFormat(int row, int col, IFormatT<T>* format) = 0;
    /* Text of a text cell, or of a formula with a text result, in the sheet's text buffer.
     * format, when not null, receives the cell's format (null on failure).
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "this cell
     * doesn't contain a string". XML books: "cell is not found" for an absent cell.
     *     const char* text = sheet->readStr(0, 0);
     *     if (text) puts(text); */
    virtual const T* readStr(int row, int col, IFormatT<T>** format = 0) = 0;
    /* Writes text, replacing what the cell held. Equal texts share one entry of the book's
     * string table.
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "string mustn't
     * be NULL", "string is too long" at 32768 characters or more, "specified format not found".
     *     if (!sheet->writeStr(0, 0, "Name", fmt))
     *         puts(book->errorMessage()); */
    virtual bool writeStr(int row, int col, const T* value, IFormatT<T>* format = 0) = 0;
    /* Number of a number cell, or of a formula with a number result; 0 on failure. format, when
     * not null, receives the cell's format (null on failure).
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "this cell
     * doesn't contain a number". XML books: "cell is not found" for an absent cell.
     *     IFormatA* f = nullptr;
     *     double value = sheet->readNum(1, 0, &f); */
    virtual double readNum(int row, int col, IFormatT<T>** format = 0) const = 0;
    /* Writes a number, replacing what the cell held. A date is a number with a date format
     * (IBookT::datePack).
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "specified format
     * not found", "too many cells in sheet".
     *     sheet->writeNum(1, 0, 3.25);
     *     sheet->writeNum(1, 1, 0.075, fmt); */
    virtual bool writeNum(int row, int col, double value, IFormatT<T>* format = 0) = 0;
    /* Value of a boolean cell, or of a formula with a boolean result; false on failure. An error
     * cell is not a boolean, whatever its code.
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "this cell
     * doesn't contain a bool". XML books: "cell is not found" for an absent cell.
     *     bool paid = sheet->readBool(4, 3);
     *     if (strcmp(book->errorMessage(), "ok") != 0) puts("not a bool"); */
    virtual bool readBool(int row, int col, IFormatT<T>** format = 0) const = 0;
    /* Writes a boolean, replacing what the cell held.
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "specified format
     * not found", "too many cells in sheet".
     *     sheet->writeBool(4, 3, true);
     *     sheet->writeBool(5, 3, false, fmt); */
    virtual bool writeBool(int row, int col, bool value, IFormatT<T>* format = 0) = 0;
    /* True when the cell is a blank (a format and no value); its format goes to *format.
     * Fails with: "format mustn't be NULL", "row must be in range 0-65535", "col must be in range
     * 0-255", "this cell doesn't contain a blank". XML books: "cell is not blank".
     *     IFormatA* f = nullptr;
     *     if (sheet->readBlank(4, 4, &f)) printf("border %d\n", f->borderTop()); */
    virtual bool readBlank(int row, int col, IFormatT<T>** format) const = 0;
    /* Makes the cell a blank: a format and no value, as for a bordered empty cell.
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "specified format
     * not found", "too many cells in sheet". XML books: "format is null" for a null format.
     *     fmt->setBorder(BorderThin);
     *     sheet->writeBlank(4, 4, fmt); */
    virtual bool writeBlank(int row, int col, IFormatT<T>* format) = 0;
    /* Formula text of the cell without a leading "=", in A1 or R1C1 notation as
     * IBookT::refR1C1() says; a cell of a shared or array formula gives its own form of the
     * group's formula. The text is in the sheet's text buffer.
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "cell doesn't
     * contain a formula", and a message naming the damage for tokens that can't be read. XML
     * books: "cell is not found", "this cell doesn't contain a formula".
     *     const char* formula = sheet->readFormula(5, 0);
     *     if (formula) printf("=%s\n", formula); */
    virtual const T* readFormula(int row, int col, IFormatT<T>** format = 0) = 0;
    /* Compiles a formula (a leading "=" is optional) and stores it with a cached result of 0;
     * nothing is calculated. Other sheets are named as in Sheet2!A1 or 'My sheet'!A1:B2.
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "formula mustn't
     * be NULL", "specified format not found", "error in formula", "error: function parentheses not
     * found", "incorrect number of function parameters", "incorrect token in formula" (also for a
     * defined name or an unknown function), "sheet is not found", "formula is too long", "too many
     * external sheet references"; the cell stays as it was. An operator without its operands,
     * as in "1+", is not caught here: such a formula is stored, and readFormula then fails with
     * "toInfix error: expected two operands for binary operator". XML books store the text
     * unchecked: only "value is null" and the cell ranges of writeNum.
     *     sheet->writeFormula(5, 0, "SUM(A1:A5)");
     *     sheet->writeFormula(6, 0, "IF(A6>100,\"high\",\"low\")", fmt); */
    virtual bool writeFormula(int row, int col, const T* value, IFormatT<T>* format = 0) = 0;
    /* Comment text of the cell, or null when the cell has none (with "ok").
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255". XML books: "not
     * supported".
     *     const char* note = sheet->readComment(0, 0);
     *     if (!note) puts(book->errorMessage()); */
    virtual const T* readComment(int row, int col) const = 0;
    /* Attaches a comment to the cell with its author (null: the default author) and the size of
     * its box in pixels; a second comment on the same cell replaces the first.
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "comment is too
     * long", "author is too long", "too many shapes", "too many objects in sheet". XML books:
     * "not supported".
     *     sheet->writeComment(0, 0, "checked", "audit", 129, 75);
     *     puts(book->errorMessage()); */
    virtual void writeComment(int row, int col, const T* value, const T* author = 0, int width = 129,
                              int height = 75) = 0;
    /* Whether the cell is a number whose format is a date format: ids 14 to 22 and 45 to 47, or a
     * custom format with a date or time letter outside brackets.
     * Fails with: none.
     *     int y, m, d;
     *     if (sheet->isDate(1, 0)) book->dateUnpack(sheet->readNum(1, 0), &y, &m, &d); */
    virtual bool isDate(int row, int col) const = 0;
    /* The error code of an error cell or formula result (ErrorType); 255 (ErrorNone) for any
     * other cell, which is no failure.
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255". XML books: "cell
     * is not found", "this cell doesn't contain an error", "unknown error value".
     *     if (sheet->readError(2, 2) == ErrorDiv0)
     *         puts("division by zero"); */
    virtual int readError(int row, int col) const = 0;
    /* Column width in characters of the default font's digits: 8.43 for a column never set, 0 for
     * a hidden one.
     * Fails with: none.
     *     sheet->setCol(0, 0, 20);
     *     double width = sheet->colWidth(0);  // 20 */
    virtual double colWidth(int col) const = 0;
    /* Row height in points; the sheet's default height for a row never set.
     * Fails with: none.
     *     sheet->setRow(0, 30);
     *     double height = sheet->rowHeight(0);  // 30 */
    virtual double rowHeight(int row) const = 0;
    /* Width (in characters), format and hidden state of the columns colFirst to colLast.
     * Fails with: "col must be in range 0-255", "colLast must be greater than or equal to
     * colFirst", "specified format not found". XML books: "col must be less than 16384".
     *     sheet->setCol(0, 0, 30);
     *     sheet->setCol(1, 4, 12, fmt, false); */
    virtual bool setCol(int colFirst, int colLast, double width, IFormatT<T>* format = 0,
                        bool hidden = false) = 0;
    /* Height (in points), format and hidden state of a row.
     * Fails with: "row must be in range 0-65535", "specified format not found", "height is too
     * big" at 409.65 points or more.
     *     sheet->setRow(0, 30, fmt);
     *     sheet->setRow(7, 15, nullptr, true); */
    virtual bool setRow(int row, double height, IFormatT<T>* format = 0, bool hidden = false) = 0;
    /* Whether the row is hidden.
     * Fails with: none.
     *     sheet->setRowHidden(3, true);
     *     bool gone = sheet->rowHidden(3);  // true */
    virtual bool rowHidden(int row) const = 0;
    /* Hides or shows a row.
     * Fails with: "row must be in range 0-65535".
     *     sheet->setRowHidden(3, true);
     *     sheet->setRowHidden(3, false); */
    virtual bool setRowHidden(int row, bool hidden) = 0;
    /* Whether the column is hidden.
     * Fails with: none.
     *     sheet->setColHidden(2, true);
     *     bool gone = sheet->colHidden(2);  // true */
    virtual bool colHidden(int col) const = 0;
    /* Hides or shows a column. It takes the width colWidth() reads, which is 0 while the column
     * is hidden: a column shown again needs its width from setCol.
     * Fails with: "col must be in range 0-255".
     *     sheet->setColHidden(2, true);
     *     sheet->setCol(2, 2, 12, nullptr, false);  // shown again, 12 characters wide */
    virtual bool setColHidden(int col, bool hidden) = 0;
    /* The merged block that holds the cell, through the pointers (each may be null).
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "this cell isn't
     * in merging block".
     *     int r1, r2, c1, c2;
     *     if (sheet->getMerge(0, 1, &r1, &r2, &c1, &c2)) printf("%d..%d\n", c1, c2); */
    virtual bool getMerge(int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast) = 0;
    /* Merges the block; its absent cells become blanks with the top left cell's format. Overlap
     * with other blocks is not checked.
     * Fails with: "col must be in range 0-255", "rowLast must be greater than or equal to
     * rowFirst", "colLast must be greater than or equal to colFirst". XML books: "col must be less
     * than 16384".
     *     sheet->writeStr(0, 0, "Quarterly report", fmt);
     *     sheet->setMerge(0, 0, 0, 3); */
    virtual bool setMerge(int rowFirst, int rowLast, int colFirst, int colLast) = 0;
    /* Removes the merged block that holds the cell; false, with the message left as it was, when
     * no block holds it.
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255". XML books: "this
     * cell isn't in merging block" when no block holds it.
     *     sheet->setMerge(0, 0, 0, 3);
     *     sheet->delMerge(0, 2); */
    virtual bool delMerge(int row, int col) = 0;
    /* Number of pictures anchored on this sheet.
     * Fails with: none.
     *     for (int i = 0; i < sheet->pictureSize(); ++i)
     *         printf("%d\n", sheet->getPicture(i)); */
    virtual int pictureSize() const = 0;
    /* Id (in the book's store) and place of the index-th picture of the sheet, -1 on failure;
     * every pointer may be null. Width and height are in pixels.
     * Fails with: "picture not found".
     *     int row, col;
     *     int id = sheet->getPicture(0, &row, &col); */
    virtual int getPicture(int index, int* rowTop = 0, int* colLeft = 0, int* rowBottom = 0,
                           int* colRight = 0, int* width = 0, int* height = 0, int* offsetX = 0,
                           int* offsetY = 0) const = 0;
    /* Anchors a picture of the book's store at the cell, at its natural size times scale, moved
     * by offsetX and offsetY pixels. An offset beyond the cell is cut to the cell's size and
     * leaves a warning as the message: "warning: offset_x exceed cell's width", "warning:
     * offset_y exceed cell's height" or "warning: offset_x and offset_y exceed cell's size".
     * Fails with: "pictureId is out of range", "row must be in range 0-65535", "col must be in
     * range 0-255".
     *     int id = book->addPicture("logo.png");
     *     sheet->setPicture(0, 0, id, 0.5); */
    virtual void setPicture(int row, int col, int pictureId, double scale = 1.0, int offsetX = 0,
                            int offsetY = 0) = 0;
    /* Anchors a picture at a size in pixels. A width or height of -1 is not the natural size
     * (setPicture with scale 1 gives that): the anchor then ends in the last row or column of
     * the merged block that holds the cell (or in the cell itself) with a far offset beyond that
     * cell, which readers show in their own ways and getPicture reads back as a meaningless
     * size. Offsets as in setPicture, with the same warnings.
     * Fails with: "pictureId is out of range", "row must be in range 0-65535", "col must be in
     * range 0-255".
     *     int id = book->addPicture("logo.png");
     *     sheet->setPicture2(0, 0, id, 200, 100); */
    virtual void setPicture2(int row, int col, int pictureId, int width = -1, int height = -1,
                             int offsetX = 0, int offsetY = 0) = 0;
    /* Row of the index-th horizontal page break (the break comes before that row); -1 on failure.
     * Fails with: "index is out of range". XML books: -1 with "ok".
     *     for (int i = 0; i < sheet->getHorPageBreakSize(); ++i)
     *         printf("%d\n", sheet->getHorPageBreak(i)); */
    virtual int getHorPageBreak(int index) const = 0;
    /* Number of horizontal page breaks.
     * Fails with: none.
     *     sheet->setHorPageBreak(40);
     *     int breaks = sheet->getHorPageBreakSize();  // 1 */
    virtual int getHorPageBreakSize() const = 0;
    /* Column of the index-th vertical page break; -1 on failure.
     * Fails with: "index is out of range". XML books: -1 with "ok".
     *     for (int i = 0; i < sheet->getVerPageBreakSize(); ++i)
     *         printf("%d\n", sheet->getVerPageBreak(i)); */
    virtual int getVerPageBreak(int index) const = 0;
    /* Number of vertical page breaks.
     * Fails with: none.
     *     sheet->setVerPageBreak(6);
     *     int breaks = sheet->getVerPageBreakSize();  // 1 */
    virtual int getVerPageBreakSize() const = 0;
    /* Adds (true) or removes (false) a page break before the row.
     * Fails with: "pagebreak already exists", "pagebreak not found", "number of pagebreaks is
     * exceed limit" beyond 1026 breaks.
     *     sheet->setHorPageBreak(40);
     *     sheet->setHorPageBreak(40, false); */
    virtual bool setHorPageBreak(int row, bool pageBreak = true) = 0;
    /* Adds (true) or removes (false) a page break before the column.
     * Fails with: "pagebreak already exists", "pagebreak not found", "number of pagebreaks is
     * exceed limit" beyond 1026 breaks.
     *     sheet->setVerPageBreak(6);
     *     sheet->setVerPageBreak(6, false); */
    virtual bool setVerPageBreak(int col, bool pageBreak = true) = 0;
    /* Freezes the panes above row and left of col: they stay in view while the rest scrolls.
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255".
     *     sheet->split(1, 0);  // the header row stays
     *     sheet->split(1, 1);  // and the first column */
    virtual void split(int row, int col) = 0;
    /* Makes rows rowFirst to rowLast one outline level deeper, collapsed (hidden) or not.
     * Fails with: "must be rowFirst <= rowLast", "row must be in range 0-65535", "detect overlap"
     * when the rows are not all at one level.
     *     sheet->groupRows(1, 10, false);
     *     sheet->setGroupSummaryBelow(true); */
    virtual bool groupRows(int rowFirst, int rowLast, bool collapsed = true) = 0;
    /* Makes columns colFirst to colLast one outline level deeper, collapsed (hidden) or not.
     * Fails with: "must be colFirst <= colLast", "col must be in range 0-255".
     *     sheet->groupCols(1, 3, true);
     *     sheet->setGroupSummaryRight(true); */
    virtual bool groupCols(int colFirst, int colLast, bool collapsed = true) = 0;
    /* Whether the summary row of an outline group stands below its rows.
     * Fails with: none.
     *     sheet->setGroupSummaryBelow(false);
     *     bool below = sheet->groupSummaryBelow();  // false */
    virtual bool groupSummaryBelow() const = 0;
    /* Puts the summary rows of outline groups below (true) or above their rows.
     * Fails with: none.
     *     sheet->groupRows(1, 10, false);
     *     sheet->setGroupSummaryBelow(false); */
    virtual void setGroupSummaryBelow(bool below) = 0;
    /* Whether the summary column of an outline group stands right of its columns.
     * Fails with: none.
     *     sheet->setGroupSummaryRight(false);
     *     bool right = sheet->groupSummaryRight();  // false */
    virtual bool groupSummaryRight() const = 0;
    /* Puts the summary columns of outline groups right (true) or left of their columns.
     * Fails with: none.
     *     sheet->groupCols(1, 3, false);
     *     sheet->setGroupSummaryRight(false); */
    virtual void setGroupSummaryRight(bool right) = 0;
    /* Empties a block: its cells, comments and the merged blocks that overlap it. Bounds beyond
     * the grid are brought into it, so clear() empties the whole sheet.
     * Fails with: "rowLast must be greater than or equal to rowFirst", "colLast must be greater
     * than or equal to colFirst".
     *     sheet->clear(1, 100, 0, 5);
     *     sheet->clear(); */
    virtual bool clear(int rowFirst = 0, int rowLast = 1048575, int colFirst = 0, int colLast = 16383) = 0;
    /* Inserts empty columns colFirst to colLast before column colFirst; cells, widths, comments
     * and merged blocks to the right move along. Formula text is not rewritten.
     * Fails with: "colLast must be greater than or equal to colFirst".
     *     sheet->insertCol(1, 2);  // two new columns B and C
     *     sheet->writeStr(0, 1, "new"); */
    virtual bool insertCol(int colFirst, int colLast) = 0;
    /* Inserts empty rows rowFirst to rowLast before row rowFirst; cells, heights, comments, merged
     * blocks and the sheet's named ranges below move down. Formula text is not rewritten.
     * Fails with: "rowLast must be greater than or equal to rowFirst".
     *     sheet->insertRow(1, 1);  // one new row 2
     *     sheet->writeNum(1, 0, 7); */
    virtual bool insertRow(int rowFirst, int rowLast) = 0;
    /* Removes columns colFirst to colLast; cells, widths and merged blocks to the right move
     * left.
     * Fails with: "colLast must be greater than or equal to colFirst".
     *     sheet->removeCol(3, 3);
     *     int last = sheet->lastCol(); */
    virtual bool removeCol(int colFirst, int colLast) = 0;
    /* Removes rows rowFirst to rowLast; cells, heights, merged blocks and named ranges below move
     * up.
     * Fails with: "rowLast must be greater than or equal to rowFirst".
     *     sheet->removeRow(5, 9);
     *     int last = sheet->lastRow(); */
    virtual bool removeRow(int rowFirst, int rowLast) = 0;
    /* Copies one cell, value and format, onto another place of the same sheet; a formula is
     * copied as it stands, its references unchanged.
     * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "empty cell" for
     * an absent source, "unknown type of cell" for an 8-bit text cell of an old file.
     *     sheet->writeNum(0, 0, 1.5, fmt);
     *     sheet->copyCell(0, 0, 10, 0); */
    virtual bool copyCell(int rowSrc, int colSrc, int rowDst, int colDst) = 0;
    /* First row of the used range (cells and merged blocks).
     * Fails with: none.
     *     for (int r = sheet->firstRow(); r < sheet->lastRow(); ++r)
     *         printf("%g\n", sheet->readNum(r, 0, nullptr)); */
    virtual int firstRow() const = 0;
    /* One past the last row of the used range; equal to firstRow() on an empty sheet.
     * Fails with: none. XML books: rows without cells count once the sheet is loaded or edited
     * by insertRow and the like, but rows that setRowHidden or groupRows make count only then.
     *     int rows = sheet->lastRow() - sheet->firstRow();
     *     printf("%d rows\n", rows); */
    virtual int lastRow() const = 0;
    /* First column of the used range.
     * Fails with: none.
     *     for (int c = sheet->firstCol(); c < sheet->lastCol(); ++c)
     *         printf("%d\n", sheet->cellType(0, c)); */
    virtual int firstCol() const = 0;
    /* One past the last column of the used range.
     * Fails with: none.
     *     int cols = sheet->lastCol() - sheet->firstCol();
     *     printf("%d columns\n", cols); */
    virtual int lastCol() const = 0;
    /* Whether gridlines show on screen.
     * Fails with: none.
     *     sheet->setDisplayGridlines(false);
     *     bool shown = sheet->displayGridlines();  // false */
    virtual bool displayGridlines() const = 0;
    /* Shows or hides the gridlines on screen.
     * Fails with: none.
     *     sheet->setDisplayGridlines(false);
     *     sheet->setDisplayGridlines(); */
    virtual void setDisplayGridlines(bool show = true) = 0;
    /* Whether gridlines are printed.
     * Fails with: none.
     *     sheet->setPrintGridlines(true);
     *     bool printed = sheet->printGridlines();  // true */
    virtual bool printGridlines() const = 0;
    /* Prints the gridlines, or not.
     * Fails with: none.
     *     sheet->setPrintGridlines();
     *     sheet->setPrintGridlines(false); */
    virtual void setPrintGridlines(bool print = true) = 0;
    /* Screen zoom in percent; 100 unless set.
     * Fails with: none.
     *     sheet->setZoom(150);
     *     int percent = sheet->zoom();  // 150 */
    virtual int zoom() const = 0;
    /* Sets the screen zoom in percent (readers accept 10 to 400).
     * Fails with: none.
     *     sheet->setZoom(75);
     *     sheet->setZoom(100); */
    virtual void setZoom(int zoom) = 0;
    /* Print scale in percent; 100 unless set.
     * Fails with: none.
     *     sheet->setPrintZoom(80);
     *     int percent = sheet->printZoom();  // 80 */
    virtual int printZoom() const = 0;
    /* Sets the print scale in percent (readers accept 10 to 400) and ends fit-to-pages mode.
     * Fails with: none.
     *     sheet->setPrintZoom(90);
     *     bool fit = sheet->getPrintFit(nullptr, nullptr);  // false */
    virtual void setPrintZoom(int zoom) = 0;
    /* Whether fit-to-pages mode is on, with its page counts across and down (pointers may be
     * null; 0 means as many as needed).
     * Fails with: none.
     *     int across, down;
     *     if (sheet->getPrintFit(&across, &down)) printf("%d x %d\n", across, down); */
    virtual bool getPrintFit(int* wPages, int* hPages) const = 0;
    /* Turns fit-to-pages mode on: the print is scaled to wPages across and hPages down; 0 leaves
     * that direction free.
     * Fails with: none.
     *     sheet->setPrintFit(1, 0);  // one page wide, as long as needed
     *     sheet->setLandscape(); */
    virtual void setPrintFit(int wPages = 1, int hPages = 1) = 0;
    /* Whether the sheet prints in landscape orientation.
     * Fails with: none.
     *     sheet->setLandscape(true);
     *     bool wide = sheet->landscape();  // true */
    virtual bool landscape() const = 0;
    /* Prints in landscape (true) or portrait orientation.
     * Fails with: none.
     *     sheet->setLandscape();
     *     sheet->setPaper(PaperA4); */
    virtual void setLandscape(bool landscape = true) = 0;
    /* Paper size code (Paper); 0 while no page setup has been given.
     * Fails with: none.
     *     sheet->setPaper(PaperLetter);
     *     Paper p = sheet->paper();  // PaperLetter */
    virtual Paper paper() const = 0;
    /* Sets the paper size code; any number is stored as it is.
     * Fails with: none.
     *     sheet->setPaper(PaperA4);
     *     sheet->setPaper(PaperLegal); */
    virtual void setPaper(Paper paper = PaperDefault) = 0;
    /* Header text of the printed page, with its &-codes, in the sheet's text buffer.
     * Fails with: none.
     *     sheet->setHeader("&CQuarterly report");
     *     const char* text = sheet->header(); */
    virtual const T* header() const = 0;
    /* Sets the header text (&L, &C, &R start the left, centre and right parts; &P is the page
     * number, &N the page count, &D the date) and its margin in inches.
     * Fails with: "string is too long" beyond 255 characters.
     *     sheet->setHeader("&LSales&RPage &P of &N", 0.3);
     *     sheet->setHeader("&C&D"); */
    virtual bool setHeader(const T* header, double margin = 0.5) = 0;
    /* Margin of the header in inches.
     * Fails with: none.
     *     sheet->setHeader("&CReport", 0.4);
     *     double inches = sheet->headerMargin();  // 0.4 */
    virtual double headerMargin() const = 0;
    /* Footer text of the printed page, in the sheet's text buffer.
     * Fails with: none.
     *     sheet->setFooter("&CPage &P");
     *     const char* text = sheet->footer(); */
    virtual const T* footer() const = 0;
    /* Sets the footer text (the codes of setHeader) and its margin in inches.
     * Fails with: "string is too long" beyond 255 characters.
     *     sheet->setFooter("&CPage &P of &N", 0.3);
     *     sheet->setFooter("&R&F"); */
    virtual bool setFooter(const T* footer, double margin = 0.5) = 0;
    /* Margin of the footer in inches.
     * Fails with: none.
     *     sheet->setFooter("&CPage &P", 0.4);
     *     double inches = sheet->footerMargin();  // 0.4 */
    virtual double footerMargin() const = 0;
    /* Whether the print is centred horizontally on the page.
     * Fails with: none.
     *     sheet->setHCenter(true);
     *     bool centred = sheet->hCenter();  // true */
    virtual bool hCenter() const = 0;
    /* Centres the print horizontally on the page, or not.
     * Fails with: none.
     *     sheet->setHCenter();
     *     sheet->setVCenter(); */
    virtual void setHCenter(bool hCenter = true) = 0;
    /* Whether the print is centred vertically on the page.
     * Fails with: none.
     *     sheet->setVCenter(true);
     *     bool centred = sheet->vCenter();  // true */
    virtual bool vCenter() const = 0;
    /* Centres the print vertically on the page, or not.
     * Fails with: none.
     *     sheet->setVCenter();
     *     sheet->setVCenter(false); */
    virtual void setVCenter(bool vCenter = true) = 0;
    /* Left page margin in inches.
     * Fails with: none.
     *     sheet->setMarginLeft(0.5);
     *     double inches = sheet->marginLeft();  // 0.5 */
    virtual double marginLeft() const = 0;
    /* Sets the left page margin in inches.
     * Fails with: none.
     *     sheet->setMarginLeft(0.4);
     *     sheet->setMarginRight(0.4); */
    virtual void setMarginLeft(double margin) = 0;
    /* Right page margin in inches.
     * Fails with: none.
     *     sheet->setMarginRight(0.5);
     *     double inches = sheet->marginRight();  // 0.5 */
    virtual double marginRight() const = 0;
    /* Sets the right page margin in inches.
     * Fails with: none.
     *     sheet->setMarginRight(0.4);
     *     sheet->setMarginLeft(0.4); */
    virtual void setMarginRight(double margin) = 0;
    /* Top page margin in inches.
     * Fails with: none.
     *     sheet->setMarginTop(1.0);
     *     double inches = sheet->marginTop();  // 1 */
    virtual double marginTop() const = 0;
    /* Sets the top page margin in inches.
     * Fails with: none.
     *     sheet->setMarginTop(0.75);
     *     sheet->setMarginBottom(0.75); */
    virtual void setMarginTop(double margin) = 0;
    /* Bottom page margin in inches.
     * Fails with: none.
     *     sheet->setMarginBottom(1.0);
     *     double inches = sheet->marginBottom();  // 1 */
    virtual double marginBottom() const = 0;
    /* Sets the bottom page margin in inches.
     * Fails with: none.
     *     sheet->setMarginBottom(0.75);
     *     sheet->setMarginTop(0.75); */
    virtual void setMarginBottom(double margin) = 0;
    /* Whether row numbers and column letters are printed.
     * Fails with: none.
     *     sheet->setPrintRowCol(true);
     *     bool headings = sheet->printRowCol();  // true */
    virtual bool printRowCol() const = 0;
    /* Prints row numbers and column letters, or not.
     * Fails with: none.
     *     sheet->setPrintRowCol();
     *     sheet->setPrintGridlines(); */
    virtual void setPrintRowCol(bool print = true) = 0;
    /* Rows printed again at the top of every page (a built-in name of the sheet); columns set by
     * setPrintRepeatCols stay.
     * Fails with: "too many external sheet references".
     *     sheet->setPrintRepeatRows(0, 0);  // the header row on each page
     *     sheet->setPrintRepeatCols(0, 0); */
    virtual void setPrintRepeatRows(int rowFirst, int rowLast) = 0;
    /* Columns printed again at the left of every page; rows set by setPrintRepeatRows stay.
     * Fails with: "too many external sheet references".
     *     sheet->setPrintRepeatCols(0, 1);
     *     sheet->clearPrintRepeats(); */
    virtual void setPrintRepeatCols(int colFirst, int colLast) = 0;
    /* Limits printing to a block (a built-in name of the sheet).
     * Fails with: "too many external sheet references".
     *     sheet->setPrintArea(0, 49, 0, 5);
     *     sheet->clearPrintArea(); */
    virtual void setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) = 0;
    /* Removes the repeated rows and columns.
     * Fails with: none.
     *     sheet->setPrintRepeatRows(0, 0);
     *     sheet->clearPrintRepeats(); */
    virtual void clearPrintRepeats() = 0;
    /* Removes the print area: the whole used range prints again.
     * Fails with: none.
     *     sheet->setPrintArea(0, 9, 0, 3);
     *     sheet->clearPrintArea(); */
    virtual void clearPrintArea() = 0;
    /* The block of a name in this sheet's scope, through the pointers (each may be null).
     * Fails with: "named range is not found", also for a name that refers to something other than
     * one cell or block. XML books: "warning: some parts were skipped" for a name of several
     * blocks (a warning: the first block comes back).
     *     int r1, r2, c1, c2;
     *     if (sheet->getNamedRange("Prices", &r1, &r2, &c1, &c2)) printf("%d..%d\n", r1, r2); */
    virtual bool getNamedRange(const T* name, int* rowFirst, int* rowLast, int* colFirst, int* colLast) = 0;
    /* Defines a name for a block of this sheet, in the sheet's own scope, or moves an existing
     * one. Readers' formulas can use it; writeFormula doesn't compile names in this version.
     * Fails with: "space symbol isn't allowed", "incorrect name" for an empty name or one longer
     * than 255 characters, "too many external sheet references".
     *     sheet->setNamedRange("Prices", 1, 10, 2, 2);  // C2:C11
     *     sheet->setNamedRange("Prices", 1, 20, 2, 2);  // moved to C2:C21 */
    virtual bool setNamedRange(const T* name, int rowFirst, int rowLast, int colFirst, int colLast) = 0;
    /* Removes a name in this sheet's scope.
     * Fails with: "named range is not found". XML books: "named range not found".
     *     if (!sheet->delNamedRange("Prices"))
     *         puts(book->errorMessage()); */
    virtual bool delNamedRange(const T* name) = 0;
    /* Number of names whose cell or block lies on this sheet.
     * Fails with: none.
     *     for (int i = 0; i < sheet->namedRangeSize(); ++i)
     *         puts(sheet->namedRange(i, nullptr, nullptr, nullptr, nullptr)); */
    virtual int namedRangeSize() const = 0;
    /* The index-th name whose cell or block lies on this sheet, with its block through the
     * pointers (each may be null); the text is in the sheet's text buffer.
     * Fails with: "index is out of range".
     *     int r1, r2, c1, c2;
     *     const char* name = sheet->namedRange(0, &r1, &r2, &c1, &c2); */
    virtual const T* namedRange(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) = 0;
    /* Name of the sheet, in the sheet's text buffer.
     * Fails with: none.
     *     sheet->setName("Summary");
     *     const char* name = sheet->name();  // "Summary" */
    virtual const T* name() const = 0;
    /* Renames the sheet. Names longer than 31 characters are cut, and the message then reads as
     * a warning. Other sheets' names are not compared.
     * Fails with: "sheet name mustn't be NULL", "warning: sheet's name is cut to 31 characters"
     * (the name is set).
     *     sheet->setName("2026 Q4");
     *     puts(book->errorMessage());  // "ok" */
    virtual void setName(const T* name) = 0;
    /* Whether the sheet is protected against editing.
     * Fails with: none.
     *     sheet->setProtect(true);
     *     bool locked = sheet->protect();  // true */
    virtual bool protect() const = 0;
    /* Protects the sheet (no password): locked cells can't be edited, hidden formulas don't show.
     * Fails with: none.
     *     fmt->setLocked(false);
     *     sheet->setProtect(); */
    virtual void setProtect(bool protect = true) = 0;
    /* Visibility of the sheet tab (SheetState).
     * Fails with: none.
     *     if (sheet->hidden() == SheetVisible)
     *         sheet->setHidden(SheetHidden); */
    virtual SheetState hidden() const = 0;
    /* Shows or hides the sheet; a very hidden sheet can be shown again only by a program.
     * Fails with: "a workbook must contain at least one visible worksheet" when the last visible
     * sheet would be hidden, "book not found". XML books: "hidden is out of range".
     *     ISheetA* lookup = book->addSheet("Lookup");
     *     lookup->setHidden(SheetVeryHidden); */
    virtual bool setHidden(SheetState state = SheetHidden) = 0;
    /* The first visible cell of the sheet's window (the scroll position).
     * Fails with: none.
     *     int row, col;
     *     sheet->getTopLeftView(&row, &col); */
    virtual void getTopLeftView(int* row, int* col) const = 0;
    /* Scrolls the sheet's window so that the cell is the first visible one.
     * Fails with: none.
     *     sheet->setTopLeftView(100, 0);
     *     book->setActiveSheet(0); */
    virtual void setTopLeftView(int row, int col) = 0;
    /* Parses an A1 address ("B3", "$B$3", "b3"), with whether its row and column are relative
     * (no "$"). The relative pointers may be null. The text is not checked: a part that is
     * missing reads as -1.
     * Fails with: "address mustn't be NULL".
     *     int row, col;
     *     sheet->addrToRowCol("$B3", &row, &col);  // 2, 1 */
    virtual void addrToRowCol(const T* addr, int* row, int* col, bool* rowRelative = 0,
                              bool* colRelative = 0) = 0;
    /* Makes an A1 address, with "$" before an absolute row or column, in the sheet's text buffer.
     * Fails with: "row must be in range 0-1048575", "col must be in range 0-16383".
     *     puts(sheet->rowColToAddr(0, 26));  // AA1
     *     puts(sheet->rowColToAddr(4, 1, false, false));  // $B$5 */
    virtual const T* rowColToAddr(int row, int col, bool rowRelative = true, bool colRelative = true) = 0;
    virtual ~ISheetT() {}
};

/* A workbook. Made by a factory, ended by release(); owns its sheets, formats, fonts and
 * pictures. One thread at a time may use a book and everything it owns. */
template <class T>
class IBookT {
public:
    /* Discards the book's content and reads the whole file; on failure the book is a new empty
     * book. Text of 8-bit names follows setLocale.
     * Fails with: "can't open file for reading", "This file format isn't supported", "workbook
     * is encrypted", "read error: the stream ends inside a record", and messages naming the
     * damaged structure of a broken file. XML books: the ZIP layer's text for a file it can't
     * open or read, as "No such file or directory.".
     *     if (!book->load("in.xls"))
     *         printf("can't load: %s\n", book->errorMessage()); */
    virtual bool load(const T* filename) = 0;
    /* Writes the whole book to the file, replacing it; can be repeated.
     * Fails with: "can't open file for writing", "stream error, perhaps it's too small writing
     * buffer". XML books: "min/max occurs error on marshaling" for a book without sheets.
     *     if (!book->save("out.xls"))
     *         printf("can't save: %s\n", book->errorMessage()); */
    virtual bool save(const T* filename) = 0;
    /* As load, from a memory block that the caller keeps. After a failure the book may hold part
     * of the block; the next load or loadRaw starts clean.
     * Fails with: the messages of load, except those of opening a file.
     *     const char* data; unsigned size;
     *     if (other->saveRaw(&data, &size)) book->loadRaw(data, size); */
    virtual bool loadRaw(const char* data, unsigned size) = 0;
    /* Writes the book to a block owned by the book, valid until the next saveRaw or release.
     * Fails with: "stream error, perhaps it's too small writing buffer". XML books: "min/max
     * occurs error on marshaling" for a book without sheets.
     *     const char* data; unsigned size;
     *     if (book->saveRaw(&data, &size)) fwrite(data, 1, size, stdout); */
    virtual bool saveRaw(const char** data, unsigned* size) = 0;
    /* Adds a sheet at the end: empty, or a copy of initSheet (a sheet of this book). Names are
     * unique without regard to case and at most 31 characters long; a longer one is cut.
     * Fails with: "sheet name mustn't be NULL", "book already contains such sheet name",
     * "specified sheet not found", "warning: sheet's name is cut to 31 characters" (the sheet is
     * made).
     *     ISheetA* data = book->addSheet("Data");
     *     ISheetA* copy = book->addSheet("Data (2)", data); */
    virtual ISheetT<T>* addSheet(const T* name, ISheetT<T>* initSheet = 0) = 0;
    /* Adds a sheet at position index, 0 to sheetCount(), as addSheet does at the end.
     * Fails with: "index is out of range", and the messages of addSheet.
     *     ISheetA* first = book->insertSheet(0, "Summary");
     *     book->setActiveSheet(0); */
    virtual ISheetT<T>* insertSheet(int index, const T* name, ISheetT<T>* initSheet = 0) = 0;
    /* The sheet at index, 0 to sheetCount() - 1.
     * Fails with: "index is out of range". XML books: "sheet not found".
     *     for (int i = 0; i < book->sheetCount(); ++i)
     *         puts(book->getSheet(i)->name()); */
    virtual ISheetT<T>* getSheet(int index) const = 0;
    /* Kind of the sheet at index (SheetType): a worksheet, a chart sheet or another substream
     * that is kept as it is; 2 (SheetTypeOther) on failure.
     * Fails with: "index is out of range". XML books: "sheet not found".
     *     if (book->sheetType(1) == SheetTypeChart)
     *         puts("a chart sheet"); */
    virtual int sheetType(int index) const = 0;
    /* Removes the sheet at index; its pointer is no longer valid.
     * Fails with: "index is out of range", "can't remove the last sheet in workbook".
     *     if (book->sheetCount() > 1)
     *         book->delSheet(0); */
    virtual bool delSheet(int index) = 0;
    /* Number of sheets, chart sheets and other substreams included.
     * Fails with: none.
     *     int count = book->sheetCount();
     *     ISheetA* last = book->getSheet(count - 1); */
    virtual int sheetCount() const = 0;
    /* A new format: the defaults, or a copy of initFormat (of this book or another) with a copy of
     * its font.
     * Fails with: "string is too long" when the copied font's name can't be taken.
     *     IFormatA* money = book->addFormat();
     *     IFormatA* boldMoney = book->addFormat(money); */
    virtual IFormatT<T>* addFormat(IFormatT<T>* initFormat = 0) = 0;
    /* A new font: the defaults, or a copy of initFont.
     * Fails with: "string is too long" when the copied name can't be taken.
     *     IFontA* title = book->addFont();
     *     title->setSize(16); */
    virtual IFontT<T>* addFont(IFontT<T>* initFont = 0) = 0;
    /* The id (164 and up) of a custom number format text such as "0.00%" or "yyyy-mm-dd"; the
     * same text gives the same id. 0 on failure.
     * Fails with: "maximum number of custom formats is exceeded" when the ids up to 392 are taken.
     *     int euro = book->addCustomNumFormat("#,##0.00 \"EUR\"");
     *     fmt->setNumFormat(euro); */
    virtual int addCustomNumFormat(const T* customNumFormat) = 0;
    /* Text of a custom number format id, in the book's text buffer.
     * Fails with: "custom number format not found", also for the built-in ids below 164. XML
     * books: null with "ok".
     *     const char* text = book->customNumFormat(fmt->numFormat());
     *     if (text) puts(text); */
    virtual const T* customNumFormat(int fmt) = 0;
    /* The format at index, 0 to formatSize() - 1; cells of a loaded file point at these.
     * Fails with: "index is out of range".
     *     IFormatA* standard = book->format(15);
     *     sheet->writeNum(0, 0, 1, standard); */
    virtual IFormatT<T>* format(int index) = 0;
    /* Number of formats; a new binary book has 21 built-in ones.
     * Fails with: none.
     *     for (int i = 0; i < book->formatSize(); ++i)
     *         printf("%d\n", book->format(i)->numFormat()); */
    virtual int formatSize() = 0;
    /* The font at index, 0 to fontSize() - 1; font 0 is the default font.
     * Fails with: "index is out of range".
     *     IFontA* standard = book->font(0);
     *     printf("%d points\n", standard->size()); */
    virtual IFontT<T>* font(int index) = 0;
    /* Number of fonts; a new binary book has 5 built-in ones.
     * Fails with: none.
     *     for (int i = 0; i < book->fontSize(); ++i)
     *         puts(book->font(i)->name()); */
    virtual int fontSize() = 0;
    /* The date number of a date and time: days since the book's epoch (1900, or 1904 with
     * setDate1904) plus the time as a fraction of a day. Write it with a date format.
     * Fails with: none.
     *     double when = book->datePack(2026, 11, 23, 14, 30);
     *     fmt->setNumFormat(NumFormatCustomMDYYYY_HMM); sheet->writeNum(0, 0, when, fmt); */
    virtual double datePack(int year, int month, int day, int hour = 0, int min = 0, int sec = 0,
                            int msec = 0) = 0;
    /* Splits a date number into its parts; the last four pointers may be null. False, with the
     * message left as it was, for numbers outside the calendar.
     * Fails with: none.
     *     int y, m, d;
     *     if (book->dateUnpack(sheet->readNum(1, 0), &y, &m, &d)) printf("%d-%02d-%02d\n", y, m, d); */
    virtual bool dateUnpack(double value, int* year, int* month, int* day, int* hour = 0, int* min = 0,
                            int* sec = 0, int* msec = 0) = 0;
    /* A colour for red, green and blue (0 to 255). Binary family: the palette index of that
     * colour; when no entry matches exactly, the first entry that colorPack hasn't handed out yet
     * (from index 8 up) is changed to it, so a named colour such as ColorBlack may then show the
     * new colour. ColorAutomatic on failure. XML books: the RGB value (red << 16 | green << 8 |
     * blue) in either mode; formats and fonts read it as that colour only after setRgbMode(true).
     * Fails with: "no free color index, limit is reached for xls format".
     *     Color brand = book->colorPack(0, 97, 168);
     *     font->setColor(brand); */
    virtual Color colorPack(int red, int green, int blue) = 0;
    /* Red, green and blue (0 to 255) of a colour in the book's coding; each pointer may be null.
     * Fails with: none. XML books split the value as RGB in either mode, so ColorTeal (21) gives
     * 0, 0, 21 there.
     *     int r, g, b;
     *     book->colorUnpack(ColorTeal, &r, &g, &b);  // 0, 128, 128 */
    virtual void colorUnpack(Color color, int* red, int* green, int* blue) = 0;
    /* Index of the sheet whose tab is active when the file opens.
     * Fails with: none.
     *     ISheetA* current = book->getSheet(book->activeSheet());
     *     puts(current->name()); */
    virtual int activeSheet() const = 0;
    /* Makes the sheet at index active and the only selected one.
     * Fails with: "index is out of range".
     *     book->setActiveSheet(book->sheetCount() - 1);
     *     book->save("out.xls"); */
    virtual void setActiveSheet(int index) = 0;
    /* Number of pictures in the book's store, those of a loaded file included.
     * Fails with: none.
     *     for (int i = 0; i < book->pictureSize(); ++i)
     *         printf("%d\n", book->getPicture(i, nullptr, nullptr)); */
    virtual int pictureSize() const = 0;
    /* Type (PictureType) and bytes of a picture of the store; the block stays the book's. 255
     * (PictureError) on failure.
     * Fails with: "index is out of range".
     *     const char* data; unsigned size;
     *     if (book->getPicture(0, &data, &size) == PicturePng) fwrite(data, 1, size, stdout); */
    virtual int getPicture(int index, const char** data, unsigned* size) const = 0;
    /* Adds a picture file to the store and returns its id for ISheetT::setPicture; -1 on
     * failure. The type comes from the name's ending: .png, .jpg, .wmf, .emf, .bmp, .dib.
     * Fails with: "unknown picture format", "can't open file", "invalid jpg file", "picture is
     * too big".
     *     int logo = book->addPicture("logo.png");
     *     if (logo < 0) puts(book->errorMessage()); */
    virtual int addPicture(const T* filename) = 0;
    /* As addPicture, from a memory block, which is copied; the type comes from its first bytes.
     * Fails with: "unknown picture format", "invalid jpg file", "picture is too big".
     *     const char* data; unsigned size;
     *     if (other->getPicture(0, &data, &size) != PictureError) book->addPicture2(data, size); */
    virtual int addPicture2(const char* data, unsigned size) = 0;
    /* Name of the default font (font 0), in the font's text buffer; its size in points goes to
     * *size when size is not null.
     * Fails with: "fonts is empty".
     *     int points;
     *     const char* family = book->defaultFont(&points); */
    virtual const T* defaultFont(int* size) = 0;
    /* Sets the name and size in points of the default font (font 0), which cells without a font
     * of their own show in.
     * Fails with: "fonts is empty", "string is too long".
     *     book->setDefaultFont("Liberation Sans", 11);
     *     puts(book->errorMessage()); */
    virtual void setDefaultFont(const T* name, int size) = 0;
    /* Whether formula text is read and written in R1C1 notation.
     * Fails with: none.
     *     book->setRefR1C1(true);
     *     bool r1c1 = book->refR1C1();  // true */
    virtual bool refR1C1() const = 0;
    /* Chooses R1C1 (true) or A1 notation for formula text, for all sheets and those still to come.
     * Fails with: none.
     *     book->setRefR1C1();
     *     sheet->writeFormula(2, 0, "R[-2]C+R[-1]C"); */
    virtual void setRefR1C1(bool refR1C1 = true) = 0;
    /* Whether colours are RGB values (true) or palette indexes.
     * Fails with: none.
     *     if (book->rgbMode())
     *         puts("RGB colours"); */
    virtual bool rgbMode() = 0;
    /* Sets the colour coding. Only XML books use RGB values; binary books keep palette indexes.
     * Fails with: none.
     *     book->setRgbMode(false);
     *     font->setColor(ColorRed); */
    virtual void setRgbMode(bool rgbMode = true) = 0;
    /* The library's version, 0x03050300.
     * Fails with: none.
     *     int v = book->version();
     *     printf("%x\n", v); */
    virtual int version() const = 0;
    /* The record format version of a binary book: 1536 (BIFF8) for new books and .xls files,
     * 1280 (BIFF5) for the older files it reads. XML books: 0.
     * Fails with: none.
     *     if (book->biffVersion() == 1280)
     *         puts("a BIFF5 file"); */
    virtual int biffVersion() const = 0;
    /* Whether dates count from 1904 instead of 1900.
     * Fails with: none.
     *     if (book->isDate1904())
     *         puts("1904 date system"); */
    virtual bool isDate1904() const = 0;
    /* Chooses the 1904 (true) or the 1900 date system for datePack and dateUnpack; numbers already
     * in cells do not change.
     * Fails with: none.
     *     book->setDate1904();
     *     double day = book->datePack(1904, 1, 2);  // 1 */
    virtual void setDate1904(bool date1904 = true) = 0;
    /* Chooses how 8-bit text is converted: "UTF-8", or a C locale name ("" for the environment's,
     * the default), which then becomes the process's locale.
     * Fails with: "setlocale error" when the C library refuses the name.
     *     book->setLocale("UTF-8");
     *     sheet->writeStr(0, 0, "Grüße"); */
    virtual bool setLocale(const char* locale) = 0;
    /* The outcome of the last operation on the book or anything it owns: "ok", or what went
     * wrong; always 8-bit. Valid until the next operation.
     * Fails with: none.
     *     if (!sheet->writeNum(70000, 0, 1.0))
     *         puts(book->errorMessage());  // "row must be in range 0-65535" */
    virtual const char* errorMessage() const = 0;
    /* Destroys the book and everything it owns; no pointer it handed out stays valid.
     * Fails with: none.
     *     book->save("out.xls");
     *     book->release(); */
    virtual void release() = 0;
    virtual ~IBookT() {}
};

typedef IBookT<char> IBookA;
typedef IBookT<wchar_t> IBookW;
typedef ISheetT<char> ISheetA;
typedef ISheetT<wchar_t> ISheetW;
typedef IFormatT<char> IFormatA;
typedef IFormatT<wchar_t> IFormatW;
typedef IFontT<char> IFontA;
typedef IFontT<wchar_t> IFontW;

}  // namespace zelvar

#define ZELVAR_CPP_FACTORIES 1
extern "C" {
/* A new, empty binary (.xls) book with 8-bit text, or null if it could not be made; end it with
 * release(). It has no sheet until addSheet or load.
 * Fails with: none (there is no book to hold a message).
 *     IBookA* book = zvCreateBookA();
 *     if (book) book->release(); */
ZELVAR_API zelvar::IBookT<char>* zvCreateBookA(void);
/* As zvCreateBookA, with wide (wchar_t) text.
 * Fails with: none.
 *     IBookW* wide = zvCreateBookW();
 *     if (wide) wide->release(); */
ZELVAR_API zelvar::IBookT<wchar_t>* zvCreateBookW(void);
/* As zvCreateBookA, but an exception during construction passes through to the caller.
 * Fails with: none.
 *     IBookA* book = zvCreateBookCA();
 *     book->release(); */
ZELVAR_API zelvar::IBookT<char>* zvCreateBookCA(void);
/* As zvCreateBookW, but an exception during construction passes through to the caller.
 * Fails with: none.
 *     IBookW* wide = zvCreateBookCW();
 *     wide->release(); */
ZELVAR_API zelvar::IBookT<wchar_t>* zvCreateBookCW(void);
/* A new XML (.xlsx) book with the parts of a new package and the default stylesheet, to be
 * ended with release(). It is transitional until a strict file is loaded; load tries the other
 * dialect when the first fails. Null if it could not be made.
 * Fails with: none (there is no book to hold a message).
 *     IBookA* book = zvCreateXMLBookA();
 *     if (book) book->release(); */
ZELVAR_API zelvar::IBookT<char>* zvCreateXMLBookA(void);
/* As zvCreateXMLBookA, with wide (wchar_t) text.
 * Fails with: none.
 *     IBookW* wide = zvCreateXMLBookW();
 *     if (wide) wide->release(); */
ZELVAR_API zelvar::IBookT<wchar_t>* zvCreateXMLBookW(void);
/* As zvCreateXMLBookA, but an exception during construction passes through to the caller.
 * Fails with: none.
 *     IBookA* book = zvCreateXMLBookCA();
 *     book->release(); */
ZELVAR_API zelvar::IBookT<char>* zvCreateXMLBookCA(void);
/* As zvCreateXMLBookW, but an exception during construction passes through to the caller.
 * Fails with: none.
 *     IBookW* wide = zvCreateXMLBookCW();
 *     wide->release(); */
ZELVAR_API zelvar::IBookT<wchar_t>* zvCreateXMLBookCW(void);
}

#endif /* __cplusplus */
#endif /* ZELVAR_H */
