#!/usr/bin/env python3
"""Runs one program of examples/ and checks the workbook it writes with independent readers:
python3-xlrd for content and formats (and its compound-file reader for the pictures' records),
python3-openpyxl for XML workbooks, and ssconvert (gnumeric) for recalculated formulas, print
settings and pictures. Exits 77 (skipped) when a reader the check needs is not installed.

    check_examples.py <example name> <program> <scratch folder> <input workbook for edit_existing>
"""
import csv
import glob
import gzip
import os
import re
import shutil
import subprocess
import sys
import struct
import tempfile

SKIP = 77

try:
    import xlrd
    from xlrd import compdoc
except ImportError:
    print("python3-xlrd is not installed (tools/install-deps.sh installs it): example not checked")
    sys.exit(SKIP)


class Failure(Exception):
    pass


def expect(condition, what):
    if not condition:
        raise Failure(what)


def equal(got, wanted, what):
    expect(got == wanted, "%s: got %r, wanted %r" % (what, got, wanted))


def near(got, wanted, what, tolerance=1e-9):
    expect(abs(got - wanted) <= tolerance, "%s: got %r, wanted %r" % (what, got, wanted))


def need_ssconvert():
    if not shutil.which("ssconvert"):
        print("ssconvert is not installed (tools/install-deps.sh installs gnumeric): example not checked")
        sys.exit(SKIP)


def need_openpyxl():
    try:
        import openpyxl
    except ImportError:
        print("python3-openpyxl is not installed (tools/install-deps.sh installs it): example not checked")
        sys.exit(SKIP)
    return openpyxl


def recalculated(path, scratch):
    """Every sheet of the workbook as rows of text, after ssconvert has recalculated the formulas."""
    need_ssconvert()
    out = os.path.join(scratch, "sheet-%n.csv")
    subprocess.run(["ssconvert", "--recalc", "-S", path, out], check=True, capture_output=True, timeout=120)
    sheets = []
    for k in range(len(glob.glob(os.path.join(scratch, "sheet-*.csv")))):
        with open(os.path.join(scratch, "sheet-%d.csv" % k), newline="") as f:
            sheets.append(list(csv.reader(f)))
    return sheets


def gnumeric_xml(path, scratch):
    """The workbook as ssconvert reads it, in its own XML form."""
    need_ssconvert()
    out = os.path.join(scratch, "book.gnumeric")
    subprocess.run(["ssconvert", "-T", "Gnumeric_XmlIO:sax", path, out], check=True, capture_output=True,
                   timeout=120)
    with gzip.open(out, "rt", encoding="utf-8") as f:
        return f.read()


def font_of(book, sheet, row, col):
    return book.font_list[book.xf_list[sheet.cell_xf_index(row, col)].font_index]


def xf_of(book, sheet, row, col):
    return book.xf_list[sheet.cell_xf_index(row, col)]


def format_of(book, sheet, row, col):
    return book.format_map[xf_of(book, sheet, row, col).format_key].format_str


# ---- one check per example ----

def check_quickstart(path, scratch):
    book = xlrd.open_workbook(path, formatting_info=True)
    sheet = book.sheet_by_name("Sales")
    equal(sheet.row_values(0), ["Region", "Date", "Amount", "Paid"], "header row")
    equal(sheet.cell_value(2, 0), "Süd", "text with an umlaut")
    equal(xlrd.xldate_as_tuple(sheet.cell_value(1, 1), book.datemode)[:3], (2026, 1, 15), "date")
    equal(sheet.cell_value(3, 2), 2210.0, "amount")
    equal(sheet.cell_type(1, 3), xlrd.XL_CELL_BOOLEAN, "boolean cell")
    equal(format_of(book, sheet, 1, 2), '#,##0.00 "€"', "custom format")
    expect(font_of(book, sheet, 0, 0).weight >= 700, "header font is bold")


