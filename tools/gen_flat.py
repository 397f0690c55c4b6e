#!/usr/bin/env python3
"""Generates the flat C layer from the C++ interfaces of include/zelvar.h.

Writes include/zelvar_c.h and source/frame/flat_functions.cpp. Each interface operation becomes one
function per text width: zv<Class><Operation>A over char and ...W over wchar_t, taking the object's
handle first. Run it after changing an interface: python3 tools/gen_flat.py
"""
import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
HEADER = os.path.join(ROOT, "include", "zelvar.h")

CLASSES = [("IBookT", "Book"), ("ISheetT", "Sheet"), ("IFormatT", "Format"), ("IFontT", "Font")]
ENUMS = {"Color", "Paper", "SheetState", "AlignH", "AlignV", "BorderStyle", "BorderDiagonal",
         "FillPattern", "Script", "Underline"}
HANDLES = {"IBookT<T>": "BookHandle", "ISheetT<T>": "SheetHandle", "IFormatT<T>": "FormatHandle",
           "IFontT<T>": "FontHandle"}


def parse_interfaces(text):
    ops = {}
    for cls, word in CLASSES:
        m = re.search(r"class %s \{\npublic:\n(.*?)\n\};" % cls, text, re.S)
        body = re.sub(r"/\*.*?\*/", "", m.group(1), flags=re.S)
        body = " ".join(body.split())
        found = []
        for decl in re.finditer(r"virtual ([^;~]*?)\b(\w+)\((.*?)\)( const)? = 0;", body):
            ret, name, args = decl.group(1).strip(), decl.group(2), decl.group(3).strip()
            params = []
            if args and args != "void":
                for a in split_args(args):
                    a = a.split("=")[0].strip()
                    am = re.match(r"(.*?)(\w+)$", a)
                    params.append((am.group(1).strip(), am.group(2)))
            found.append((ret, name, params, bool(decl.group(4))))
        ops[word] = (cls, found)
    return ops


def split_args(args):
    out, depth, cur = [], 0, ""
    for ch in args:
        if ch == "<":
            depth += 1
        elif ch == ">":
            depth -= 1
        if ch == "," and depth == 0:
            out.append(cur)
            cur = ""
        else:
            cur += ch
    out.append(cur)
    return out


def c_type(cpp, char):
    t = cpp.replace("const T*", "const %s*" % char)
    for iface, handle in HANDLES.items():
        t = t.replace(iface + "**", handle + "*").replace(iface + "*", handle)
    if t in ENUMS:
        return "int"
    if t == "bool":
        return "int"
    if t == "bool*":
        return "int*"
    return t


def flat_name(word, op, suffix):
    return "zv%s%s%s%s" % (word, op[0].upper(), op[1:], suffix)


def main():
    text = open(HEADER).read()
    ops = parse_interfaces(text)
    count = sum(len(v[1]) for v in ops.values())
    decls_h, defs_cpp = [], []
    for word, (cls, found) in ops.items():
        decls_h.append("\n/* %s */" % word)
        for suffix, char in (("A", "char"), ("W", "wchar_t")):
            defs_cpp.append("\n// %s, %s" % (word, char))
            for ret, name, params, is_const in found:
                fname = flat_name(word, name, suffix)
                cret = c_type(ret, char)
                cparams = ["%s handle" % (word + "Handle")]
                cparams += ["%s %s" % (c_type(t, char), n) for t, n in params]
                decls_h.append("ZELVAR_API %s %s(%s);" % (cret, fname, ", ".join(cparams)))
                # Implementation.
                self_t = "%s<%s>" % (cls, char)
                lines = ["ZELVAR_API %s %s(%s) {" % (cret, fname, ", ".join(cparams))]
                call_args, post = [], []
                for t, n in params:
                    ct = c_type(t, char)
                    if t == "bool*":
                        lines.append("    bool %s_value = false;" % n)
                        call_args.append("&%s_value" % n)
                        post.append("    *%s = %s_value ? 1 : 0;" % (n, n))
                    elif t == "bool":
                        call_args.append("%s != 0" % n)
                    elif t.replace("const ", "") in ENUMS or t in ENUMS:
                        call_args.append("static_cast<zelvar::%s>(%s)" % (t, n))
                    elif ct.endswith("Handle"):
                        call_args.append("reinterpret_cast<zelvar::%s*>(%s)" % (t[:-1].replace("<T>", "<%s>" % char), n))
                    elif ct.endswith("Handle*"):
                        call_args.append("reinterpret_cast<zelvar::%s**>(%s)" % (t[:-2].replace("<T>", "<%s>" % char), n))
                    else:
                        call_args.append(n)
                call = "reinterpret_cast<zelvar::%s*>(handle)->%s(%s)" % (self_t, name, ", ".join(call_args))
                if ret == "void":
                    lines.append("    %s;" % call)
                    lines += post
                elif ret == "bool":
                    if post:
                        lines.append("    bool result = %s;" % call)
                        lines += post
                        lines.append("    return result ? 1 : 0;")
                    else:
                        lines.append("    return %s ? 1 : 0;" % call)
                else:
                    expr = call
                    if ret in ENUMS:
                        expr = "static_cast<int>(%s)" % call
                    elif cret.endswith("Handle"):
                        expr = "reinterpret_cast<%s>(%s)" % (cret, call)
                    if post:
                        lines.append("    %s result = %s;" % (cret, expr))
                        lines += post
                        lines.append("    return result;")
                    else:
                        lines.append("    return %s;" % expr)
                lines.append("}")
                defs_cpp.append("\n".join(lines))
    header = HEADER_TEMPLATE.replace("@COUNT@", str(count)).replace("@DECLS@", "\n".join(decls_h))
    open(os.path.join(ROOT, "include", "zelvar_c.h"), "w").write(header)
    source = SOURCE_TEMPLATE.replace("@DEFS@", "\n".join(defs_cpp))
    open(os.path.join(ROOT, "source", "frame", "flat_functions.cpp"), "w").write(source)
    print("%d families written" % count)


