#!/usr/bin/python3
"""Reads XML workbooks that the C++ interop test wrote, with python3-openpyxl, and prints what it
sees as lines the test compares: "S <name> <state>" for sheets, "C <sheet> <row> <col> <kind>
<value>" for cells of small sheets, "F ..." for formats, and "B <sheet> <count> <sum> <max_row>
<max_col>" for a large sheet read in read-only mode. 0-based rows and columns."""
import sys
import openpyxl


def esc(text):
    return str(text).replace("\\", "\\\\").replace("\t", "\\t").replace("\n", "\\n")


def side(border_side):
    return (border_side.style or "") if border_side is not None else ""


def main():
    path, mode = sys.argv[1], sys.argv[2]
    out = sys.stdout
    if mode == "big":
        wb = openpyxl.load_workbook(path, read_only=True)
        for ws in wb.worksheets:
            count, total, max_row, max_col = 0, 0.0, 0, 0
            for r, row in enumerate(ws.iter_rows(values_only=True)):
                for c, value in enumerate(row):
                    if value is None:
                        continue
                    count += 1
                    total += float(value)
                    max_row, max_col = max(max_row, r), max(max_col, c)
            out.write("B\t%s\t%d\t%.17g\t%d\t%d\n" % (ws.title, count, total, max_row, max_col))
        return
    wb = openpyxl.load_workbook(path)
    out.write("A\t%d\n" % wb.index(wb.active))
    for ws in wb.worksheets:
        out.write("S\t%s\t%s\n" % (esc(ws.title), ws.sheet_state))
        # The cells that exist, not the whole grid up to the last one (which may be the far corner).
        for _, cell in sorted(ws._cells.items()):
            if True:
                if cell.value is None:
                    continue
                value = cell.value
                kind = type(value).__name__
                if kind == "float" or kind == "int":
                    value = "%.17g" % value
                elif kind == "datetime":
                    value = value.strftime("%Y-%m-%d %H:%M:%S")
                out.write("C\t%s\t%d\t%d\t%s\t%s\n" % (esc(ws.title), cell.row - 1, cell.column - 1, kind, esc(value)))
                if cell.has_style and cell.style_id:
                    f = cell.font
                    out.write("F\t%s\t%d\t%d\tfont=%s,%s,%s,%s,%s\tnum=%s\tfill=%s\tborder=%s,%s\talign=%s,%s\n" % (
                        esc(ws.title), cell.row - 1, cell.column - 1, f.name, int(f.sz or 0), bool(f.b), bool(f.i),
                        f.u or "", cell.number_format, cell.fill.fill_type or "", side(cell.border.left), side(cell.border.bottom), cell.alignment.horizontal or "", bool(cell.alignment.wrap_text)))


main()
