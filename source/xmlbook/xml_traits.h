// The two dialects of the XML workbook: a tag selects the schema classes, and nothing else.
// (The strict border names its sides start and end where the transitional one has left and right.)
#pragma once
#include "ooxml/sml-sharedStringTable.h"
#include "ooxml/sml-sheet.h"
#include "ooxml/sml-styles.h"
#include "ooxml/sml-workbook.h"
#include "ooxml/sml.h"

namespace zelvar {

struct excelNormal_tag {};
struct excelStrict_tag {};

template <class Tag>
struct excel_format_traits;

#define ZELVAR_XML_CLASSES(WB, SH, ST, SS, LEFT, RIGHT)           \
    typedef WB::c_workbook Workbook;                              \
    typedef WB::c_CT_Sheet Sheet;                                 \
    typedef WB::c_CT_DefinedName DefinedName;                     \
    typedef WB::c_CT_BookView BookView;                           \
    typedef SH::c_worksheet Worksheet;                            \
    typedef SH::c_CT_SheetData SheetData;                         \
    typedef SH::c_CT_Row Row;                                     \
    typedef SH::c_CT_Cell Cell;                                   \
    typedef SH::c_CT_CellFormula CellFormula;                     \
    typedef SH::c_CT_Rst InlineString;                            \
    typedef SH::c_CT_Cols Cols;                                   \
    typedef SH::c_CT_Col Col;                                     \
    typedef ST::c_styleSheet Stylesheet;                          \
    typedef ST::c_CT_Xf Xf;                                       \
    typedef ST::c_CT_Font Font;                                   \
    typedef ST::c_CT_Font_inner_CT_Font FontItem;                 \
    typedef ST::c_CT_Border Border;                               \
    typedef ST::c_CT_BorderPr BorderPr;                           \
    typedef ST::c_CT_Fill Fill;                                   \
    typedef ST::c_CT_PatternFill PatternFill;                     \
    typedef ST::c_CT_Color Color;                                 \
    typedef ST::c_CT_NumFmt NumFmt;                               \
    typedef ST::c_CT_CellStyle CellStyle;                         \
    typedef SS::c_sst Sst;                                        \
    typedef SS::c_CT_Rst StringItem;                              \
    static const BorderPr* leftOf(const Border& b) { return b.get_##LEFT(); }   \
    static BorderPr& leftOf(Border& b) { return b.get_##LEFT(); }               \
    static const BorderPr* rightOf(const Border& b) { return b.get_##RIGHT(); } \
    static BorderPr& rightOf(Border& b) { return b.get_##RIGHT(); }

template <>
struct excel_format_traits<excelNormal_tag> {
    ZELVAR_XML_CLASSES(workbook, sheet, styles, sharedStringTable, left, right)
};

template <>
struct excel_format_traits<excelStrict_tag> {
    ZELVAR_XML_CLASSES(strict, strict, strict, strict, start, end)
};

#undef ZELVAR_XML_CLASSES

}  // namespace zelvar
