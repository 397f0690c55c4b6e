#include "xmlbook/xml_book.h"

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include <utf8.h>

#include "zip/zip_reader.h"
#include "zip/zip_writer.h"

namespace zelvar {

using namespace ooxml_names;

#define XB_BEGIN try {
#define XB_END(failValue)                          \
    }                                              \
    catch (const std::exception& failure) {        \
        _errorText = failure.what();               \
        return failValue;                          \
    }                                              \
    catch (...) {                                  \
        _errorText = "general failure";            \
        return failValue;                          \
    }
#define XB_END_VOID                                \
    }                                              \
    catch (const std::exception& failure) {        \
        _errorText = failure.what();               \
    }                                              \
    catch (...) {                                  \
        _errorText = "general failure";            \
    }

namespace {

bool isWorkbookType(const std::wstring& type) {
    return type == workbookType || type == macroWorkbookType || type == templateWorkbookType ||
           type == macroTemplateWorkbookType;
}

// Frees a block that the archive reader handed out.
struct BlockHolder {
    const char* data = nullptr;
    unsigned size = 0;
    ~BlockHolder() { std::free(const_cast<char*>(data)); }
};

}  // namespace

// ---------------------------------------------------------------- life

template <class T, class Tag>
XMLBookImplT<T, Tag>::XMLBookImplT() {
    setLocale("");
    _bookRels = new Relationships;
    _files[L"/xl/_rels/workbook.xml.rels"] = _bookRels;
    Relationships* packageRels = new Relationships;
    packageRels->addRelation(officeDocumentRel, L"xl/workbook.xml");
    _files[L"/_rels/.rels"] = packageRels;
    _bookDir = L"/xl";
    _files[L"/xl/workbook.xml"] = this;
    _contentTypes = new ContentTypes;
    _contentTypes->addDefault(L"rels", relsType);
    _contentTypes->addDefault(L"xml", L"application/xml");
    _contentTypes->addOverride(L"/xl/workbook.xml", workbookType);
    _files[L"/[Content_Types].xml"] = _contentTypes;
    styles();
    this->tree.get_workbookPr();
    _errorText = "ok";
}

template <class T, class Tag>
XMLBookImplT<T, Tag>::~XMLBookImplT() {
    clear();
    if (!_savedLocale.empty()) std::setlocale(LC_CTYPE, _savedLocale.c_str());
}

template <class T, class Tag>
void XMLBookImplT<T, Tag>::clear() {
    for (auto& entry : _files)
        if (entry.second != this) delete entry.second;
    _files.clear();
    _bookRels = nullptr;
    _contentTypes = nullptr;
    _sharedStrings = nullptr;
    _styles = nullptr;
    _pictures.clear();
    std::free(_rawBuffer);
    _rawBuffer = nullptr;
    this->tree.reset();
}

// ---------------------------------------------------------------- package

template <class T, class Tag>
XFile* XMLBookImplT<T, Tag>::create(const char* data, unsigned size, const std::wstring& type) {
    if (type == extendedPropertiesType || type == corePropertiesType) return new BinaryFile(data, size);
    if (isWorkbookType(type)) return nullptr;
    if (type == relsType) return new Relationships(data, size);
    if (type == stylesType) return new Styles<T, Tag>(data, size, _utf8);
    if (type == worksheetType) return new Sheet(data, size);
    if (type == chartsheetType) return new XMLChartSheet(data, size);
    if (type == themeType) return new BinaryFile(data, size);
    // Drawings stay bytes until pictures are handled on this side.
    if (type == sharedStringsType) return new SharedStrings<Tag>(data, size);
    return new BinaryFile(data, size);
}

template <class T, class Tag>
void XMLBookImplT<T, Tag>::load(ZipReader& reader) {
    clear();
    const unsigned count = reader.size();
    const std::wstring typesName = L"/[Content_Types].xml";
    for (unsigned i = 0; i < count && !_contentTypes; ++i) {
        std::wstring name = reader.name(i);
        if (!sicmp(name, typesName)) continue;
        BlockHolder block;
        reader.data(i, &block.data, &block.size);
        _contentTypes = new ContentTypes(block.data, block.size);
        _files[name] = _contentTypes;
    }
    if (!_contentTypes) throw std::exception();

    std::wstring workbookPath;
    for (unsigned i = 0; i < count; ++i) {
        std::wstring name = reader.name(i);
        if (sicmp(name, typesName)) continue;
        std::wstring type = _contentTypes->contentType(name);
        if (type.empty()) continue;
        BlockHolder block;
        reader.data(i, &block.data, &block.size);
        XFile* part;
        if (isWorkbookType(type)) {
            if (!block.data || block.size == 0) throw zverror("data is empty");
            this->tree.reset();
            throwOnXmlError(this->tree.unmarshal(block.data, block.size));
            this->tree.unset_extLst();
            part = this;
            workbookPath = name;
        } else {
            part = create(block.data ? block.data : "", block.size, type);
        }
        auto slot = _files.find(name);
        if (slot != _files.end()) {
            if (slot->second != this && slot->second != _contentTypes) delete slot->second;
            slot->second = part;
        } else {
            _files[name] = part;
        }
        if (type.size() >= 6 && type.compare(0, 5, L"image") == 0 && dynamic_cast<BinaryFile*>(part)) {
            PicInfo info;
            info.data.assign(block.data, block.data + block.size);
            info.extension = FileUtil::getExtension(name);
            info.path = name;
            _pictures.push_back(std::move(info));
        }
    }
    _bookDir = FileUtil::getDir(workbookPath);
    std::wstring relsPath = workbookPath.empty() ? std::wstring() : relationPath(workbookPath, true);
    _bookRels = relsPath.empty() ? nullptr : getXml<Relationships>(relsPath);
    if (!_bookRels) throw zverror("workbook relationships not found");
    _sharedStrings = getXml<SharedStrings<Tag>>(makeFullPath(_bookRels->firstTargetByType(sharedStringsRel)));
    if (!_sharedStrings)
        _sharedStrings = getXml<SharedStrings<Tag>>(makeFullPath(_bookRels->firstTargetByType(sharedStringsRelStrict)));
    _styles = getXml<Styles<T, Tag>>(makeFullPath(_bookRels->firstTargetByType(stylesRel)));
    if (!_styles) _styles = getXml<Styles<T, Tag>>(makeFullPath(_bookRels->firstTargetByType(stylesRelStrict)));
}

