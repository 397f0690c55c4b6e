// Pictures of an XML workbook: image parts added once under /xl/media, drawing parts that anchor
// them on sheets, and reading anchors back in pixels.
#include "xmlbook/xml_drawing.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cwchar>
#include <cwctype>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "xmlbook/xml_book.h"
#include "xmlbook/xml_guard.h"

namespace zelvar {

namespace {

const wchar_t* const kImageRel = L"http://schemas.openxmlformats.org/officeDocument/2006/relationships/image";
const wchar_t* const kDrawingRel = L"http://schemas.openxmlformats.org/officeDocument/2006/relationships/drawing";
const wchar_t* const kDrawingType = L"application/vnd.openxmlformats-officedocument.drawing+xml";

unsigned byteAt(const std::vector<char>& d, size_t i) { return static_cast<unsigned char>(d[i]); }
unsigned le32(const std::vector<char>& d, size_t i) {
    return byteAt(d, i) | byteAt(d, i + 1) << 8 | byteAt(d, i + 2) << 16 | byteAt(d, i + 3) << 24;
}
unsigned be32(const std::vector<char>& d, size_t i) {
    return byteAt(d, i) << 24 | byteAt(d, i + 1) << 16 | byteAt(d, i + 2) << 8 | byteAt(d, i + 3);
}
unsigned be16(const std::vector<char>& d, size_t i) { return byteAt(d, i) << 8 | byteAt(d, i + 1); }

std::wstring lower(std::wstring text) {
    for (wchar_t& c : text) c = static_cast<wchar_t>(towlower(c));
    return text;
}

// A target relative to a part under /xl/worksheets or /xl/drawings: "../x" is "/xl/x".
std::wstring resolveTarget(const std::wstring& target, const std::wstring& partDir) {
    if (target.size() > 3 && target.compare(0, 3, L"../") == 0) return L"/xl" + target.substr(2);
    if (!target.empty() && target[0] == L'/') return target;
    return partDir + L"/" + target;
}

std::wstring dirOf(const std::wstring& path) {
    size_t slash = path.rfind(L'/');
    return slash == std::wstring::npos ? std::wstring() : path.substr(0, slash);
}

long long emuToPx(const std::wstring& text) { return text.empty() ? 0 : std::wcstoll(text.c_str(), nullptr, 10) / kEmuPerPixel; }

std::wstring pxToEmu(int px) {
    // 32-bit unsigned product, as the anchor has always stored it.
    uint32_t product = static_cast<uint32_t>(px) * static_cast<uint32_t>(kEmuPerPixel);
    return std::to_wstring(product);
}

std::string narrowPath(const char* name) { return name; }
std::string narrowPath(const wchar_t* name) {
    std::string out;
    char buffer[MB_LEN_MAX];
    std::mbstate_t state{};
    for (; *name; ++name) {
        size_t n = std::wcrtomb(buffer, *name, &state);
        if (n == static_cast<size_t>(-1)) throw zverror("can't open file");
        out.append(buffer, n);
    }
    return out;
}

}  // namespace

int pictureTypeOf(const std::wstring& extension) {
    std::wstring ext = lower(extension);
    if (ext == L"png") return PicturePng;
    if (ext == L"jpg" || ext == L"jpeg") return PictureJpeg;
    if (ext == L"wmf") return PictureWmf;
    if (ext == L"bmp") return PictureDib;
    if (ext == L"emf") return PictureEmf;
    return PictureError;
}

void pictureDimensions(const std::vector<char>& d, const std::wstring& extension, int* width, int* height) {
    unsigned w = 0, h = 0;
    std::wstring ext = lower(extension);
    if (ext == L"bmp" && d.size() >= 26) {
        w = le32(d, 18);
        h = le32(d, 22);
        // A bitmap stored top row first gives its height as a negative number.
        if (static_cast<int>(h) < 0) h = 0u - h;
    } else if (ext == L"png" && d.size() >= 24) {
        w = be32(d, 16);
        h = be32(d, 20);
    } else if ((ext == L"jpg" || ext == L"jpeg") && d.size() >= 5) {
        if (byteAt(d, 0) != 0xFF || byteAt(d, 1) != 0xD8) throw zverror("invalid jpg file");
        // Segments from the start marker on, up to the first frame header of a baseline,
        // extended, progressive or lossless frame.
        size_t i = 2;
        while (i + 8 < d.size()) {
            if (byteAt(d, i) == 0xFF && byteAt(d, i + 1) >= 0xC0 && byteAt(d, i + 1) <= 0xC3) {
                h = be16(d, i + 5);
                w = be16(d, i + 7);
                break;
            }
            i += 2 + be16(d, i + 2);
        }
    } else if (ext == L"wmf") {
        w = h = 200;
    } else if (ext == L"emf" && d.size() >= 24) {
        w = le32(d, 16);
        h = le32(d, 20);
    }
    *width = static_cast<int>(w);
    *height = static_cast<int>(h);
}

// ---------------------------------------------------------------- drawing part

template <class Tag>
void Drawing<Tag>::addAnchor(int rowFrom, int colFrom, int rowTo, int colTo, int rowOffFrom, int colOffFrom, int rowOffTo,
                             int colOffTo, const std::wstring& embedId) {
    unsigned number = 0;
    for (wchar_t c : embedId)
        if (c >= L'0' && c <= L'9') number = number * 10 + static_cast<unsigned>(c - L'0');
    auto& anchor = this->tree.append_EG_Anchor().select_twoCellAnchor();
    auto& from = anchor.get_from();
    from.set_col(colFrom);
    from.set_colOff(pxToEmu(colOffFrom));
    from.set_row(rowFrom);
    from.set_rowOff(pxToEmu(rowOffFrom));
    auto& to = anchor.get_to();
    to.set_col(colTo);
    to.set_colOff(pxToEmu(colOffTo));
    to.set_row(rowTo);
    to.set_rowOff(pxToEmu(rowOffTo));
    auto& pic = anchor.get_EG_ObjectChoices().select_pic();
    auto& names = pic.get_nvPicPr();
    names.get_cNvPr().set_id(number);
    names.get_cNvPr().set_name(L"Picture " + std::to_wstring(number));
    names.get_cNvPicPr().get_picLocks();
    auto& fill = pic.get_blipFill();
    fill.get_blip().set_embed(embedId);
    fill.get_srcRect();
    fill.get_EG_FillModeProperties().select_stretch().get_fillRect();
    auto& shape = pic.get_spPr();
    shape.get_xfrm().get_off().set_x(static_cast<int64_t>(685800));
    shape.get_xfrm().get_off().set_y(static_cast<int64_t>(904875));
    shape.get_xfrm().get_ext().set_cx(1219370);
    shape.get_xfrm().get_ext().set_cy(1219370);
    auto& geometry = shape.get_EG_Geometry().select_prstGeom();
    geometry.set_prst(L"rect");
    geometry.get_avLst();
    anchor.get_clientData();
}

namespace {

// The picture of an anchor of the two kinds that place pictures, or null.
template <class Anchor>
const void* pictureOf(const Anchor& anchor) {
    const auto* two = anchor.get_twoCellAnchor();
    if (two) {
        const auto* choices = two->get_EG_ObjectChoices();
        return choices ? static_cast<const void*>(choices->get_pic()) : nullptr;
    }
    const auto* one = anchor.get_oneCellAnchor();
    if (one) {
        const auto* choices = one->get_EG_ObjectChoices();
        return choices ? static_cast<const void*>(choices->get_pic()) : nullptr;
    }
    return nullptr;
}

}  // namespace

template <class Tag>
long Drawing<Tag>::pictureAnchor(int index) const {
    int seen = 0;
    for (size_t i = 0; i < this->tree.size_EG_Anchor(); ++i) {
        if (!pictureOf(this->tree.get_EG_Anchor(i))) continue;
        if (seen++ == index) return static_cast<long>(i);
    }
    return -1;
}

template <class Tag>
int Drawing<Tag>::pictureSize() const {
    int count = 0;
    for (size_t i = 0; i < this->tree.size_EG_Anchor(); ++i)
        if (pictureOf(this->tree.get_EG_Anchor(i))) ++count;
    return count;
}

template <class Tag>
void Drawing<Tag>::prepareSave() {
    // Anchors that hold nothing of the three kinds are dropped: a drawing may not have them.
    for (size_t i = this->tree.size_EG_Anchor(); i-- > 0;)
        if (this->tree.get_EG_Anchor(i).get_choice() >= 3) this->tree.delete_EG_Anchor(i);
}

template class Drawing<excelNormal_tag>;
template class Drawing<excelStrict_tag>;

// ---------------------------------------------------------------- book

template <class T, class Tag>
int XMLBookImplT<T, Tag>::picIndex(const std::wstring& imagePath) const {
    for (size_t i = 0; i < _pictures.size(); ++i)
        if (_pictures[i].path == imagePath) return static_cast<int>(i);
    return -1;
}

template <class T, class Tag>
Drawing<Tag>* XMLBookImplT<T, Tag>::drawingAt(const std::wstring& path) {
    auto it = _files.find(path);
    if (it == _files.end()) return nullptr;
    if (auto* drawing = dynamic_cast<Drawing<Tag>*>(it->second)) return drawing;
    auto* bytes = dynamic_cast<BinaryFile*>(it->second);
    if (!bytes) return nullptr;
    const std::vector<char>& data = bytes->data();
    auto* drawing = new Drawing<Tag>(data.data(), static_cast<unsigned>(data.size()));
    delete it->second;
    it->second = drawing;
    return drawing;
}

template <class T, class Tag>
Relationships* XMLBookImplT<T, Tag>::relationshipsFor(const XFile* file, bool create, const Relationships* copyOf) {
    std::wstring path = getFileName(file);
    if (path.empty()) return nullptr;
    std::wstring relsPath = relationPath(path, false);
    if (Relationships* found = getXml<Relationships>(relsPath)) return found;
    if (!create) return nullptr;
    auto* made = copyOf ? new Relationships(*copyOf) : new Relationships;
    _files[relsPath] = made;
    return made;
}

template <class T, class Tag>
int XMLBookImplT<T, Tag>::addPicture(const T* filename) {
    try {
        if (!filename) throw zverror("can't open file");
        std::ifstream in(narrowPath(filename), std::ios::binary);
        if (!in) throw zverror("can't open file");
        std::vector<char> data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        return addPicture2(data.data(), static_cast<unsigned>(data.size()));
    } catch (const std::exception& failure) {
        _errorText = failure.what();
    } catch (...) {
        _errorText = "general failure";
    }
    return -1;
}

template <class T, class Tag>
int XMLBookImplT<T, Tag>::addPicture2(const char* data, unsigned size) {
    try {
        if (!data && size) throw zverror("data is null");
        std::vector<char> bytes(data, data + size);
        static const struct {
            unsigned char magic[4];
            size_t length;
            const wchar_t* extension;
            const wchar_t* contentType;
        } kinds[] = {{{137, 'P', 'N', 'G'}, 4, L"png", L"image/png"},
                     {{0xFF, 0xD8, 0xFF, 0}, 3, L"jpg", L"image/jpeg"},
                     {{0xD7, 0xCD, 0xC6, 0x9A}, 4, L"wmf", L"image/x-wmf"},
                     {{'B', 'M', 0, 0}, 2, L"bmp", L"image/bmp"},
                     {{1, 0, 0, 0}, 2, L"emf", L"image/x-emf"}};
        std::wstring extension;
        // Four bytes or fewer can't be told apart.
        for (const auto& kind : kinds) {
            if (size <= 4 || !std::equal(kind.magic, kind.magic + kind.length, reinterpret_cast<const unsigned char*>(data)))
                continue;
            extension = kind.extension;
            if (!_contentTypes) throw zverror("content types not found");
            _contentTypes->addDefault(extension, kind.contentType);
            break;
        }
        if (extension.empty()) throw zverror("unknown picture format");
        std::wstring path = addFile(new BinaryFile(data, size), L"/xl/media/image", extension);
        PicInfo info;
        info.data = std::move(bytes);
        info.extension = extension;
        info.path = path;
        _pictures.push_back(std::move(info));
        _errorText = "ok";
        return static_cast<int>(_pictures.size()) - 1;
    } catch (const std::exception& failure) {
        _errorText = failure.what();
    } catch (...) {
        _errorText = "general failure";
    }
    return -1;
}

// ---------------------------------------------------------------- sheet


template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setPicture(int row, int col, int pictureId, double scale, int offsetX, int offsetY) {
    XS_BEGIN
    const auto& pictures = _book->pictures();
    if (pictureId < 0 || static_cast<size_t>(pictureId) >= pictures.size()) throw zverror("pictureId is out of range");
    const PicInfo& info = pictures[static_cast<size_t>(pictureId)];
    int width = 0, height = 0;
    pictureDimensions(info.data, info.extension, &width, &height);
    setPicture2(row, col, pictureId, static_cast<int>(width * scale), static_cast<int>(height * scale), offsetX, offsetY);
    XS_END_VOID
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setPicture2(int row, int col, int pictureId, int width, int height, int offsetX, int offsetY) {
    XS_BEGIN
    const auto& pictures = _book->pictures();
    if (pictureId < 0 || static_cast<size_t>(pictureId) >= pictures.size()) throw zverror("pictureId is out of range");
    if (static_cast<unsigned>(row) >= 1048576u) throw zverror("row must be in range 0-1048575");
    if (static_cast<unsigned>(col) >= 16384u) throw zverror("col must be less than 16384");
    int rowFrom = row, rowTo = row, colFrom = col, colTo = col;
    if (width == -1 || height == -1) {
        int r1, r2, c1, c2;
        std::string saved = _book->errorMessage();
        if (getMerge(row, col, &r1, &r2, &c1, &c2)) {
            if (height == -1) rowFrom = r1, rowTo = r2;
            if (width == -1) colFrom = c1, colTo = c2;
        }
    }
    std::wstring sheetPath = _book->getFileName(this);
    Drawing<Tag>* drawing = nullptr;
    const bool hadDrawing = this->tree.isset_drawing();
    if (hadDrawing) {
        Relationships* rels = _book->relationshipsFor(this, false);
        std::wstring path;
        if (rels) path = resolveTarget(rels->target(this->tree.get_drawing().get_id()), dirOf(sheetPath));
        if (rels) drawing = _book->drawingAt(path);
        if (!drawing) throw zverror("can't find drawing object");
        // A copied sheet still names the drawing of its source: it gets a drawing of its own
        // before anything is added, so that the source's pictures stay as they were.
        bool shared = false;
        for (int i = 0; i < _book->sheetCount() && !shared; ++i) {
            auto* other = _book->sheetAt(i);
            if (!other || other == this || !other->tree.isset_drawing()) continue;
            Relationships* otherRels = _book->relationshipsFor(other, false);
            if (otherRels)
                shared = resolveTarget(otherRels->target(other->tree.get_drawing().get_id()), dirOf(_book->getFileName(other))) == path;
        }
        if (shared) {
            auto* own = new Drawing<Tag>(*drawing);
            std::wstring ownPath = _book->addFile(own, L"/xl/drawings/drawing", L"xml");
            _book->contentTypes()->addOverride(ownPath, kDrawingType);
            if (Relationships* drawingRels = _book->relationshipsFor(drawing, false)) _book->relationshipsFor(own, true, drawingRels);
            rels->delRelation(this->tree.get_drawing().get_id());
            this->tree.get_drawing().set_id(rels->addRelation(kDrawingRel, L".." + ownPath.substr(3)));
            drawing = own;
        }
    } else {
        drawing = new Drawing<Tag>;
        std::wstring path = _book->addFile(drawing, L"/xl/drawings/drawing", L"xml");
        _book->contentTypes()->addOverride(path, kDrawingType);
    }
    std::wstring drawingPath = _book->getFileName(drawing);
    Relationships* drawingRels = _book->relationshipsFor(drawing, true);
    const std::wstring& imagePath = pictures[static_cast<size_t>(pictureId)].path;
    std::wstring relationId = drawingRels->addRelation(kImageRel, L".." + imagePath.substr(3));

    bool clampY = false, clampX = false;
    int cellHeight = rowHeightPx(static_cast<unsigned short>(rowFrom));
    if (cellHeight < offsetY) offsetY = cellHeight, clampY = true;
    int cellWidth = colWidthPx(static_cast<unsigned short>(colFrom));
    if (cellWidth < offsetX) offsetX = cellWidth, clampX = true;

    // The far corner: whole columns and rows are passed while the rest is not below their size.
    int x = offsetX + width;
    unsigned short c = static_cast<unsigned short>(colTo);
    for (int w; x >= (w = colWidthPx(c)) && w > 0; ++c) x -= w;
    int y = offsetY + height;
    unsigned short r = static_cast<unsigned short>(rowTo);
    for (int h; y >= (h = rowHeightPx(r)) && h > 0; ++r) y -= h;
    drawing->addAnchor(rowFrom, colFrom, r, c, offsetY, offsetX, y, x, relationId);

    if (!hadDrawing && !sheetPath.empty()) {
        Relationships* sheetRels = _book->relationshipsFor(this, true);
        std::wstring id = sheetRels->addRelation(kDrawingRel, L".." + drawingPath.substr(3));
        this->tree.get_drawing().set_id(id);
    }
    if (clampX && clampY)
        fail("warning: offset_x and offset_y exceed cell's size");
    else if (clampY)
        fail("warning: offset_y exceed cell's height");
    else if (clampX)
        fail("warning: offset_x exceed cell's width");
    else
        ok();
    XS_END_VOID
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::pictureSize() const {
    XS_BEGIN
    if (!this->tree.isset_drawing()) {
        ok();
        return 0;
    }
    Relationships* rels = _book->relationshipsFor(this, false);
    Drawing<Tag>* drawing = rels ? _book->drawingAt(resolveTarget(rels->target(this->tree.get_drawing()->get_id()),
                                                                  dirOf(_book->getFileName(this))))
                                 : nullptr;
    if (!drawing) throw zverror("can't find drawing object");
    ok();
    return drawing->pictureSize();
    XS_END(-1)
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::getPicture(int index, int* rowTop, int* colLeft, int* rowBottom, int* colRight, int* width,
                                      int* height, int* offsetX, int* offsetY) const {
    XS_BEGIN
    if (!this->tree.isset_drawing()) return -1;
    Relationships* sheetRels = _book->relationshipsFor(this, false);
    Drawing<Tag>* drawing = sheetRels ? _book->drawingAt(resolveTarget(sheetRels->target(this->tree.get_drawing()->get_id()),
                                                                       dirOf(_book->getFileName(this))))
                                      : nullptr;
    if (!drawing) throw zverror("can't find drawing object");
    if (index < 0) throw zverror("picture index is out of range");
    long at = drawing->pictureAnchor(index);
    std::wstring embed;
    if (at >= 0) {
        const auto& anchor = static_cast<const typename drawing_traits<Tag>::Root&>(drawing->tree).get_EG_Anchor(static_cast<size_t>(at));
        auto put = [](int* out, long long value) {
            if (out) *out = static_cast<int>(value);
        };
        const void* found = nullptr;
        if (const auto* two = anchor.get_twoCellAnchor()) {
            const auto* from = two->get_from();
            const auto* to = two->get_to();
            long long fromCol = from ? from->get_col() : 0, fromRow = from ? from->get_row() : 0;
            long long toCol = to ? to->get_col() : 0, toRow = to ? to->get_row() : 0;
            long long offX = from ? emuToPx(from->get_colOff()) : 0, offY = from ? emuToPx(from->get_rowOff()) : 0;
            put(rowTop, fromRow);
            put(colLeft, fromCol);
            put(rowBottom, toRow);
            put(colRight, toCol);
            put(offsetX, offX);
            put(offsetY, offY);
            long long w = -offX + (to ? emuToPx(to->get_colOff()) : 0);
            for (long long c = fromCol; c < toCol; ++c) w += colWidthPx(static_cast<unsigned short>(c));
            long long h = -offY + (to ? emuToPx(to->get_rowOff()) : 0);
            for (long long r = fromRow; r < toRow; ++r) h += rowHeightPx(static_cast<unsigned short>(r));
            put(width, w);
            put(height, h);
            const auto* choices = two->get_EG_ObjectChoices();
            if (const auto* pic = choices ? choices->get_pic() : nullptr) {
                const auto* fill = pic->get_blipFill();
                const auto* blip = fill ? fill->get_blip() : nullptr;
                if (blip && blip->isset_embed()) embed = blip->get_embed();
            }
            found = two;
        } else if (const auto* one = anchor.get_oneCellAnchor()) {
            const auto* from = one->get_from();
            put(rowTop, from ? from->get_row() : 0);
            put(colLeft, from ? from->get_col() : 0);
            put(offsetX, from ? emuToPx(from->get_colOff()) : 0);
            put(offsetY, from ? emuToPx(from->get_rowOff()) : 0);
            put(rowBottom, -1);
            put(colRight, -1);
            put(width, -1);
            put(height, -1);
            const auto* choices = one->get_EG_ObjectChoices();
            if (const auto* pic = choices ? choices->get_pic() : nullptr) {
                const auto* fill = pic->get_blipFill();
                const auto* blip = fill ? fill->get_blip() : nullptr;
                if (blip && blip->isset_embed()) embed = blip->get_embed();
            }
            found = one;
        }
        (void)found;
    }
    Relationships* drawingRels = _book->relationshipsFor(drawing, false);
    if (!drawingRels) throw zverror("can't find drawing relationships");
    int result = _book->picIndex(resolveTarget(drawingRels->target(embed), dirOf(_book->getFileName(drawing))));
    if (result < 0) throw zverror("picture not found");
    ok();
    return result;
    XS_END(-1)
}

template class XMLSheetImplT<char, excelNormal_tag>;
template class XMLSheetImplT<wchar_t, excelNormal_tag>;
template class XMLSheetImplT<char, excelStrict_tag>;
template class XMLSheetImplT<wchar_t, excelStrict_tag>;
template class XMLBookImplT<char, excelNormal_tag>;
template class XMLBookImplT<wchar_t, excelNormal_tag>;
template class XMLBookImplT<char, excelStrict_tag>;
template class XMLBookImplT<wchar_t, excelStrict_tag>;

}  // namespace zelvar