HEADER_TEMPLATE = """/*
 * zelvar: the flat C interface. Generated from include/zelvar.h by tools/gen_flat.py; do not edit.
 *
 * Each of the @COUNT@ operations of the C++ interfaces is one function per text width:
 * zv<Class><Operation>A takes 8-bit text, ...W wide text. The first argument is the object's
 * handle; a handle from an A factory is used with A functions only. bool results are 1 or 0,
 * enumerations are int. After a failure value, zvBookErrorMessageA/W tells why.
 *
 *     BookHandle book = zvCreateBookA();
 *     SheetHandle sheet = zvBookAddSheetA(book, "Sheet1", NULL);
 *     zvSheetWriteNumA(sheet, 0, 0, 42.0, NULL);
 *     zvBookReleaseA(book);
 *
 * C++ programs that use both headers include zelvar.h first.
 */
#ifndef ZELVAR_C_H
#define ZELVAR_C_H

#include <stddef.h>
#include <wchar.h>

#ifndef ZELVAR_API
#  if defined(_WIN32)
#    define ZELVAR_API __declspec(dllexport)
#  else
#    define ZELVAR_API __attribute__((visibility("default")))
#  endif
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct zvBookObject* BookHandle;
typedef struct zvSheetObject* SheetHandle;
typedef struct zvFormatObject* FormatHandle;
typedef struct zvFontObject* FontHandle;

#ifndef ZELVAR_CPP_FACTORIES
/* A new binary (.xls) book, or NULL if it could not be made. End it with zvBookReleaseA/W. */
ZELVAR_API BookHandle zvCreateBookA(void);
ZELVAR_API BookHandle zvCreateBookW(void);
/* As above; a failure during construction is not caught here. */
ZELVAR_API BookHandle zvCreateBookCA(void);
ZELVAR_API BookHandle zvCreateBookCW(void);
/* A new XML (.xlsx) book, or NULL if it could not be made. End it with zvBookReleaseA/W. */
ZELVAR_API BookHandle zvCreateXMLBookA(void);
ZELVAR_API BookHandle zvCreateXMLBookW(void);
/* As above; a failure during construction is not caught here. */
ZELVAR_API BookHandle zvCreateXMLBookCA(void);
ZELVAR_API BookHandle zvCreateXMLBookCW(void);
#endif
@DECLS@

#ifdef __cplusplus
}
#endif

#endif /* ZELVAR_C_H */
"""

SOURCE_TEMPLATE = """// The flat C layer: one exported function per interface operation and text width.
// Generated from include/zelvar.h by tools/gen_flat.py; do not edit.
// No guard stands here: every operation catches its own failures and keeps the message.
#include "zelvar.h"
#include "zelvar_c.h"

extern "C" {
@DEFS@

}  // extern "C"
"""

if __name__ == "__main__":
    sys.exit(main())
