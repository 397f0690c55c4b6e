// Member containers of the schema-bound classes, the validation specs of simple types and the
// record of a captured foreign item. Generated classes hold one container per attribute or
// element of their schema; the reader and writer work on them through the same bridges.
#pragma once
#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ooxml/lmx_error.h"
#include "ooxml/lmx_types.h"

namespace zelvar {
namespace lmx {

// ---- validation specs ---------------------------------------------------------------------

typedef elmx_error (*lexical_validator_t)(const std::string& value);

inline elmx_error lexical_validator_empty(const std::string&) { return ELMX_OK; }
template <class T>
inline elmx_error value_validator_empty(const T&) {
    return ELMX_OK;
}

// One per simple type of a schema (generated as validation_spec_N). A null function selects the
// type's built-in conversion; a null or empty default means the type has no default text.
template <class T>
struct ct_typed_validation_spec {
    typedef T value_type;
    elmx_whitespace whitespace;
    const char* default_value;
    lexical_validator_t lexical_validator;
    elmx_error (*value_validator)(const T&);
    bool (*v_to_o)(T&, const std::string&);
    void (*o_to_v)(std::string&, const T&);

    constexpr ct_typed_validation_spec(elmx_whitespace ws = EXWS_PRESERVE, const char* def = nullptr,
                                       lexical_validator_t lexical = nullptr,
                                       elmx_error (*value)(const T&) = nullptr,
                                       bool (*to_object)(T&, const std::string&) = nullptr,
                                       void (*to_text)(std::string&, const T&) = nullptr)
        : whitespace(ws),
          default_value(def),
          lexical_validator(lexical),
          value_validator(value),
          v_to_o(to_object),
          o_to_v(to_text) {}