def check_quickstart_xlsx(path, scratch):
    openpyxl = need_openpyxl()
    book = openpyxl.load_workbook(path)
    sheet = book["Sales"]
    rows = list(sheet.iter_rows(values_only=True))
    equal(list(rows[0]), ["Region", "Date", "Amount", "Paid"], "header row")
    equal(rows[2][0], "Süd", "text with an umlaut")
    equal(sheet.cell(2, 2).value.date().isoformat(), "2026-01-15", "date")
    equal(rows[3][2], 2210.0, "amount")
    expect(isinstance(rows[1][3], bool), "boolean cell")
    equal(sheet.cell(2, 3).number_format, '#,##0.00 "€"', "custom format")
    expect(sheet.cell(1, 1).font.b, "header font is bold")


def check_quickstart_c(path, scratch):
    book = xlrd.open_workbook(path)
    sheet = book.sheet_by_index(0)
    equal(sheet.name, "Stock", "sheet name")
    equal(sheet.cell_value(1, 0), "Bolts", "text")


def check_formats_fonts(path, scratch):
    book = xlrd.open_workbook(path, formatting_info=True)
    sheet = book.sheet_by_name("Prices")
    title = font_of(book, sheet, 0, 0)
    equal((title.name, title.height, title.weight >= 700, title.colour_index), ("Liberation Serif", 320, True, 18),
          "title font: name, size in twentieths, bold, navy")
    header = xf_of(book, sheet, 2, 1)
    equal(header.background.fill_pattern, 1, "header fill is solid")
    equal(book.colour_map[header.background.pattern_colour_index], (0, 97, 168), "header fill colour")
    equal((header.alignment.hor_align, header.alignment.text_wrapped), (2, 1), "header centred and wrapped")
    equal(header.border.top_line_style, 1, "header border is thin")
    equal(font_of(book, sheet, 2, 1).colour_index, 9, "header text is white")
    equal(sheet.row_values(3)[:4], ["Grüner Tee", 4.5, 0.25, 0.0], "first item")
    equal(format_of(book, sheet, 3, 1), "#,##0.00", "price format")
    equal(format_of(book, sheet, 3, 2), '0.0 "kg"', "custom weight format")
    equal(format_of(book, sheet, 3, 3), "0%", "percent format")
    note = xf_of(book, sheet, 2, 5)
    equal(note.alignment.rotation, 90, "rotated note")
    equal((font_of(book, sheet, 2, 5).italic, font_of(book, sheet, 2, 5).colour_index), (1, 10), "italic red note")
    equal(sheet.merged_cells, [(2, 6, 5, 6)], "merged note")


def check_dates(path, scratch):
    book = xlrd.open_workbook(path, formatting_info=True)
    sheet = book.sheet_by_name("Schedule")
    wanted = [(2026, 1, 12, 9, 30, 0), (2028, 2, 29, 14, 0, 0), (2026, 12, 31, 23, 59, 0)]
    for row, stamp in enumerate(wanted, start=1):
        equal(sheet.cell_type(row, 1), xlrd.XL_CELL_DATE, "row %d: day is a date cell" % row)
        equal(xlrd.xldate_as_tuple(sheet.cell_value(row, 1), book.datemode), stamp[:3] + (0, 0, 0), "row %d day" % row)
        equal(xlrd.xldate_as_tuple(sheet.cell_value(row, 2), book.datemode), stamp, "row %d start" % row)
    equal(format_of(book, sheet, 1, 2), "yyyy-mm-dd hh:mm", "custom date format")
    equal(xlrd.xldate_as_tuple(sheet.cell_value(1, 3), book.datemode)[3:5], (1, 30), "duration of 1.5 hours")


