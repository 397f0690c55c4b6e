// Reading: events into classes, encodings, entities, white space, namespaces, unknown items.
#include <gtest/gtest.h>

#include <string>

#include "lmx_test_util.h"

using namespace lmxtest;

TEST(LmxReader, ReadsRowsCellsAndTypedAttributes) {
    std::string xml = sheet(
        "<props flag='1' i8='-128' u16='65535' i32='-5' u64='18446744073709551615' d='1.5e3' color='FF00a0C0'"
        " when='2024-02-29T13:45:30.25Z' code='AB12' kind='beta' words='a\tb\nc' list=' 1  2 3 ' req='7'/>"
        "<sheetData><row r='2' spans='1:3 5:6' ht='15.75'><c r='A2' t='s'><v>0</v></c>"
        "<c r='B2' s='3'><f>SUM(A1:A2)</f><v>42</v></c><c r='C2'/></row><row r='3' hidden='true'/></sheetData>");
    c_worksheet w;
    ASSERT_EQ(read_into(w, xml), ELMX_OK);
    const c_CT_Props& p = w.m_props.get();
    EXPECT_TRUE(p.m_flag.get());
    EXPECT_EQ(p.m_i8.get(), -128);
    EXPECT_EQ(p.m_u16.get(), 65535);
    EXPECT_EQ(p.m_i32.get(), -5);
    EXPECT_EQ(p.m_u64.get(), 18446744073709551615ull);
    EXPECT_DOUBLE_EQ(p.m_d.get(), 1500.0);
    EXPECT_EQ(p.m_color.get().out_hex(), "FF00A0C0");
    EXPECT_EQ(p.m_when.get().get_as_string(), "2024-02-29T13:45:30.25Z");
    EXPECT_EQ(p.m_code.get(), "AB12");
    EXPECT_EQ(p.m_kind.get(), L"beta");
    EXPECT_EQ(p.m_words.get(), L"a b c");
    EXPECT_EQ(p.m_list.get(), (std::vector<int32_t>{1, 2, 3}));
    EXPECT_EQ(p.m_req.get(), 7u);

    const c_CT_SheetData& data = w.m_sheetData.get();
    ASSERT_EQ(data.m_row.size(), 2u);
    const c_CT_Row& row = data.m_row[0];
    EXPECT_EQ(row.m_r.get(), 2u);
    EXPECT_EQ(row.m_spans.get(), (std::vector<std::string>{"1:3", "5:6"}));
    EXPECT_DOUBLE_EQ(row.m_ht.get(), 15.75);
    ASSERT_EQ(row.m_c.size(), 3u);
    EXPECT_EQ(row.m_c[0].m_t.get(), L"s");
    EXPECT_EQ(row.m_c[0].m_v.get(), L"0");
    EXPECT_EQ(row.m_c[1].m_s.get(), 3u);
    EXPECT_EQ(row.m_c[1].m_f.get(), L"SUM(A1:A2)");
    EXPECT_FALSE(row.m_c[1].m_t.is_value_set());
    EXPECT_EQ(row.m_c[1].m_t.get(), L"n");  // the default of an absent type
    EXPECT_FALSE(row.m_c[2].m_v.is_value_set());
    EXPECT_TRUE(data.m_row[1].m_hidden.get());
}

TEST(LmxReader, SelfClosedElementsWithOptionalContentAreFine) {
    EXPECT_EQ(read_sheet(sheet("<sheetData/>")).code, ELMX_OK);
    EXPECT_EQ(read_sheet(sheet("<sheetData><row/><row></row></sheetData>")).code, ELMX_OK);
    // A mandatory child that isn't there.
    read_result r = read_sheet(sheet_with_data("", "<seq><item>x</item></seq>"));
    EXPECT_EQ(r.code, ELMX_MANDATORY_ELEMENT_MISSING);
    EXPECT_EQ(read_sheet(sheet("<props req='1'/>")).code, ELMX_MANDATORY_ELEMENT_MISSING);
}