    bool has_default() const { return default_value && default_value[0]; }
};

// The spec of a type without facets: preserved white space, no default, built-in conversion.
template <class T>
inline const ct_typed_validation_spec<T> validation_spec_empty{};

// Built-in lexical check of a value type when the validation spec names none; other types are checked by
// their conversion.
inline bool default_lexical_check(const bool*, const std::string& v) { return is_valid_bool(v); }
template <class T>
inline bool default_lexical_check(const T*, const std::string&) {
    return true;
}

// Text of a value and value of a text through a spec.
template <class T>
inline void spec_to_text(const ct_typed_validation_spec<T>& spec, std::string& out, const T& value) {
    if (spec.o_to_v)
        spec.o_to_v(out, value);
    else
        o_to_v(out, value);
}

// ---- captured foreign items ---------------------------------------------------------------

// Prefix and URI pairs in force where an item was captured, so it can be written elsewhere.
// Items captured in one place share one list, so that many foreign attributes under many
// declarations cost one list, not one each; changing a shared list copies it first.
class c_namespace_context {
public:
    typedef std::pair<std::string, std::string> binding;  // prefix ("" = default), URI
    void add(const std::string& prefix, const std::string& uri) {
        own();
        m_bindings->emplace_back(prefix, uri);
    }
    const std::vector<binding>& get() const {
        static const std::vector<binding> none;
        return m_bindings ? *m_bindings : none;
    }
    size_t size() const { return m_bindings ? m_bindings->size() : 0; }
    void clear() { m_bindings.reset(); }
    // The same list object for contexts copied from one another; the writer uses it to see
    // that it has declared a context already.
    const void* identity() const { return m_bindings.get(); }
    bool operator==(const c_namespace_context& o) const { return get() == o.get(); }

private:
    void own() {
        if (!m_bindings)
            m_bindings = std::make_shared<std::vector<binding>>();
        else if (m_bindings.use_count() > 1)
            m_bindings = std::make_shared<std::vector<binding>>(*m_bindings);
    }
    std::shared_ptr<std::vector<binding>> m_bindings;
};

// One foreign attribute or element. For an element, value holds its whole XML text as it stood
// in the input; for an attribute, its value.
class c_any_info {
public:
    c_any_info() = default;
    c_any_info(std::string ns, std::string name, std::string value)
        : m_namespace(std::move(ns)), m_name(std::move(name)), m_value(std::move(value)) {}
    const std::string& get_namespace() const { return m_namespace; }
    const std::string& get_name() const { return m_name; }
    const std::string& get_value() const { return m_value; }
    const c_namespace_context& get_namespace_context() const { return m_namespace_context; }
    void set_namespace(const std::string& v) { m_namespace = v; }
    void set_name(const std::string& v) { m_name = v; }
    void set_value(const std::string& v) { m_value = v; }
    c_namespace_context& get_namespace_context() { return m_namespace_context; }
    c_any_info* clone() const { return new c_any_info(*this); }
    void swap(c_any_info& o) {
        m_namespace.swap(o.m_namespace);
        m_name.swap(o.m_name);
        m_value.swap(o.m_value);
        std::swap(m_namespace_context, o.m_namespace_context);
    }
    bool operator==(const c_any_info& o) const {
        return m_namespace == o.m_namespace && m_name == o.m_name && m_value == o.m_value;
    }

private:
    std::string m_namespace;
    std::string m_name;
    std::string m_value;
    c_namespace_context m_namespace_context;
};

// ---- owning pointer vectors ----------------------------------------------------------------

template <class T>
struct ct_happy_ptr_deleter {
    void operator()(T* p) const { delete p; }
};
// For holders that may borrow: deletes only what it was told it owns.
template <class T>
struct ct_grin_or_happy_ptr_deleter {
    bool owns = true;
    void operator()(T* p) const {
        if (owns) delete p;
    }
};

struct ct_copy_new {
    template <class T>
    static T* copy(const T& o) {
        return new T(o);
    }
};
struct ct_copy_clone {
    template <class T>
    static T* copy(const T& o) {
        return static_cast<T*>(o.clone());
    }
};

// A vector of owned pointers with deep copies.
template <class T, class Copier = ct_copy_new, class Deleter = ct_happy_ptr_deleter<T>>
class ct_pointer_vector {
public:
    typedef T value_type;
    typedef typename std::vector<T*>::iterator iterator;
    typedef typename std::vector<T*>::const_iterator const_iterator;

    ct_pointer_vector() = default;
    ct_pointer_vector(const ct_pointer_vector& o) {
        m_items.reserve(o.m_items.size());
        for (T* p : o.m_items) m_items.push_back(Copier::copy(*p));
    }
    ct_pointer_vector& operator=(const ct_pointer_vector& o) {
        ct_pointer_vector copy(o);
        swap(copy);
        return *this;
    }
    ct_pointer_vector(ct_pointer_vector&& o) noexcept { m_items.swap(o.m_items); }
    ct_pointer_vector& operator=(ct_pointer_vector&& o) noexcept {
        swap(o);
        return *this;
    }
    ~ct_pointer_vector() { clear(); }

    size_t size() const { return m_items.size(); }
    bool empty() const { return m_items.empty(); }
    T& operator[](size_t i) { return *m_items[i]; }
    const T& operator[](size_t i) const { return *m_items[i]; }
    T& back() { return *m_items.back(); }
    void push_back(T* p) { m_items.push_back(p); }
    void push_back_w_autop(T* p) { m_items.push_back(p); }  // takes ownership
    void insert(size_t i, T* p) { m_items.insert(m_items.begin() + static_cast<std::ptrdiff_t>(std::min(i, size())), p); }
    void erase(size_t i) {
        if (i >= m_items.size()) return;
        Deleter()(m_items[i]);
        m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(i));
    }
    // Hands item i out without deleting it.
    T* release(size_t i) {
        T* p = m_items[i];
        m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(i));
        return p;
    }
    void clear() {
        for (T* p : m_items) Deleter()(p);
        m_items.clear();
    }
    void swap(ct_pointer_vector& o) { m_items.swap(o.m_items); }
    iterator begin() { return m_items.begin(); }
    iterator end() { return m_items.end(); }
    const_iterator begin() const { return m_items.begin(); }
    const_iterator end() const { return m_items.end(); }
    void reserve(size_t n) { m_items.reserve(n); }

private:
    std::vector<T*> m_items;
};

