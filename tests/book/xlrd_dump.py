#!/usr/bin/python3
"""Dumps a binary workbook with the independent reader python3-xlrd, for the C++ tests.

Lines, tab-separated: "S <name> <nrows> <ncols>" per sheet; "C <row> <col> <type> <value>" per
non-empty cell (types: text, number, bool, error, blank); "X <row> <col> <bold> <italic>
<height> <font rgb> <number format> <left border> <bottom border> <fill pattern> <fill rgb>" per
cell in the sheet named "Formats". Text escapes backslash, tab and newline.
"""
import sys

import xlrd


def esc(text):
    return text.replace("\\", "\\\\").replace("\t", "\\t").replace("\n", "\\n")


def rgb(book, index):
    colour = book.colour_map.get(index)
    return "-" if colour is None else "%02X%02X%02X" % colour


book = xlrd.open_workbook(sys.argv[1], formatting_info=True)
out = sys.stdout
kinds = {xlrd.XL_CELL_TEXT: "text", xlrd.XL_CELL_NUMBER: "number", xlrd.XL_CELL_DATE: "number",
         xlrd.XL_CELL_BOOLEAN: "bool", xlrd.XL_CELL_ERROR: "error", xlrd.XL_CELL_BLANK: "blank"}
for sheet in book.sheets():
    out.write("S\t%s\t%d\t%d\n" % (esc(sheet.name), sheet.nrows, sheet.ncols))
    for r in range(sheet.nrows):
        for c in range(sheet.ncols):
            cell = sheet.cell(r, c)
            if cell.ctype == xlrd.XL_CELL_EMPTY:
                continue
            kind = kinds[cell.ctype]
            if kind == "text":
                value = esc(cell.value)
            elif kind == "number":
                value = repr(float(cell.value))
            elif kind == "error":
                value = xlrd.error_text_from_code.get(cell.value, "?")
            elif kind == "bool":
                value = "1" if cell.value else "0"
            else:
                value = ""
            out.write("C\t%d\t%d\t%s\t%s\n" % (r, c, kind, value))
            if sheet.name == "Formats":
                xf = book.xf_list[cell.xf_index]
                font = book.font_list[xf.font_index]
                fmt = book.format_map[xf.format_key].format_str
                out.write("X\t%d\t%d\t%d\t%d\t%d\t%s\t%s\t%d\t%d\t%d\t%s\n" % (
                    r, c, font.weight >= 700, font.italic, font.height, rgb(book, font.colour_index), esc(fmt),
                    xf.border.left_line_style, xf.border.bottom_line_style, xf.background.fill_pattern,
                    rgb(book, xf.background.pattern_colour_index)))