template <class T, class Tag>
void XMLBookImplT<T, Tag>::writePackage(ZipWriter& writer) {
    for (auto& entry : _files) entry.second->save(writer, entry.first);
    writer.close();
}

template <class T, class Tag>
void XMLBookImplT<T, Tag>::removeCalcChains() {
    const std::wstring chain = L"/xl/calcChain.xml";
    if (_contentTypes) _contentTypes->delOverride(chain);
    if (_bookRels) _bookRels->delRelationByTarget(L"calcChain.xml");
    auto it = _files.find(chain);
    if (it != _files.end() && it->second != this) {
        delete it->second;
        _files.erase(it);
    }
}

template <class T, class Tag>
void XMLBookImplT<T, Tag>::addFullCalcOnLoad() {
    this->tree.get_calcPr().set_fullCalcOnLoad(true);
}

template <class T, class Tag>
bool XMLBookImplT<T, Tag>::load(const T* filename) {
    XB_BEGIN
    if (!filename) throw zverror("file name is null");
    std::wstring name;
    toWide(filename, _utf8, name);
    ZipReader reader(name);
    load(reader);
    _errorText = "ok";
    return true;
    XB_END(false)
}

template <class T, class Tag>
bool XMLBookImplT<T, Tag>::loadRaw(const char* data, unsigned size) {
    XB_BEGIN
    ZipReader reader(data, data ? size : 0);
    load(reader);
    _errorText = "ok";
    return true;
    XB_END(false)
}

template <class T, class Tag>
bool XMLBookImplT<T, Tag>::save(const T* filename) {
    XB_BEGIN
    if (!filename) throw zverror("file name is null");
    removeCalcChains();
    addFullCalcOnLoad();
    this->tree.any_attributes().clear();
    std::wstring name;
    toWide(filename, _utf8, name);
    ZipWriter writer(name);
    writePackage(writer);
    _errorText = "ok";
    return true;
    XB_END(false)
}

template <class T, class Tag>
bool XMLBookImplT<T, Tag>::saveRaw(const char** data, unsigned* size) {
    XB_BEGIN
    if (!data || !size) throw zverror("argument is null");
    removeCalcChains();
    addFullCalcOnLoad();
    this->tree.any_attributes().clear();
    ZipWriter writer;
    writePackage(writer);
    std::free(_rawBuffer);
    _rawBuffer = nullptr;
    writer.getRaw(data, size);
    _rawBuffer = const_cast<char*>(*data);
    _errorText = "ok";
    return true;
    XB_END(false)
}

template <class T, class Tag>
std::wstring XMLBookImplT<T, Tag>::getFileName(const XFile* file) const {
    for (const auto& entry : _files)
        if (entry.second == file) return entry.first;
    return std::wstring();
}

template <class T, class Tag>
Relationships* XMLBookImplT<T, Tag>::getRelationships(const XFile* file) const {
    std::wstring path = getFileName(file);
    if (path.empty()) return nullptr;
    return getXml<Relationships>(relationPath(path, false));
}

template <class T, class Tag>
std::wstring XMLBookImplT<T, Tag>::addFile(XFile* file, const std::wstring& prefix, const std::wstring& suffix) {
    for (long long n = 1;; ++n) {
        std::wstring path = prefix + Converter::intToString(n) + L"." + suffix;
        if (_files.find(path) == _files.end()) {
            _files[path] = file;
            return path;
        }
    }
}

template <class T, class Tag>
std::wstring XMLBookImplT<T, Tag>::makeFullPath(const std::wstring& target) const {
    std::wstring prefix = _bookDir + L"/";
    if (target.compare(0, prefix.size(), prefix) == 0) return target;
    return prefix + target;
}