TEST(LmxReader, Encodings) {
    const std::string body = sheet("<sheetData><row r='1'><c><v>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</v></c></row></sheetData>");
    const std::wstring expected = L"\u00e9\u20ac\U0001F600";
    auto value_of = [&](const std::string& bytes, elmx_error* code) {
        c_worksheet w;
        *code = read_into(w, bytes);
        if (*code != ELMX_OK || w.m_sheetData.get().m_row.size() != 1) return std::wstring(L"?");
        return w.m_sheetData.get().m_row[0].m_c[0].m_v.get();
    };
    auto utf16 = [&](const std::string& utf8, bool big_endian, bool mark) {
        std::wstring wide = utf8_to_wide(utf8);
        std::string out;
        auto unit = [&](unsigned u) {
            out += static_cast<char>(big_endian ? u >> 8 : u & 0xFF);
            out += static_cast<char>(big_endian ? u & 0xFF : u >> 8);
        };
        if (mark) unit(0xFEFF);
        for (wchar_t c : wide) {
            unsigned cp = static_cast<unsigned>(c);
            if (cp >= 0x10000) {
                unit(0xD800 + ((cp - 0x10000) >> 10));
                unit(0xDC00 + ((cp - 0x10000) & 0x3FF));
            } else {
                unit(cp);
            }
        }
        return out;
    };
    elmx_error code;
    EXPECT_EQ(value_of(body, &code), expected);
    EXPECT_EQ(value_of("\xEF\xBB\xBF" + body, &code), expected);
    EXPECT_EQ(value_of(utf16(body, false, true), &code), expected) << code;
    EXPECT_EQ(value_of(utf16(body, true, true), &code), expected) << code;
    EXPECT_EQ(value_of(utf16(body, false, false), &code), expected) << code;
    EXPECT_EQ(value_of(utf16(body, true, false), &code), expected) << code;
    EXPECT_EQ(value_of(utf16("<?xml version='1.0' encoding='utf-16'?>" + body, false, true), &code), expected);
    EXPECT_EQ(value_of("  \n<?xml version='1.0'?>" + body, &code), L"?");
    EXPECT_EQ(code, ELMX_BAD_XML_DECL);

    // Latin-1 declared: bytes from 128 up are characters of their own value.
    c_worksheet w;
    ASSERT_EQ(read_into(w, "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>" +
                               sheet("<sheetData><row><c><v>caf\xE9</v></c></row></sheetData>")),
              ELMX_OK);
    EXPECT_EQ(w.m_sheetData.get().m_row[0].m_c[0].m_v.get(), L"caf\u00e9");

    // A source that gives its bytes one by one.
    struct byte_source : c_read {
        std::string bytes;
        size_t pos = 0;
        int read() override { return pos < bytes.size() ? static_cast<unsigned char>(bytes[pos++]) : -1; }
        void rewind() override { pos = 0; }
        bool is_open() const override { return true; }
        std::string get_source_id() const override { return "bytes"; }
    };
    for (bool big_endian : {false, true}) {
        byte_source src;
        src.bytes = utf16("<?xml version='1.0' encoding='UTF-16'?>" + body, big_endian, true);
        c_xml_reader reader(src);
        c_worksheet from_bytes;
        ASSERT_EQ(from_bytes.unmarshal(reader), ELMX_OK);
        EXPECT_EQ(from_bytes.m_sheetData.get().m_row[0].m_c[0].m_v.get(), expected);
    }

    // UCS-2 keeps each 16-bit unit a character of its own; the writer joins the pair again.
    c_worksheet ucs2;
    ASSERT_EQ(read_into(ucs2, utf16("<?xml version='1.0' encoding='ISO-10646-UCS-2'?>" + body, false, true)), ELMX_OK);
    const std::wstring& units = ucs2.m_sheetData.get().m_row[0].m_c[0].m_v.get();
    ASSERT_EQ(units.size(), 4u);
    EXPECT_EQ(static_cast<unsigned>(units[2]), 0xD83Du);
    EXPECT_NE(write_out(ucs2).find("\xF0\x9F\x98\x80"), std::string::npos);

    struct {
        std::string input;
        elmx_error code;
        const char* detail;
    } refusals[] = {
        {"worksheet/>", ELMX_BAD_CHAR_ENCODING, "Unrecognised character encoding"},
        {"\xEF\xBB\x00<a/>", ELMX_BAD_CHAR_ENCODING, "Unrecognised character encoding"},
        {std::string("\xFF\xFE\x80\x00", 4), ELMX_BAD_CHAR_ENCODING, "Unrecognised character encoding"},
        {std::string("\x00" "a", 2), ELMX_BAD_CHAR_ENCODING, "Unrecognised character encoding"},
        {std::string("<\x00\x00\xD8\x00\x00", 6), ELMX_BAD_CHAR_ENCODING, "Unrecognised character encoding"},
        {"<?xml version='1.0' encoding='UTF-16'?><a/>", ELMX_ENCODING_MISMATCH,
         "Mis-match between specfied encoding and byte format"},
        {"<?xml version='1.0' encoding='EBCDIC'?><a/>", ELMX_BAD_CHAR_ENCODING, "Unknown character encoding specified"},
        {"<?xml version='2.0'?><a/>", ELMX_BAD_XML_VERSION, "XML version 2.0 not understood"},
        {"<?xml encoding='UTF-8'?><a/>", ELMX_BAD_XML_DECL, "Version not present in XML Decl"},
        {"<!-- c --><?xml version='1.0'?><a/>", ELMX_BAD_XML_DECL, "XML declaration not at start of document"},
        {"", ELMX_UNEXPECTED_EOM, "Premature end of file encountered"},
    };
    for (const auto& r : refusals) {
        read_result result = read_sheet(r.input);
        EXPECT_EQ(result.code, r.code) << r.detail;
        EXPECT_EQ(result.debug.item_name, r.detail);
    }
    EXPECT_EQ(read_sheet("<?xml version='1.1' encoding='utf-8' standalone='yes'?>" + sheet("<sheetData/>")).code, ELMX_OK);
}

