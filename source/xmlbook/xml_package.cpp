#include "xmlbook/xml_package.h"

namespace zelvar {

namespace ooxml_names {
const wchar_t* const relsType = L"application/vnd.openxmlformats-package.relationships+xml";
const wchar_t* const workbookType = L"application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml";
const wchar_t* const macroWorkbookType = L"application/vnd.ms-excel.sheet.macroEnabled.main+xml";
const wchar_t* const templateWorkbookType =
    L"application/vnd.openxmlformats-officedocument.spreadsheetml.template.main+xml";
const wchar_t* const macroTemplateWorkbookType = L"application/vnd.ms-excel.template.macroEnabled.main+xml";
const wchar_t* const worksheetType = L"application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml";
const wchar_t* const chartsheetType = L"application/vnd.openxmlformats-officedocument.spreadsheetml.chartsheet+xml";
const wchar_t* const stylesType = L"application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml";
const wchar_t* const sharedStringsType =
    L"application/vnd.openxmlformats-officedocument.spreadsheetml.sharedStrings+xml";
const wchar_t* const drawingType = L"application/vnd.openxmlformats-officedocument.drawing+xml";
const wchar_t* const themeType = L"application/vnd.openxmlformats-officedocument.theme+xml";
const wchar_t* const extendedPropertiesType = L"application/vnd.openxmlformats-officedocument.extended-properties+xml";
const wchar_t* const corePropertiesType = L"application/vnd.openxmlformats-package.core-properties+xml";
const wchar_t* const officeDocumentRel =
    L"http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument";
const wchar_t* const worksheetRel = L"http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet";
const wchar_t* const stylesRel = L"http://schemas.openxmlformats.org/officeDocument/2006/relationships/styles";
const wchar_t* const stylesRelStrict = L"http://purl.oclc.org/ooxml/officeDocument/relationships/styles";
const wchar_t* const sharedStringsRel =
    L"http://schemas.openxmlformats.org/officeDocument/2006/relationships/sharedStrings";
const wchar_t* const sharedStringsRelStrict = L"http://purl.oclc.org/ooxml/officeDocument/relationships/sharedStrings";
}  // namespace ooxml_names

Relationships::Relationships(const char* data, unsigned size) : XmlFile(data, size) { fillMap(); }

Relationships::Relationships(const Relationships& other) : XmlFile(other), _byId(other._byId), _byType(other._byType) {
    _next = _end = _byType.end();
}

std::wstring Relationships::target(const std::wstring& id) const {
    auto it = _byId.find(id);
    return it == _byId.end() ? std::wstring() : it->second;
}

std::wstring Relationships::firstTargetByType(const std::wstring& type) {
    auto range = _byType.equal_range(type);
    _next = range.first;
    _end = range.second;
    return nextTarget();
}

std::wstring Relationships::nextTarget() {
    if (_next == _end) return std::wstring();
    return (_next++)->second;
}

std::wstring Relationships::makeId() const {
    long long largest = 0;
    for (size_t i = 0; i < tree.size_Relationship(); ++i) {
        std::wstring id = tree.get_Relationship(i).get_Id();
        if (id.size() < 4) continue;
        try {
            std::wstring digits = id.substr(3);
            // The whole rest must be a number: "rId7x" contributes nothing.
            bool plain = !digits.empty();
            for (wchar_t c : digits) plain = plain && c >= L'0' && c <= L'9';
            if (!plain) continue;
            long long value = Converter::stringToInt(digits);
            if (value > largest) largest = value;
        } catch (...) {
        }
    }
    return L"rId" + Converter::intToString(largest + 1);
}

std::wstring Relationships::addRelation(const std::wstring& type, const std::wstring& target) {
    std::wstring id = makeId();
    relationships::c_CT_Relationship& rel = tree.append_Relationship();
    rel.set_Id(id);
    rel.set_Type(type);
    rel.set_Target(target);
    _byId[id] = target;
    _byType.insert(std::make_pair(type, target));
    _next = _end = _byType.end();
    return id;
}

void Relationships::delRelation(const std::wstring& id) {
    for (size_t i = 0; i < tree.size_Relationship(); ++i) {
        if (tree.get_Relationship(i).get_Id() == id) {
            tree.delete_Relationship(i);
            fillMap();
            return;
        }
    }
}

void Relationships::delRelationByTarget(const std::wstring& target) {
    for (size_t i = 0; i < tree.size_Relationship(); ++i) {
        if (tree.get_Relationship(i).get_Target() == target) {
            tree.delete_Relationship(i);
            fillMap();
            return;
        }
    }
}

void Relationships::fillMap() {
    _byId.clear();
    _byType.clear();
    for (size_t i = 0; i < tree.size_Relationship(); ++i) {
        const relationships::c_CT_Relationship& rel = tree.get_Relationship(i);
        _byId[rel.get_Id()] = rel.get_Target();
        _byType.insert(std::make_pair(rel.get_Type(), rel.get_Target()));
    }
    _next = _end = _byType.end();
}

ContentTypes::ContentTypes(const char* data, unsigned size) : XmlFile(data, size) { fillMaps(); }

std::wstring ContentTypes::contentType(const std::wstring& path) const {
    std::wstring name = FileUtil::normalize(path);
    auto over = _overrides.find(name);
    if (over != _overrides.end()) return over->second->get_ContentType();
    auto def = _defaults.find(FileUtil::getExtension(name));
    if (def != _defaults.end()) return def->second->get_ContentType();
    return std::wstring();
}

void ContentTypes::addDefault(const std::wstring& extension, const std::wstring& contentType) {
    auto it = _defaults.find(extension);
    if (it != _defaults.end()) {
        it->second->set_ContentType(contentType);
        return;
    }
    contentypes::c_CT_Default& entry = tree.append_inner_CT_Types().get_Default();
    entry.set_Extension(extension);
    entry.set_ContentType(contentType);
    _defaults[extension] = &entry;
}

void ContentTypes::addOverride(const std::wstring& partName, const std::wstring& contentType) {
    auto it = _overrides.find(partName);
    if (it != _overrides.end()) {
        it->second->set_ContentType(contentType);
        return;
    }
    contentypes::c_CT_Override& entry = tree.append_inner_CT_Types().get_Override();
    entry.set_ContentType(contentType);
    entry.set_PartName(partName);
    _overrides[partName] = &entry;
}

void ContentTypes::delOverride(const std::wstring& partName) {
    bool removed = false;
    for (size_t i = 0; i < tree.size_inner_CT_Types();) {
        const contentypes::c_CT_Types_inner_CT_Types& item = tree.get_inner_CT_Types(i);
        const contentypes::c_CT_Override* entry = item.get_Override();
        if (entry && entry->get_PartName() == partName) {
            tree.delete_inner_CT_Types(i);
            removed = true;
        } else {
            ++i;
        }
    }
    if (removed) fillMaps();
}

void ContentTypes::fillMaps() {
    _defaults.clear();
    _overrides.clear();
    for (size_t i = 0; i < tree.size_inner_CT_Types(); ++i) {
        contentypes::c_CT_Types_inner_CT_Types& item = tree.get_inner_CT_Types(i);
        if (item.isset_Default()) _defaults[item.get_Default().get_Extension()] = &item.get_Default();
        if (item.isset_Override()) _overrides[item.get_Override().get_PartName()] = &item.get_Override();
    }
}

}  // namespace zelvar
