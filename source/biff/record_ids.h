// The record ids of the binary workbook stream by their published names: the readers' dispatch,
// the writers and the tests all name a record through this one table, so an id is written down
// once. Ids the library meets but does not interpret need no entry: they travel as raw records.
#pragma once
#include <cstddef>
#include <cstdint>

namespace zelvar {

// name, id
#define ZELVAR_RECORD_IDS(X)               \
    X(Formula, 0x0006)                     \
    X(Eof, 0x000A)                         \
    X(CalcCount, 0x000C)                   \
    X(CalcMode, 0x000D)                    \
    X(CalcPrecision, 0x000E)               \
    X(CalcRefMode, 0x000F)                 \
    X(CalcDelta, 0x0010)                   \
    X(CalcIter, 0x0011)                    \
    X(Protect, 0x0012)                     \
    X(Password, 0x0013)                    \
    X(Header, 0x0014)                      \
    X(Footer, 0x0015)                      \
    X(ExternSheet, 0x0017)                 \
    X(Lbl, 0x0018)                         \
    X(WinProtect, 0x0019)                  \
    X(VerticalPageBreaks, 0x001A)          \
    X(HorizontalPageBreaks, 0x001B)        \
    X(NoteSh, 0x001C)                      \
    X(Selection, 0x001D)                   \
    X(Date1904, 0x0022)                    \
    X(ExternName, 0x0023)                  \
    X(LeftMargin, 0x0026)                  \
    X(RightMargin, 0x0027)                 \
    X(TopMargin, 0x0028)                   \
    X(BottomMargin, 0x0029)                \
    X(PrintRowCol, 0x002A)                 \
    X(PrintGrid, 0x002B)                   \
    X(FilePass, 0x002F)                    \
    X(Font, 0x0031)                        \
    X(Continue, 0x003C)                    \
    X(Window1, 0x003D)                     \
    X(Backup, 0x0040)                      \
    X(Pane, 0x0041)                        \
    X(CodePage, 0x0042)                    \
    X(Pls, 0x004D)                         \
    X(DCon, 0x0050)                        \
    X(DefColWidth, 0x0055)                 \
    X(Xct, 0x0059)                         \
    X(Crn, 0x005A)                         \
    X(WriteAccess, 0x005C)                 \
    X(Obj, 0x005D)                         \
    X(Uncalced, 0x005E)                    \
    X(CalcSaveRecalc, 0x005F)              \
    X(ObjProtect, 0x0063)                  \
    X(ColInfo, 0x007D)                     \
    X(Guts, 0x0080)                        \
    X(WsBool, 0x0081)                      \
    X(GridSet, 0x0082)                     \
    X(HCenter, 0x0083)                     \
    X(VCenter, 0x0084)                     \
    X(BoundSheet8, 0x0085)                 \
    X(Country, 0x008C)                     \
    X(HideObj, 0x008D)                     \
    X(Sort, 0x0090)                        \
    X(Palette, 0x0092)                     \
    X(DxGCol, 0x0099)                      \
    X(BuiltInFnGroupCount, 0x009C)         \
    X(AutoFilterInfo, 0x009D)              \
    X(Scl, 0x00A0)                         \
    X(Setup, 0x00A1)                       \
    X(MulRk, 0x00BD)                       \
    X(MulBlank, 0x00BE)                    \
    X(Mms, 0x00C1)                         \
    X(ObProj, 0x00D3)                      \
    X(RString, 0x00D6)                     \
    X(DBCell, 0x00D7)                      \
    X(BookBool, 0x00DA)                    \
    X(ScenarioProtect, 0x00DD)             \
    X(XF, 0x00E0)                          \
    X(InterfaceHdr, 0x00E1)                \
    X(InterfaceEnd, 0x00E2)                \
    X(MergeCells, 0x00E5)                  \
    X(MsoDrawingGroup, 0x00EB)             \
    X(MsoDrawing, 0x00EC)                  \
    X(PhoneticInfo, 0x00EF)                \
    X(SST, 0x00FC)                         \
    X(LabelSst, 0x00FD)                    \
    X(ExtSST, 0x00FF)                      \
    X(RRTabId, 0x013D)                     \
    X(UsesELFs, 0x0160)                    \
    X(DSF, 0x0161)                         \
    X(SupBook, 0x01AE)                     \
    X(Prot4Rev, 0x01AF)                    \
    X(TextObject, 0x01B6)                  \
    X(RefreshAll, 0x01B7)                  \
    X(CodeName, 0x01BA)                    \
    X(Prot4RevPass, 0x01BC)                \
    X(ObNoMacros, 0x01BD)                  \
    X(Excel9File, 0x01C0)                  \
    X(RecalcId, 0x01C1)                    \
    X(EntExU2, 0x01C2)                     \
    X(Dimensions, 0x0200)                  \
    X(Blank, 0x0201)                       \
    X(Number, 0x0203)                      \
    X(Label, 0x0204)                       \
    X(BoolErr, 0x0205)                     \
    X(String, 0x0207)                      \
    X(Row, 0x0208)                         \
    X(Index, 0x020B)                       \
    X(Array, 0x0221)                       \
    X(DefaultRowHeight, 0x0225)            \
    X(Table, 0x0236)                       \
    X(Window2, 0x023E)                     \
    X(RK, 0x027E)                          \
    X(Style, 0x0293)                       \
    X(Format, 0x041E)                      \
    X(ShrFmla, 0x04BC)                     \
    X(Bof, 0x0809)                         \
    X(BookExt, 0x0863)                     \
    X(DropDownObjIds, 0x0874)              \
    X(XFCRC, 0x087C)                       \
    X(XFExt, 0x087D)                       \
    X(Plv, 0x088B)                         \
    X(Compat12, 0x088C)                    \
    X(TableStyles, 0x088E)                 \
    X(StyleExt, 0x0892)                    \
    X(Theme, 0x0896)                       \
    X(MTRSettings, 0x089A)                 \
    X(CompressPictures, 0x089B)            \
    X(HeaderFooter, 0x089C)                \
    X(ForceFullCalculation, 0x08A3)        \
    X(ClrtClient, 0x105C)

// rt::Font and the like convert to the 16-bit id wherever one is expected.
namespace rt {
enum RecordId : uint16_t {
#define ZELVAR_RECORD_ID(name, id) name = id,
    ZELVAR_RECORD_IDS(ZELVAR_RECORD_ID)
#undef ZELVAR_RECORD_ID
};
}  // namespace rt

struct RecordIdName {
    uint16_t id;
    const char* name;
};

// The whole table in ascending order of id, for diagnostics and tests.
const RecordIdName* recordIdTable(size_t* count);
// The published name of a record id, or null for an id the table does not hold.
const char* recordName(uint16_t id);

}  // namespace zelvar
