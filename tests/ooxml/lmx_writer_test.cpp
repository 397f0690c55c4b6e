// Writing: compact output, escaping, number forms, namespaces, foreign items, round trips.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cmath>
#include <limits>
#include <sstream>

#include "lmx_test_util.h"

using namespace lmxtest;

namespace {
std::string escaped(const std::string& s) {
    std::string out;
    output_convert_to_xml(out, s);
    return out;
}
std::string text_of(double d) {
    std::string v;
    o_to_v(v, d);
    return v;
}
}  // namespace

TEST(LmxWriter, EscapesLikeTheReaderExpects) {
    EXPECT_EQ(escaped("a<b&c\"d'e"), "a&lt;b&amp;c&quot;d&apos;e");
    EXPECT_EQ(escaped("a>b"), "a>b");
    EXPECT_EQ(escaped("]]>"), "]]&gt;");
    EXPECT_EQ(escaped("x]>"), "x]&gt;");
    EXPECT_EQ(escaped("]>"), "]>");  // index 1: stays plain
    EXPECT_EQ(escaped(std::string("\x01\t\n", 3)), std::string("\x01\t\n", 3));
    std::string wide;
    output_convert_to_xml(wide, std::wstring(L"<\u00e9\U0001F600]>"));
    EXPECT_EQ(wide, "&lt;\xC3\xA9\xF0\x9F\x98\x80]&gt;");
}

TEST(LmxWriter, WideTextToUtf8) {
    std::string out;
    const wchar_t pair[] = {L'a', static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00), L'b'};
    wide_to_utf8(out, pair, 4);
    EXPECT_EQ(out, "a\xF0\x9F\x98\x80" "b");
    out.clear();
    const wchar_t tail[] = {L'a', static_cast<wchar_t>(0xD83D)};
    wide_to_utf8(out, tail, 2);
    EXPECT_EQ(out, "a");
    EXPECT_EQ(utf8_to_wide(std::string("\xC3\xA9\xFF" "a\xE2\x82")), std::wstring(L"\u00e9\uFFFDa\uFFFD\uFFFD"));
}

TEST(LmxWriter, NumberForms) {
    EXPECT_EQ(text_of(1.5), "1.5");
    EXPECT_EQ(text_of(0.1), "0.1");
    EXPECT_EQ(text_of(1e20), "1e+20");
    EXPECT_EQ(text_of(1e-5), "1e-05");
    EXPECT_EQ(text_of(M_PI), "3.1415926535898");
    EXPECT_EQ(text_of(-0.0), "-0");
    EXPECT_EQ(text_of(std::numeric_limits<double>::quiet_NaN()), "NaN");
    EXPECT_EQ(text_of(std::numeric_limits<double>::infinity()), "INF");
    EXPECT_EQ(text_of(-std::numeric_limits<double>::infinity()), "-INF");
    double d = 0;
    EXPECT_TRUE(v_to_o(d, "-INF"));
    EXPECT_TRUE(std::isinf(d) && d < 0);
    EXPECT_TRUE(v_to_o(d, "NaN"));
    EXPECT_TRUE(std::isnan(d));
    EXPECT_FALSE(v_to_o(d, "inf"));
    EXPECT_FALSE(v_to_o(d, "0x10"));
    EXPECT_TRUE(v_to_o(d, "-.5E+2"));
    EXPECT_EQ(d, -50);

    // A process locale with a decimal comma changes neither form.
    const char* old = std::setlocale(LC_NUMERIC, nullptr);
    std::string saved = old ? old : "C";
    if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") || std::setlocale(LC_NUMERIC, "fr_FR.UTF-8")) {
        EXPECT_EQ(text_of(2.25), "2.25");
        EXPECT_TRUE(v_to_o(d, "2.25"));
        EXPECT_EQ(d, 2.25);
    }
    std::setlocale(LC_NUMERIC, saved.c_str());
}