template <class T, class Tag>
std::wstring XMLBookImplT<T, Tag>::relationPath(const std::wstring& partPath, bool lookUp) const {
    std::wstring dir, name;
    FileUtil::pathSplit(partPath, dir, name);
    std::wstring path = dir + L"/_rels/" + name + L".rels";
    if (!lookUp) return path;
    auto it = _files.find(path);
    return it == _files.end() ? std::wstring() : it->first;
}

template <class T, class Tag>
std::wstring XMLBookImplT<T, Tag>::sheetPath(unsigned index) const {
    const auto* sheets = static_cast<const typename X::Workbook&>(this->tree).get_sheets();
    if (!sheets || index >= sheets->size_sheet()) throw zverror("index is out of range");
    if (!_bookRels) throw zverror("sheet not found");
    return makeFullPath(_bookRels->target(sheets->get_sheet(index).get_id()));
}

template <class T, class Tag>
void XMLBookImplT<T, Tag>::calcNumSuffix(const std::wstring& name, int& suffix) {
    if (name.size() < 5) return;
    std::wstring rest = name.substr(0, name.size() - 4);
    size_t start = rest.size();
    while (start > 0 && rest[start - 1] >= L'0' && rest[start - 1] <= L'9') --start;
    if (start == rest.size()) return;
    std::wstring digits = rest.substr(start);
    if (digits.size() > 9) return;
    int value = static_cast<int>(Converter::stringToInt(digits));
    if (suffix <= value) suffix = value + 1;
}

template <class T, class Tag>
std::wstring XMLBookImplT<T, Tag>::makeSheetPath() {
    int suffix = 1;
    if (_bookRels)
        for (std::wstring target = _bookRels->firstTargetByType(worksheetRel); !target.empty();
             target = _bookRels->nextTarget())
            calcNumSuffix(target, suffix);
    return L"/xl/worksheets/sheet" + Converter::intToString(suffix) + L".xml";
}

template <class T, class Tag>
Styles<T, Tag>* XMLBookImplT<T, Tag>::styles() {
    if (_styles) return _styles;
    const std::wstring path = L"/xl/styles.xml";
    Styles<T, Tag>* created = new Styles<T, Tag>(_utf8);
    auto it = _files.find(path);
    if (it != _files.end()) {
        if (it->second != this) delete it->second;
        it->second = created;
    } else {
        _files[path] = created;
    }
    _styles = created;
    if (_contentTypes) _contentTypes->addOverride(path, stylesType);
    if (_bookRels) _bookRels->addRelation(stylesRel, L"styles.xml");
    return _styles;
}

template <class T, class Tag>
SharedStrings<Tag>* XMLBookImplT<T, Tag>::sharedStrings() {
    if (_sharedStrings) return _sharedStrings;
    const std::wstring path = L"/xl/sharedStrings.xml";
    SharedStrings<Tag>* created = new SharedStrings<Tag>;
    auto it = _files.find(path);
    if (it != _files.end()) {
        if (it->second != this) delete it->second;
        it->second = created;
    } else {
        _files[path] = created;
    }
    _sharedStrings = created;
    if (_contentTypes) _contentTypes->addOverride(path, sharedStringsType);
    if (_bookRels) _bookRels->addRelation(sharedStringsRel, L"sharedStrings.xml");
    return _sharedStrings;
}

// ---------------------------------------------------------------- sheets

template <class T, class Tag>
int XMLBookImplT<T, Tag>::sheetCount() const {
    const auto* sheets = static_cast<const typename X::Workbook&>(this->tree).get_sheets();
    return sheets ? static_cast<int>(sheets->size_sheet()) : 0;
}

template <class T, class Tag>
typename XMLBookImplT<T, Tag>::Sheet* XMLBookImplT<T, Tag>::sheetAt(int index) const {
    if (index < 0 || index >= sheetCount() || !_bookRels) return nullptr;
    auto it = _files.find(sheetPath(static_cast<unsigned>(index)));
    if (it == _files.end()) return nullptr;
    Sheet* sheet = dynamic_cast<Sheet*>(it->second);
    if (sheet) {
        sheet->setBook(const_cast<XMLBookImplT*>(this));
        sheet->setIndex(index);
    }
    return sheet;
}

template <class T, class Tag>
ISheetT<T>* XMLBookImplT<T, Tag>::getSheet(int index) const {
    XB_BEGIN
    if (!_bookRels) throw zverror("sheet not found");
    sheetPath(static_cast<unsigned>(index));  // the range check
    Sheet* sheet = sheetAt(index);
    if (!sheet) throw zverror("sheet not found");
    _errorText = "ok";
    return sheet;
    XB_END(nullptr)
}

template <class T, class Tag>
int XMLBookImplT<T, Tag>::sheetType(int index) const {
    XB_BEGIN
    auto it = _files.find(sheetPath(static_cast<unsigned>(index)));
    if (it == _files.end()) throw zverror("sheet not found");
    _errorText = "ok";
    if (!it->second) return SheetTypeOther;
    if (dynamic_cast<Sheet*>(it->second)) return SheetTypeWorksheet;
    if (dynamic_cast<XMLChartSheet*>(it->second)) return SheetTypeChart;
    return SheetTypeOther;
    XB_END(SheetTypeOther)
}

