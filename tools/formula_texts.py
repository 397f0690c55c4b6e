#!/usr/bin/env python3
"""Formula texts of a binary workbook as an independent reader sees them.

Usage: formula_texts.py BOOK.xls WORKDIR

Converts the book with gnumeric's ssconvert to .xlsx in WORKDIR, reads it with openpyxl and prints
one line per formula cell: sheet index, row, column (zero-based) and the formula text without its
leading "=", tab-separated; tabs, newlines and backslashes in the text are escaped with a backslash.
Exit status 2 when a tool is missing, 1 when the conversion fails.
"""
import os
import shutil
import subprocess
import sys

def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    source, workdir = sys.argv[1], sys.argv[2]
    if shutil.which("ssconvert") is None:
        print("ssconvert not installed", file=sys.stderr)
        return 2
    try:
        import openpyxl
    except ImportError:
        print("python3-openpyxl not installed", file=sys.stderr)
        return 2
    os.makedirs(workdir, exist_ok=True)
    target = os.path.join(workdir, os.path.basename(source) + ".xlsx")
    done = subprocess.run(["ssconvert", "--export-type=Gnumeric_Excel:xlsx2", source, target],
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    if done.returncode != 0 or not os.path.exists(target):
        print("ssconvert failed on " + source, file=sys.stderr)
        return 1
    book = openpyxl.load_workbook(target, read_only=False)
    out = sys.stdout
    for index, sheet in enumerate(book.worksheets):
        for row in sheet.iter_rows():
            for cell in row:
                value = cell.value
                if isinstance(value, str) and value.startswith("="):
                    text = value[1:].replace("\\", "\\\\").replace("\t", "\\t").replace("\n", "\\n")
                    out.write("%d\t%d\t%d\t%s\n" % (index, cell.row - 1, cell.column - 1, text))
                elif value is not None and type(value).__name__ == "ArrayFormula":
                    text = value.text[1:] if value.text.startswith("=") else value.text
                    text = text.replace("\\", "\\\\").replace("\t", "\\t").replace("\n", "\\n")
                    out.write("%d\t%d\t%d\t%s\n" % (index, cell.row - 1, cell.column - 1, text))
    os.remove(target)
    return 0

if __name__ == "__main__":
    sys.exit(main())
