#!/usr/bin/env python3
"""Runs one program of examples/ and checks the workbook it writes with independent readers:
python3-xlrd for content and formats, and ssconvert (gnumeric) for recalculated formulas and print
settings. Exits 77 (skipped) when a reader the check needs is not installed.

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
import tempfile

SKIP = 77

try:
    import xlrd
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
    try:
        import openpyxl
    except ImportError:
        print("python3-openpyxl is not installed (tools/install-deps.sh installs it): example not checked")
        sys.exit(SKIP)
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


def main(argv):
    name, program, scratch_root, edit_input = argv[1:5]
    os.makedirs(scratch_root, exist_ok=True)
    scratch = tempfile.mkdtemp(prefix="example-%s-" % name, dir=scratch_root)
    try:
        # "<program>_xlsx" runs the same program with an .xlsx path: the XML family.
        out = os.path.join(scratch, name[:-5] + ".xlsx") if name.endswith("_xlsx") else os.path.join(scratch, name + ".xls")
        args = [program, edit_input, out] if name == "edit_existing" else [program, out]
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
