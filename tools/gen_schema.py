#!/usr/bin/env python3
"""Writes the schema-bound classes of source/ooxml from the published schemas.

Usage: gen_schema.py SCHEMA_DIR OUT_DIR

Every complex type, element group and anonymous model group reached from a namespace's roots
becomes a static descriptor (attributes with their simple-type checks, defaults and required
flags; content steps with their bounds, choices and child types); one shared engine
(lmx_bound) reads, writes, copies and checks objects through these descriptors. The classes that
the XML book calls by name get a C++ class with inline accessors over the engine's storage.
The output depends only on the schema files, so a rerun gives the same bytes.
"""
import os
import re
import sys
import xml.etree.ElementTree as ET

XSD = "http://www.w3.org/2001/XMLSchema"
XML_NS = "http://www.w3.org/XML/1998/namespace"
T = "http://schemas.openxmlformats.org"
S = "http://purl.oclc.org/ooxml"

CPP_KEYWORDS = set("""alignas alignof and and_eq asm auto bitand bitor bool break case catch char char16_t
char32_t class compl const constexpr const_cast continue decltype default delete do double
dynamic_cast else enum explicit export extern false float for friend goto if inline int long mutable
namespace new noexcept not not_eq nullptr operator or or_eq private protected public register
reinterpret_cast return short signed sizeof static static_assert static_cast struct switch template
this thread_local throw true try typedef typeid typename union unsigned using virtual void volatile
wchar_t while xor xor_eq""".split())


def q(tag):
    return "{%s}%s" % (XSD, tag)


# ---- reading the schema files ---------------------------------------------------------------

class Schema:
    """All global definitions of the files reached from one entry file through imports."""

    def __init__(self):
        self.types = {}      # (ns, name) -> (element, file prefixes)
        self.simple = {}
        self.elements = {}
        self.groups = {}
        self.attr_groups = {}
        self.attributes = {}
        self.loaded = set()
        self.uri_prefixes = {}

    def load(self, path):
        path = os.path.normpath(path)
        if path in self.loaded:
            return
        self.loaded.add(path)
        prefixes = {}
        for event, item in ET.iterparse(path, events=("start-ns",)):
            prefixes.setdefault(item[0], item[1])
            if item[0]:
                self.uri_prefixes.setdefault(item[1], item[0])
        root = ET.parse(path).getroot()
        tns = root.get("targetNamespace", "")
        ctx = (tns, prefixes)
        for child in root:
            name = child.get("name")
            if child.tag == q("import") or child.tag == q("include"):
                loc = child.get("schemaLocation")
                if loc:
                    self.load(os.path.join(os.path.dirname(path), loc))
                continue
            table = {q("complexType"): self.types, q("simpleType"): self.simple,
                     q("element"): self.elements, q("group"): self.groups,
                     q("attributeGroup"): self.attr_groups, q("attribute"): self.attributes}.get(child.tag)
            if table is not None and name:
                table[(tns, name)] = (child, ctx)

    @staticmethod
    def qname(text, ctx):
        if ":" in text:
            prefix, local = text.split(":", 1)
            if prefix == "xml":
                return (XML_NS, local)
            return (ctx[1][prefix], local)
        return (ctx[1].get("", ""), local_default(text, ctx))


def local_default(text, ctx):
    return text


def occurs(node):
    mn = int(node.get("minOccurs", "1"))
    mx = node.get("maxOccurs", "1")
    mx = 0xFFFFFFFF if mx == "unbounded" else int(mx)
    return mn, mx


# ---- simple types ---------------------------------------------------------------------------

INT_KINDS = {
    "boolean": "VK_BOOL", "byte": "VK_I8", "unsignedByte": "VK_U8", "short": "VK_I16",
    "unsignedShort": "VK_U16", "int": "VK_I32", "unsignedInt": "VK_U32", "long": "VK_I64",
    "unsignedLong": "VK_U64", "integer": "VK_I64", "nonNegativeInteger": "VK_U64",
    "positiveInteger": "VK_U64", "negativeInteger": "VK_I64", "nonPositiveInteger": "VK_I64",
    "double": "VK_DOUBLE", "float": "VK_FLOAT", "hexBinary": "VK_HEX", "base64Binary": "VK_BASE64",
}
BUILTIN_RANGE = {"positiveInteger": ("1", None), "nonNegativeInteger": ("0", None),
                 "negativeInteger": (None, "-1"), "nonPositiveInteger": (None, "0")}
BUILTIN_LEXICAL = {"decimal": "LX_DECIMAL", "dateTime": "LX_DATETIME", "integer": "LX_INTEGER"}
COLLAPSE_STRINGS = {"token", "NCName", "ID", "IDREF", "language", "Name", "NMTOKEN", "anyURI", "QName",
                    "dateTime", "date", "time", "decimal", "integer", "gYear", "duration"}


# Required attributes that real packages leave out: a relationship to an external path without a
# target. They are read as optional and written back when present.
OPTIONAL_IN_PRACTICE = {("CT_Relationship", "Target"), ("CT_Relationship", "Id")}


class Simple:
    def __init__(self):
        self.kind = "VK_WSTRING"
        self.ws = "EXWS_PRESERVE"
        self.enums = []
        self.min_inc = self.max_inc = self.min_exc = self.max_exc = None
        self.length = self.min_len = self.max_len = None
        self.patterns = []
        self.lexical = "LX_NONE"
        self.items = None      # a list's item type
        self.members = None    # a union's member types

    def key(self):
        return (self.kind, self.ws, tuple(self.enums), self.min_inc, self.max_inc, self.min_exc, self.max_exc,
                self.length, self.min_len, self.max_len, tuple(self.patterns), self.lexical,
                self.items.key() if self.items else None,
                tuple(m.key() for m in self.members) if self.members else None)


class Resolver:
    def __init__(self, schema):
        self.schema = schema
        self.cache = {}

    def builtin(self, name):
        s = Simple()
        if name in INT_KINDS:
            s.kind = INT_KINDS[name]
            s.ws = "EXWS_COLLAPSE"
            if name in BUILTIN_RANGE:
                s.min_inc, s.max_inc = BUILTIN_RANGE[name]
        else:
            s.kind = "VK_WSTRING"
            s.lexical = BUILTIN_LEXICAL.get(name, "LX_NONE")
            if name in COLLAPSE_STRINGS:
                s.ws = "EXWS_COLLAPSE"
            elif name == "normalizedString":
                s.ws = "EXWS_REPLACE"
        return s

    def simple(self, qn):
        if qn in self.cache:
            return self.cache[qn]
        if qn[0] == XSD:
            s = self.builtin(qn[1])
        elif qn in self.schema.simple:
            node, ctx = self.schema.simple[qn]
            s = self.simple_node(node, ctx)
        else:
            raise KeyError(qn)
        self.cache[qn] = s
        return s

    def simple_node(self, node, ctx):
        r = node.find(q("restriction"))
        if r is not None:
            if r.get("base"):
                base = self.simple(Schema.qname(r.get("base"), ctx))
            else:
                base = self.simple_node(r.find(q("simpleType")), ctx)
            s = Simple()
            s.__dict__.update(base.__dict__)
            s.enums = list(base.enums)
            s.patterns = list(base.patterns)
            enums = []
            for f in r:
                tag = f.tag.split("}")[1]
                v = f.get("value")
                if tag == "enumeration":
                    enums.append(v)
                elif tag == "pattern":
                    s.patterns = [v]
                elif tag == "minInclusive":
                    s.min_inc = v
                elif tag == "maxInclusive":
                    s.max_inc = v
                elif tag == "minExclusive":
                    s.min_exc = v
                elif tag == "maxExclusive":
                    s.max_exc = v
                elif tag == "length":
                    # Colours of real files come with fewer or more bytes than the four the
                    # schema asks; hexBinary values are kept as read, of any length.
                    if s.kind not in ("VK_HEX",):
                        s.length = int(v)
                elif tag == "minLength":
                    s.min_len = int(v)
                elif tag == "maxLength":
                    s.max_len = int(v)
                elif tag == "whiteSpace":
                    s.ws = {"preserve": "EXWS_PRESERVE", "replace": "EXWS_REPLACE", "collapse": "EXWS_COLLAPSE"}[v]
            if enums:
                s.enums = enums
            return s
        lst = node.find(q("list"))
        if lst is not None:
            s = Simple()
            s.ws = "EXWS_COLLAPSE"
            if lst.get("itemType"):
                s.items = self.simple(Schema.qname(lst.get("itemType"), ctx))
            else:
                s.items = self.simple_node(lst.find(q("simpleType")), ctx)
            return s
        un = node.find(q("union"))
        if un is not None:
            s = Simple()
            s.ws = "EXWS_COLLAPSE"
            s.members = [self.simple(Schema.qname(m, ctx)) for m in (un.get("memberTypes") or "").split()]
            s.members += [self.simple_node(m, ctx) for m in un.findall(q("simpleType"))]
            return s
        raise ValueError("simple type form")