TEST(LmxReader, EntitiesAndCharacterReferences) {
    auto value_of = [](const std::string& v, const std::string& prolog = "") {
        c_worksheet w;
        elmx_error e = read_into(w, prolog + sheet("<sheetData><row><c><v>" + v + "</v></c></row></sheetData>"));
        if (e != ELMX_OK) return std::wstring(L"error ") + std::to_wstring(e);
        return w.m_sheetData.get().m_row[0].m_c[0].m_v.get();
    };
    EXPECT_EQ(value_of("&lt;&gt;&amp;&apos;&quot;"), L"<>&'\"");
    EXPECT_EQ(value_of("&#65;&#x42;&#x1F600;"), L"AB\U0001F600");
    EXPECT_EQ(value_of("a&#133;b&#8232;c"), L"a\nb\nc");
    EXPECT_EQ(value_of("&#x100000;"), L"\U00100000");
    EXPECT_EQ(value_of("&#x100001;"), L"error 41");
    EXPECT_EQ(value_of("&#99999999999999999999;"), L"error 41");
    EXPECT_EQ(value_of("&nbsp;"), L"error 41");
    EXPECT_EQ(value_of("&#xZZ;"), L"error 41");
    EXPECT_EQ(value_of("a\r\nb\rc"), L"a\nb\nc");
    EXPECT_EQ(value_of("x<![CDATA[<&>]]>y<!-- skipped -->z<?pi skipped?>"), L"x<&>yz");
    EXPECT_EQ(value_of("<x/>"), L"error 29");

    const std::string subset = "<!DOCTYPE worksheet [ <!ENTITY co \"Zelvar &amp; co\"> <!ENTITY both '&co;/&co;'>"
                               " <!ELEMENT worksheet ANY> <!-- note --> <!ATTLIST a b CDATA '>'> ]>";
    EXPECT_EQ(value_of("&both;", subset), L"Zelvar & co/Zelvar & co");

    read_result r = read_sheet("<!DOCTYPE w [<!ENTITY a '&b;'><!ENTITY b '&a;'>]>" +
                               sheet("<sheetData><row><c><v>&a;</v></c></row></sheetData>"));
    EXPECT_EQ(r.code, ELMX_BAD_DTD);
    EXPECT_EQ(r.debug.item_name, "Recursive entity definition for: a");

    // External entities are refused when declared; nothing is fetched.
    for (const char* decl : {"<!ENTITY ext SYSTEM 'file:///etc/passwd'>", "<!ENTITY ext PUBLIC 'x' 'http://x/y'>"}) {
        r = read_sheet("<!DOCTYPE w [" + std::string(decl) + "]>" + sheet("<sheetData/>"));
        EXPECT_EQ(r.code, ELMX_EXTERNAL_ENTITY);
        EXPECT_STREQ(get_error_description(r.code), "Reference to external entity");
        EXPECT_EQ(r.debug.item_name, "External Entity definitions not supported");
    }
    r = read_sheet("<!DOCTYPE w><!DOCTYPE w>" + sheet("<sheetData/>"));
    EXPECT_EQ(r.debug.item_name, "Document Type Declaration already read");
    r = read_sheet(sheet("<!DOCTYPE w><sheetData/>"));
    EXPECT_EQ(r.code, ELMX_BAD_DTD);
    EXPECT_EQ(r.debug.item_name, "Document Type Declaration not at start of document");
}

