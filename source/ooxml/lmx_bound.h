// The engine behind the schema-bound classes. Every complex type, element group and anonymous
// model group of a schema is a static descriptor (s_type): its attributes with their simple-type
// checks, defaults and required flags, and its content as steps in schema order with their
// bounds. One object class, c_node, holds the values of any type in slots laid out by the
// descriptor and does reading, writing, copying and checking for all of them; the classes that
// the XML book calls by name derive from it and add inline accessors over the slots.
//
// In use: a part is read by its root class (sheet::c_worksheet w; w.unmarshal(data, size,
// &debug)) and written by marshal(&text). Members are reached through get_x, set_x, isset_x,
// unset_x; lists through size_x, get_x(i), append_x, insert_x, delete_x, clear_x; model groups
// by the group's name (c_CT_Font: size_inner_CT_Font, get_inner_CT_Font(i)); a choice by
// select_x or get_x and get_choice(). Types that no code names are plain c_node objects.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "ooxml/lmx.h"

namespace zelvar {
namespace lmx {

// How a simple value is held.
enum e_value_kind : uint8_t {
    VK_BOOL, VK_I8, VK_U8, VK_I16, VK_U16, VK_I32, VK_U32, VK_I64, VK_U64,
    VK_DOUBLE, VK_FLOAT, VK_HEX, VK_BASE64, VK_WSTRING
};
// Lexical checks of text-held built-in types.
enum e_lexical : uint8_t { LX_NONE, LX_DECIMAL, LX_DATETIME, LX_INTEGER };

// One simple type with its facets. Lists and unions are held as their collapsed text.
struct s_simple {
    e_value_kind kind;
    elmx_whitespace whitespace;
    e_lexical lexical;
    unsigned enum_count;
    const char* const* enum_texts;
    const unsigned short* enum_ids;
    const char* min_inclusive;
    const char* max_inclusive;
    const char* min_exclusive;
    const char* max_exclusive;
    int length, min_length, max_length;  // -1: no facet
    const c_regex* pattern;
    const s_simple* item;                // of a list
    const s_simple* const* members;      // of a union
    unsigned member_count;
};

struct s_attr {
    const char* name;          // local name
    int ns_id;                 // 0 for unqualified attributes
    const char* qname;         // as written
    const s_simple* simple;
    const char* default_text;  // null: no default
    bool required;
};

enum e_step_kind : uint8_t {
    SK_ELEMENT,   // a child object of a complex type
    SK_SIMPLE,    // a child element with a simple value
    SK_GROUP,     // a model group held as an object of its own, read without an element of its own
    SK_ANY,       // foreign elements, kept as captured text
    SK_ANY_DROP,  // foreign elements, accepted and not kept
    SK_CELLS      // the cells of a row, in their compact form
};

struct s_type;
struct s_step {
    e_step_kind kind;
    const char* name;  // local name of the element
    int ns_id;
    const char* qname;  // as written
    const s_type* target;
    const s_simple* simple;
    unsigned min_occurs, max_occurs;
    const char* ns_uri;  // for a namespace that the root does not declare; null otherwise
};

enum {
    TF_CHOICE = 1,     // the steps are alternatives: one is chosen
    TF_FOREIGN = 2,    // keeps attributes of other namespaces
    TF_NULLABLE = 4,   // the content may be empty
    TF_ANY_FIRST = 8,  // a wildcard may open the content
    TF_ACCEPT_ANY = 16 // content of any name is read here: no known-elements filter applies
};

class c_node;
struct s_type {
    const char* name;
    const s_attr* attrs;
    unsigned attr_count;
    const s_step* steps;
    unsigned step_count;
    const s_simple* simple_content;  // the text of a simple-content type
    unsigned flags;
    const s_known_elements* first;   // names that can open the content of a group
    const s_known_elements* known;   // names allowed as children, where unknown ones are skipped
    c_node* (*make)();               // the named class of the type, or null for a plain c_node
};

// A document root: the element, its namespace id and whether unknown items are skipped.
struct s_root {
    const s_type* type;
    const char* name;
    int ns_id;
    bool ignore_unknown;
    const s_ns_map* ns_map;         // every namespace the classes know, for reading
    const s_ns_map* ns_map_writer;  // the namespaces declared on the root when writing
    const wchar_t* const* enum_texts;
    unsigned enum_count;
};

// Checks a value text against a simple type; ELMX_OK or the error of the failed facet.
elmx_error check_simple(const s_simple& simple, const std::string& text);

class c_cell_base;

class c_node {
public:
    explicit c_node(const s_type* type);
    c_node(const c_node& o);
    c_node& operator=(const c_node& o);
    virtual ~c_node();

