#!/usr/bin/python3
"""Prints the cells of XML workbook oracles as tab-separated lines for the C++ tests; dates and
times that the reader gave as text stay text.

For each oracle file given: "F <file>" and "E <error>" when the reader failed; for each listed
worksheet "S <index> <name>"; for each cell "C <row> <col> <type> <value>". Numbers are written
with 17 significant digits; text has backslash, tab and newline escaped.
"""
import json
import sys


def esc(text):
    return text.replace("\\", "\\\\").replace("\t", "\\t").replace("\n", "\\n").replace("\r", "\\r")


out = sys.stdout
for path in sys.argv[1:]:
    with open(path, encoding="utf-8") as f:
        dump = json.load(f)
    out.write("F\t%s\n" % path)
    if dump.get("error"):
        out.write("E\t%s\n" % esc(dump["error"]))
        continue
    for index, sheet in enumerate(dump["sheets"]):
        if sheet.get("kind", "worksheet") != "worksheet":
            continue
        out.write("S\t%d\t%s\n" % (index, esc(sheet["name"])))
        for row, col, kind, value in sheet["cells"]:
            if kind == "number" or (kind == "date" and isinstance(value, (int, float))):
                text = repr(float(value))
            elif kind == "bool":
                text = "1" if value else "0"
            else:
                text = esc(str(value))
            out.write("C\t%d\t%d\t%s\t%s\n" % (row, col, kind, text))
