#!/usr/bin/env python3
"""Generates the flat C layer from the C++ interfaces of include/zelvar.h.

Writes include/zelvar_c.h and source/frame/flat_functions.cpp. Each interface operation becomes one
function per text width: zv<Class><Operation>A over char and ...W over wchar_t, taking the object's
handle first. The comment of each operation comes along into the C header, its example turned into
the C calls, so the two headers can't tell different stories.

    python3 tools/gen_flat.py          # after changing an interface or its comments
    python3 tools/gen_flat.py --check  # fails when the committed files differ from what it writes
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
        found = []
        # Each declaration with the comment block that stands right before it.
        for decl in re.finditer(r"(/\*(?:(?!\*/).)*\*/\s*)?virtual ([^;~]*?)\b(\w+)\(([^;]*?)\)( const)? = 0;",
                                m.group(1), re.S):
            comment = decl.group(1).strip() if decl.group(1) else ""
            ret, name = " ".join(decl.group(2).split()), decl.group(3)
            args = " ".join(decl.group(4).split())
            params = []
            if args and args != "void":
                for a in split_args(args):
                    default = a.split("=")[1].strip() if "=" in a else None
                    a = a.split("=")[0].strip()
                    am = re.match(r"(.*?)(\w+)$", a)
                    params.append((am.group(1).strip(), am.group(2), default))
            found.append((ret, name, params, bool(decl.group(5)), comment))
        ops[word] = (cls, found)
    return ops


def parse_enums(text):
    """Enumerator names with their values, for the C form of the examples."""
    values = {}
    for body in re.findall(r"enum \w+ : int \{(.*?)\};", text, re.S):
        body = re.sub(r"/\*.*?\*/", "", body, flags=re.S)
        nxt = 0
        for item in body.split(","):
            item = item.strip()
            if not item:
                continue
            if "=" in item:
                name, value = [x.strip() for x in item.split("=")]
                nxt = int(value, 0)
            else:
                name = item
            values[name] = nxt
            nxt += 1
    return values


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


class CExample:
    """Turns the C++ example of an operation's comment into the same calls of the flat layer.

    Examples are written in a small, regular subset of C++: objects are book, other (books), sheet,
    fmt, font, or locals declared with IBookA*, ISheetA*, IFormatA*, IFontA*; calls are
    object->operation(arguments), also chained. Missing default arguments are filled in, enumerators
    become their numbers, nullptr NULL, true and false 1 and 0, bool and enumeration types int.
    """

    KNOWN = {"book": "Book", "other": "Book", "sheet": "Sheet", "fmt": "Format", "font": "Font"}
    TYPES = {"IBookA*": "BookHandle", "ISheetA*": "SheetHandle", "IFormatA*": "FormatHandle",
             "IFontA*": "FontHandle", "IBookW*": "BookHandle"}
    RESULT = {"IBookT<T>*": "Book", "ISheetT<T>*": "Sheet", "IFormatT<T>*": "Format", "IFontT<T>*": "Font"}

    def __init__(self, ops, enums):
        self.ops = {word: {op[1]: op for op in found} for word, (cls, found) in ops.items()}
        self.enums = enums
        self.enum_types = ENUMS | {"CellType", "SheetType", "ErrorType", "PictureType", "NumFormat"}

    def convert(self, lines):
        text = "\n".join(lines)
        objects = dict(self.KNOWN)
        for typ, var in re.findall(r"\b(I(?:Book|Sheet|Format|Font)[AW]\*)\s*(\w+)", text):
            objects[var] = typ[1:-2]
        out = [self.calls(line, objects) for line in lines]
        result = []
        for line in out:
            for cpp, c in self.TYPES.items():
                line = line.replace(cpp, c)
            line = re.sub(r"\b(%s)\b(?=\s+\w+\s*[=;,])" % "|".join(sorted(self.enum_types)), "int", line)
            line = re.sub(r"\bbool\b", "int", line)
            line = re.sub(r"\bnullptr\b", "NULL", line)
            line = re.sub(r"\btrue\b", "1", line)
            line = re.sub(r"\bfalse\b", "0", line)
            line = re.sub(r"\b[A-Z]\w+\b", lambda m: str(self.enums[m.group(0)]) if m.group(0) in self.enums else m.group(0), line)
            result.append(line)
        return result

    def calls(self, line, objects):
        out, i = "", 0
        while i < len(line):
            m = re.compile(r"\b(\w+)->").match(line, i) if (i == 0 or not (line[i - 1].isalnum() or line[i - 1] == "_")) else None
            if m and m.group(1) in objects:
                expr, word, i = m.group(1), objects[m.group(1)], m.end()
                while True:
                    op = re.compile(r"(\w+)\(").match(line, i)
                    close = self.matching(line, op.end() - 1)
                    args = [self.calls(a.strip(), objects) for a in self.split(line[op.end():close]) if a.strip()]
                    ret, name, params, is_const, comment = self.ops[word][op.group(1)]
                    for k in range(len(args), len(params)):
                        default = params[k][2]
                        if default is None:
                            raise ValueError("example misses an argument of %s: %s" % (name, line))
                        if params[k][0].endswith("*") and default == "0":
                            default = "NULL"
                        args.append(default)
                    expr = "%s(%s)" % (flat_name(word, name, "A"), ", ".join([expr] + args))
                    i = close + 1
                    if line.startswith("->", i) and ret in self.RESULT:
                        word, i = self.RESULT[ret], i + 2
                        continue
                    break
                out += expr
            else:
                out += line[i]
                i += 1
        return out

    @staticmethod
    def split(args):
        """Arguments of a call, split at the commas outside parentheses and quotes."""
        out, depth, quoted, cur = [], 0, False, ""
        for k, ch in enumerate(args):
            if ch == '"' and (k == 0 or args[k - 1] != "\\"):
                quoted = not quoted
            elif not quoted and ch == "(":
                depth += 1
            elif not quoted and ch == ")":
                depth -= 1
            if ch == "," and depth == 0 and not quoted:
                out.append(cur)
                cur = ""
            else:
                cur += ch
        out.append(cur)
        return out

    @staticmethod
    def matching(line, open_at):
        depth, quoted = 0, False
        for j in range(open_at, len(line)):
            ch = line[j]
            if ch == '"' and line[j - 1] != "\\":
                quoted = not quoted
            elif not quoted and ch == "(":
                depth += 1
            elif not quoted and ch == ")":
                depth -= 1
                if depth == 0:
                    return j
        raise ValueError("unbalanced example: " + line)


def c_comment(comment, converter):
    """The operation's comment for the C header: the same text, the example in flat calls."""
    lines = comment.split("\n")
    body = [re.sub(r"^\s*(/\*|\*/|\*)? ?", "", l, count=1) for l in lines]
    body[-1] = body[-1].rstrip()
    if body[-1].endswith("*/"):
        body[-1] = body[-1][:-2].rstrip()
    example = [k for k, l in enumerate(body) if l.startswith("    ")]
    if example:
        code = converter.convert([body[k][4:] for k in example])
        for k, line in zip(example, code):
            body[k] = "    " + line
    text = "/* " + body[0]
    for line in body[1:]:
        text += "\n *" + (" " + line if line else "")
    return text + " */"