TEST(LmxReader, WhiteSpaceModes) {
    c_worksheet w;
    ASSERT_EQ(read_into(w, sheet("<props req='1' words=' a&#10;b\tc ' code=' AB1 '/><sheetData/>"
                                 "<seq><opt>\n  several \t  words\n here  </opt><item> kept\t </item><need/></seq>")),
              ELMX_OK);
    // Replace: each white space character becomes a blank, but a referenced line feed stays.
    EXPECT_EQ(w.m_props.get().m_words.get(), L" a\nb c ");
    // Collapse keeps a referenced blank too, which then fails the pattern.
    EXPECT_EQ(read_sheet(sheet("<props req='1' code='&#32;AB1'/><sheetData/>")).code, ELMX_NO_PATTERN_MATCHED);
    EXPECT_EQ(w.m_seq.get().m_opt.get(), L"several words here");
    EXPECT_EQ(w.m_seq.get().m_item.get(0), L" kept\t ");
}

TEST(LmxReader, NamespacesResolveByUriNotPrefix) {
    c_worksheet w;
    std::string xml = "<m:worksheet xmlns:m='" + std::string(main_uri) +
                      "'><m:sheetData><m:row r='1'><m:c><m:v>1</m:v></m:c></m:row></m:sheetData></m:worksheet>";
    ASSERT_EQ(read_into(w, xml), ELMX_OK);
    EXPECT_EQ(w.m_sheetData.get().m_row[0].m_c[0].m_v.get(), L"1");

    // A row of another namespace is a stranger: skipped under the known elements table.
    c_worksheet w2;
    ASSERT_EQ(read_into(w2, sheet("<sheetData><o:row xmlns:o='urn:other' r='1'/><row r='2'/></sheetData>")), ELMX_OK);
    ASSERT_EQ(w2.m_sheetData.get().m_row.size(), 1u);
    EXPECT_EQ(w2.m_sheetData.get().m_row[0].m_r.get(), 2u);

    // The default namespace may be switched off and on again below.
    EXPECT_EQ(read_sheet(sheet("<sheetData><row xmlns=''/></sheetData>")).code, ELMX_OK);
    EXPECT_EQ(read_sheet(sheet("<sheetData><q:row/></sheetData>")).code, ELMX_NOT_WELL_FORMED);
    EXPECT_EQ(read_sheet("<worksheet xmlns='urn:wrong'><sheetData/></worksheet>").code, ELMX_ELEMENT_NOT_FOUND);
    EXPECT_EQ(read_sheet("<worksheet><sheetData/></worksheet>").code, ELMX_ELEMENT_NOT_FOUND);
}

TEST(LmxReader, UnknownItemsUnderTheTolerantRoot) {
    // Unknown and misplaced elements are skipped, unknown attributes dropped or kept.
    c_worksheet w;
    std::string xml = sheet(
        "<x:future xmlns:x='urn:x'><deep><deeper a='1'/></deep></x:future>"
        "<sheetData><row r='1' x14ac:dyDescent='0.25' xmlns:x14ac='urn:ac'><c r='A1' odd='1'><v>1</v><extra/></c></row></sheetData>"
        "<one x='1'/><props req='1'/><seq><need/></seq>");
    ASSERT_EQ(read_into(w, xml), ELMX_OK);
    EXPECT_FALSE(w.m_props.is_value_set());  // out of order: passed over
    EXPECT_FALSE(w.m_seq.is_value_set());    // behind the passed-over element
    EXPECT_EQ(w.m_choice.get_choice(), c_EG_Choice::choice_one);
    const c_CT_Row& row = w.m_sheetData.get().m_row[0];
    ASSERT_EQ(row.m_any_attribute.size(), 1u);
    EXPECT_EQ(row.m_any_attribute[0].get_name(), "x14ac:dyDescent");
    EXPECT_EQ(row.m_any_attribute[0].get_namespace(), "urn:ac");
    EXPECT_EQ(row.m_any_attribute[0].get_value(), "0.25");
    EXPECT_EQ(row.m_c[0].m_v.get(), L"1");
}

