# Prints the comments that python3-xlrd finds in binary workbooks, one per line:
# file, sheet name, row, column, author and text, tab-separated, with tabs, newlines and
# backslashes escaped. A file xlrd cannot read prints nothing.
import sys

import xlrd


def esc(text):
    return text.replace('\\', '\\\\').replace('\t', '\\t').replace('\n', '\\n').replace('\r', '\\r')


for path in sys.argv[1:]:
    try:
        book = xlrd.open_workbook(path, formatting_info=True, on_demand=False)
    except Exception:
        continue
    for index in range(book.nsheets):
        sheet = book.sheet_by_index(index)
        for (row, col), note in sorted(sheet.cell_note_map.items()):
            sys.stdout.buffer.write(('%s\t%s\t%d\t%d\t%s\t%s\n' % (
                path, esc(sheet.name), row, col, esc(note.author or ''), esc(note.text or ''))).encode('utf-8'))