template <class T>
using ct_non_pod_container = ct_pointer_vector<T, ct_copy_new>;
template <class T>
using ct_clonable_container = ct_pointer_vector<T, ct_copy_clone>;

// The foreign attribute vector of the classes that keep unknown attributes.
typedef ct_non_pod_container<c_any_info> ct_any_info_container;

// ---- member containers ----------------------------------------------------------------------

// Marks whether a simple value may hold text of mixed content.
template <class T>
struct ct_non_mixed {
    typedef T value_type;
    static constexpr bool is_mixed = false;
};
template <class T>
struct ct_mixed {
    typedef T value_type;
    static constexpr bool is_mixed = true;
};

enum class ct_kind { single, multi, list, complex_single, complex_multi, empty };

// A simple value with a set flag: attributes and simple elements, required or optional.
template <class T, class W = ct_non_mixed<T>>
class ct_simple_value {
public:
    typedef T value_type;
    static constexpr ct_kind kind = ct_kind::single;

    ct_simple_value() : m_value(), m_is_set(false) {}
    explicit ct_simple_value(const T& initial) : m_value(initial), m_is_set(false) {}

    const T& get() const { return m_value; }
    T& get() { return m_value; }
    void set(const T& v) {
        m_value = v;
        m_is_set = true;
    }
    void set(T&& v) {
        m_value = std::move(v);
        m_is_set = true;
    }
    bool is_value_set() const { return m_is_set; }
    void unset() { m_is_set = false; }
    void unset(const T& default_value) {
        m_value = default_value;
        m_is_set = false;
    }
    void swap(ct_simple_value& o) {
        using std::swap;
        swap(m_value, o.m_value);
        swap(m_is_set, o.m_is_set);
    }

private:
    T m_value;
    bool m_is_set;
};

template <class T, class W = ct_non_mixed<T>>
class ct_simple_pod_single : public ct_simple_value<T, W> {
    using ct_simple_value<T, W>::ct_simple_value;
};
template <class T, class W = ct_non_mixed<T>>
class ct_simple_pod_optional : public ct_simple_value<T, W> {
    using ct_simple_value<T, W>::ct_simple_value;
};
template <class T, class W = ct_non_mixed<T>>
class ct_simple_non_pod_single : public ct_simple_value<T, W> {
    using ct_simple_value<T, W>::ct_simple_value;
};
template <class T, class W = ct_non_mixed<T>>
class ct_simple_non_pod_optional : public ct_simple_value<T, W> {
    using ct_simple_value<T, W>::ct_simple_value;
};

// Repeated simple elements.
template <class T, class W = ct_non_mixed<T>>
class ct_simple_multi {
public:
    typedef T value_type;
    static constexpr ct_kind kind = ct_kind::multi;

    size_t size() const { return m_values.size(); }
    const T& get(size_t i) const { return m_values[i]; }
    T& get(size_t i) { return m_values[i]; }
    void append(const T& v) { m_values.push_back(v); }
    void insert(size_t i, const T& v) { m_values.insert(m_values.begin() + static_cast<std::ptrdiff_t>(std::min(i, size())), v); }
    void erase(size_t i) {
        if (i < m_values.size()) m_values.erase(m_values.begin() + static_cast<std::ptrdiff_t>(i));
    }
    void clear() { m_values.clear(); }
    bool is_value_set() const { return !m_values.empty(); }
    const std::vector<T>& get_container() const { return m_values; }
    std::vector<T>& get_container() { return m_values; }
    void swap(ct_simple_multi& o) { m_values.swap(o.m_values); }

private:
    std::vector<T> m_values;
};
template <class T, class W = ct_non_mixed<T>>
class ct_simple_pod_multi : public ct_simple_multi<T, W> {};
template <class T, class W = ct_non_mixed<T>>
class ct_simple_non_pod_multi : public ct_simple_multi<T, W> {};