TEST(LmxReader, UnknownItemsUnderTheStrictRoot) {
    const std::string open = "<doc" + main_decl + " xmlns:r='" + rel_uri + "'>";
    c_doc d;
    ASSERT_EQ(read_into(d, open + "<fonts count='2' r:id='rId1' x14ac:knownFonts='1' xmlns:x14ac='urn:ac'><font name='A'/><font/></fonts></doc>"), ELMX_OK);
    EXPECT_EQ(d.m_fonts.get().m_count.get(), 2u);
    EXPECT_EQ(d.m_fonts.get().m_id.get(), "rId1");
    EXPECT_EQ(d.m_fonts.get().m_any_attribute.size(), 1u);
    EXPECT_EQ(d.m_fonts.get().m_font[0].m_name.get(), L"A");

    read_result r = read_doc(open + "<fonts><font name='A' x14ac:b='1' xmlns:x14ac='urn:ac'/></fonts></doc>");
    EXPECT_EQ(r.code, ELMX_UNEXPECTED_ATTRIBUTE);
    EXPECT_EQ(r.debug.item_name, "@x14ac:b");
    EXPECT_STREQ(get_error_description(r.code), "Unexpected attribute");
    // xsi attributes are always let through.
    EXPECT_EQ(read_doc(open + "<fonts><font xsi:nil='false' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'/></fonts></doc>").code,
              ELMX_OK);
    r = read_doc(open + "<fonts><bold/></fonts></doc>");
    EXPECT_EQ(r.code, ELMX_BAD_END_OF_ELEMENT);
    EXPECT_EQ(read_doc(open + "<fonts><font><b/></font></fonts></doc>").code, ELMX_BAD_END_OF_ELEMENT);
}

TEST(LmxReader, ValueErrors) {
    struct {
        const char* props;
        elmx_error code;
        const char* item;
    } cases[] = {
        {"req='1' req='2'", ELMX_ATTRIBUTE_ALREADY_READ, "@req"},
        {"", ELMX_REQUIRED_ATTRIBUTES_MISSING, "CT_Props"},
        {"req='x'", ELMX_VALUE_BAD_FORMAT, "@req"},
        {"req='-1'", ELMX_VALUE_BAD_FORMAT, "@req"},
        {"req='1' i8='128'", ELMX_VALUE_BAD_FORMAT, "@i8"},
        {"req='1' flag='yes'", ELMX_VALUE_BAD_FORMAT, "@flag"},
        {"req='1' d='1,5'", ELMX_VALUE_BAD_FORMAT, "@d"},
        {"req='1' i32='101'", ELMX_VALUE_EXCEEDS_MAX, "@i32"},
        {"req='1' i32='-6'", ELMX_VALUE_EXCEEDS_MIN, "@i32"},
        {"req='1' kind='gamma'", ELMX_VALUE_NOT_ENUMERATED, "@kind"},
        {"req='1' code='ab12'", ELMX_NO_PATTERN_MATCHED, "@code"},
        {"req='1' color='FFFFFF'", ELMX_LENGTH_TOO_SHORT, "@color"},
        {"req='1' color='FFFFFFFFFF'", ELMX_LENGTH_TOO_LONG, "@color"},
        {"req='1' color='GG000000'", ELMX_VALUE_BAD_FORMAT, "@color"},
        {"req='1' when='2024-13-01T00:00:00'", ELMX_VALUE_BAD_FORMAT, "@when"},
        {"req='1' list='1 x'", ELMX_VALUE_BAD_FORMAT, "@list"},
    };
    for (const auto& c : cases) {
        read_result r = read_sheet(sheet("<props " + std::string(c.props) + "/><sheetData/>"));
        EXPECT_EQ(r.code, c.code) << c.props;
        EXPECT_EQ(r.debug.item_name, c.item) << c.props;
    }
    read_result r = read_sheet(sheet("<sheetData><row><c t='x'/></row></sheetData>"));
    EXPECT_EQ(r.code, ELMX_VALUE_NOT_ENUMERATED);
    r = read_sheet(sheet_with_data("", "<seq><item/><item/><item/><item/><need/></seq>"));
    EXPECT_EQ(r.code, ELMX_OCCURRENCE_ERROR);
    EXPECT_STREQ(get_error_description(r.code), "Element instances exceeds maxOccurs");
    r = read_sheet(sheet_with_data("", "<seq><need>text</need></seq>"));
    EXPECT_EQ(r.code, ELMX_UNABLE_TO_READ_ELEMENT_VALUE);
    r = read_sheet(sheet("<sheetData><row><c><v a='1'>1</v></c></row></sheetData>"));
    EXPECT_EQ(r.code, ELMX_OK);  // the tolerant root lets an unknown attribute of a value pass
}

