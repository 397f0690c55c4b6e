// The parts of a package: the abstract part, parts kept as bytes, parts held as schema trees, and
// the two parts that tie a package together, relationships and content types.
#pragma once
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "frame/zverror.h"
#include "ooxml/lmx.h"
#include "ooxml/opc-contentTypes.h"
#include "ooxml/opc-relationships.h"
#include "xmlbook/xml_util.h"
#include "zip/zip_writer.h"

namespace zelvar {

// One part of a package, owned by the book's file table.
class XFile {
public:
    // Writes the part as the package entry of that name.
    virtual void save(ZipWriter& writer, const std::wstring& name) = 0;
    virtual ~XFile() {}
};

// A part the library does not model: its bytes go back unchanged.
class BinaryFile : public XFile {
public:
    BinaryFile(const char* data, unsigned size) : _data(data, data + size) {}
    const std::vector<char>& data() const { return _data; }
    void save(ZipWriter& writer, const std::wstring& name) override {
        writer.add(name, _data.data(), static_cast<unsigned>(_data.size()));
    }

private:
    std::vector<char> _data;
};

// A chart sheet, kept as bytes; its own type lets the sheet list tell it apart.
class XMLChartSheet : public BinaryFile {
public:
    using BinaryFile::BinaryFile;
};

// Turns a reader or writer status into the library's exception.
inline void throwOnXmlError(lmx::elmx_error status) {
    if (status != lmx::ELMX_OK) throw zverror(lmx::get_error_description(status));
}

// A part held as one schema tree.
template <class S>
class XmlFile : public XFile {
public:
    XmlFile() = default;
    XmlFile(const char* data, unsigned size) {
        if (size == 0) throw zverror("data is empty");
        throwOnXmlError(tree.unmarshal(data, size));
    }
    // The XML goes into the entry's compressor as it is written, in steps of about 64 kB, so
    // that the text of a large sheet is never held whole.
    void save(ZipWriter& writer, const std::wstring& name) override {
        prepareSave();
        ZipEntryBuf entry(writer, name);
        std::ostream stream(&entry);
        // A failing entry throws through the stream instead of only marking it bad.
        stream.exceptions(std::ios::badbit);
        lmx::c_xml_writer xml(stream);
        throwOnXmlError(tree.marshal(xml));
        xml.flush();
        entry.finish();
    }
    S tree;

protected:
    // Trims the tree to what a written part holds; runs before every save.
    virtual void prepareSave() {}
};

// The relationships of one part, with indexes by id and by type.
class Relationships : public XmlFile<relationships::c_Relationships> {
public:
    Relationships() = default;
    Relationships(const char* data, unsigned size);
    Relationships(const Relationships& other);

    // Target of an id; empty when unknown.
    std::wstring target(const std::wstring& id) const;
    // First target of a type and the next ones; empty at the end.
    std::wstring firstTargetByType(const std::wstring& type);
    std::wstring nextTarget();
    // "rId" + one more than the largest number behind an id's first three characters.
    std::wstring makeId() const;
    std::wstring addRelation(const std::wstring& type, const std::wstring& target);
    void delRelation(const std::wstring& id);
    void delRelationByTarget(const std::wstring& target);
    void fillMap();

private:
    typedef std::multimap<std::wstring, std::wstring> TypeMap;
    std::map<std::wstring, std::wstring> _byId;
    TypeMap _byType;
    TypeMap::const_iterator _next, _end;
};

// The content types of the package: defaults by extension, overrides by part name.
class ContentTypes : public XmlFile<contentypes::c_Types> {
public:
    ContentTypes() = default;
    ContentTypes(const char* data, unsigned size);

    // The override of the part, else the default of its extension, else empty.
    std::wstring contentType(const std::wstring& path) const;
    void addDefault(const std::wstring& extension, const std::wstring& contentType);
    void addOverride(const std::wstring& partName, const std::wstring& contentType);
    void delOverride(const std::wstring& partName);
    void fillMaps();

private:
    std::map<std::wstring, contentypes::c_CT_Default*, CaseInsensitiveLess> _defaults;
    std::map<std::wstring, contentypes::c_CT_Override*, CaseInsensitiveLess> _overrides;
};

// Package-level names: content types and relationship types.
namespace ooxml_names {
extern const wchar_t* const relsType;
extern const wchar_t* const workbookType;
extern const wchar_t* const macroWorkbookType;
extern const wchar_t* const templateWorkbookType;
extern const wchar_t* const macroTemplateWorkbookType;
extern const wchar_t* const worksheetType;
extern const wchar_t* const chartsheetType;
extern const wchar_t* const stylesType;
extern const wchar_t* const sharedStringsType;
extern const wchar_t* const drawingType;
extern const wchar_t* const themeType;
extern const wchar_t* const extendedPropertiesType;
extern const wchar_t* const corePropertiesType;
extern const wchar_t* const officeDocumentRel;
extern const wchar_t* const worksheetRel;
extern const wchar_t* const stylesRel;
extern const wchar_t* const stylesRelStrict;
extern const wchar_t* const sharedStringsRel;
extern const wchar_t* const sharedStringsRelStrict;
}  // namespace ooxml_names

}  // namespace zelvar