TEST(LmxWriter, IntegersAndOtherTypes) {
    int8_t i8;
    EXPECT_TRUE(v_to_o(i8, "-128"));
    EXPECT_FALSE(v_to_o(i8, "-129"));
    uint8_t u8;
    EXPECT_TRUE(v_to_o(u8, "+255"));
    EXPECT_FALSE(v_to_o(u8, "256"));
    EXPECT_TRUE(v_to_o(u8, "-0"));
    long long ll;
    EXPECT_TRUE(v_to_o(ll, "-9223372036854775808"));
    EXPECT_FALSE(v_to_o(ll, "9223372036854775808"));
    EXPECT_FALSE(v_to_o(ll, ""));
    EXPECT_FALSE(v_to_o(ll, "1 "));

    c_big_int a, b;
    EXPECT_TRUE(a.set("-0012345678901234567890"));
    EXPECT_EQ(a.get_as_string(), "-12345678901234567890");
    EXPECT_TRUE(b.set("99"));
    EXPECT_TRUE(a < b);
    EXPECT_TRUE(b.set("-12345678901234567891"));
    EXPECT_TRUE(b < a);
    EXPECT_TRUE(a.set("-0"));
    EXPECT_EQ(a, c_big_int(0));

    c_binary bin;
    EXPECT_TRUE(bin.from_base64("AAEC/w=="));
    EXPECT_EQ(bin.out_hex(), "000102FF");
    EXPECT_EQ(bin.out_base64(), "AAEC/w==");
    EXPECT_FALSE(bin.from_hex("ABC"));

    c_datetime dt;
    EXPECT_TRUE(dt.set("2001-10-26T21:32:52+02:00"));
    EXPECT_EQ(dt.get_as_string(), "2001-10-26T21:32:52+02:00");
    EXPECT_FALSE(dt.set("2001-10-26"));
    c_date date;
    EXPECT_TRUE(date.set("2001-10-26Z"));
    c_duration duration;
    EXPECT_TRUE(duration.set("P1Y2M3DT4H5M6.5S"));
    EXPECT_FALSE(duration.set("P"));

    c_regex broken("[unclosed");
    EXPECT_FALSE(broken.is_match("[unclosed"));
}

TEST(LmxWriter, CompactOutputWithOneDeclarationAndNamespacesOnce) {
    c_worksheet w;
    c_CT_Row* row = new c_CT_Row;
    row->m_r.set(1);
    row->m_ht.set(12.5);
    c_CT_Cell& cell = row->m_c.append();
    cell.m_r.set("A1");
    cell.m_t.set(L"str");
    cell.m_v.set(L"a<b> & ]]> \"q\"");
    w.m_sheetData.get().m_row.push_back(row);
    w.m_choice.select_two().m_y.set(L"y");
    elmx_error e;
    std::string out = write_out(w, &e);
    EXPECT_EQ(e, ELMX_OK);
    EXPECT_EQ(out, "<?xml version=\"1.0\" encoding=\"UTF-8\"?><worksheet xmlns=\"" + std::string(main_uri) +
                       "\" xmlns:r=\"" + rel_uri +
                       "\"><sheetData><row r=\"1\" ht=\"12.5\"><c r=\"A1\" t=\"str\"><v>a&lt;b> &amp; ]]&gt; "
                       "&quot;q&quot;</v></c></row></sheetData><two y=\"y\"/></worksheet>");
    // The same through a stream.
    std::ostringstream os;
    EXPECT_EQ(marshal(w, os), ELMX_OK);
    EXPECT_EQ(os.str(), out);

    std::string standalone;
    {
        c_xml_writer writer(standalone, XML_DECL_STANDALONE);
        writer.start_element("a");
        writer.add_schema_location("urn:a a.xsd");
        writer.conditionally_write_ns_attrs();
        writer.end_element("a");
    }
    EXPECT_EQ(standalone, "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?><a xmlns:xsi=\"http://www.w3.org/2001/"
                          "XMLSchema-instance\" xsi:schemaLocation=\"urn:a a.xsd\"/>");
    std::string indented;
    {
        c_xml_writer writer(indented, XML_DECL_NONE, "  ", "\n");
        writer.start_element("a");
        writer.start_element("b");
        writer.marshal_element_body(std::string("t"));
        writer.end_element("b");
        writer.end_element("a");
    }
    EXPECT_EQ(indented, "<a>\n  <b>t</b>\n</a>\n");
}