def check_formulas_names(path, scratch):
    book = xlrd.open_workbook(path)
    equal(book.sheet_names(), ["Rates", "Budget"], "sheets")
    names = {name.name: name for name in book.name_obj_list}
    expect({"NetAmounts", "GrossAmounts", "VatRate"} <= set(names), "named ranges: %s" % sorted(names))
    area = names["GrossAmounts"].area2d()
    equal((area[0].name,) + tuple(area[1:]), ("Budget", 1, 5, 2, 3), "GrossAmounts is C2:C5")
    equal(names["VatRate"].area2d()[0].name, "Rates", "VatRate is on Rates")
    equal((names["GrossAmounts"].scope, names["VatRate"].scope), (1, 0), "each name in its sheet's scope")
    budget = recalculated(path, scratch)[1]
    gross = [round(net * 1.19, 2) for net in (1200, 185.4, 430, 96.2)]
    for row in range(4):
        near(float(budget[row + 1][2]), gross[row], "recalculated C%d" % (row + 2), 1e-6)
    near(float(budget[5][1]), 1911.6, "recalculated net total", 1e-6)
    near(float(budget[5][2]), sum(gross), "recalculated gross total", 1e-6)
    equal(budget[6][1], "over 1000", "recalculated IF")


def check_merges_layout(path, scratch):
    book = xlrd.open_workbook(path, formatting_info=True)
    sheet = book.sheet_by_name("Layout")
    equal(sheet.merged_cells, [(0, 2, 0, 5)], "title merged over A1:E2")
    equal(sheet.cell_value(0, 0), "Quarterly figures", "title")
    equal(xf_of(book, sheet, 1, 4).border.bottom_line_style, 2, "the block's cells carry the border")
    near(sheet.colinfo_map[0].width / 256, 20, "column A width in characters", 0.75)
    equal(sheet.colinfo_map[5].hidden, 1, "hidden sort key column")
    equal(sheet.rowinfo_map[2].height, 480, "row 3 height in twentieths of a point")
    equal((sheet.panes_are_frozen, sheet.horz_split_pos, sheet.vert_split_pos), (1, 3, 1), "frozen panes")
    levels = [sheet.rowinfo_map[r].outline_level if r in sheet.rowinfo_map else 0 for r in (3, 4, 12)]
    equal(levels, [0, 1, 1], "outline group of rows 5-13")
    equal(sheet.scl_mag_factor, 120, "zoom")
    equal(sheet.cell_value(12, 4), 124.0, "last figure")


def check_print_settings(path, scratch):
    book = xlrd.open_workbook(path, formatting_info=True)
    sheet = book.sheet_by_name("Report")
    equal(sheet.nrows, 121, "rows")
    equal([b[0] for b in sheet.horizontal_page_breaks], [61], "manual page break")
    xml = gnumeric_xml(path, scratch)
    info = re.search(r"<gnm:PrintInformation>(.*?)</gnm:PrintInformation>", xml, re.S).group(1)

    def points(side):
        return float(re.search(r'<gnm:%s Points="([0-9.]+)"' % side, info).group(1))
    for side, inches in (("left", 0.5), ("right", 0.5), ("top", 0.9), ("bottom", 0.9), ("header", 0.4), ("footer", 0.4)):
        near(points(side), inches * 72, "%s margin" % side, 1e-6)
    expect('<gnm:Scale type="size_fit" cols="1" rows="0"/>' in info, "fit to one page wide")
    expect("<gnm:orientation>landscape</gnm:orientation>" in info, "landscape")
    expect("<gnm:paper>iso_a4</gnm:paper>" in info, "A4 paper")
    expect('<gnm:hcenter value="1"/>' in info, "centred horizontally")
    expect('<gnm:grid value="1"/>' in info, "gridlines printed")
    expect('<gnm:Header Left="Shop report"' in info, "header text")
    expect('Middle="Page &amp;[PAGE] of &amp;[PAGES]"' in info, "footer with page numbers")
    expect("<gnm:name>Print_Area</gnm:name>" in xml and "<gnm:name>Print_Titles</gnm:name>" in xml,
           "print area and titles")