    const s_type* get_type() const { return m_type; }
    c_node* clone_node() const;
    void swap(c_node& o);
    // Unsets every attribute, so that they read as their defaults, and frees all content.
    void init();
    // True if all required members are set and all lists are within their bounds.
    bool is_occurs_ok() const;

    // Reads the element whose start tag was just read.
    elmx_error unmarshal(c_xml_reader& reader, const std::string& name);
    // Writes the element with that name.
    elmx_error marshal(c_xml_writer& writer, const char* name) const;
    elmx_error marshal_attributes(c_xml_writer& writer) const;
    elmx_error marshal_child_elements(c_xml_writer& writer) const;

    // The foreign attributes, in the order they were read.
    size_t any_attribute_count() const { return m_any ? m_any->size() : 0; }
    bool getany_attribute(size_t i, std::string* ns, std::string* name, std::string* value) const;
    ct_any_info_container& any_attributes();

    // Deep equality of two trees: values, content and foreign items.
    bool equals(const c_node& o) const;

    // ---- slot access for the generated accessors; a slot index counts attributes, the text
    // of a simple-content type and content steps, in that order ----
    bool isset(unsigned i) const { return (m_flags[i] & 1) != 0; }
    void unset(unsigned i);
    int64_t get_i(unsigned i) const;
    int set_i(unsigned i, int64_t v);
    double get_d(unsigned i) const;
    int set_d(unsigned i, double v);
    std::wstring get_w(unsigned i) const;
    int set_w(unsigned i, const std::wstring& v);
    c_binary get_b(unsigned i) const;
    int set_b(unsigned i, const c_binary& v);
    int getenum(unsigned i) const;
    int setenum(unsigned i, int e);
    // xml:space of a simple child element: 0 absent, 1 "default", 2 "preserve".
    int get_space(unsigned i) const { return (m_flags[i] >> 1) & 3; }
    void set_space(unsigned i, int v) { m_flags[i] = static_cast<uint8_t>((m_flags[i] & ~6) | ((v & 3) << 1)); }

    // Child objects of single steps: created on first use.
    c_node& child(unsigned i);
    const c_node* child_ptr(unsigned i) const { return m_slots[i].n; }
    void assign_child(unsigned i, c_node* p);
    // Lists.
    size_t size_s(unsigned i) const;
    c_node& item(unsigned i, size_t k) const { return *(*m_slots[i].v)[k]; }
    c_node& append_new(unsigned i);
    int append_item(unsigned i, c_node* p);
    int insert_item(unsigned i, size_t k, c_node* p);
    void delete_item(unsigned i, size_t k);
    void clear_s(unsigned i);
    // Repeated simple elements, held as their text.
    std::wstring get_w_multi(unsigned i, size_t k) const;
    int append_w(unsigned i, const std::wstring& v);
    void delete_s(unsigned i, size_t k);
    ct_any_info_container& any_list(unsigned i);
    // Cells of a row.
    std::vector<c_cell_base*>& cells(unsigned i);
    const std::vector<c_cell_base*>* cells_ptr(unsigned i) const { return m_slots[i].cells; }
    // The chosen step of a choice, or the step count when none is chosen.
    unsigned choice() const { return m_choice; }
    // Frees the chosen member of a choice.
    void release_choice();