TEST(LmxWriter, MissingMandatoryItemsFailOnMarshal) {
    c_worksheet w;
    w.m_props.get();  // req has no value and no default
    elmx_error e;
    write_out(w, &e);
    EXPECT_EQ(e, ELMX_OCCURS_ERROR_ON_MARSHAL);
    c_worksheet w2;
    w2.m_sheetData.get();
    w2.m_seq.get();  // need is absent
    s_debug_error debug;
    std::string out;
    EXPECT_EQ(marshal(w2, &out, &debug), ELMX_OCCURS_ERROR_ON_MARSHAL);
    EXPECT_EQ(debug.item_name, "need");
}

TEST(LmxWriter, ContainersAndChoice) {
    c_CT_Seq seq;
    EXPECT_EQ(seq.append_item(L"1"), ELMX_OK);
    EXPECT_EQ(seq.append_item(L"2"), ELMX_OK);
    EXPECT_EQ(seq.append_item(L"3"), ELMX_OK);
    EXPECT_EQ(seq.append_item(L"4"), ELMX_OCCURRENCE_ERROR);
    EXPECT_EQ(seq.m_item.size(), 3u);

    // Switching the choice frees the former member (the sanitizer build checks the leak).
    c_EG_Choice choice;
    choice.select_one().m_x.set(5);
    choice.select_two().m_y.set(L"z");
    EXPECT_EQ(choice.get_choice(), c_EG_Choice::choice_two);
    EXPECT_EQ(choice.select_one().m_x.is_value_set(), false);

    // Deep copies of owned children.
    c_CT_Row row;
    row.m_c.append().m_v.set(L"v");
    c_CT_Row copy(row);
    copy.m_c[0].m_v.set(L"w");
    EXPECT_EQ(row.m_c[0].m_v.get(), L"v");
    row.m_c.erase(0);
    EXPECT_EQ(row.m_c.size(), 0u);
    ct_complex_optional<c_CT_Cell> optional;
    EXPECT_FALSE(optional.is_value_set());
    EXPECT_FALSE(static_cast<const ct_complex_optional<c_CT_Cell>&>(optional).get().m_v.is_value_set());
    optional.get().m_v.set(L"x");
    ct_complex_optional<c_CT_Cell> other(optional);
    optional.unset();
    EXPECT_EQ(other.get().m_v.get(), L"x");
}

