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
 * exception ever leaves the library.
 *
 * Coordinates are zero-based. Ranges are given as first and last, both included; lastRow() and
 * lastCol() alone are one past the end. Text results (const T*) are owned by the object that
 * returned them and stay valid until its next text-returning operation.
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

/* A font of a book. Fonts are owned by the book and live until it is reloaded or released. */
template <class T>
class IFontT {
public:
    /* Size in points. The binary family stores twentieths of a point, capped at 8191.
     *     font->setSize(12); int s = font->size();  // 12 */
    virtual int size() const = 0;
    virtual void setSize(int size) = 0;
    virtual bool italic() const = 0;
    virtual void setItalic(bool italic = true) = 0;
    virtual bool strikeOut() const = 0;
    virtual void setStrikeOut(bool strikeOut = true) = 0;
    /* Colour in the book's coding (see Color). */
    virtual Color color() const = 0;
    virtual void setColor(Color color) = 0;
    virtual bool bold() const = 0;
    virtual void setBold(bool bold = true) = 0;
    virtual Script script() const = 0;
    virtual void setScript(Script script) = 0;
    virtual Underline underline() const = 0;
    virtual void setUnderline(Underline underline) = 0;
    /* Font family name. setName fails with "string is too long" at 256 characters or more.
     *     font->setName("Courier New"); const char* n = font->name(); */
    virtual const T* name() const = 0;
    virtual bool setName(const T* name) = 0;
    virtual ~IFontT() {}
};

/* A cell format (an XF of the binary family). Owned by the book. */
template <class T>
class IFormatT {
public:
    /* The format's font; setFont fails with "specified font not found" for a font of another book.
     *     IFontT<char>* f = book->addFont(nullptr); f->setBold(); fmt->setFont(f); */
    virtual IFontT<T>* font() const = 0;
    virtual bool setFont(IFontT<T>* font) = 0;
    /* Number-format id: a built-in id below 164 or one from IBookT::addCustomNumFormat.
     *     fmt->setNumFormat(book->addCustomNumFormat("0.000")); */
    virtual int numFormat() const = 0;
    virtual void setNumFormat(int numFormat) = 0;
    virtual AlignH alignH() const = 0;
    virtual void setAlignH(AlignH align) = 0;
    virtual AlignV alignV() const = 0;
    virtual void setAlignV(AlignV align) = 0;
    virtual bool wrap() const = 0;
    virtual void setWrap(bool wrap = true) = 0;
    /* Text rotation in degrees 0 to 180, or 255 for stacked text; else false with
     * "rotation must be in range 0-180 or 255".  fmt->setRotation(90); */
    virtual int rotation() const = 0;
    virtual bool setRotation(int rotation) = 0;
    /* Indent level, 0 to 15 in the binary family. */
    virtual int indent() const = 0;
    virtual void setIndent(int indent) = 0;
    virtual bool shrinkToFit() const = 0;
    virtual void setShrinkToFit(bool shrinkToFit = true) = 0;
    /* Style or colour of all four sides at once.  fmt->setBorder(BorderThin); */
    virtual void setBorder(BorderStyle style = BorderThin) = 0;
    virtual void setBorderColor(Color color) = 0;
    virtual BorderStyle borderLeft() const = 0;
    virtual void setBorderLeft(BorderStyle style = BorderThin) = 0;
    virtual BorderStyle borderRight() const = 0;
    virtual void setBorderRight(BorderStyle style = BorderThin) = 0;
    virtual BorderStyle borderTop() const = 0;
    virtual void setBorderTop(BorderStyle style = BorderThin) = 0;
    virtual BorderStyle borderBottom() const = 0;
    virtual void setBorderBottom(BorderStyle style = BorderThin) = 0;
    virtual Color borderLeftColor() const = 0;
    virtual void setBorderLeftColor(Color color) = 0;
    virtual Color borderRightColor() const = 0;
    virtual void setBorderRightColor(Color color) = 0;
    virtual Color borderTopColor() const = 0;
    virtual void setBorderTopColor(Color color) = 0;
    virtual Color borderBottomColor() const = 0;
    virtual void setBorderBottomColor(Color color) = 0;
    virtual BorderDiagonal borderDiagonal() const = 0;
    virtual void setBorderDiagonal(BorderDiagonal border) = 0;
    virtual BorderStyle borderDiagonalStyle() const = 0;
    virtual void setBorderDiagonalStyle(BorderStyle style) = 0;
    virtual Color borderDiagonalColor() const = 0;
    virtual void setBorderDiagonalColor(Color color) = 0;
    virtual FillPattern fillPattern() const = 0;
    virtual void setFillPattern(FillPattern pattern) = 0;
    virtual Color patternForegroundColor() const = 0;
    virtual void setPatternForegroundColor(Color color) = 0;
    virtual Color patternBackgroundColor() const = 0;
    virtual void setPatternBackgroundColor(Color color) = 0;
    virtual bool locked() const = 0;
    virtual void setLocked(bool locked = true) = 0;
    virtual bool hidden() const = 0;
    virtual void setHidden(bool hidden = true) = 0;
    virtual ~IFormatT() {}
};