# ---- complex types --------------------------------------------------------------------------

class Attr:
    def __init__(self, ns, name, simple, required, default, xml_qname):
        self.ns, self.name, self.simple, self.required, self.default = ns, name, simple, required, default
        self.xml_qname = xml_qname  # qualified name as written


class Step:
    """One content step: an element, a model group held as an object of its own, or a wildcard."""

    def __init__(self, kind, mn, mx, name=None, ns=None, target=None, simple=None):
        self.kind, self.min, self.max = kind, mn, mx
        self.name, self.ns, self.target, self.simple = name, ns, target, simple
        self.any_drop = False


class Type:
    def __init__(self, name, cls):
        self.name = name          # descriptor and class name without c_
        self.cls = cls
        self.attrs = []
        self.steps = []
        self.choice = False
        self.simple_content = None
        self.any_attribute = False
        self.foreign = False
        self.known = False
        self.owner = None
        self.built = False


class Builder:
    def __init__(self, schema, main_ns):
        self.schema = schema
        self.res = Resolver(schema)
        self.types = {}        # key -> Type
        self.order = []
        self.main_ns = main_ns
        self.anon_count = {}

    def type_for(self, qn):
        key = ("ct",) + qn
        if key in self.types:
            return self.types[key]
        node, ctx = self.schema.types[qn]
        t = Type(qn[1], qn[1])
        self.types[key] = t
        self.order.append(t)
        self.build_complex(t, node, ctx)
        return t

    def group_for(self, qn):
        key = ("gr",) + qn
        if key in self.types:
            return self.types[key]
        node, ctx = self.schema.groups[qn]
        t = Type(qn[1], qn[1])
        self.types[key] = t
        self.order.append(t)
        particle = [c for c in node if c.tag in (q("sequence"), q("choice"), q("all"))][0]
        self.build_particle(t, particle, ctx, top=True)
        return t

    def anon(self, owner, base, node, ctx, kind):
        key = (owner.name if owner else "", base)
        n = self.anon_count.get(key, 0)
        self.anon_count[key] = n + 1
        short = base if n == 0 else "%s_%d" % (base, n)
        name = short if owner is None else owner.name + "_" + short
        t = Type(name, short)
        t.owner = owner
        self.types[("anon", name, id(node))] = t
        self.order.append(t)
        if kind == "complex":
            self.build_complex(t, node, ctx)
        else:
            self.build_particle(t, node, ctx, top=True, group_item=True)
        return t

    def attributes(self, t, node, ctx):
        for a in node:
            if a.tag == q("attribute"):
                if a.get("ref"):
                    qn = Schema.qname(a.get("ref"), ctx)
                    if qn[0] == XML_NS:
                        simple = Simple()
                        if qn[1] == "space":
                            simple.ws = "EXWS_COLLAPSE"
                            simple.enums = ["default", "preserve"]
                        xml_qname = "xml:" + qn[1]
                    else:
                        anode, actx = self.schema.attributes[qn]
                        simple = self.attr_simple(anode, actx)
                        prefix = [p for p, u in ctx[1].items() if u == qn[0] and p][0]
                        xml_qname = prefix + ":" + qn[1]
                    ns = qn[0]
                    name = qn[1]
                    default = a.get("default") or (anode.get("default") if qn[0] != XML_NS else None)
                else:
                    name = a.get("name")
                    ns = ""
                    simple = self.attr_simple(a, ctx)
                    xml_qname = name
                    default = a.get("default")
                if a.get("use") == "prohibited":
                    continue
                if a.get("fixed") is not None:
                    default = a.get("fixed")
                required = a.get("use") == "required" and (t.name, name) not in OPTIONAL_IN_PRACTICE
                t.attrs.append(Attr(ns, name, simple, required, default, xml_qname))
            elif a.tag == q("attributeGroup"):
                gnode, gctx = self.schema.attr_groups[Schema.qname(a.get("ref"), ctx)]
                self.attributes(t, gnode, gctx)
            elif a.tag == q("anyAttribute"):
                t.any_attribute = True

    def attr_simple(self, a, ctx):
        if a.get("type"):
            return self.res.simple(Schema.qname(a.get("type"), ctx))
        st = a.find(q("simpleType"))
        if st is not None:
            return self.res.simple_node(st, ctx)
        return self.res.builtin("string")

    def build_complex(self, t, node, ctx):
        if node.get("mixed") == "true":
            t.mixed = True
        for c in node:
            if c.tag in (q("sequence"), q("choice"), q("all"), q("group")):
                self.build_particle(t, c, ctx, top=True)
            elif c.tag == q("complexContent"):
                der = [d for d in c if d.tag in (q("extension"), q("restriction"))][0]
                base = Schema.qname(der.get("base"), ctx)
                if der.tag == q("extension") and base[0] != XSD:
                    bnode, bctx = self.schema.types[base]
                    self.build_complex(t, bnode, bctx)
                for d in der:
                    if d.tag in (q("sequence"), q("choice"), q("all"), q("group")):
                        self.build_particle(t, d, ctx, top=not t.steps)
                self.attributes(t, der, ctx)
            elif c.tag == q("simpleContent"):
                der = [d for d in c if d.tag in (q("extension"), q("restriction"))][0]
                base = Schema.qname(der.get("base"), ctx)
                if base[0] == XSD or base in self.schema.simple:
                    t.simple_content = self.res.simple(base)
                else:
                    bnode, bctx = self.schema.types[base]
                    self.build_complex(t, bnode, bctx)
                self.attributes(t, der, ctx)
        self.attributes(t, node, ctx)

    def element_step(self, t, e, ctx, mn, mx):
        if e.get("ref"):
            qn = Schema.qname(e.get("ref"), ctx)
            gnode, gctx = self.schema.elements[qn]
            return self.element_step_named(t, qn[0], qn[1], gnode, gctx, mn, mx)
        return self.element_step_named(t, ctx[0], e.get("name"), e, ctx, mn, mx)

    def element_step_named(self, t, ns, name, e, ctx, mn, mx):
        if e.get("type"):
            tq = Schema.qname(e.get("type"), ctx)
            if tq[0] == XSD or tq in self.schema.simple:
                return Step("simple", mn, mx, name, ns, simple=self.res.simple(tq))
            return Step("element", mn, mx, name, ns, target=("ct", tq))
        ct = e.find(q("complexType"))
        if ct is not None:
            sub = self.anon(t, "anon_%s" % name, ct, ctx, "complex")
            return Step("element", mn, mx, name, ns, target=sub)
        st = e.find(q("simpleType"))
        if st is not None:
            return Step("simple", mn, mx, name, ns, simple=self.res.simple_node(st, ctx))
        return Step("simple", mn, mx, name, ns, simple=self.res.builtin("string"))

    def alt_steps(self, t, c, ctx):
        """Steps of one member of a choice or sequence."""
        mn, mx = occurs(c)
        if c.tag == q("element"):
            return [self.element_step(t, c, ctx, mn, mx)]
        if c.tag == q("any"):
            return [Step("any", mn, mx, ns=c.get("namespace", "##any"))]
        if c.tag == q("group"):
            return [Step("group", mn, mx, target=("gr", Schema.qname(c.get("ref"), ctx)))]
        if c.tag == q("choice"):
            sub = self.anon(t, "anon_choice", c, ctx, "group")
            return [Step("group", mn, mx, target=sub)]
        if c.tag in (q("sequence"), q("all")):
            if mx == 1:
                steps = []
                for cc in c:
                    for s in self.alt_steps(t, cc, ctx):
                        if mn == 0:
                            s.min = 0
                        steps.append(s)
                return steps
            sub = self.anon(t, "anon_seq", c, ctx, "group")
            return [Step("group", mn, mx, target=sub)]
        raise ValueError(c.tag)

    def build_particle(self, t, p, ctx, top=False, group_item=False):
        mn, mx = occurs(p)
        if p.tag == q("group"):
            t.steps.append(Step("group", mn, mx, target=("gr", Schema.qname(p.get("ref"), ctx))))
            return
        if p.tag == q("choice"):
            if top and (mx == 1 or group_item) and not t.steps:
                t.choice = True
                for c in p:
                    for s in self.alt_steps(t, c, ctx):
                        t.steps.append(s)
                return
            sub = self.anon(t, "inner_" + t.name, p, ctx, "group")
            t.steps.append(Step("group", mn, mx, target=sub))
            return
        # sequence or all
        kids = [c for c in p if c.tag != q("annotation")]
        if (top and not t.steps and mn == 1 and mx == 1 and len(kids) == 1 and kids[0].tag == q("choice")
                and occurs(kids[0]) == (1, 1)):
            # A sequence of one choice is the choice.
            self.build_particle(t, kids[0], ctx, top=True, group_item=group_item)
            return
        if mx != 1 and not group_item:
            sub = self.anon(t, "anon_seq", p, ctx, "group")
            t.steps.append(Step("group", mn, mx, target=sub))
            return
        for c in p:
            for s in self.alt_steps(t, c, ctx):
                if mn == 0 and not group_item:
                    s.min = 0
                t.steps.append(s)

    def resolve(self):
        """Turns step targets given by name into types, reaching the whole closure."""
        i = 0
        while i < len(self.order):
            t = self.order[i]
            for s in t.steps:
                if isinstance(s.target, tuple):
                    if s.target[0] == "ct":
                        s.target = self.type_for(s.target[1])
                    else:
                        s.target = self.group_for(s.target[1])
            i += 1