def generate():
    text = open(HEADER).read()
    ops = parse_interfaces(text)
    converter = CExample(ops, parse_enums(text))
    count = sum(len(v[1]) for v in ops.values())
    decls_h, defs_cpp = [], []
    for word, (cls, found) in ops.items():
        decls_h.append("\n/* ---- %s ---- */" % word)
        for ret, name, params, is_const, comment in found:
            decls_h.append(c_comment(comment, converter))
            for suffix, char in (("A", "char"), ("W", "wchar_t")):
                cparams = ["%s handle" % (word + "Handle")]
                cparams += ["%s %s" % (c_type(t, char), n) for t, n, d in params]
                decls_h.append("ZELVAR_API %s %s(%s);" % (c_type(ret, char), flat_name(word, name, suffix),
                                                         ", ".join(cparams)))
        for suffix, char in (("A", "char"), ("W", "wchar_t")):
            defs_cpp.append("\n// %s, %s" % (word, char))
            for ret, name, params, is_const, comment in found:
                defs_cpp.append(definition(cls, word, ret, name, params, suffix, char))
    header = HEADER_TEMPLATE.replace("@COUNT@", str(count)).replace("@DECLS@", "\n".join(decls_h))
    source = SOURCE_TEMPLATE.replace("@DEFS@", "\n".join(defs_cpp))
    return count, {os.path.join("include", "zelvar_c.h"): header,
                   os.path.join("source", "frame", "flat_functions.cpp"): source}


def definition(cls, word, ret, name, params, suffix, char):
    fname = flat_name(word, name, suffix)
    cret = c_type(ret, char)
    cparams = ["%s handle" % (word + "Handle")]
    cparams += ["%s %s" % (c_type(t, char), n) for t, n, d in params]
    self_t = "%s<%s>" % (cls, char)
    lines = ["ZELVAR_API %s %s(%s) {" % (cret, fname, ", ".join(cparams))]
    call_args, post = [], []
    for t, n, d in params:
        ct = c_type(t, char)
        if t == "bool*":
            # A null pointer stays null: the interface takes it as "not wanted".
            lines.append("    bool %s_value = false;" % n)
            call_args.append("%s ? &%s_value : nullptr" % (n, n))
            post.append("    if (%s) *%s = %s_value ? 1 : 0;" % (n, n, n))
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
    return "\n".join(lines)