template <class T, class Tag>
ISheetT<T>* XMLBookImplT<T, Tag>::addSheet(const T* name, ISheetT<T>* initSheet) {
    return insertSheet(sheetCount(), name, initSheet);
}

template <class T, class Tag>
ISheetT<T>* XMLBookImplT<T, Tag>::insertSheet(int index, const T* name, ISheetT<T>* initSheet) {
    XB_BEGIN
    if (index < 0 || index > sheetCount()) throw zverror("index is out of range");
    if (!name) throw zverror("name is null");
    std::wstring wide;
    bool cut = false;
    if (sizeof(T) == 1) {
        std::string narrow(reinterpret_cast<const char*>(name));
        if (_utf8) {
            if (!utf8::is_valid(narrow.begin(), narrow.end())) throw zverror("can't convert multibyte to wide string, perhaps incorrect locale");
            if (utf8::distance(narrow.begin(), narrow.end()) > 31) {
                auto end = narrow.begin();
                utf8::advance(end, 31, narrow.end());
                narrow.erase(end, narrow.end());
                cut = true;
            }
        } else if (narrow.size() > 31) {
            narrow.resize(31);
            cut = true;
        }
        toWide(narrow.c_str(), _utf8, wide);
    } else {
        toWide(name, _utf8, wide);
        if (wide.size() > 31) {
            wide.resize(31);
            cut = true;
        }
    }
    return insertSheetWide(index, wide, cut, initSheet);
    XB_END(nullptr)
}

template <class T, class Tag>
ISheetT<T>* XMLBookImplT<T, Tag>::insertSheetWide(int index, std::wstring name, bool cut, ISheetT<T>* initSheet) {
    auto& sheets = this->tree.get_sheets();
    for (size_t i = 0; i < sheets.size_sheet(); ++i)
        if (sicmp(sheets.get_sheet(i).get_name(), name)) throw zverror("book already contains such sheet name");
    if (!_bookRels || !_contentTypes) throw zverror("workbook relationships not found");
    const Sheet* source = nullptr;
    if (initSheet) {
        source = dynamic_cast<const Sheet*>(initSheet);
        if (!source) throw zverror("sheet is not of this book");
    }
    Sheet* sheet = source ? new Sheet(*source) : new Sheet;
    std::wstring path = makeSheetPath();
    auto slot = _files.find(path);
    if (slot != _files.end()) {
        if (slot->second != this) delete slot->second;
        slot->second = sheet;
    } else {
        _files[path] = sheet;
    }
    _contentTypes->addOverride(path, worksheetType);
    std::wstring target = path.size() > 4 ? path.substr(4) : path;
    std::wstring id = _bookRels->addRelation(worksheetRel, target);
    unsigned sheetId = makeSheetId();
    auto* entry = new typename X::Sheet;
    entry->set_name(name);
    entry->set_sheetId(sheetId);
    entry->set_id(id);
    if (static_cast<size_t>(index) == sheets.size_sheet())
        sheets.append_sheet(entry);
    else
        sheets.insert_sheet(static_cast<size_t>(index), entry);
    sheet->setIndex(index);
    sheet->setBook(this);
    sheet->setWideName(name);
    copyRelationships(path, source);
    sheet->setSelected(false);
    if (sheetCount() == 1) {
        setActiveSheet(0);
    } else if (index <= activeSheet()) {
        setActiveSheet(activeSheet() + 1);
    }
    auto& book = this->tree;
    if (book.isset_definedNames()) {
        auto& names = book.get_definedNames();
        for (size_t i = 0; i < names.size_definedName(); ++i) {
            auto& definedName = names.get_definedName(i);
            if (definedName.isset_localSheetId() && static_cast<int>(definedName.get_localSheetId()) >= index)
                definedName.set_localSheetId(definedName.get_localSheetId() + 1);
        }
    }
    _errorText = cut ? "warning: sheet's name is cut to 31 characters" : "ok";
    return sheet;
}

template <class T, class Tag>
void XMLBookImplT<T, Tag>::copyRelationships(const std::wstring& newPath, const Sheet* source) {
    if (!source) return;
    std::wstring path = relationPath(sheetPath(static_cast<unsigned>(source->index())), true);
    if (path.empty()) return;
    Relationships* rels = getXml<Relationships>(path);
    if (!rels) return;
    std::wstring target = relationPath(newPath, false);
    Relationships* copy = new Relationships(*rels);
    auto slot = _files.find(target);
    if (slot != _files.end()) {
        if (slot->second != this) delete slot->second;
        slot->second = copy;
    } else {
        _files[target] = copy;
    }
}

