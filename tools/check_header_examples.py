#!/usr/bin/env python3
"""Compiles every two-line example of the public headers, so that none of them rots.

The examples of include/zelvar.h are compiled as C++ and those of include/zelvar_c.h as C, each in
a block of its own, with the objects the header's introduction promises: book and other (books),
sheet, fmt (a format) and font.

    python3 tools/check_header_examples.py <c++ compiler> <c compiler>
"""
import os
import re
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))

CXX_PROLOGUE = """#include <cstdio>
#include <cstring>
#include "zelvar.h"
using namespace zelvar;
using std::printf; using std::puts; using std::fwrite;
void examples(IBookA* book, IBookA* other, ISheetA* sheet, IFormatA* fmt, IFontA* font) {
"""
C_PROLOGUE = """#include <stdio.h>
#include <string.h>
#include "zelvar_c.h"
void examples(BookHandle book, BookHandle other, SheetHandle sheet, FormatHandle fmt, FontHandle font) {
"""


def examples(path):
    """The example lines of each comment block, in the order of the file."""
    found = []
    for block in re.findall(r"/\*(.*?)\*/", open(path).read(), re.S):
        lines = [re.sub(r"^\s*\* ?", "", l) for l in block.split("\n")]
        code = [l[4:] for l in lines if l.startswith("    ")]
        if code:
            found.append(code)
    return found


def compile_blocks(compiler, language, prologue, blocks):
    with tempfile.TemporaryDirectory() as tmp:
        source = os.path.join(tmp, "examples." + ("cpp" if language == "c++" else "c"))
        with open(source, "w") as out:
            out.write(prologue)
            for code in blocks:
                out.write("    {\n" + "".join("        %s\n" % line for line in code) + "    }\n")
            out.write("}\n")
        flags = ["-std=c++17"] if language == "c++" else ["-std=c99", "-Werror=implicit-function-declaration"]
        result = subprocess.run([compiler, "-fsyntax-only", "-I", os.path.join(ROOT, "include")] + flags + [source],
                                capture_output=True, text=True)
        if result.returncode != 0:
            sys.stderr.write(result.stderr)
            sys.stderr.write("\n".join("%4d %s" % (n + 1, l) for n, l in enumerate(open(source).read().split("\n"))))
        return result.returncode == 0


def main(argv):
    cxx, cc = argv[1], argv[2]
    cpp_blocks = examples(os.path.join(ROOT, "include", "zelvar.h"))
    c_blocks = examples(os.path.join(ROOT, "include", "zelvar_c.h"))
    ok = compile_blocks(cxx, "c++", CXX_PROLOGUE, cpp_blocks)
    ok = compile_blocks(cc, "c", C_PROLOGUE, c_blocks) and ok
    print("%d C++ and %d C examples compiled" % (len(cpp_blocks), len(c_blocks)))
    return 0 if ok else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv))