def main(argv):
    count, files = generate()
    if "--check" in argv:
        stale = [path for path, content in files.items()
                 if not os.path.exists(os.path.join(ROOT, path)) or open(os.path.join(ROOT, path)).read() != content]
        for path in stale:
            print("%s differs from what tools/gen_flat.py writes: run python3 tools/gen_flat.py" % path)
        return 1 if stale else 0
    for path, content in files.items():
        with open(os.path.join(ROOT, path), "w") as out:
            out.write(content)
    print("%d families written" % count)
    return 0


HEADER_TEMPLATE = """/*
 * zelvar: the flat C interface. Generated from include/zelvar.h by tools/gen_flat.py; do not edit.
 *
 * Each of the @COUNT@ operations of the C++ interfaces is one function per text width:
 * zv<Class><Operation>A takes 8-bit text, ...W wide text. The first argument is the object's
 * handle; a handle from an A factory is used with A functions only. bool results are 1 or 0,
 * enumerations are int (their numbers are listed in zelvar.h). After a failure value,
 * zvBookErrorMessageA/W tells why; a format's or font's failure goes to its book's message.
 *
 *     BookHandle book = zvCreateBookA();
 *     SheetHandle sheet = zvBookAddSheetA(book, "Sheet1", NULL);
 *     zvSheetWriteNumA(sheet, 0, 0, 42.0, NULL);
 *     zvBookReleaseA(book);
 *
 * Each function's comment says what it does, then "Fails with:" and the messages it can set
 * ("none": it can't fail and may leave the message as it was), then a two-line example over a
 * book, sheet, fmt (a format) and font. Where XML books (.xlsx) answer differently, a note
 * "XML books:" says how. The text names operations as the C++ interfaces do: addSheet of a book
 * is zvBookAddSheetA/W here, setBold of a font zvFontSetBoldA/W.
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
/* A new, empty binary (.xls) book with 8-bit text, or NULL if it could not be made; end it with
 * zvBookReleaseA. It has no sheet until zvBookAddSheetA or zvBookLoadA.
 * Fails with: none (there is no book to hold a message).
 *     BookHandle book = zvCreateBookA();
 *     if (book) zvBookReleaseA(book); */
ZELVAR_API BookHandle zvCreateBookA(void);
/* As zvCreateBookA, with wide (wchar_t) text; use the W functions with it.
 * Fails with: none.
 *     BookHandle wide = zvCreateBookW();
 *     if (wide) zvBookReleaseW(wide); */
ZELVAR_API BookHandle zvCreateBookW(void);
/* As zvCreateBookA, but a failure during construction is not caught here.
 * Fails with: none.
 *     BookHandle book = zvCreateBookCA();
 *     zvBookReleaseA(book); */
ZELVAR_API BookHandle zvCreateBookCA(void);
/* As zvCreateBookW, but a failure during construction is not caught here.
 * Fails with: none.
 *     BookHandle wide = zvCreateBookCW();
 *     zvBookReleaseW(wide); */
ZELVAR_API BookHandle zvCreateBookCW(void);
/* A new XML (.xlsx) book with 8-bit text, with the parts of a new package and the default
 * stylesheet, or NULL if it could not be made; end it with zvBookReleaseA. It is transitional
 * until a strict file is loaded; zvBookLoadA tries the other dialect when the first fails.
 * Fails with: none (there is no book to hold a message).
 *     BookHandle book = zvCreateXMLBookA();
 *     if (book) zvBookReleaseA(book); */
ZELVAR_API BookHandle zvCreateXMLBookA(void);
/* As zvCreateXMLBookA, with wide (wchar_t) text; use the W functions with it.
 * Fails with: none.
 *     BookHandle wide = zvCreateXMLBookW();
 *     if (wide) zvBookReleaseW(wide); */
ZELVAR_API BookHandle zvCreateXMLBookW(void);
/* As zvCreateXMLBookA, but a failure during construction is not caught here.
 * Fails with: none.
 *     BookHandle book = zvCreateXMLBookCA();
 *     zvBookReleaseA(book); */
ZELVAR_API BookHandle zvCreateXMLBookCA(void);
/* As zvCreateXMLBookW, but a failure during construction is not caught here.
 * Fails with: none.
 *     BookHandle wide = zvCreateXMLBookCW();
 *     zvBookReleaseW(wide); */
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
    sys.exit(main(sys.argv[1:]))