# ---- namespaces -----------------------------------------------------------------------------

NAMESPACES = [
    # name, entry file, roots, unit names, ns map rows (id, prefix, uri), known tables, ignore_unknown roots
    dict(name="sheet", entry="transitional/sml.xsd",
         roots=["worksheet", "chartsheet", "dialogsheet", "workbook", "styleSheet", "sst"],
         units=["sml-sheet", "sml-sheet2", "sml-sheet3"],
         ns=[(1000, "", T + "/spreadsheetml/2006/main"), (1001, "r", T + "/officeDocument/2006/relationships")],
         known=True, tolerant=["worksheet", "chartsheet", "dialogsheet", "workbook", "styleSheet", "sst"],
         drop_ext=True,
         foreign=["CT_Worksheet", "CT_Workbook", "CT_Stylesheet", "CT_SheetFormatPr", "CT_Row", "CT_Fonts",
                  "CT_CellFormula"]),
    dict(name="workbook", entry="transitional/sml.xsd", roots=["workbook"], units=["sml-workbook"],
         ns=[(1001, "", T + "/spreadsheetml/2006/main"), (1000, "r", T + "/officeDocument/2006/relationships")],
         known=True, tolerant=["workbook"], foreign=["CT_Workbook"]),
    dict(name="styles", entry="transitional/sml.xsd", roots=["styleSheet"], units=["sml-styles"],
         ns=[(1000, "", T + "/spreadsheetml/2006/main")], foreign=["CT_Stylesheet", "CT_Fonts", "CT_CellStyle"]),
    dict(name="sharedStringTable", entry="transitional/sml.xsd", roots=["sst"], units=["sml-sharedStringTable"],
         ns=[(1000, "", T + "/spreadsheetml/2006/main")], foreign=["CT_Stylesheet", "CT_Fonts"]),
    dict(name="strict", entry="strict/sml.xsd", roots=None, units=["sml", "sml2", "sml3", "sml4", "sml5", "sml6"],
         ns=[(1000, "", S + "/spreadsheetml/main"), (1001, "r", S + "/officeDocument/relationships"),
             (1002, "xdr", S + "/drawingml/spreadsheetDrawing")],
         known=True, tolerant=["worksheet", "chartsheet", "dialogsheet", "workbook", "styleSheet", "sst"],
         foreign=["CT_Worksheet", "CT_WorkbookPr", "CT_Workbook", "CT_Stylesheet", "CT_SheetFormatPr", "CT_Row",
                  "CT_Fonts", "CT_CellFormula"]),
    dict(name="drawing", entry="transitional/dml-spreadsheetDrawing.xsd", roots=["wsDr"],
         units=["dml-spreadsheetDrawing", "dml-spreadsheetDrawing2", "dml-spreadsheetDrawing3"],
         ns=[(1000, "xdr", T + "/drawingml/2006/spreadsheetDrawing"), (1001, "a", T + "/drawingml/2006/main"),
             (1002, "r", T + "/officeDocument/2006/relationships")],
         foreign=["CT_SRgbColor", "CT_NonVisualDrawingProps"], known=True, tolerant=["wsDr"]),
    dict(name="strictdrawing", entry="strict/dml-spreadsheetDrawing.xsd", roots=["wsDr"],
         units=["strictDrawing", "strictDrawing2", "strictDrawing3"],
         ns=[(1000, "xdr", S + "/drawingml/spreadsheetDrawing"), (1001, "a", S + "/drawingml/main"),
             (1002, "r", S + "/officeDocument/relationships")],
         foreign=["CT_SRgbColor"], known=True, tolerant=["wsDr"]),
    dict(name="contentypes", entry="opc/opc-contentTypes.xsd", roots=["Types"], units=["opc-contentTypes"],
         ns=[(1000, "", "http://schemas.openxmlformats.org/package/2006/content-types")], foreign=[]),
    dict(name="relationships", entry="opc/opc-relationships.xsd", roots=["Relationships"],
         units=["opc-relationships"],
         ns=[(1000, "", "http://schemas.openxmlformats.org/package/2006/relationships")], foreign=[]),
]