template <class T, class Tag>
bool XMLBookImplT<T, Tag>::delSheet(int index) {
    XB_BEGIN
    if (index < 0 || index >= sheetCount()) throw zverror("index is out of range");
    if (sheetCount() == 1) throw zverror("can't remove the last sheet in workbook");
    auto& sheets = this->tree.get_sheets();
    std::wstring id = sheets.get_sheet(static_cast<size_t>(index)).get_id();
    std::wstring sheetName = sheets.get_sheet(static_cast<size_t>(index)).get_name();
    std::wstring path = sheetPath(static_cast<unsigned>(index));
    auto& book = this->tree;
    if (book.isset_definedNames()) {
        auto& names = book.get_definedNames();
        for (size_t i = 0; i < names.size_definedName(); ++i) {
            if (names.get_definedName(i).get_value().find(sheetName) != std::wstring::npos) names.delete_definedName(i);
            if (i < names.size_definedName()) {
                auto& entry = names.get_definedName(i);
                if (entry.isset_localSheetId() && static_cast<int>(entry.get_localSheetId()) > index)
                    entry.set_localSheetId(entry.get_localSheetId() - 1);
            }
        }
    }
    std::wstring relsPath = relationPath(path, true);
    if (!relsPath.empty()) {
        auto it = _files.find(relsPath);
        if (it != _files.end() && it->second != this) {
            delete it->second;
            _files.erase(it);
        }
    }
    sheets.delete_sheet(static_cast<size_t>(index));
    // The part name is formed as the book always formed it: directory and target with nothing
    // between them.
    _contentTypes->delOverride(_bookDir + _bookRels->target(id));
    _bookRels->delRelation(id);
    auto it = _files.find(path);
    if (it != _files.end() && it->second != this) {
        delete it->second;
        _files.erase(it);
    }
    if (activeSheet() >= sheetCount()) setActiveSheet(sheetCount() - 1);
    _errorText = "ok";
    return true;
    XB_END(false)
}

template <class T, class Tag>
unsigned XMLBookImplT<T, Tag>::makeSheetId() const {
    unsigned largest = 0;
    const auto* sheets = static_cast<const typename X::Workbook&>(this->tree).get_sheets();
    if (sheets)
        for (size_t i = 0; i < sheets->size_sheet(); ++i)
            if (sheets->get_sheet(i).get_sheetId() > largest) largest = sheets->get_sheet(i).get_sheetId();
    return largest + 1;
}

template <class T, class Tag>
int XMLBookImplT<T, Tag>::visibleSheetCount() const {
    const auto* sheets = static_cast<const typename X::Workbook&>(this->tree).get_sheets();
    int count = 0;
    if (sheets)
        for (size_t i = 0; i < sheets->size_sheet(); ++i) {
            const auto& entry = sheets->get_sheet(i);
            if (!entry.isset_state() || entry.get_state() == L"visible") ++count;
        }
    return count;
}

template <class T, class Tag>
int XMLBookImplT<T, Tag>::activeSheet() const {
    const auto* views = static_cast<const typename X::Workbook&>(this->tree).get_bookViews();
    _errorText = "ok";
    if (!views || views->size_workbookView() == 0) return 0;
    const auto& view = views->get_workbookView(0);
    return view.isset_activeTab() ? static_cast<int>(view.get_activeTab()) : 0;
}

template <class T, class Tag>
void XMLBookImplT<T, Tag>::setActiveSheet(int index) {
    XB_BEGIN
    if (index < 0 || index >= sheetCount()) throw zverror("index is out of range");
    auto& book = this->tree;
    if (book.isset_bookViews()) {
        auto& views = book.get_bookViews();
        if (views.size_workbookView() > 0) views.get_workbookView(0).set_activeTab(static_cast<uint32_t>(index));
    } else {
        book.get_bookViews().append_workbookView().set_activeTab(static_cast<uint32_t>(index));
    }
    for (int i = 0; i < sheetCount(); ++i)
        if (Sheet* sheet = sheetAt(i)) sheet->setSelected(false);
    _errorText = "ok";
    XB_END_VOID
}

template <class T, class Tag>
void XMLBookImplT<T, Tag>::calcActiveSheet() {
    int active = activeSheet();
    Sheet* sheet = sheetAt(active);
    if (sheet && sheet->hidden() != SheetVisible) setActiveSheet(getNextVisibleSheet(active));
}

template <class T, class Tag>
int XMLBookImplT<T, Tag>::getNextVisibleSheet(int index) const {
    int count = sheetCount();
    if (index < 0 || index >= count) return index;
    for (int i = (index + 1) % count; i != index; i = (i + 1) % count) {
        Sheet* sheet = sheetAt(i);
        if (sheet && sheet->hidden() == SheetVisible) return i;
    }
    return index;
}

template <class T, class Tag>
bool XMLBookImplT<T, Tag>::clearDefinedName(int sheetIndex, const std::wstring& name) {
    auto& book = this->tree;
    if (!book.isset_definedNames()) return false;
    auto& names = book.get_definedNames();
    std::wstring sheetName = book.get_sheets().get_sheet(static_cast<size_t>(sheetIndex)).get_name();
    for (size_t i = 0; i < names.size_definedName(); ++i) {
        std::wstring left, right;
        if (!StrUtil::split(names.get_definedName(i).get_value(), L'!', left, right)) continue;
        if (StrUtil::unquote(left) == sheetName && names.get_definedName(i).get_name() == name) {
            names.delete_definedName(i);
            return true;
        }
    }
    return false;
}

