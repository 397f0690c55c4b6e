# Prints the pictures and comments of an .xlsx package, one per line, tab-separated:
#   picture <sheet> <from row> <from col> <to row> <to col> <media bytes as hex>
#   comment <sheet> <cell> <author> <text>
# Pictures come from the drawing parts and their relationships (read with zipfile), comments
# through python3-openpyxl (or, for a package it refuses, from the comment parts). Tabs, newlines and backslashes in texts are escaped.
import posixpath
import sys
import xml.etree.ElementTree as ET
import zipfile

import openpyxl

XDR = '{http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing}'
A = '{http://schemas.openxmlformats.org/drawingml/2006/main}'
R = '{http://schemas.openxmlformats.org/officeDocument/2006/relationships}'
PR = '{http://schemas.openxmlformats.org/package/2006/relationships}'
S = '{http://schemas.openxmlformats.org/spreadsheetml/2006/main}'


def esc(text):
    return text.replace('\\', '\\\\').replace('\t', '\\t').replace('\n', '\\n').replace('\r', '\\r')


def rels(z, part):
    path = posixpath.join(posixpath.dirname(part), '_rels', posixpath.basename(part) + '.rels')
    if path not in z.namelist():
        return {}
    out = {}
    for rel in ET.fromstring(z.read(path)).iter(PR + 'Relationship'):
        out[rel.get('Id')] = posixpath.normpath(posixpath.join(posixpath.dirname(part), rel.get('Target')))
    return out


def main(path):
    out = sys.stdout.buffer
    z = zipfile.ZipFile(path)
    book = ET.fromstring(z.read('xl/workbook.xml'))
    book_rels = rels(z, 'xl/workbook.xml')
    for sheet in book.iter(S + 'sheet'):
        name = sheet.get('name')
        part = book_rels[sheet.get(R + 'id')]
        for rid, target in rels(z, part).items():
            if '/drawings/' not in target or not target.endswith('.xml'):
                continue
            media = rels(z, target)
            for anchor in ET.fromstring(z.read(target)):
                start, end = anchor.find(XDR + 'from'), anchor.find(XDR + 'to')
                blip = anchor.find('.//' + A + 'blip')
                if start is None or end is None or blip is None:
                    continue
                data = z.read(media[blip.get(R + 'embed')])
                cells = [int(x.find(XDR + tag).text) for x in (start, end) for tag in ('row', 'col')]
                out.write(('picture\t%s\t%d\t%d\t%d\t%d\t%s\n' % (esc(name), *cells, data.hex())).encode('utf-8'))
    try:
        wb = openpyxl.load_workbook(path)
    except Exception:
        # openpyxl refuses some packages for parts that have nothing to do with comments
        # (charts); the comment parts are then read directly.
        wb = None
    if wb is not None:
        for ws in wb.worksheets:
            # Only the cells the file holds: a sheet may reach far down with few cells.
            for _, cell in sorted(ws._cells.items()):
                if cell.comment is not None:
                    out.write(('comment\t%s\t%s\t%s\t%s\n' % (esc(ws.title), cell.coordinate, esc(cell.comment.author or ''),
                                                              esc(cell.comment.text or ''))).encode('utf-8'))
        return
    for sheet in book.iter(S + 'sheet'):
        part = book_rels[sheet.get(R + 'id')]
        for target in rels(z, part).values():
            if '/comments' not in target:
                continue
            root = ET.fromstring(z.read(target))
            authors = [a.text or '' for a in root.iter(S + 'author')]
            for comment in root.iter(S + 'comment'):
                text = ''.join(t.text or '' for t in comment.iter(S + 't'))
                author = authors[int(comment.get('authorId', '0'))] if authors else ''
                out.write(('comment\t%s\t%s\t%s\t%s\n' % (esc(sheet.get('name')), comment.get('ref'), esc(author),
                                                          esc(text))).encode('utf-8'))

main(sys.argv[1])