TEST(LmxWriter, RoundTripsKeepForeignItems) {
    const std::string input =
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
        "<worksheet xmlns=\"" + std::string(main_uri) + "\" xmlns:mc=\"urn:mc\" xmlns:x14ac=\"urn:ac\" "
        "mc:Ignorable=\"x14ac\">\n  <future:thing xmlns:future=\"urn:future\"/>\n"
        "  <sheetData>\n    <row r=\"1\" spans=\"1:2\" x14ac:dyDescent=\"0.25\">\n"
        "      <c r=\"A1\" s=\"0\"><v>1</v></c>\n      <c r=\"B1\" t=\"s\"><v>0</v></c>\n    </row>\n  </sheetData>\n"
        "  <one x=\"-3\"/>\n  <extLst><ext uri=\"{ID}\"><x14:sparklines xmlns:x14=\"urn:x14\"><x14:s a=\"&amp;\">"
        "<xm:f xmlns:xm=\"urn:xm\">A1</xm:f><mc:AlternateContent/></x14:s></x14:sparklines></ext></extLst>\n</worksheet>";
    c_worksheet w;
    ASSERT_EQ(read_into(w, input), ELMX_OK);
    std::string first = write_out(w);
    EXPECT_EQ(first,
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?><worksheet xmlns=\"" + std::string(main_uri) +
                  "\" xmlns:r=\"" + rel_uri + "\" xmlns:mc=\"urn:mc\" xmlns:x14ac=\"urn:ac\" mc:Ignorable=\"x14ac\">"
                  "<sheetData><row r=\"1\" spans=\"1:2\" x14ac:dyDescent=\"0.25\"><c r=\"A1\" s=\"0\"><v>1</v></c>"
                  "<c r=\"B1\" t=\"s\"><v>0</v></c></row></sheetData><one x=\"-3\"/><extLst><ext uri=\"{ID}\">"
                  "<x14:sparklines xmlns:x14=\"urn:x14\"><x14:s a=\"&amp;\"><xm:f xmlns:xm=\"urn:xm\">A1</xm:f>"
                  "<mc:AlternateContent/></x14:s></x14:sparklines></ext></extLst></worksheet>");
    // Reading what we wrote gives the same document again.
    c_worksheet again;
    ASSERT_EQ(read_into(again, first), ELMX_OK);
    EXPECT_EQ(write_out(again), first);

    // A captured element moved into a document without the namespaces it uses gets them declared.
    const c_any_info& captured = w.m_extLst.get().m_ext[0].m_any[0];
    EXPECT_EQ(captured.get_namespace(), "urn:x14");
    c_doc d;
    c_CT_Extension* ext = new c_CT_Extension;
    ext->m_any.push_back(captured.clone());
    d.m_extLst.get().m_ext.push_back(ext);
    std::string moved = write_out(d);
    size_t tag = moved.find("<x14:sparklines ");
    ASSERT_NE(tag, std::string::npos) << moved;
    EXPECT_LT(moved.find("xmlns:mc=\"urn:mc\"", tag), moved.find('>', tag)) << moved;
    c_doc d2;
    EXPECT_EQ(read_into(d2, moved), ELMX_OK);

    // A foreign attribute whose prefix the writer doesn't know is declared where it is written.
    c_worksheet bare;
    c_CT_Row* row = new c_CT_Row;
    row->m_any_attribute.push_back(w.m_sheetData.get().m_row[0].m_any_attribute[0].clone());
    bare.m_sheetData.get().m_row.push_back(row);
    std::string out = write_out(bare);
    EXPECT_NE(out.find("<row xmlns:x14ac=\"urn:ac\" x14ac:dyDescent=\"0.25\"/>"), std::string::npos) << out;
}

TEST(LmxWriter, CapturedElementReadsBackAsADocument) {
    c_worksheet w;
    ASSERT_EQ(read_into(w, sheet("<sheetData/><extLst><ext uri='u'><m:doc xmlns:m='" + std::string(main_uri) +
                                 "'><fonts count='1'><font name='F'/></fonts></m:doc></ext></extLst>")),
              ELMX_OK);
    const c_any_info& info = w.m_extLst.get().m_ext[0].m_any[0];
    c_doc d;
    ASSERT_EQ(unmarshal(&d, info), ELMX_OK);
    EXPECT_EQ(d.m_fonts.get().m_font[0].m_name.get(), L"F");

    // Prefixes declared further out come with the captured context.
    c_worksheet w2;
    ASSERT_EQ(read_into(w2, sheet("<sheetData/><extLst><ext uri='u'><doc><fonts count='2'/></doc></ext></extLst>")), ELMX_OK);
    c_doc d2;
    ASSERT_EQ(unmarshal(&d2, w2.m_extLst.get().m_ext[0].m_any[0]), ELMX_OK);
    EXPECT_EQ(d2.m_fonts.get().m_count.get(), 2u);
}

TEST(LmxWriter, FilesAsSourceAndTarget) {
    const std::string path = std::string(ZELVAR_TEST_TMP) + "/lmx-file.xml";
    c_worksheet w;
    w.m_sheetData.get().m_row.append().m_r.set(7);
    ASSERT_EQ(marshal(w, path.c_str()), ELMX_OK);
    c_worksheet back;
    ASSERT_EQ(unmarshal(&back, path.c_str()), ELMX_OK);
    EXPECT_EQ(back.m_sheetData.get().m_row[0].m_r.get(), 7u);
    std::remove(path.c_str());
    s_debug_error debug;
    EXPECT_EQ(unmarshal(&back, (path + ".missing").c_str(), &debug), ELMX_UNABLE_TO_OPEN_FILE);
    EXPECT_EQ(marshal(w, (std::string(ZELVAR_TEST_TMP) + "/no/such/dir/x.xml").c_str()), ELMX_UNABLE_TO_OPEN_FILE);
}
