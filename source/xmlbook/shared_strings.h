// The shared string table of an XML book: the only writer of its tree, with a look-up from
// text to index so that a repeated text is stored once.
#pragma once
#include <string>
#include <type_traits>
#include <unordered_map>

#include "xmlbook/xml_package.h"
#include "xmlbook/xml_traits.h"

namespace zelvar {

template <class Tag>
class SharedStrings : public XmlFile<typename excel_format_traits<Tag>::Sst> {
public:
    typedef excel_format_traits<Tag> X;

    SharedStrings() = default;
    SharedStrings(const char* data, unsigned size) : XmlFile<typename X::Sst>(data, size) {
        size_t n = this->tree.size_si();
        _index.reserve(n);
        for (size_t i = 0; i < n; ++i) _index[stringByIndex(static_cast<unsigned>(i))] = static_cast<unsigned>(i);
    }

    // Index of the text, added when new. The text is escaped in place first; the caller's
    // string serves as scratch, so that a repeated text costs no allocation.
    unsigned addString(std::wstring& text) {
        StrUtil::xmlEsc(text);
        auto& sst = this->tree;
        sst.set_count(sst.isset_count() ? sst.get_count() + 1 : 1);
        auto found = _index.find(text);
        if (found != _index.end()) return found->second;
        auto& item = sst.append_si();
        assign_t(item, text);
        unsigned index = static_cast<unsigned>(sst.size_si() - 1);
        sst.set_uniqueCount(index + 1);
        _index.emplace(text, index);
        return index;
    }

    // The stored text, still escaped; a rich string gives its runs joined.
    std::wstring stringByIndex(unsigned index) const {
        const auto& sst = this->tree;
        if (index >= sst.size_si()) throw zverror("index is out of range or no value");
        const auto& item = sst.get_si(index);
        if (item.isset_t()) return item.get_t();
        std::wstring text;
        for (size_t i = 0; i < item.size_r(); ++i) text += item.get_r(i).get_t();
        return text;
    }

private:
    static void assign_t(typename X::StringItem& item, const std::wstring& text) {
        item.set_t(text);
        if (!std::is_same<Tag, excelStrict_tag>::value && !text.empty() && (text.front() == L' ' || text.back() == L' '))
            item.set_space_t(2);
    }

    std::unordered_map<std::wstring, unsigned> _index;
};

}  // namespace zelvar