SHEET_NAMED = """CT_SheetDimension CT_Break CT_CellFormula CT_Col CT_Cols CT_Controls CT_Drawing CT_HeaderFooter CT_MergeCell
CT_MergeCells CT_OutlinePr CT_PageBreak CT_PageMargins CT_PageSetUpPr CT_PageSetup CT_Pane CT_PrintOptions CT_Row
CT_SheetData CT_SheetFormatPr CT_SheetPr CT_SheetProtection CT_SheetView CT_SheetViews CT_Worksheet
CT_LegacyDrawing CT_Selection""".split()
WORKBOOK_NAMED = """CT_BookView CT_BookViews CT_CalcPr CT_DefinedName CT_DefinedNames CT_Sheet CT_Sheets CT_Workbook
CT_WorkbookPr""".split()
STYLES_NAMED = """CT_BooleanProperty CT_Border CT_BorderPr CT_Borders CT_CellAlignment CT_CellProtection CT_CellStyle
CT_CellStyleXfs CT_CellStyles CT_CellXfs CT_Color CT_Colors CT_Fill CT_Fills CT_Font inner_CT_Font CT_FontName
CT_FontSize CT_Fonts CT_IndexedColors CT_NumFmt CT_NumFmts CT_PatternFill CT_RgbColor CT_UnderlineProperty
CT_VerticalAlignFontProperty CT_Xf CT_Stylesheet CT_IntProperty CT_FontScheme CT_Dxfs CT_Dxf""".split()
SST_NAMED = """CT_Rst CT_Sst CT_RElt CT_PhoneticRun CT_PhoneticPr""".split()
DRAWING_NAMED = """CT_AnchorClientData CT_Blip CT_BlipFillProperties CT_GeomGuideList CT_Marker
CT_NonVisualDrawingProps CT_NonVisualPictureProperties CT_Picture CT_PictureLocking CT_PictureNonVisual CT_Point2D
CT_PositiveSize2D CT_PresetGeometry2D CT_RelativeRect CT_ShapeProperties CT_StretchInfoProperties CT_Transform2D
CT_TwoCellAnchor CT_OneCellAnchor CT_AbsoluteAnchor EG_Anchor EG_FillModeProperties EG_Geometry EG_ObjectChoices
CT_Drawing CT_Shape""".split()
STRICT_EXTRA = """CT_CalcChain CT_Chartsheet CT_Comments CT_Connections CT_Dialogsheet CT_ExternalLink CT_MapInfo
CT_Metadata CT_PivotCacheDefinition CT_PivotCacheRecords CT_QueryTable CT_RevisionHeaders CT_Revisions
CT_SingleXmlCells CT_Table CT_Users CT_VolTypes CT_pivotTableDefinition""".split()
NAMED = {
    "sheet": SHEET_NAMED + WORKBOOK_NAMED + STYLES_NAMED + SST_NAMED,
    "workbook": WORKBOOK_NAMED,
    "styles": STYLES_NAMED,
    "sharedStringTable": SST_NAMED + STYLES_NAMED,
    "strict": SHEET_NAMED + WORKBOOK_NAMED + STYLES_NAMED + SST_NAMED + STRICT_EXTRA,
    "drawing": DRAWING_NAMED,
    "strictdrawing": DRAWING_NAMED,
    "contentypes": "CT_Default CT_Override CT_Types inner_CT_Types".split(),
    "relationships": "CT_Relationship CT_Relationships".split(),
}


def cpp_str(s):
    out = []
    for ch in s:
        if ch in '\\"':
            out.append("\\" + ch)
        elif ord(ch) < 32 or ord(ch) > 126:
            out.append("\\x%02x" % ord(ch) if ord(ch) < 256 else "\\u%04x" % ord(ch))
            out.append('""')
        else:
            out.append(ch)
    return '"' + "".join(out) + '"'


def ident(name):
    n = re.sub(r"[^A-Za-z0-9_]", "_", name)
    if n in CPP_KEYWORDS:
        n += "_"
    return n


