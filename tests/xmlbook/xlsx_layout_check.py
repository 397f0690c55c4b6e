"""Prints what python3-openpyxl reads of a sheet's layout, print settings and pictures, one fact a line."""
import sys
import zipfile
from xml.etree.ElementTree import fromstring

import openpyxl
from openpyxl.drawing.spreadsheet_drawing import SpreadsheetDrawing

try:
    import PIL  # noqa: F401
    print("IMAGING\tTrue")
except ImportError:
    print("IMAGING\tFalse")

book = openpyxl.load_workbook(sys.argv[1])
for ws in book.worksheets:
    name = ws.title
    for letter, dim in sorted(ws.column_dimensions.items()):
        if dim.customWidth or dim.hidden or dim.outlineLevel:
            print("COL\t%s\t%d\t%d\t%s\t%s\t%d" % (name, dim.min or 0, dim.max or 0, dim.width, dim.hidden, dim.outlineLevel))
    for index, dim in sorted(ws.row_dimensions.items()):
        if dim.ht is not None or dim.hidden or dim.outlineLevel:
            print("ROW\t%s\t%d\t%s\t%s\t%d" % (name, index, dim.ht, dim.hidden, dim.outlineLevel))
    for merged in sorted(str(r) for r in ws.merged_cells.ranges):
        print("MERGE\t%s\t%s" % (name, merged))
    print("FREEZE\t%s\t%s" % (name, ws.freeze_panes))
    print("ZOOM\t%s\t%s\t%s" % (name, ws.sheet_view.zoomScale, ws.sheet_view.showGridLines))
    ps = ws.page_setup
    print("PAGE\t%s\t%s\t%s\t%s" % (name, ps.orientation, ps.paperSize, ps.scale))
    m = ws.page_margins
    print("MARGINS\t%s\t%g\t%g\t%g\t%g\t%g\t%g" % (name, m.left, m.right, m.top, m.bottom, m.header, m.footer))
    print("BREAKS\t%s\t%s\t%s" % (name, [b.id for b in ws.row_breaks.brk], [b.id for b in ws.col_breaks.brk]))
    print("HEADER\t%s\t%s" % (name, ws.oddHeader.center.text))
    print("PROTECT\t%s\t%s" % (name, ws.protection.sheet))
    # Pictures as openpyxl loads them (with an imaging library): the anchor and the image's own size.
    for image in ws._images:
        a = image.anchor
        print("PICTURE\t%s\t%d\t%d\t%d\t%d\t%d\t%d\t%d\t%d" % (name, a._from.row, a._from.col, a._from.rowOff, a._from.colOff,
                                                            a.to.row, a.to.col, image.width, image.height))
    for row in ws.iter_rows():
        for cell in row:
            if cell.value is not None:
                print("C\t%s\t%d\t%d\t%s" % (name, cell.row - 1, cell.column - 1, cell.value))

# Anchors through openpyxl's own drawing reader (its image loading needs an imaging library).
with zipfile.ZipFile(sys.argv[1]) as package:
    for part in sorted(n for n in package.namelist() if n.startswith("xl/drawings/drawing")):
        drawing = SpreadsheetDrawing.from_tree(fromstring(package.read(part)))
        for a in drawing.twoCellAnchor:
            print("IMAGE\t%s\t%d\t%d\t%d\t%d\t%d\t%s" % (part, a._from.row, a._from.col, a.to.row, a.to.col, a.to.colOff,
                                                     a.pic.blipFill.blip.embed if a.pic is not None else None))