// ---------------------------------------------------------------- formats and fonts

template <class T, class Tag>
IFormatT<T>* XMLBookImplT<T, Tag>::addFormat(IFormatT<T>* init) {
    XB_BEGIN
    IFormatT<T>* format = styles()->addFormat(nullptr);
    if (init) {
        auto* source = dynamic_cast<XMLFormatImplT<T, Tag>*>(init);
        if (!source) throw zverror("unknown format");
        Styles<T, Tag>* sourceStyles = source->styles();
        bool sourceMode = sourceStyles->rgbMode(), ownMode = styles()->rgbMode();
        sourceStyles->setRgbMode(true);
        styles()->setRgbMode(true);
        try {
            if (IFontT<T>* font = init->font()) format->setFont(addFont(font));
            int num = init->numFormat();
            if (num < 164) {
                format->setNumFormat(num);
            } else {
                std::wstring code;
                if (sourceStyles->customNumFormatText(num, code)) format->setNumFormat(styles()->addCustomNumFormat(code));
            }
            format->setAlignH(init->alignH());
            format->setAlignV(init->alignV());
            format->setWrap(init->wrap());
            format->setRotation(init->rotation());
            format->setIndent(init->indent());
            format->setShrinkToFit(init->shrinkToFit());
            format->setBorderLeft(init->borderLeft());
            format->setBorderRight(init->borderRight());
            format->setBorderTop(init->borderTop());
            format->setBorderBottom(init->borderBottom());
            format->setBorderLeftColor(init->borderLeftColor());
            format->setBorderRightColor(init->borderRightColor());
            format->setBorderTopColor(init->borderTopColor());
            format->setBorderBottomColor(init->borderBottomColor());
            format->setBorderDiagonal(init->borderDiagonal());
            format->setBorderDiagonalColor(init->borderDiagonalColor());
            format->setBorderDiagonalStyle(init->borderDiagonalStyle());
            format->setFillPattern(init->fillPattern());
            format->setPatternForegroundColor(init->patternForegroundColor());
            format->setPatternBackgroundColor(init->patternBackgroundColor());
            format->setLocked(init->locked());
            format->setHidden(init->hidden());
        } catch (...) {
            sourceStyles->setRgbMode(sourceMode);
            styles()->setRgbMode(ownMode);
            throw;
        }
        sourceStyles->setRgbMode(sourceMode);
        styles()->setRgbMode(ownMode);
    }
    _errorText = "ok";
    return format;
    XB_END(nullptr)
}

template <class T, class Tag>
IFontT<T>* XMLBookImplT<T, Tag>::addFont(IFontT<T>* init) {
    XB_BEGIN
    IFontT<T>* font = styles()->addFont(nullptr);
    if (init) {
        auto* source = dynamic_cast<XMLFontImplT<T, Tag>*>(init);
        if (!source) throw zverror("unknown font");
        // Both books speak RGB while the properties travel, so colours keep their values.
        Styles<T, Tag>* sourceStyles = source->styles();
        bool sourceMode = sourceStyles->rgbMode(), ownMode = styles()->rgbMode();
        sourceStyles->setRgbMode(true);
        styles()->setRgbMode(true);
        try {
            if (source->isName()) static_cast<XMLFontImplT<T, Tag>*>(font)->setWideName(source->wideName());
            if (source->isSize()) font->setSize(source->size());
            if (source->isItalic()) font->setItalic(true);
            if (source->isStrikeOut()) font->setStrikeOut(true);
            if (source->isColor()) font->setColor(source->color());
            if (source->isBold()) font->setBold(true);
            if (source->isScript()) font->setScript(source->script());
            if (source->isUnderline()) font->setUnderline(source->underline());
        } catch (...) {
            sourceStyles->setRgbMode(sourceMode);
            styles()->setRgbMode(ownMode);
            throw;
        }
        sourceStyles->setRgbMode(sourceMode);
        styles()->setRgbMode(ownMode);
    }
    _errorText = "ok";
    return font;
    XB_END(nullptr)
}

template <class T, class Tag>
int XMLBookImplT<T, Tag>::addCustomNumFormat(const T* text) {
    XB_BEGIN
    if (!text) throw zverror("format is null");
    std::wstring wide;
    toWide(text, _utf8, wide);
    int id = styles()->addCustomNumFormat(wide);
    _errorText = "ok";
    return id;
    XB_END(0)
}

template <class T, class Tag>
const T* XMLBookImplT<T, Tag>::customNumFormat(int fmt) {
    XB_BEGIN
    const T* text = styles()->customNumFormat(fmt);
    _errorText = "ok";
    return text;
    XB_END(nullptr)
}

template <class T, class Tag>
IFormatT<T>* XMLBookImplT<T, Tag>::format(int index) {
    XB_BEGIN
    IFormatT<T>* result = styles()->format(index);
    _errorText = "ok";
    return result;
    XB_END(nullptr)
}

template <class T, class Tag>
int XMLBookImplT<T, Tag>::formatSize() {
    XB_BEGIN
    int n = styles()->formatSize();
    _errorText = "ok";
    return n;
    XB_END(0)
}