/* A sheet of a book. Owned by the book; valid until delSheet of this sheet, load or release. */
template <class T>
class ISheetT {
public:
    /* The kind of the cell (CellType); 0 for an absent cell.
     *     if (sheet->cellType(2, 1) == zelvar::CellNumber) ... */
    virtual int cellType(int row, int col) const = 0;
    /* Whether the cell holds a formula. */
    virtual bool isFormula(int row, int col) const = 0;
    /* Format of the cell; for an absent cell that of the row, then of the column, then format 0. */
    virtual IFormatT<T>* cellFormat(int row, int col) const = 0;
    /* Changes the format, creating a blank cell if there is none; fails with
     * "specified format is not found" for a null or foreign format. */
    virtual void setCellFormat(int row, int col, IFormatT<T>* format) = 0;
    /* Text of a text cell, or null with "this cell doesn't contain a string". format, when given,
     * receives the cell's format.  const char* s = sheet->readStr(0, 0, nullptr); */
    virtual const T* readStr(int row, int col, IFormatT<T>** format = 0) = 0;
    /* Writes text; fails with "string is too long" at 32768 characters, with a range message
     * outside the grid, with "specified format not found" for a foreign format.
     *     sheet->writeStr(0, 0, "Name", boldFormat); */
    virtual bool writeStr(int row, int col, const T* value, IFormatT<T>* format = 0) = 0;
    /* Number of a number cell; 0 and "this cell doesn't contain a number" otherwise. */
    virtual double readNum(int row, int col, IFormatT<T>** format = 0) const = 0;
    /* Writes a number.  sheet->writeNum(1, 0, 3.25, nullptr); */
    virtual bool writeNum(int row, int col, double value, IFormatT<T>* format = 0) = 0;
    /* Boolean of a boolean cell; false and "this cell doesn't contain a bool" otherwise. */
    virtual bool readBool(int row, int col, IFormatT<T>** format = 0) const = 0;
    virtual bool writeBool(int row, int col, bool value, IFormatT<T>* format = 0) = 0;
    /* True and the format of a blank cell. format must not be null ("format mustn't be NULL");
     * "this cell doesn't contain a blank" for another kind. */
    virtual bool readBlank(int row, int col, IFormatT<T>** format) const = 0;
    /* A cell with a format and no value.  sheet->writeBlank(4, 4, borderFormat); */
    virtual bool writeBlank(int row, int col, IFormatT<T>* format) = 0;
    /* Formula text without the leading "="; null and "cell doesn't contain a formula". */
    virtual const T* readFormula(int row, int col, IFormatT<T>** format = 0) = 0;
    /* Compiles and stores a formula (no leading "=").  sheet->writeFormula(5, 0, "SUM(A1:A5)", 0); */
    virtual bool writeFormula(int row, int col, const T* value, IFormatT<T>* format = 0) = 0;
    /* Comment text of the cell, or null. */
    virtual const T* readComment(int row, int col) const = 0;
    /* Attaches a comment with its author and box size in pixels. */
    virtual void writeComment(int row, int col, const T* value, const T* author = 0, int width = 129,
                              int height = 75) = 0;
    /* A number cell whose format is a date format. */
    virtual bool isDate(int row, int col) const = 0;
    /* An ErrorType: the error of an error cell, 255 for any other cell. */
    virtual int readError(int row, int col) const = 0;
    /* Column width in characters; row height in points. */
    virtual double colWidth(int col) const = 0;
    virtual double rowHeight(int row) const = 0;
    /* Width, format and hidden state of a column range.  sheet->setCol(0, 3, 20, 0, false); */
    virtual bool setCol(int colFirst, int colLast, double width, IFormatT<T>* format = 0,
                        bool hidden = false) = 0;
    /* Height, format and hidden state of a row.  sheet->setRow(0, 30, headerFormat, false); */
    virtual bool setRow(int row, double height, IFormatT<T>* format = 0, bool hidden = false) = 0;
    virtual bool rowHidden(int row) const = 0;
    virtual bool setRowHidden(int row, bool hidden) = 0;
    virtual bool colHidden(int col) const = 0;
    virtual bool setColHidden(int col, bool hidden) = 0;
    /* The merge block that holds the cell; "this cell isn't in merging block". */
    virtual bool getMerge(int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast) = 0;
    /* Merges a block.  sheet->setMerge(0, 0, 0, 3); */
    virtual bool setMerge(int rowFirst, int rowLast, int colFirst, int colLast) = 0;
    /* Removes the merge block that holds the cell. */
    virtual bool delMerge(int row, int col) = 0;
    /* Pictures anchored on this sheet: count, and id and place of the n-th (-1 on failure). */
    virtual int pictureSize() const = 0;
    virtual int getPicture(int index, int* rowTop = 0, int* colLeft = 0, int* rowBottom = 0,
                           int* colRight = 0, int* width = 0, int* height = 0, int* offsetX = 0,
                           int* offsetY = 0) const = 0;
    /* Anchors a picture of the book's store at its natural size times scale. */
    virtual void setPicture(int row, int col, int pictureId, double scale = 1.0, int offsetX = 0,
                            int offsetY = 0) = 0;
    /* Anchors a picture at a size in pixels. */
    virtual void setPicture2(int row, int col, int pictureId, int width = -1, int height = -1,
                             int offsetX = 0, int offsetY = 0) = 0;
    /* Page breaks: the n-th horizontal (row) or vertical (column) break and their counts. */
    virtual int getHorPageBreak(int index) const = 0;
    virtual int getHorPageBreakSize() const = 0;
    virtual int getVerPageBreak(int index) const = 0;
    virtual int getVerPageBreakSize() const = 0;
    /* Adds (true) or removes (false) a break. */
    virtual bool setHorPageBreak(int row, bool pageBreak = true) = 0;
    virtual bool setVerPageBreak(int col, bool pageBreak = true) = 0;
    /* Freezes panes at the cell.  sheet->split(1, 0);  // header row stays */
    virtual void split(int row, int col) = 0;
    /* Outline groups of rows or columns. */
    virtual bool groupRows(int rowFirst, int rowLast, bool collapsed = true) = 0;
    virtual bool groupCols(int colFirst, int colLast, bool collapsed = true) = 0;
    virtual bool groupSummaryBelow() const = 0;
    virtual void setGroupSummaryBelow(bool below) = 0;
    virtual bool groupSummaryRight() const = 0;
    virtual void setGroupSummaryRight(bool right) = 0;
    /* Empties a block of cells. */
    virtual bool clear(int rowFirst = 0, int rowLast = 1048575, int colFirst = 0, int colLast = 16383) = 0;
    /* Inserts columns or rows before the first given, or removes a range of them. */
    virtual bool insertCol(int colFirst, int colLast) = 0;
    virtual bool insertRow(int rowFirst, int rowLast) = 0;
    virtual bool removeCol(int colFirst, int colLast) = 0;
    virtual bool removeRow(int rowFirst, int rowLast) = 0;
    /* Copies one cell with its format. */
    virtual bool copyCell(int rowSrc, int colSrc, int rowDst, int colDst) = 0;
    /* The used range: first row and column, and one past the last; -1 on failure.
     *     for (int r = sheet->firstRow(); r < sheet->lastRow(); ++r) ... */
    virtual int firstRow() const = 0;
    virtual int lastRow() const = 0;
    virtual int firstCol() const = 0;
    virtual int lastCol() const = 0;
    virtual bool displayGridlines() const = 0;
    virtual void setDisplayGridlines(bool show = true) = 0;
    virtual bool printGridlines() const = 0;
    virtual void setPrintGridlines(bool print = true) = 0;
    /* Screen zoom in percent. */
    virtual int zoom() const = 0;
    virtual void setZoom(int zoom) = 0;
    /* Print scale in percent; setPrintZoom also ends fit-to-pages mode. */
    virtual int printZoom() const = 0;
    virtual void setPrintZoom(int zoom) = 0;
    /* Whether fit-to-pages mode is on, with its page counts (pointers may be null). */
    virtual bool getPrintFit(int* wPages, int* hPages) const = 0;
    virtual void setPrintFit(int wPages = 1, int hPages = 1) = 0;
    virtual bool landscape() const = 0;
    virtual void setLandscape(bool landscape = true) = 0;
    virtual Paper paper() const = 0;
    virtual void setPaper(Paper paper = PaperDefault) = 0;
    /* Header and footer texts with their margins in inches. */
    virtual const T* header() const = 0;
    virtual bool setHeader(const T* header, double margin = 0.5) = 0;
    virtual double headerMargin() const = 0;
    virtual const T* footer() const = 0;
    virtual bool setFooter(const T* footer, double margin = 0.5) = 0;
    virtual double footerMargin() const = 0;
    virtual bool hCenter() const = 0;
    virtual void setHCenter(bool hCenter = true) = 0;
    virtual bool vCenter() const = 0;
    virtual void setVCenter(bool vCenter = true) = 0;
    /* Page margins in inches. */
    virtual double marginLeft() const = 0;
    virtual void setMarginLeft(double margin) = 0;
    virtual double marginRight() const = 0;
    virtual void setMarginRight(double margin) = 0;
    virtual double marginTop() const = 0;
    virtual void setMarginTop(double margin) = 0;
    virtual double marginBottom() const = 0;
    virtual void setMarginBottom(double margin) = 0;
    /* Whether row and column headings are printed. */
    virtual bool printRowCol() const = 0;
    virtual void setPrintRowCol(bool print = true) = 0;
    /* Print titles and print area. */
    virtual void setPrintRepeatRows(int rowFirst, int rowLast) = 0;
    virtual void setPrintRepeatCols(int colFirst, int colLast) = 0;
    virtual void setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) = 0;
    virtual void clearPrintRepeats() = 0;
    virtual void clearPrintArea() = 0;
    /* Defined names that belong to this sheet; "named range is not found". */
    virtual bool getNamedRange(const T* name, int* rowFirst, int* rowLast, int* colFirst, int* colLast) = 0;
    virtual bool setNamedRange(const T* name, int rowFirst, int rowLast, int colFirst, int colLast) = 0;
    virtual bool delNamedRange(const T* name) = 0;
    virtual int namedRangeSize() const = 0;
    virtual const T* namedRange(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) = 0;
    /* Sheet name; names longer than 31 characters are cut with a warning message. */
    virtual const T* name() const = 0;
    virtual void setName(const T* name) = 0;
    virtual bool protect() const = 0;
    virtual void setProtect(bool protect = true) = 0;
    /* Visibility; hiding the last visible sheet fails with
     * "a workbook must contain at least one visible worksheet". */
    virtual SheetState hidden() const = 0;
    virtual bool setHidden(SheetState state = SheetHidden) = 0;
    /* First visible cell of the window. */
    virtual void getTopLeftView(int* row, int* col) const = 0;
    virtual void setTopLeftView(int row, int col) = 0;
    /* A1 addresses.  int r, c; sheet->addrToRowCol("$B$3", &r, &c, 0, 0);  // 2, 1 */
    virtual void addrToRowCol(const T* addr, int* row, int* col, bool* rowRelative = 0,
                              bool* colRelative = 0) = 0;
    /*     const char* a = sheet->rowColToAddr(0, 26, true, true);  // "AA1" */
    virtual const T* rowColToAddr(int row, int col, bool rowRelative = true, bool colRelative = true) = 0;
    virtual ~ISheetT() {}
};