// An xs:list value: items separated by white space, with a set flag.
template <class T, class W = ct_non_mixed<T>>
class ct_simple_list {
public:
    typedef T value_type;
    static constexpr ct_kind kind = ct_kind::list;

    const std::vector<T>& get() const { return m_values; }
    std::vector<T>& get() { return m_values; }
    void set(const std::vector<T>& v) {
        m_values = v;
        m_is_set = true;
    }
    void append(const T& v) {
        m_values.push_back(v);
        m_is_set = true;
    }
    size_t size() const { return m_values.size(); }
    bool is_value_set() const { return m_is_set; }
    void mark_set() { m_is_set = true; }
    void unset() {
        m_values.clear();
        m_is_set = false;
    }
    void swap(ct_simple_list& o) {
        m_values.swap(o.m_values);
        std::swap(m_is_set, o.m_is_set);
    }

private:
    std::vector<T> m_values;
    bool m_is_set = false;
};
template <class T, class W = ct_non_mixed<T>>
class ct_simple_pod_list_single : public ct_simple_list<T, W> {};
template <class T, class W = ct_non_mixed<T>>
class ct_simple_pod_list_optional : public ct_simple_list<T, W> {};

// A child object held by pointer; null means absent. The const getter of an absent child
// gives a shared default object.
template <class T>
class ct_complex_pointer {
public:
    typedef T value_type;
    static constexpr ct_kind kind = ct_kind::complex_single;

    ct_complex_pointer() = default;
    ct_complex_pointer(const ct_complex_pointer& o) : m_p(o.m_p ? static_cast<T*>(o.m_p->clone()) : nullptr) {}
    ct_complex_pointer& operator=(const ct_complex_pointer& o) {
        ct_complex_pointer copy(o);
        swap(copy);
        return *this;
    }
    ~ct_complex_pointer() { delete m_p; }

    T& get() {
        if (!m_p) m_p = new T;
        return *m_p;
    }
    const T& get() const {
        if (m_p) return *m_p;
        static const T empty;
        return empty;
    }
    T* get_pointer() const { return m_p; }
    bool is_value_set() const { return m_p != nullptr; }
    void assign(T* p) {
        if (p == m_p) return;
        delete m_p;
        m_p = p;
    }
    void assign(const T& v) { get() = v; }
    T* release() {
        T* p = m_p;
        m_p = nullptr;
        return p;
    }
    void unset() { assign(nullptr); }
    void swap(ct_complex_pointer& o) { std::swap(m_p, o.m_p); }

private:
    T* m_p = nullptr;
};
template <class T>
class ct_complex_single : public ct_complex_pointer<T> {};
template <class T>
class ct_complex_optional : public ct_complex_pointer<T> {};

// Repeated child objects.
template <class T>
class ct_complex_multi : public ct_clonable_container<T> {
public:
    static constexpr ct_kind kind = ct_kind::complex_multi;
    T& append() {
        T* p = new T;
        this->push_back(p);
        return *p;
    }
    bool is_value_set() const { return !this->empty(); }
};

// An element without content that is present or not.
class ct_empty_single {
public:
    static constexpr ct_kind kind = ct_kind::empty;
    bool is_value_set() const { return m_is_set; }
    void set() { m_is_set = true; }
    void set(bool v) { m_is_set = v; }
    void unset() { m_is_set = false; }
    void swap(ct_empty_single& o) { std::swap(m_is_set, o.m_is_set); }

private:
    bool m_is_set = false;
};

}  // namespace lmx
}  // namespace zelvar