template <class T, class Tag>
IFontT<T>* XMLBookImplT<T, Tag>::font(int index) {
    XB_BEGIN
    IFontT<T>* result = styles()->font(index);
    _errorText = "ok";
    return result;
    XB_END(nullptr)
}

template <class T, class Tag>
int XMLBookImplT<T, Tag>::fontSize() {
    XB_BEGIN
    int n = styles()->fontSize();
    _errorText = "ok";
    return n;
    XB_END(0)
}

template <class T, class Tag>
const T* XMLBookImplT<T, Tag>::defaultFont(int* size) {
    XB_BEGIN
    const T* name = styles()->defaultFont(size);
    _errorText = "ok";
    return name;
    XB_END(nullptr)
}

template <class T, class Tag>
void XMLBookImplT<T, Tag>::setDefaultFont(const T* name, int size) {
    XB_BEGIN
    if (!name) throw zverror("name is null");
    std::wstring wide;
    toWide(name, _utf8, wide);
    styles()->setDefaultFont(wide, size);
    _errorText = "ok";
    XB_END_VOID
}

template <class T, class Tag>
Color XMLBookImplT<T, Tag>::colorPack(int red, int green, int blue) {
    _errorText = "ok";
    return static_cast<Color>(((red & 255) << 16) | ((green & 255) << 8) | (blue & 255));
}

template <class T, class Tag>
void XMLBookImplT<T, Tag>::colorUnpack(Color color, int* red, int* green, int* blue) {
    unsigned value = static_cast<unsigned>(color);
    if (red) *red = (value >> 16) & 255;
    if (green) *green = (value >> 8) & 255;
    if (blue) *blue = value & 255;
    _errorText = "ok";
}

template <class T, class Tag>
bool XMLBookImplT<T, Tag>::rgbMode() {
    XB_BEGIN
    bool mode = styles()->rgbMode();
    _errorText = "ok";
    return mode;
    XB_END(false)
}

template <class T, class Tag>
void XMLBookImplT<T, Tag>::setRgbMode(bool on) {
    XB_BEGIN
    styles()->setRgbMode(on);
    _errorText = "ok";
    XB_END_VOID
}

// ---------------------------------------------------------------- pictures (book store only)

template <class T, class Tag>
int XMLBookImplT<T, Tag>::pictureSize() const {
    _errorText = "ok";
    return static_cast<int>(_pictures.size());
}

template <class T, class Tag>
int XMLBookImplT<T, Tag>::getPicture(int index, const char** data, unsigned* size) const {
    if (index < 0 || index >= static_cast<int>(_pictures.size())) {
        _errorText = "index is out of range";
        return PictureError;
    }
    const PicInfo& info = _pictures[static_cast<size_t>(index)];
    if (data) *data = info.data.data();
    if (size) *size = static_cast<unsigned>(info.data.size());
    std::wstring ext = info.extension;
    for (wchar_t& c : ext) c = static_cast<wchar_t>(towlower(c));
    _errorText = "ok";
    if (ext == L"png") return PicturePng;
    if (ext == L"jpeg" || ext == L"jpg") return PictureJpeg;
    if (ext == L"wmf") return PictureWmf;
    if (ext == L"bmp" || ext == L"dib") return PictureDib;
    if (ext == L"emf") return PictureEmf;
    if (ext == L"pict" || ext == L"pct") return PicturePict;
    if (ext == L"tif" || ext == L"tiff") return PictureTiff;
    return PictureError;
}

// ---------------------------------------------------------------- settings

template <class T, class Tag>
bool XMLBookImplT<T, Tag>::refR1C1() const {
    const auto* calc = static_cast<const typename X::Workbook&>(this->tree).get_calcPr();
    return calc && calc->isset_refMode() && calc->get_refMode() == L"R1C1";
}

template <class T, class Tag>
void XMLBookImplT<T, Tag>::setRefR1C1(bool on) {
    XB_BEGIN
    this->tree.get_calcPr().set_refMode(on ? L"R1C1" : L"A1");
    _errorText = "ok";
    XB_END_VOID
}

template <class T, class Tag>
bool XMLBookImplT<T, Tag>::isDate1904() const {
    const auto* pr = static_cast<const typename X::Workbook&>(this->tree).get_workbookPr();
    return pr && pr->isset_date1904() && pr->get_date1904();
}

template <class T, class Tag>
void XMLBookImplT<T, Tag>::setDate1904(bool on) {
    XB_BEGIN
    auto& pr = this->tree.get_workbookPr();
    if (pr.isset_date1904() || on) pr.set_date1904(on);
    _errorText = "ok";
    XB_END_VOID
}

template <class T, class Tag>
double XMLBookImplT<T, Tag>::datePack(int year, int month, int day, int hour, int min, int sec, int msec) {
    double value = 0;
    if (year > 0 || month > 0 || day > 0) {
        long a = (month - 14) / 12;
        long jd = day + (367L * month - 734 - 4404 * a) / 12 + ((year + a + 4800) * 1461L) / 4 -
                  (((year + a + 4900) / 100) * 3) / 4 - 32075;
        value = static_cast<double>(jd - (isDate1904() ? 2416481 : 2415019));
    }
    value += hour / 24.0 + min / 1440.0 + sec / 86400.0 + msec / 86400000.0;
    _errorText = "ok";
    return value;
}