class Emitter:
    def __init__(self, schema_dir, spec):
        self.spec = spec
        self.schema = Schema()
        self.schema.load(os.path.join(schema_dir, spec["entry"]))
        main_uri = spec["ns"][0][2]
        entry_root = ET.parse(os.path.join(schema_dir, spec["entry"])).getroot()
        self.tns = entry_root.get("targetNamespace")
        self.b = Builder(self.schema, self.tns)
        roots = spec["roots"]
        if roots is None:
            roots = [n for (ns, n) in self.schema.elements if ns == self.tns]
        self.roots = []
        for r in roots:
            node, ctx = self.schema.elements[(self.tns, r)]
            if node.get("type"):
                t = self.b.type_for(Schema.qname(node.get("type"), ctx))
            else:
                t = self.b.anon(None, "CT_" + r, node.find(q("complexType")), ctx, "complex")
            self.roots.append((r, t))
        self.b.resolve()
        self.types = self.b.order
        if spec["name"] in ("sheet", "strict"):
            for t in self.types:
                if t.cls == "CT_Cell" and t.owner is None:
                    t.name = t.cls = "CT_Cell_Worker"
                    for o in self.types:
                        for st in o.steps:
                            if st.target is t and st.kind == "element" and st.name == "c" and o.cls == "CT_Row":
                                st.kind = "cells"
        self.ns_ids = {}
        for nid, prefix, uri in spec["ns"]:
            self.ns_ids[uri] = (nid, prefix)
        # Namespaces of elements that the root does not declare are declared where they are used.
        self.extra_ns = []
        used_ns = sorted({st.ns for t in self.types for st in t.steps if st.ns and st.kind != "any"} |
                         {a.ns for t in self.types for a in t.attrs if a.ns and a.ns != XML_NS})
        for uri in used_ns:
            if uri not in self.ns_ids:
                nid = 1000 + len(self.ns_ids)
                self.ns_ids[uri] = (nid, self.schema.uri_prefixes.get(uri, "ns%d" % nid))
                self.extra_ns.append((nid, self.ns_ids[uri][1], uri))
        # Names that a class would get twice (a group and a type of one name) are told apart.
        seen = set()
        for t in self.types:
            if t.name in seen:
                t.name = t.name + "_"
            seen.add(t.name)
        for t in self.types:
            t.foreign = t.cls in spec["foreign"] or t.any_attribute
            t.known = bool(spec.get("known"))
        self.named = set(NAMED[spec["name"]]) | {"CT_Cell_Worker"} | {t.cls for t in self.types if t.cls in spec["foreign"]}
        self.named |= {t.cls for r, t in self.roots}
        self.simples = {}
        self.simple_list = []
        self.enum_ids = {}
        self.enum_names = []

    # -- simple type specs --
    def simple_ref(self, s):
        k = s.key()
        if k in self.simples:
            return self.simples[k]
        for e in s.enums:
            self.enum_id(e)
        if s.items:
            self.simple_ref(s.items)
        for m in s.members or []:
            self.simple_ref(m)
        name = "st_%d" % len(self.simple_list)
        self.simples[k] = name
        self.simple_list.append((name, s))
        return name

    def enum_id(self, e):
        if e not in self.enum_ids:
            self.enum_ids[e] = len(self.enum_ids) + 1
        return self.enum_ids[e]

    def qual(self, ns, name, attr=False):
        if attr and ns == "":
            return name
        if ns == XML_NS:
            return "xml:" + name
        nid, prefix = self.ns_ids[ns]
        return prefix + ":" + name if prefix else name

    def ns_id(self, ns):
        if ns == "":
            return 0
        if ns == XML_NS:
            return 1
        return self.ns_ids[ns][0]

    def cls_name(self, t):
        return "c_" + t.name

    # -- emitting --
    def descriptor_name(self, t):
        return "t_" + t.name

    def emit_simple(self, out, name, s):
        texts = ids = "nullptr"
        if s.enums:
            out.append("static const char* const %s_t[] = {%s};" % (name, ", ".join(cpp_str(e) for e in s.enums)))
            out.append("static const unsigned short %s_e[] = {%s};" % (name, ", ".join(str(self.enum_ids[e]) for e in s.enums)))
            texts, ids = name + "_t", name + "_e"
        pattern = "nullptr"
        if s.patterns:
            out.append("static const lmx::c_regex %s_p(%s);" % (name, cpp_str(s.patterns[0])))
            pattern = "&%s_p" % name
        members = "nullptr"
        if s.members:
            out.append("static const lmx::s_simple* const %s_m[] = {%s};" % (
                name, ", ".join("&" + self.simples[m.key()] for m in s.members)))
            members = name + "_m"

        def num(v):
            return "nullptr" if v is None else cpp_str(v)

        def lim(v):
            return -1 if v is None else v
        out.append("static const lmx::s_simple %s = {lmx::%s, lmx::%s, lmx::%s, %d, %s, %s, %s, %s, %s, %s, %d, %d, %d, %s, %s, %s, %d};" % (
            name, s.kind, s.ws, s.lexical, len(s.enums), texts, ids, num(s.min_inc), num(s.max_inc), num(s.min_exc),
            num(s.max_exc), lim(s.length), lim(s.min_len), lim(s.max_len), pattern,
            "&" + self.simples[s.items.key()] if s.items else "nullptr", members, len(s.members or [])))

    def generate(self):
        spec = self.spec
        nsname = spec["name"]
        # Simple types first, in order of use.
        for t in self.types:
            for a in t.attrs:
                self.simple_ref(a.simple)
            if t.simple_content:
                self.simple_ref(t.simple_content)
            for s in t.steps:
                if s.kind == "simple":
                    self.simple_ref(s.simple)
        body = []  # descriptor code split into units
        units = spec["units"]
        chunks = [[] for _ in units]
        simples_out = []
        for name, s in self.simple_list:
            self.emit_simple(simples_out, name, s)
        # Types are spread over the units in order; every unit sees the shared simple specs.
        per = (len(self.types) + len(units) - 1) // len(units)
        for i, t in enumerate(self.types):
            chunks[min(i // max(per, 1), len(units) - 1)].append(t)
        hdr = self.emit_header()
        files = {}
        base = units[0]
        files[base + ".h"] = hdr
        shared_h = "// Generated by tools/gen_schema.py from the published schemas; do not edit.\n"
        shared_h += "// Simple-type checks shared by the units of namespace %s.\n#pragma once\n" % nsname
        shared_h += '#include "ooxml/%s.h"\n\nnamespace zelvar {\nnamespace %s {\nnamespace gen {\n' % (base, nsname)
        files[base + "-types.inc"] = shared_h + "\n".join(simples_out) + "\n}  // namespace gen\n}  // namespace %s\n}  // namespace zelvar\n" % nsname
        for ui, (unit, ts) in enumerate(zip(units, chunks)):
            lines = ["// Generated by tools/gen_schema.py from the published schemas; do not edit.",
                     '#include "ooxml/%s.h"' % base, "", "namespace zelvar {", "namespace %s {" % nsname,
                     "namespace gen {"]
            if ui == 0:
                lines[1:1] = []
            for t in ts:
                lines += self.emit_type(t)
            lines += ["}  // namespace gen"]
            if ui == 0:
                lines += self.emit_unit0()
            lines += ["}  // namespace %s" % nsname, "}  // namespace zelvar", ""]
            files[unit + ".cpp"] = "\n".join(lines)
        # The simple specs are static in each unit that uses them: one include per unit.
        for unit in units:
            text = files[unit + ".cpp"]
            files[unit + ".cpp"] = text.replace('#include "ooxml/%s.h"\n' % base,
                                                '#include "ooxml/%s.h"\n#include "ooxml/%s-types.inc"\n' % (base, base), 1)
        return files

    def step_desc(self, t, s):
        if s.kind == "element":
            kind = "lmx::SK_ELEMENT"
        elif s.kind == "simple":
            kind = "lmx::SK_SIMPLE"
        elif s.kind == "group":
            kind = "lmx::SK_GROUP"
        elif s.kind == "cells":
            kind = "lmx::SK_CELLS"
        else:
            kind = "lmx::SK_ANY_DROP" if (self.spec.get("drop_ext") and t.cls == "CT_Extension") else "lmx::SK_ANY"
        name = "nullptr"
        qname = "nullptr"
        nid = 0
        if s.kind in ("element", "simple", "cells"):
            name = cpp_str(s.name)
            qname = cpp_str(self.qual(s.ns, s.name))
            nid = self.ns_id(s.ns)
        target = "&" + self.descriptor_name(s.target) if s.kind in ("element", "group", "cells") else "nullptr"
        simple = "&" + self.simples[s.simple.key()] if s.kind == "simple" else "nullptr"
        extra = "nullptr"
        if s.kind in ("element", "simple") and any(u == s.ns for _, _, u in self.extra_ns):
            extra = cpp_str(s.ns)
        return "{%s, %s, %d, %s, %s, %s, %d, %du, %s}" % (kind, name, nid, qname, target, simple, s.min, s.max, extra)

    def first_names(self, t, seen=None):
        """Element names that can open content of a group type (its first set)."""
        seen = seen or set()
        if id(t) in seen:
            return set(), True
        seen = seen | {id(t)}
        names = set()
        for s in t.steps:
            if s.kind in ("element", "simple", "cells"):
                names.add((self.ns_id(s.ns), s.name))
                nullable = s.min == 0
            elif s.kind == "any":
                names.add((-1, "*"))
                nullable = s.min == 0
            else:
                sub, sub_null = self.first_names(s.target, seen)
                names |= sub
                nullable = s.min == 0 or sub_null
            if not t.choice and not nullable:
                return names, False
        if t.choice:
            return names, any(s.min == 0 for s in t.steps) or not t.steps
        return names, True

    def all_names(self, t, seen=None):
        seen = seen or set()
        if id(t) in seen:
            return set()
        seen.add(id(t))
        names = set()
        for s in t.steps:
            if s.kind in ("element", "simple", "cells"):
                names.add((self.ns_id(s.ns), s.name))
            elif s.kind == "any":
                names.add((-1, "*"))
            else:
                names |= self.all_names(s.target, seen)
        return names

    def emit_type(self, t):
        d = self.descriptor_name(t)
        out = []
        if t.attrs:
            rows = []
            for a in t.attrs:
                default = "nullptr" if a.default is None else cpp_str(a.default)
                rows.append("    {%s, %d, %s, &%s, %s, %d}" % (cpp_str(a.name), self.ns_id(a.ns), cpp_str(self.qual(a.ns, a.name, True)) if a.ns else cpp_str(a.name),
                                                             self.simples[a.simple.key()], default, 1 if a.required else 0))
            out.append("static const lmx::s_attr %s_a[] = {\n%s};" % (d, ",\n".join(rows)))
        if t.steps:
            out.append("static const lmx::s_step %s_s[] = {\n    %s};" % (d, ",\n    ".join(self.step_desc(t, s) for s in t.steps)))
        firsts, nullable = self.first_names(t)
        first = "nullptr"
        if firsts and (-1, "*") not in firsts:
            out.append("static const lmx::s_known_elements %s_f[] = {%s, {0, nullptr, 0}};" % (
                d, ", ".join("{%d, %s, %d}" % (n, cpp_str(nm), len(nm)) for n, nm in sorted(firsts))))
            first = d + "_f"
        known = "nullptr"
        flags = []
        if t.known and not t.simple_content:
            names = self.all_names(t)
            if (-1, "*") in names:
                flags.append("lmx::TF_ACCEPT_ANY")
            else:
                out.append("static const lmx::s_known_elements %s_k[] = {%s{0, nullptr, 0}};" % (
                    d, "".join("{%d, %s, %d}, " % (n, cpp_str(nm), len(nm)) for n, nm in sorted(names))))
                known = d + "_k"
        if t.choice:
            flags.append("lmx::TF_CHOICE")
        if t.foreign:
            flags.append("lmx::TF_FOREIGN")
        if nullable:
            flags.append("lmx::TF_NULLABLE")
        if firsts and (-1, "*") in firsts:
            flags.append("lmx::TF_ANY_FIRST")
        make = "&lmx::make_node<%s>" % self.cls_name(t) if t.cls in self.named or t in [r for _, r in self.roots] else "nullptr"
        if make != "nullptr":
            make = "&make_%s" % t.name
        out.append("extern const lmx::s_type %s;" % d)
        out.append("const lmx::s_type %s = {%s, %s, %d, %s, %d, %s, %s, %s, %s, %s};" % (
            d, cpp_str(t.name), d + "_a" if t.attrs else "nullptr", len(t.attrs), d + "_s" if t.steps else "nullptr",
            len(t.steps), "&" + self.simples[t.simple_content.key()] if t.simple_content else "nullptr",
            " | ".join(flags) or "0", first, known, make))
        return out

    def emit_unit0(self):
        lines = []
        nsname = self.spec["name"]
        lines.append("const lmx::s_ns_map ns_map[] = {%s{0, nullptr, nullptr}};" % "".join(
            "{%d, %s, %s}, " % (nid, cpp_str(p) if p else "nullptr", cpp_str(u)) for nid, p, u in self.spec["ns"] + self.extra_ns))
        lines.append("const lmx::s_ns_map ns_map_writer_1[] = {%s{0, nullptr, nullptr}};" % "".join(
            "{%d, %s, %s}, " % (nid, cpp_str(p) if p else "nullptr", cpp_str(u)) for nid, p, u in self.spec["ns"]))
        lines.append("const wchar_t* const enum_texts[] = {L\"\", %s};" % ", ".join(
            "L" + cpp_str(e) for e in sorted(self.enum_ids, key=self.enum_ids.get)))
        lines.append("const unsigned enum_count = %d;" % (len(self.enum_ids) + 1))
        for r, t in self.roots:
            tol = "true" if r in (self.spec.get("tolerant") or []) else "false"
            lines.append("const lmx::s_root root_%s = {&gen::%s, %s, %d, %s, ns_map, ns_map_writer_1, enum_texts, enum_count};" % (
                r, self.descriptor_name(t), cpp_str(r), self.ns_ids[self.tns][0], tol))
        return lines

    # -- the header with the named classes --
    def emit_header(self):
        nsname = self.spec["name"]
        L = ["// Generated by tools/gen_schema.py from the published schemas; do not edit.",
             "// Namespace %s: descriptors of %d types, named classes with their accessors, and roots." % (nsname, len(self.types)),
             "#pragma once", '#include "ooxml/lmx_bound.h"', "", "namespace zelvar {", "namespace %s {" % nsname, ""]
        # enumerators
        L.append("// Enumerators of string types, numbered through the whole schema.")
        L.append("enum elmx_enums {")
        L.append("    elmx_enums_none = 0,")
        used = set()
        for e, i in sorted(self.enum_ids.items(), key=lambda x: x[1]):
            n = "e_" + re.sub(r"[^A-Za-z0-9_]", "_", e) if e else "e_empty"
            while n in used:
                n += "_"
            used.add(n)
            L.append("    %s = %d," % (n, i))
        L.append("};")
        L.append("extern const wchar_t* const enum_texts[];")
        L.append("extern const unsigned enum_count;")
        L.append("extern const lmx::s_ns_map ns_map[];")
        L.append("extern const lmx::s_ns_map ns_map_writer_1[];")
        L.append("namespace gen {")
        for t in self.types:
            L.append("extern const lmx::s_type %s;" % self.descriptor_name(t))
        L.append("}  // namespace gen")
        for r, t in self.roots:
            L.append("extern const lmx::s_root root_%s;" % r)
        L.append("")
        named_types = [t for t in self.types if t.cls in self.named or t in [rt for _, rt in self.roots]]
        for t in named_types:
            L.append("class %s;" % self.cls_name(t))
        if any(t.cls == "CT_Cell_Worker" for t in self.types):
            L.append("class c_CT_Cell;")
        L.append("")
        worker = [t for t in self.types if t.cls == "CT_Cell_Worker"]
        self.deferred = []
        for t in named_types:
            L += self.emit_class(t, named_types)
        L += self.deferred
        L.append("")
        if worker:
            L += self.emit_cell(worker[0], 0)
            for t in self.types:
                for k, st in enumerate(t.steps):
                    if st.kind == "cells":
                        L += self.emit_row_cells(t, len(t.attrs) + (1 if t.simple_content else 0) + k)
        for r, t in self.roots:
            L += self.emit_root(r, t)
        L += ["}  // namespace %s" % nsname, "}  // namespace zelvar", ""]
        # factories are inline in the header so each unit can name them
        fac = ["namespace zelvar {", "namespace %s {" % nsname, "namespace gen {"]
        for t in named_types:
            fac.append("inline lmx::c_node* make_%s() { return new %s; }" % (t.name, self.cls_name(t)))
        fac += ["}  // namespace gen", "}  // namespace %s" % nsname, "}  // namespace zelvar", ""]
        return "\n".join(L + fac)

    def value_type(self, s):
        return {"VK_BOOL": "bool", "VK_I8": "int8_t", "VK_U8": "uint8_t", "VK_I16": "int16_t", "VK_U16": "uint16_t",
                "VK_I32": "int32_t", "VK_U32": "uint32_t", "VK_I64": "int64_t", "VK_U64": "uint64_t",
                "VK_DOUBLE": "double", "VK_FLOAT": "float", "VK_HEX": "lmx::c_binary", "VK_BASE64": "lmx::c_binary",
                "VK_WSTRING": "std::wstring"}[s.kind]

    def simple_accessors(self, L, name, slot, s):
        vt = self.value_type(s)
        if vt == "std::wstring":
            L.append("    std::wstring get_%s() const { return get_w(%d); }" % (name, slot))
            L.append("    int set_%s(const std::wstring& v) { return set_w(%d, v); }" % (name, slot))
            if s.members and any(m.kind not in ("VK_WSTRING", "VK_HEX", "VK_BASE64", "VK_DOUBLE", "VK_FLOAT", "VK_BOOL")
                                 for m in s.members):
                # A union with an integer member (coordinates: a number of EMU or a measure with its unit).
                L.append("    int set_%s(int64_t v) { return set_w(%d, std::to_wstring(v)); }" % (name, slot))
            if s.enums:
                L.append("    int getenum_%s() const { return getenum(%d); }" % (name, slot))
                L.append("    int setenum_%s(int e) { return setenum(%d, e); }" % (name, slot))
        elif vt == "lmx::c_binary":
            L.append("    lmx::c_binary get_%s() const { return get_b(%d); }" % (name, slot))
            L.append("    int set_%s(const lmx::c_binary& v) { return set_b(%d, v); }" % (name, slot))
        elif vt in ("double", "float"):
            L.append("    %s get_%s() const { return static_cast<%s>(get_d(%d)); }" % (vt, name, vt, slot))
            L.append("    int set_%s(%s v) { return set_d(%d, v); }" % (name, vt, slot))
        elif vt == "bool":
            L.append("    bool get_%s() const { return get_i(%d) != 0; }" % (name, slot))
            L.append("    int set_%s(bool v) { return set_i(%d, v ? 1 : 0); }" % (name, slot))
        else:
            L.append("    %s get_%s() const { return static_cast<%s>(get_i(%d)); }" % (vt, name, vt, slot))
            L.append("    int set_%s(%s v) { return set_i(%d, static_cast<int64_t>(v)); }" % (name, vt, slot))
        L.append("    bool isset_%s() const { return isset(%d); }" % (name, slot))
        L.append("    void unset_%s() { unset(%d); }" % (name, slot))

    def emit_class(self, t, named_types):
        c = self.cls_name(t)
        L = ["// %s" % t.name, "class %s : public lmx::c_node {" % c, "public:"]
        L.append("    %s() : lmx::c_node(&gen::%s) {}" % (c, self.descriptor_name(t)))
        L.append("    %s(const %s& o) : lmx::c_node(o) {}" % (c, c))
        L.append("    %s& operator=(const %s& o) { lmx::c_node::operator=(o); return *this; }" % (c, c))
        L.append("    %s* clone() const { return new %s(*this); }" % (c, c))
        L.append("    void swap(%s& o) { lmx::c_node::swap(o); }" % c)
        L.append("    void reset() { %s fresh; swap(fresh); }" % c)
        for s in t.steps:
            if s.kind == "group" and s.target.owner is t and s.target in named_types:
                L.append("    typedef %s c_%s;" % (self.cls_name(s.target), s.target.cls))
        if t.cls == "CT_Cell_Worker":
            fs = [s for s in t.steps if s.name == "f"]
            if fs and fs[0].target in named_types:
                L.append("    typedef %s c_f;" % self.cls_name(fs[0].target))
        used = set()
        for i, a in enumerate(t.attrs):
            n = ident(a.name)
            used.add(n)
            self.simple_accessors(L, n, i, a.simple)
        first = len(t.attrs)
        if t.simple_content:
            L.append("    // the element's text")
            self.simple_accessors(L, "value", first, t.simple_content)
            first += 1
        for k, s in enumerate(t.steps):
            slot = first + k
            if s.kind == "any":
                n = "any" if "any" not in used else "any_%d" % k
                used.add(n)
                L.append("    lmx::ct_any_info_container& get_%s() { return any_list(%d); }" % (n, slot))
                L.append("    size_t size_%s() const { return size_s(%d); }" % (n, slot))
                continue
            if s.kind == "simple":
                n = ident(s.name)
                if n in used:
                    n += "_elem"
                used.add(n)
                if s.max == 1:
                    self.simple_accessors(L, n, slot, s.simple)
                    if s.simple.kind == "VK_WSTRING":
                        L.append("    int get_space_%s() const { return get_space(%d); }" % (n, slot))
                        L.append("    void set_space_%s(int v) { set_space(%d, v); }" % (n, slot))
                else:
                    L.append("    size_t size_%s() const { return size_s(%d); }" % (n, slot))
                    L.append("    std::wstring get_%s(size_t i) const { return get_w_multi(%d, i); }" % (n, slot))
                    L.append("    int append_%s(const std::wstring& v) { return append_w(%d, v); }" % (n, slot))
                    L.append("    void delete_%s(size_t i) { delete_s(%d, i); }" % (n, slot))
                    L.append("    void clear_%s() { clear_s(%d); }" % (n, slot))
                continue
            if s.kind == "cells":
                n = "c"
                used.add(n)
                L.append("    size_t size_c() const { return cells_ptr(%d) ? cells_ptr(%d)->size() : 0; }" % (slot, slot))
                L.append("    c_CT_Cell& get_c(size_t i);")
                L.append("    const c_CT_Cell& get_c(size_t i) const;")
                L.append("    c_CT_Cell& append_c();")
                L.append("    int append_c(c_CT_Cell* p);")
                L.append("    int insert_c(size_t i, c_CT_Cell* p);")
                L.append("    void delete_c(size_t i);")
                L.append("    void clear_c() { clear_s(%d); }" % slot)
                L.append("    // The cells in their order, for searching and moving without copies.")
                L.append("    std::vector<lmx::c_cell_base*>& get_c_vector() { return cells(%d); }" % slot)
                continue
            tgt = s.target
            n = ident(s.name) if s.kind == "element" else ident(tgt.cls)
            if n in used:
                n += "_elem"
            used.add(n)
            cc = self.cls_name(tgt) if tgt in named_types else "lmx::c_node"
            # Bodies that need the child's class complete stand behind all classes.
            D = self.deferred
            if s.max == 1:
                L.append("    %s& get_%s();" % (cc, n))
                D.append("inline %s& %s::get_%s() { return static_cast<%s&>(child(%d)); }" % (cc, c, n, cc, slot))
                L.append("    const %s* get_%s() const;" % (cc, n))
                D.append("inline const %s* %s::get_%s() const { return static_cast<const %s*>(child_ptr(%d)); }" % (cc, c, n, cc, slot))
                L.append("    bool isset_%s() const { return child_ptr(%d) != nullptr; }" % (n, slot))
                L.append("    void unset_%s() { unset(%d); }" % (n, slot))
                L.append("    void assign_%s(%s* p);" % (n, cc))
                D.append("inline void %s::assign_%s(%s* p) { assign_child(%d, p); }" % (c, n, cc, slot))
                L.append("    void assign_%s(const %s& v);" % (n, cc))
                D.append("inline void %s::assign_%s(const %s& v) { assign_child(%d, v.clone_node()); }" % (c, n, cc, slot))
                if t.choice:
                    L.append("    %s& select_%s() { return get_%s(); }" % (cc, n, n))
            else:
                L.append("    size_t size_%s() const { return size_s(%d); }" % (n, slot))
                L.append("    %s& get_%s(size_t i);" % (cc, n))
                D.append("inline %s& %s::get_%s(size_t i) { return static_cast<%s&>(item(%d, i)); }" % (cc, c, n, cc, slot))
                L.append("    const %s& get_%s(size_t i) const;" % (cc, n))
                D.append("inline const %s& %s::get_%s(size_t i) const { return static_cast<const %s&>(item(%d, i)); }" % (cc, c, n, cc, slot))
                L.append("    %s& back_%s() { return get_%s(size_s(%d) - 1); }" % (cc, n, n, slot))
                L.append("    %s& append_%s();" % (cc, n))
                D.append("inline %s& %s::append_%s() { return static_cast<%s&>(append_new(%d)); }" % (cc, c, n, cc, slot))
                L.append("    int append_%s(%s* p);" % (n, cc))
                D.append("inline int %s::append_%s(%s* p) { return append_item(%d, p); }" % (c, n, cc, slot))
                L.append("    int insert_%s(size_t i, %s* p);" % (n, cc))
                D.append("inline int %s::insert_%s(size_t i, %s* p) { return insert_item(%d, i, p); }" % (c, n, cc, slot))
                L.append("    void delete_%s(size_t i) { delete_item(%d, i); }" % (n, slot))
                L.append("    void clear_%s() { clear_s(%d); }" % (n, slot))
        if t.choice:
            L.append("    // The member chosen, by its place in the schema; the number of members when none is.")
            L.append("    unsigned get_choice() const { return choice(); }")
        L.append("};")
        L.append("")
        return L

    def emit_cell(self, worker, row_slot):
        """The compact cell and the row's cell operations."""
        ids = [self.enum_ids.get(v, 0) for v in ["b", "n", "e", "s", "str", "inlineStr", "d"]]
        f = [s for s in worker.steps if s.name == "f"][0]
        i_s = [s for s in worker.steps if s.name == "is"][0]
        L = ["// The cell in its compact form; the worker type above is its full form.",
             "class c_CT_Cell : public lmx::c_cell_base {",
             "public:",
             "    c_CT_Cell* clone() const { return new c_CT_Cell(*this); }",
             "    void reset() { c_CT_Cell fresh; swap(fresh); }",
             "    %s& get_f() { return static_cast<%s&>(f_object(gen::%s)); }" % ((self.cls_name(f.target),) * 2 + (self.descriptor_name(f.target),)),
             "    const %s* get_f() const { return static_cast<const %s*>(f_ptr()); }" % ((self.cls_name(f.target),) * 2),
             "    bool isset_f() const { return f_ptr() != nullptr; }",
             "    void unset_f() { c_cell_base::assign_f(nullptr); }",
             "    void assign_f(%s* p) { c_cell_base::assign_f(p); }" % self.cls_name(f.target),
             "    %s& get_is() { return static_cast<%s&>(is_object(gen::%s)); }" % ((self.cls_name(i_s.target),) * 2 + (self.descriptor_name(i_s.target),)),
             "    const %s* get_is() const { return static_cast<const %s*>(is_ptr()); }" % ((self.cls_name(i_s.target),) * 2),
             "    bool isset_is() const { return is_ptr() != nullptr; }",
             "    void unset_is() { c_cell_base::assign_is(nullptr); }",
             "    void assign_is(%s* p) { c_cell_base::assign_is(p); }" % self.cls_name(i_s.target),
             "    // The type as an enumerator of elmx_enums; 0 when t is not set.",
             "    int getenum_t() const {",
             "        static const int ids[] = {0, %s};" % ", ".join(str(i) for i in ids),
             "        return ids[type_code() & 7];",
             "    }",
             "    int setenum_t(int e) {",
             "        static const int ids[] = {%s};" % ", ".join(str(i) for i in ids),
             "        for (unsigned k = 0; k < 7; ++k)",
             "            if (ids[k] == e) { set_type_code(k + 1); return 0; }",
             "        return lmx::ELMX_VALUE_NOT_ENUMERATED;",
             "    }",
             "    lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, const std::string&) { return unmarshal_cell(reader, gen::%s); }" % self.descriptor_name(worker),
             "    lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const { return marshal_cell(writer, gen::%s, name); }" % self.descriptor_name(worker),
             "};",
             ""]
        return L

    def emit_row_cells(self, row, slot):
        c = self.cls_name(row)
        return ["inline c_CT_Cell& %s::get_c(size_t i) { return static_cast<c_CT_Cell&>(*cells(%d)[i]); }" % (c, slot),
                "inline const c_CT_Cell& %s::get_c(size_t i) const { return static_cast<const c_CT_Cell&>(*(*cells_ptr(%d))[i]); }" % (c, slot),
                "inline c_CT_Cell& %s::append_c() { c_CT_Cell* p = new c_CT_Cell; cells(%d).push_back(p); return *p; }" % (c, slot),
                "inline int %s::append_c(c_CT_Cell* p) { cells(%d).push_back(p); return 0; }" % (c, slot),
                "inline int %s::insert_c(size_t i, c_CT_Cell* p) {" % c,
                "    std::vector<lmx::c_cell_base*>& v = cells(%d);" % slot,
                "    v.insert(v.begin() + static_cast<std::ptrdiff_t>(i < v.size() ? i : v.size()), p);",
                "    return 0;",
                "}",
                "inline void %s::delete_c(size_t i) {" % c,
                "    std::vector<lmx::c_cell_base*>& v = cells(%d);" % slot,
                "    if (i >= v.size()) return;",
                "    delete static_cast<c_CT_Cell*>(v[i]);",
                "    v.erase(v.begin() + static_cast<std::ptrdiff_t>(i));",
                "}",
                ""]

    def emit_root(self, r, t):
        c = "c_" + r
        base = self.cls_name(t)
        L = ["// The document root %s." % r, "class %s : public %s {" % (c, base), "public:"]
        L.append("    %s() = default;" % c)
        L.append("    %s(const char* data, size_t size, lmx::elmx_error* p_error, lmx::s_debug_error* p_debug = nullptr) {" % c)
        L.append("        lmx::elmx_error e = unmarshal(data, size, p_debug);")
        L.append("        if (p_error) *p_error = e;")
        L.append("    }")
        L.append("    lmx::elmx_error unmarshal(lmx::c_xml_reader& reader) { return unmarshal_document(reader, root_%s); }" % r)
        L.append("    lmx::elmx_error unmarshal(const char* data, size_t size, lmx::s_debug_error* p_debug = nullptr) {")
        L.append("        return lmx::unmarshal(this, data, size, p_debug);")
        L.append("    }")
        L.append("    lmx::elmx_error unmarshal(const char* file, lmx::s_debug_error* p_debug = nullptr) {")
        L.append("        return lmx::unmarshal(this, file, p_debug);")
        L.append("    }")
        L.append("    lmx::elmx_error unmarshal(const lmx::c_any_info& info, lmx::s_debug_error* p_debug = nullptr) {")
        L.append("        return lmx::unmarshal(this, info, p_debug);")
        L.append("    }")
        L.append("    lmx::elmx_error marshal(lmx::c_xml_writer& writer) const { return marshal_document(writer, root_%s); }" % r)
        L.append("    lmx::elmx_error marshal(std::string* p_out, lmx::s_debug_error* p_debug = nullptr) const {")
        L.append("        return lmx::marshal(*this, p_out, p_debug);")
        L.append("    }")
        L.append("    lmx::elmx_error marshal(std::ostream& os, lmx::s_debug_error* p_debug = nullptr) const {")
        L.append("        return lmx::marshal(*this, os, p_debug);")
        L.append("    }")
        L.append("    using lmx::c_node::marshal;")
        L.append("    using lmx::c_node::unmarshal;")
        L.append("};")
        L.append("")
        return L


def main():
    schema_dir, out_dir = sys.argv[1], sys.argv[2]
    total = {}
    for spec in NAMESPACES:
        em = Emitter(schema_dir, spec)
        files = em.generate()
        for name, text in files.items():
            total[name] = text
    for name, text in sorted(total.items()):
        with open(os.path.join(out_dir, name), "w", newline="\n") as f:
            f.write(text)


if __name__ == "__main__":
    main()