TEST(LmxReader, SyntaxErrorsAndTheirTexts) {
    struct {
        std::string xml;
        elmx_error code;
        const char* detail;
    } cases[] = {
        {sheet("<sheetData></sheetdata>"), ELMX_BAD_END_OF_ELEMENT,
         "Element start tag (sheetData) and end tag (sheetdata) do not match"},
        {sheet("<sheetData><row r></row></sheetData>"), ELMX_NOT_WELL_FORMED,
         "Schema is not Well Formed (expected '=', got '>')"},
        {sheet("<sheetData><row r=1></row></sheetData>"), ELMX_NOT_WELL_FORMED,
         "Schema is not Well Formed (expected '\"' or ''', got 1)"},
        {sheet("<sheetData><row/ ></sheetData>"), ELMX_BAD_END_TAG, "Illegal character(s) after / at end of tag -  ></sheetData></work"},
        {sheet("<sheetData><row r='<'/></sheetData>"), ELMX_NOT_WELL_FORMED, "'<' in the value of an attribute"},
        {sheet("<sheetData><!-- a -- b --></sheetData>"), ELMX_BAD_COMMENT, "Badly formed comment"},
        {sheet("<sheetData></ sheetData>"), ELMX_BAD_END_TAG_SYNTAX, "Syntax error in end tag -  sheetData></workshe"},
        {"<worksheet" + main_decl + "><sheetData>", ELMX_UNEXPECTED_EOM, "Premature end of file encountered"},
        {"<worksheet" + main_decl + "><sheetData><row r='1", ELMX_UNEXPECTED_EOM, "Premature end of file encountered"},
        {"<worksheet" + main_decl + "><sheetData><row><c><v>12", ELMX_UNEXPECTED_EOM, "Premature end of file encountered"},
    };
    for (const auto& c : cases) {
        read_result r = read_sheet(c.xml);
        EXPECT_EQ(r.code, c.code) << c.xml;
        EXPECT_EQ(r.debug.item_name, c.detail) << c.xml;
    }
}

TEST(LmxReader, DebugRecordAndErrorTable) {
    read_result r = read_sheet(sheet("<props req='1' i32='500'/><sheetData/>"));
    EXPECT_EQ(r.debug.error, ELMX_VALUE_EXCEEDS_MAX);
    EXPECT_EQ(r.debug.source_id, "memory");
    EXPECT_NE(r.debug.code_file.find("lmx_test_classes.h"), std::string::npos);
    EXPECT_EQ(r.debug.to_string().find("error 36 (Value greater than specified maximum): @i32"), 0u) << r.debug.to_string();

    EXPECT_STREQ(get_error_description(0), "No Error");
    EXPECT_STREQ(get_error_description(ELMX_UNEXPECTED_EOM), "Unexpected end of message");
    EXPECT_STREQ(get_error_description(ELMX_OCCURS_ERROR_ON_MARSHAL), "min/max occurs error on marshaling");
    EXPECT_STREQ(get_error_description(1000), "User defined error 1");
    EXPECT_STREQ(get_error_description(1008), "User defined error 9");
    EXPECT_STREQ(get_error_description(47), "");
    EXPECT_STREQ(get_error_description(1009), "");
    int rows = 0;
    for (const s_error_description* row = mc_error_description; row->text; ++row) ++rows;
    EXPECT_EQ(rows, 47 + 9);
}