def check_edit_existing(path, scratch, source):
    before = xlrd.open_workbook(source).sheet_by_index(0)
    book = xlrd.open_workbook(path)
    equal(book.sheet_names(), xlrd.open_workbook(source).sheet_names(), "sheets kept")
    sheet = book.sheet_by_index(0)
    n = before.nrows
    for row in range(n):
        equal(sheet.row_values(row)[:2], before.row_values(row)[:2], "row %d kept" % (row + 1))
    equal(sheet.cell_value(n, 0), before.cell_value(n - 1, 0) // 1 + 1, "the new row's date follows the last")
    equal(sheet.cell_value(n, 1), 10.0, "the new row's value")
    equal(sheet.cell_value(n + 1, 0), "Total", "total label")
    total = sum(before.col_values(1)[:n]) + 10
    near(float(recalculated(path, scratch)[0][n + 1][1]), total, "recalculated total", 1e-6)
    # The chart of the input comes through: its drawing records are carried unchanged.
    with open(source, "rb") as f:
        original = f.read()
    with open(path, "rb") as f:
        edited = f.read()
    expect(b"\x0f\x00\x02\xf0" in original and b"\x0f\x00\x02\xf0" in edited, "the sheet's drawing is kept")


def check_large_sheet(path, scratch):
    book = xlrd.open_workbook(path, on_demand=True)
    equal(book.sheet_names(), ["Data 1", "Data 2"], "sheets")
    first, second = book.sheet_by_index(0), book.sheet_by_index(1)
    equal((first.nrows, second.nrows), (65536, 100000 - 65535 + 1), "rows per sheet")
    equal(first.row_values(0), ["Id", "Region", "Units", "Price", "Amount"], "titles")
    for sheet, row, i in ((first, 1, 0), (first, 65535, 65534), (second, 1, 65535), (second, second.nrows - 1, 99999)):
        units, price = 1 + i % 17, 2.5 + (i % 101) * 0.25
        equal(sheet.row_values(row), [i + 1.0, ["North", "East", "South", "West"][i % 4], float(units), price,
                                      units * price], "row of id %d" % (i + 1))


def check_invoice_c(path, scratch):
    book = xlrd.open_workbook(path, formatting_info=True)
    sheet = book.sheet_by_name("Invoice")
    equal(sheet.cell_value(0, 0), "Invoice 2026-117", "title")
    equal(xlrd.xldate_as_tuple(sheet.cell_value(0, 3), book.datemode)[:3], (2026, 11, 23), "date")
    equal(format_of(book, sheet, 3, 2), '#,##0.00 "€"', "money format")
    table = recalculated(path, scratch)[0]
    near(float(table[6][3].replace(",", "").split()[0]), 12 * 95.0 + 240.5 + 3 * 149.0, "recalculated total", 1e-6)


def biff_records(data):
    """(id, body) of each record of a BIFF stream, CONTINUE records left as they are."""
    pos = 0
    while pos + 4 <= len(data):
        rid, size = struct.unpack_from("<HH", data, pos)
        yield rid, data[pos + 4:pos + 4 + size]
        pos += 4 + size


def workbook_stream(path):
    with open(path, "rb") as f:
        doc = compdoc.CompDoc(f.read(), logfile=open(os.devnull, "w"))
    return doc.get_named_stream("Workbook")


# The logo of examples/pictures.cpp: a 32x16 PNG.
PNG_SIGNATURE = b"\x89PNG\r\n\x1a\n"
LOGO_HEADER = PNG_SIGNATURE + b"\x00\x00\x00\x0dIHDR\x00\x00\x00\x20\x00\x00\x00\x10"
MSODRAWINGGROUP, MSODRAWING, OBJ, CONTINUE = 0x00EB, 0x00EC, 0x005D, 0x003C
OBJ_PICTURE = 8


def check_picture_bounds(path, scratch):
    """The cells each picture covers, as ssconvert sees them (when it is installed)."""
    if shutil.which("ssconvert"):
        bounds = re.findall(r'<gnm:SheetObjectImage [^>]*ObjectBound="([A-Z0-9:]+)"', gnumeric_xml(path, scratch))
        equal(sorted(bounds), ["A1", "B3:F6", "B9:C9"], "cells the pictures cover, as ssconvert sees them")


def check_pictures(path, scratch):
    book = xlrd.open_workbook(path)
    equal(book.sheet_by_index(0).cell_value(0, 1), "Company catalogue", "title")
    # The store: the drawing group record (and its CONTINUE records) holds both copies of the logo.
    records = list(biff_records(workbook_stream(path)))
    group = b""
    for k, (rid, body) in enumerate(records):
        if rid == MSODRAWINGGROUP:
            group += body
            for rid2, body2 in records[k + 1:]:
                if rid2 != CONTINUE:
                    break
                group += body2
            break
    equal(group.count(LOGO_HEADER), 2, "copies of the logo in the drawing group")
    # The sheet: three objects of the picture kind, each with its drawing record.
    pictures = [body for rid, body in records if rid == OBJ and struct.unpack_from("<HHH", body)[2] == OBJ_PICTURE]
    equal(len(pictures), 3, "picture objects on the sheet")
    expect(sum(1 for rid, _ in records if rid == MSODRAWING) >= 3, "drawing records of the pictures")
    check_picture_bounds(path, scratch)


def check_pictures_xlsx(path, scratch):
    import zipfile
    openpyxl = need_openpyxl()
    from openpyxl.drawing.spreadsheet_drawing import SpreadsheetDrawing
    from openpyxl.packaging.relationship import get_dependents, get_rels_path
    from openpyxl.xml.functions import fromstring
    book = openpyxl.load_workbook(path)
    equal(book["Catalogue"].cell(1, 2).value, "Company catalogue", "title")
    # openpyxl keeps pictures only with Pillow installed; its drawing reader sees them either way.
    archive = zipfile.ZipFile(path)
    worksheet = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet"
    sheet_part = next(get_dependents(archive, "xl/_rels/workbook.xml.rels").find(worksheet)).target
    drawings = [rel.target for rel in get_dependents(archive, get_rels_path(sheet_part)).find(SpreadsheetDrawing._rel_type)]
    equal(len(drawings), 1, "drawing parts of the sheet")
    drawing = SpreadsheetDrawing.from_tree(fromstring(archive.read(drawings[0])))
    media = get_dependents(archive, get_rels_path(drawings[0]))
    cells = []
    for rel in drawing._blip_rels:
        expect(archive.read(media[rel.embed].target).startswith(LOGO_HEADER), "the picture is the logo")
        cells.append((rel.anchor._from.row, rel.anchor._from.col))
    equal(cells, [(0, 0), (2, 1), (8, 1)], "top left cells of the pictures")
    equal(drawing._blip_rels[0].anchor._from.colOff, 4 * 9525, "the first picture's offset, in EMU")
    images = book["Catalogue"]._images
    expect(len(images) in (0, 3), "pictures openpyxl keeps: %d" % len(images))
    check_picture_bounds(path, scratch)


def check_comments(path, scratch):
    book = xlrd.open_workbook(path, formatting_info=True)
    sheet = book.sheet_by_name("Review")
    notes = {cell: (note.author, note.text) for cell, note in sheet.cell_note_map.items()}
    equal(sorted(notes), [(0, 1), (1, 1), (2, 1), (3, 0)], "cells with a note")
    equal(notes[(0, 1)], ("Pricing", "Prices per 250 g, tax included."), "first note")
    equal(notes[(1, 1)], ("Pricing", "Grüner Tee, loose leaf."), "the replaced note")
    equal(notes[(2, 1)], ("Purchasing", "Up from 6.90 in March.\nCheck again after the next delivery."),
          "two-line note")
    expect(notes[(3, 0)][0], "a default author")
    equal(sheet.cell_value(2, 1), 7.25, "the cell under a note")


def check_both_families(paths, scratch):
    xls, xlsx = paths
    rows = [["Müller & Co", (2026, 11, 3), 12.0, 1140.0], ["Northwind", (2026, 11, 11), 4.0, 522.5],
            ["Atelier Zoé", (2026, 11, 24), 30.0, 2847.9]]
    book = xlrd.open_workbook(xls, formatting_info=True)
    sheet = book.sheet_by_name("Orders")
    equal(sheet.merged_cells, [(0, 1, 0, 4)], "binary: title merged over A1:D1")
    equal(sheet.row_values(1), ["Customer", "Date", "Quantity", "Amount"], "binary: header")
    for i, (customer, day, quantity, amount) in enumerate(rows):
        values = sheet.row_values(2 + i)
        equal([values[0], xlrd.xldate_as_tuple(values[1], book.datemode)[:3]] + values[2:], [customer, day, quantity, amount],
              "binary: order %d" % (i + 1))
    equal(sheet.nrows, 6, "binary: nothing past the total row")
    expect(font_of(book, sheet, 1, 0).weight >= 700, "binary: bold header")
    equal(sorted(sheet.cell_note_map), [(2, 0)], "binary: the comment")
    totals = recalculated(xls, scratch)[0][5][2:4]
    near(float(totals[0]), 46, "binary: recalculated quantity")
    near(float(totals[1]), 4510.4, "binary: recalculated amount", 1e-6)

    openpyxl = need_openpyxl()
    sheet = openpyxl.load_workbook(xlsx)["Orders"]
    equal([str(m) for m in sheet.merged_cells.ranges], ["A1:D1"], "XML: title merged over A1:D1")
    equal([c.value for c in sheet[2]], ["Customer", "Date", "Quantity", "Amount"], "XML: header")
    for i, (customer, day, quantity, amount) in enumerate(rows):
        values = [c.value for c in sheet[3 + i]]
        equal([values[0], values[1].timetuple()[:3]] + values[2:], [customer, day, quantity, amount],
              "XML: order %d" % (i + 1))
    equal(sheet.max_row, 6, "XML: nothing past the total row")
    expect(sheet.cell(2, 1).font.b, "XML: bold header")
    equal((sheet["C6"].value, sheet["D6"].value), ("=SUM(C3:C5)", "=SUM(D3:D5)"), "XML: total formulas")
    expect(sheet["A3"].comment is None, "XML: no comment")


def main(argv):
    name, program, scratch_root, edit_input = argv[1:5]
    os.makedirs(scratch_root, exist_ok=True)
    scratch = tempfile.mkdtemp(prefix="example-%s-" % name, dir=scratch_root)
    try:
        # "<program>_xlsx" runs the same program with an .xlsx path: the XML family.
        out = os.path.join(scratch, name[:-5] + ".xlsx") if name.endswith("_xlsx") else os.path.join(scratch, name + ".xls")
        if name == "edit_existing":
            args = [program, edit_input, out]
        elif name == "both_families":
            out = [out, out + "x"]
            args = [program] + out
        else:
            args = [program, out]
        run = subprocess.run(args, capture_output=True, text=True, timeout=240)
        sys.stdout.write(run.stdout)
        if run.returncode != 0:
            print("%s exited with %d: %s" % (name, run.returncode, run.stderr))
            return 1
        check = globals().get("check_" + name)
        if check is None:
            print("no check for example %s: add check_%s to %s" % (name, name, __file__))
            return 1
        if name == "edit_existing":
            check(out, scratch, edit_input)
        else:
            check(out, scratch)
        print("%s: checked" % name)
        return 0
    except Failure as failure:
        print("%s: %s" % (name, failure))
        return 1
    finally:
        shutil.rmtree(scratch, ignore_errors=True)


if __name__ == "__main__":
    sys.exit(main(sys.argv))