    // Reads content steps from the current event on; the number of elements consumed.
    elmx_error read_steps(c_xml_reader& reader, size_t* consumed);

protected:
    elmx_error unmarshal_document(c_xml_reader& reader, const s_root& root);
    elmx_error marshal_document(c_xml_writer& writer, const s_root& root) const;

private:
    union u_slot {
        int64_t i;
        double d;
        std::wstring* w;
        c_binary* b;
        c_node* n;
        std::vector<c_node*>* v;
        std::vector<std::wstring>* ws;
        ct_any_info_container* any;
        std::vector<c_cell_base*>* cells;
    };
    friend class c_node_helper;
    unsigned slot_count() const;
    unsigned text_slot() const { return m_type->attr_count; }
    unsigned first_step_slot() const { return m_type->attr_count + (m_type->simple_content ? 1 : 0); }
    const s_simple* simple_of(unsigned i) const;
    const s_step* step_of(unsigned i) const;
    void free_slot(unsigned i);
    void copy_slot(unsigned i, const c_node& o);
    void select(unsigned i);
    elmx_error store_value(unsigned i, const s_simple& simple, const std::string& text);
    void value_text(unsigned i, const s_simple& simple, std::string& out) const;
    elmx_error read_item(c_xml_reader& reader, unsigned slot, const s_step& step);
    bool matches(const c_xml_reader& reader, const s_step& step) const;
    elmx_error marshal_step(c_xml_writer& writer, unsigned slot, const s_step& step) const;
    void allocate();

    const s_type* m_type;
    u_slot* m_slots = nullptr;
    uint8_t* m_flags = nullptr;  // per slot: bit 0 set, bits 1-2 xml:space
    ct_any_info_container* m_any = nullptr;
    unsigned m_choice = 0;
};

// The compact cell of a worksheet: one word of row, flags and type code, the column, the
// style index, the value as narrow text (inline when short), and one pointer, null for most
// cells, to the metadata indexes, the formula and the inline string. 40 bytes a cell.
class c_cell_base {
public:
    enum {
        ROW_MASK = 0x1FFFFF,
        PH_VALUE = 1u << 23,
        PH_SET = 1u << 24,
        VM_SET = 1u << 25,
        CM_SET = 1u << 26,
        S_SET = 1u << 27,
        REF_SET = 1u << 28,
        TYPE_SHIFT = 29
    };
    c_cell_base() = default;
    c_cell_base(const c_cell_base& o);
    c_cell_base& operator=(const c_cell_base& o);
    ~c_cell_base();
    void swap(c_cell_base& o);

    // Reads a c element whose start tag was just read; worker is the descriptor of the cell type.
    elmx_error unmarshal_cell(c_xml_reader& reader, const s_type& worker);
    elmx_error marshal_cell(c_xml_writer& writer, const s_type& worker, const char* name) const;
    bool equals(const c_cell_base& o) const;

    unsigned get_row() const { return m_word & ROW_MASK; }
    unsigned get_col() const { return m_col; }
    void set_row_col(unsigned row, unsigned col) {
        m_word = (m_word & ~ROW_MASK) | (row & ROW_MASK) | REF_SET;
        m_col = col;
    }
    bool isset_r() const { return (m_word & REF_SET) != 0; }
    void unset_r() { m_word &= ~REF_SET; }
    // The address as text, "A1" form.
    std::wstring get_r() const;
    int set_r(const std::wstring& ref);

    unsigned type_code() const { return m_word >> TYPE_SHIFT; }
    void set_type_code(unsigned code) { m_word = (m_word & ~(7u << TYPE_SHIFT)) | ((code & 7) << TYPE_SHIFT); }
    std::wstring get_t() const;
    int set_t(const std::wstring& t);
    bool isset_t() const { return type_code() != 0; }
    void unset_t() { set_type_code(0); }