TEST(LmxReader, HostileInput) {
    // Exponential entity expansion is cut off long before memory runs out.
    std::string laughs = "<!DOCTYPE w [<!ENTITY l0 'lollollollollollollollollollol'>";
    for (int i = 1; i < 10; ++i)
        laughs += "<!ENTITY l" + std::to_string(i) + " '" + std::string() +
                  [&] { std::string s; for (int k = 0; k < 10; ++k) s += "&l" + std::to_string(i - 1) + ";"; return s; }() + "'>";
    laughs += "]>" + sheet("<sheetData><row><c><v>&l9;</v></c></row></sheetData>");
    EXPECT_EQ(read_sheet(laughs).code, ELMX_UNEXPECTED_ENTITY);

    // Deep nesting inside a skipped element and inside a recursive-looking path.
    std::string deep;
    for (int i = 0; i < 100000; ++i) deep += "<x>";
    EXPECT_EQ(read_sheet(sheet(deep)).code, ELMX_BADLY_FORMED);

    // A huge attribute value and a huge text are read whole.
    std::string big(4 << 20, 'a');
    c_worksheet w;
    ASSERT_EQ(read_into(w, sheet("<sheetData><row><c r='" + big + "'><v>" + big + "</v></c></row></sheetData>")), ELMX_OK);
    EXPECT_EQ(w.m_sheetData.get().m_row[0].m_c[0].m_v.get().size(), big.size());

    // Thousands of declarations and foreign attributes: each attribute shares one captured
    // context, and lookups stay cheap, so this reads and writes in moments.
    std::string decls, attrs;
    for (int i = 0; i < 20000; ++i) {
        decls += " xmlns:p" + std::to_string(i) + "='urn:p" + std::to_string(i) + "'";
        attrs += " p" + std::to_string(i) + ":a='" + std::to_string(i) + "'";
    }
    c_worksheet many;
    ASSERT_EQ(read_into(many, "<worksheet" + main_decl + decls + attrs + "><sheetData><row" + attrs +
                                  "/></sheetData></worksheet>"),
              ELMX_OK);
    EXPECT_EQ(many.m_any_attribute.size(), 20000u);
    EXPECT_EQ(many.m_sheetData.get().m_row[0].m_any_attribute.size(), 20000u);
    std::string written = write_out(many);
    c_worksheet many_again;
    EXPECT_EQ(read_into(many_again, written), ELMX_OK);
    EXPECT_EQ(write_out(many_again), written);

    // Every truncation of a document fails cleanly.
    const std::string full = "<?xml version='1.0'?><!DOCTYPE w [<!ENTITY e 'v'>]>" +
                             sheet("<props req='1' d='2'/><sheetData><row r='1' spans='1:2'><c r='A1' t='s'>"
                                   "<f>A&amp;B</f><v>&e;<![CDATA[x]]></v></c></row></sheetData><two y='z'/>"
                                   "<extLst><ext uri='u'><a:b xmlns:a='urn:a'/></ext></extLst>");
    ASSERT_EQ(read_sheet(full).code, ELMX_OK);
    for (size_t n = 0; n < full.size(); ++n) EXPECT_NE(read_sheet(full.substr(0, n)).code, ELMX_OK) << n;
    // And so does every single-byte corruption, or it still reads.
    for (size_t n = 0; n < full.size(); ++n)
        for (char c : {'\0', '<', '>', '&', '"', '\'', '/', ':'}) {
            std::string bad = full;
            bad[n] = c;
            read_sheet(bad);
        }
}

// Found by fuzzing: empty entities nested four to a level expand to nothing at all, but each
// reference still costs a look-up; 4^8 of them for one reference used to be free.
TEST(LmxReader, EmptyEntitiesExpandedExponentially) {
    std::string empty = "<!DOCTYPE w [<!ENTITY e0 ''>";
    for (int i = 1; i <= 8; ++i) {
        std::string ref = "&e" + std::to_string(i - 1) + ";";
        empty += "<!ENTITY e" + std::to_string(i) + " '" + ref + ref + ref + ref + "'>";
    }
    read_result nothing = read_sheet(empty + "]>" + sheet("<sheetData><row><c><v>1&e8;</v></c></row></sheetData>"));
    EXPECT_EQ(nothing.code, ELMX_UNEXPECTED_ENTITY);
    EXPECT_EQ(nothing.debug.item_name.rfind("Entity expansion too large: ", 0), 0u) << nothing.debug.item_name;
    // A few levels of the same stay well inside what a document may expand.
    EXPECT_EQ(read_sheet(empty.substr(0, empty.find("<!ENTITY e4")) + "]>" +
                         sheet("<sheetData><row><c><v>1&e3;</v></c></row></sheetData>")).code,
              ELMX_OK);
}