/* A workbook. Created by a factory, ended by release(). */
template <class T>
class IBookT {
public:
    /* Discards the content and reads the file; on failure the book is a new empty book.
     *     if (!book->load("in.xls")) puts(book->errorMessage()); */
    virtual bool load(const T* filename) = 0;
    /* Writes the book; "can't open file for writing" when the file can't be created.
     *     book->save("out.xls"); */
    virtual bool save(const T* filename) = 0;
    /* As load, from a memory block that the caller keeps. */
    virtual bool loadRaw(const char* data, unsigned size) = 0;
    /* Writes the book to a block owned by the book, valid until the next saveRaw or release. */
    virtual bool saveRaw(const char** data, unsigned* size) = 0;
    /* A new sheet at the end, a copy of initSheet (a sheet of this book) when given.
     *     ISheetT<char>* s = book->addSheet("Data", nullptr); */
    virtual ISheetT<T>* addSheet(const T* name, ISheetT<T>* initSheet = 0) = 0;
    /* A new sheet at position index, 0 to sheetCount(). */
    virtual ISheetT<T>* insertSheet(int index, const T* name, ISheetT<T>* initSheet = 0) = 0;
    /* The sheet at index; null and "index is out of range" outside 0 to sheetCount() - 1. */
    virtual ISheetT<T>* getSheet(int index) const = 0;
    /* A SheetType; 2 with "index is out of range" for a bad index. */
    virtual int sheetType(int index) const = 0;
    /* Removes a sheet; "can't remove the last sheet in workbook" when one is left. */
    virtual bool delSheet(int index) = 0;
    /* Number of sheets, chart sheets and other substreams included. */
    virtual int sheetCount() const = 0;
    /* A new format, a copy of initFormat (of any book) when given.
     *     IFormatT<char>* f = book->addFormat(nullptr); f->setWrap(); */
    virtual IFormatT<T>* addFormat(IFormatT<T>* initFormat = 0) = 0;
    /* A new font, a copy of initFont when given. */
    virtual IFontT<T>* addFont(IFontT<T>* initFont = 0) = 0;
    /* Id of a custom number format text; the same text gives the same id. 0 with
     * "maximum number of custom formats is exceeded" when the ids are used up.
     *     int id = book->addCustomNumFormat("#,##0.00 \"EUR\""); */
    virtual int addCustomNumFormat(const T* customNumFormat) = 0;
    /* Text of a custom id; null and "custom number format not found". */
    virtual const T* customNumFormat(int fmt) = 0;
    /* The format at index; null and "index is out of range". */
    virtual IFormatT<T>* format(int index) = 0;
    virtual int formatSize() = 0;
    /* The font at index; null and "index is out of range". */
    virtual IFontT<T>* font(int index) = 0;
    virtual int fontSize() = 0;
    /* Date number of a date and time (1900 or 1904 based).
     *     double d = book->datePack(2024, 2, 29, 12, 0, 0, 0); */
    virtual double datePack(int year, int month, int day, int hour = 0, int min = 0, int sec = 0,
                            int msec = 0) = 0;
    /* Inverse of datePack; false for values outside the calendar. The last four may be null. */
    virtual bool dateUnpack(double value, int* year, int* month, int* day, int* hour = 0, int* min = 0,
                            int* sec = 0, int* msec = 0) = 0;
    /* Binary family: finds or allocates a palette index for the colour; fails with
     * "no free color index, limit is reached for xls format" when 56 colours are taken. */
    virtual Color colorPack(int red, int green, int blue) = 0;
    virtual void colorUnpack(Color color, int* red, int* green, int* blue) = 0;
    /* The active sheet tab; setActiveSheet also makes it the only selected one. */
    virtual int activeSheet() const = 0;
    virtual void setActiveSheet(int index) = 0;
    /* Pictures of the book's store: count, and the bytes of one (owned by the book). */
    virtual int pictureSize() const = 0;
    virtual int getPicture(int index, const char** data, unsigned* size) const = 0;
    /* Adds a picture file or block (copied) to the store; its id, or -1. */
    virtual int addPicture(const T* filename) = 0;
    virtual int addPicture2(const char* data, unsigned size) = 0;
    /* Name and size of font 0; "fonts is empty" when there is none. */
    virtual const T* defaultFont(int* size) = 0;
    virtual void setDefaultFont(const T* name, int size) = 0;
    /* Whether formula text is in R1C1 notation, for all sheets. */
    virtual bool refR1C1() const = 0;
    virtual void setRefR1C1(bool refR1C1 = true) = 0;
    /* Colour coding: index (false, default) or RGB (true, XML family only). */
    virtual bool rgbMode() = 0;
    virtual void setRgbMode(bool rgbMode = true) = 0;
    /* 0x03050300. */
    virtual int version() const = 0;
    /* 1536 (BIFF8) or 1280 (BIFF5, read only) in the binary family; 0 in the XML family. */
    virtual int biffVersion() const = 0;
    virtual bool isDate1904() const = 0;
    virtual void setDate1904(bool date1904 = true) = 0;
    /* Conversion between 8-bit and wide text: "UTF-8", or a C locale name ("" for the
     * environment's); "setlocale error" when the C library refuses it.
     *     book->setLocale("UTF-8"); */
    virtual bool setLocale(const char* locale) = 0;
    /* The last outcome: "ok" or a sentence; always 8-bit. */
    virtual const char* errorMessage() const = 0;
    /* Destroys the book and everything it owns. */
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
/* A new binary (.xls) book, or null if it could not be made.
 *     zelvar::IBookT<char>* book = zvCreateBookA();
 *     ... book->release(); */
ZELVAR_API zelvar::IBookT<char>* zvCreateBookA(void);
ZELVAR_API zelvar::IBookT<wchar_t>* zvCreateBookW(void);
/* As zvCreateBookA / W, but an exception during construction passes through to the caller. */
ZELVAR_API zelvar::IBookT<char>* zvCreateBookCA(void);
ZELVAR_API zelvar::IBookT<wchar_t>* zvCreateBookCW(void);
/* A new XML (.xlsx) book, transitional until a strict file is loaded; null if it could not be made.
 *     zelvar::IBookT<char>* book = zvCreateXMLBookA();
 *     ... book->release(); */
ZELVAR_API zelvar::IBookT<char>* zvCreateXMLBookA(void);
ZELVAR_API zelvar::IBookT<wchar_t>* zvCreateXMLBookW(void);
/* As zvCreateXMLBookA / W, but an exception during construction passes through to the caller. */
ZELVAR_API zelvar::IBookT<char>* zvCreateXMLBookCA(void);
ZELVAR_API zelvar::IBookT<wchar_t>* zvCreateXMLBookCW(void);
}

#endif /* __cplusplus */
#endif /* ZELVAR_H */