    unsigned get_s() const { return m_s; }
    int set_s(unsigned v) { m_s = v; m_word |= S_SET; return 0; }
    bool isset_s() const { return (m_word & S_SET) != 0; }
    void unset_s() { m_s = 0; m_word &= ~S_SET; }
    unsigned get_cm() const { return m_extra ? m_extra->cm : 0; }
    int set_cm(unsigned v) { extra().cm = v; m_word |= CM_SET; return 0; }
    bool isset_cm() const { return (m_word & CM_SET) != 0; }
    void unset_cm() { if (m_extra) m_extra->cm = 0; m_word &= ~CM_SET; }
    unsigned get_vm() const { return m_extra ? m_extra->vm : 0; }
    int set_vm(unsigned v) { extra().vm = v; m_word |= VM_SET; return 0; }
    bool isset_vm() const { return (m_word & VM_SET) != 0; }
    void unset_vm() { if (m_extra) m_extra->vm = 0; m_word &= ~VM_SET; }
    bool get_ph() const { return (m_word & PH_VALUE) != 0; }
    int set_ph(bool v) { m_word = (m_word & ~PH_VALUE) | (v ? PH_VALUE : 0) | PH_SET; return 0; }
    bool isset_ph() const { return (m_word & PH_SET) != 0; }
    void unset_ph() { m_word &= ~(PH_SET | PH_VALUE); }

    // The value: wide for callers, narrow (UTF-8) inside.
    std::wstring get_v() const;
    int set_v(const std::wstring& v);
    const char* v_data() const { return m_v.tag == TAG_HEAP ? m_v.heap.p : m_v.buf; }
    size_t v_size() const { return m_v.tag == TAG_HEAP ? m_v.heap.size : (m_v.tag & 0x7F); }
    void set_v_utf8(const char* data, size_t size);
    bool isset_v() const { return m_v.tag != 0; }
    void unset_v();

    // Reads the formula or the inline string element that stands at the reader.
    elmx_error assign_child_from(c_xml_reader& reader, const s_type& type, bool formula);
    c_node* f_ptr() const { return m_extra ? m_extra->f : nullptr; }
    c_node* is_ptr() const { return m_extra ? m_extra->is : nullptr; }
    void assign_f(c_node* p);
    void assign_is(c_node* p);

protected:
    c_node& f_object(const s_type& type);
    // Writes a cell without formula or inline string straight into the writer's output; false
    // when the writer indents, and nothing is written then.
    bool marshal_plain_cell(c_xml_writer& writer, const s_type& worker, const char* name) const;
    c_node& is_object(const s_type& type);

private:
    enum { INLINE_CAPACITY = 15, TAG_HEAP = 0xFF, TAG_INLINE = 0x80 };
    struct s_heap {
        char* p;
        uint32_t size;
    };
    union u_text {
        char buf[16];
        s_heap heap;
        struct {
            char pad[15];
            uint8_t tag;  // 0 unset, 0x80 | length inline, 0xFF on the heap
        };
    };

    // The members that most cells lack: metadata indexes, formula and inline string.
    struct s_extra {
        uint32_t cm = 0;
        uint32_t vm = 0;
        c_node* f = nullptr;
        c_node* is = nullptr;
    };
    s_extra& extra() {
        if (!m_extra) m_extra = new s_extra;
        return *m_extra;
    }

    uint32_t m_word = 0;
    uint32_t m_col = 0;
    uint32_t m_s = 0;
    s_extra* m_extra = nullptr;
    u_text m_v{};
};

enum { ROW_LIMIT = 1048576, COL_LIMIT = 16384 };

// A1-style address to zero-based row and column; false if the text is no cell address.
bool split_cell_ref(const char* text, size_t size, unsigned* row, unsigned* col);
// Zero-based row and column to "A1" text.
void make_cell_ref(unsigned row, unsigned col, std::string& out);

}  // namespace lmx
}  // namespace zelvar