template <class T, class Tag>
bool XMLBookImplT<T, Tag>::dateUnpack(double value, int* year, int* month, int* day, int* hour, int* min, int* sec,
                                      int* msec) {
    if (!(value > -657435.0 && value < 2958466.0)) {
        _errorText = "date value is out of range";
        return false;
    }
    double d = value >= 0 ? std::floor(value) : std::ceil(value);
    double f = value - d + 1e-11;
    if (f >= 1.0) f -= 1e-11;
    int y = 0, m = 0, dd = 0;
    if (d > 0) {
        long j = static_cast<long>(value) + (isDate1904() ? 2416481 : 2415019) + 68569;
        long n = 4 * j / 146097;
        j = j - (146097 * n + 3) / 4;
        long yy = 4000 * (j + 1) / 1461001;
        j = j - 1461 * yy / 4 + 31;
        long mm = 80 * j / 2447;
        dd = static_cast<int>(j - 2447 * mm / 80);
        long l = mm / 11;
        m = static_cast<int>(mm + 2 - 12 * l);
        y = static_cast<int>(100 * (n - 49) + yy + l);
    }
    if (year) *year = y;
    if (month) *month = m;
    if (day) *day = dd;
    f *= 24;
    if (hour) *hour = static_cast<int>(f);
    f = (f - static_cast<int>(f)) * 60;
    if (min) *min = static_cast<int>(f);
    f = (f - static_cast<int>(f)) * 60;
    if (sec) *sec = static_cast<int>(f);
    f = f - static_cast<int>(f);
    if (msec) *msec = static_cast<int>(f * 1000 + 0.5);
    _errorText = "ok";
    return true;
}

template <class T, class Tag>
int XMLBookImplT<T, Tag>::version() const {
    return 0x03050300;
}

template <class T, class Tag>
int XMLBookImplT<T, Tag>::biffVersion() const {
    return 0;
}

template <class T, class Tag>
bool XMLBookImplT<T, Tag>::setLocale(const char* locale) {
    XB_BEGIN
    if (!locale) throw zverror("setlocale error");
    if (std::strcmp(locale, "UTF-8") == 0) {
        _utf8 = true;
        if (_styles) _styles->setUtf8(true);
        _errorText = "ok";
        return true;
    }
    _utf8 = false;
    if (_styles) _styles->setUtf8(false);
    const char* current = std::setlocale(LC_CTYPE, nullptr);
    std::string saved = current ? current : "";
    if (!std::setlocale(LC_CTYPE, locale)) throw zverror("setlocale error");
    if (_savedLocale.empty()) _savedLocale = saved;
    _errorText = "ok";
    return true;
    XB_END(false)
}

// ---------------------------------------------------------------- proxy

template <class T>
void XMLBookProxy<T>::switchToNormalMode() {
    IBookT<T>* book = new XMLBookImplT<T, excelNormal_tag>();
    if (_book) _book->release();
    _book = book;
}

template <class T>
void XMLBookProxy<T>::switchToStrictMode() {
    IBookT<T>* book = new XMLBookImplT<T, excelStrict_tag>();
    if (_book) _book->release();
    _book = book;
}

template <class T>
bool XMLBookProxy<T>::isNormalMode() const {
    return dynamic_cast<XMLBookImplT<T, excelNormal_tag>*>(_book) != nullptr;
}

template <class T>
bool XMLBookProxy<T>::load(const T* filename) {
    if (_book->load(filename)) return true;
    try {
        if (isNormalMode())
            switchToStrictMode();
        else
            switchToNormalMode();
    } catch (...) {
        return false;
    }
    return _book->load(filename);
}

template class XMLBookImplT<char, excelNormal_tag>;
template class XMLBookImplT<wchar_t, excelNormal_tag>;
template class XMLBookImplT<char, excelStrict_tag>;
template class XMLBookImplT<wchar_t, excelStrict_tag>;
template class XMLBookProxy<char>;
template class XMLBookProxy<wchar_t>;

}  // namespace zelvar

extern "C" {

ZELVAR_API zelvar::IBookT<char>* zvCreateXMLBookA(void) {
    try {
        return new zelvar::XMLBookProxy<char>();
    } catch (...) {
        return nullptr;
    }
}

ZELVAR_API zelvar::IBookT<wchar_t>* zvCreateXMLBookW(void) {
    try {
        return new zelvar::XMLBookProxy<wchar_t>();
    } catch (...) {
        return nullptr;
    }
}

ZELVAR_API zelvar::IBookT<char>* zvCreateXMLBookCA(void) { return new zelvar::XMLBookProxy<char>(); }

ZELVAR_API zelvar::IBookT<wchar_t>* zvCreateXMLBookCW(void) { return new zelvar::XMLBookProxy<wchar_t>(); }
}
