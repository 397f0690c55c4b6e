#include "biff/xls.h"

#include "biff/biff_record.h"

#include <algorithm>
#include <cstring>
#include <iomanip>
#include <istream>
#include <sstream>

#include "frame/little_endian.h"
#include "frame/text.h"
#include "frame/zverror.h"

namespace zelvar {

namespace {

const char kWriteError[] = "stream error, perhaps it's too small writing buffer";
const uint8_t kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};

uint32_t ceilDiv(uint64_t a, uint64_t b) { return static_cast<uint32_t>((a + b - 1) / b); }

bool isNamed(const DirEntry& entry, const wchar_t* name) { return sicmp(entry.nameText(), name); }

}  // namespace

// ---------------------------------------------------------------- header and directory entries

void XlsHeader::reset() {
    std::memset(this, 0, sizeof *this);
    std::memcpy(signature, kSignature, 8);
    minorVersion = 0x003E;
    majorVersion = 3;
    byteOrder = 0xFFFE;
    sectorShift = 9;
    miniSectorShift = 6;
    firstDirSector = kEndOfChain;
    miniStreamCutoff = 4096;
    firstMiniFatSector = kEndOfChain;
    firstDifatSector = kEndOfChain;
    for (uint32_t& w : difat) w = kFreeSect;
}

void XlsHeader::read(const uint8_t* p) {
    if (std::memcmp(p, kSignature, 8) != 0) throw zverror("invalid file format");
    std::memcpy(signature, p, 8);
    std::memcpy(clsid, p + 8, 16);
    minorVersion = le::get16(p + 24);
    majorVersion = le::get16(p + 26);
    byteOrder = le::get16(p + 28);
    sectorShift = le::get16(p + 30);
    miniSectorShift = le::get16(p + 32);
    std::memcpy(reserved, p + 34, 6);
    numDirSectors = le::get32(p + 40);
    numFatSectors = le::get32(p + 44);
    firstDirSector = le::get32(p + 48);
    transactionSignature = le::get32(p + 52);
    miniStreamCutoff = le::get32(p + 56);
    firstMiniFatSector = le::get32(p + 60);
    numMiniFatSectors = le::get32(p + 64);
    firstDifatSector = le::get32(p + 68);
    numDifatSectors = le::get32(p + 72);
    for (int i = 0; i < 109; ++i) difat[i] = le::get32(p + 76 + 4 * i);
}

void XlsHeader::write(std::string& out) const {
    out.append(reinterpret_cast<const char*>(signature), 8);
    out.append(reinterpret_cast<const char*>(clsid), 16);
    le::append16(out, minorVersion);
    le::append16(out, majorVersion);
    le::append16(out, byteOrder);
    le::append16(out, sectorShift);
    le::append16(out, miniSectorShift);
    out.append(reinterpret_cast<const char*>(reserved), 6);
    for (uint32_t v : {numDirSectors, numFatSectors, firstDirSector, transactionSignature, miniStreamCutoff,
                       firstMiniFatSector, numMiniFatSectors, firstDifatSector, numDifatSectors})
        le::append32(out, v);
    for (uint32_t w : difat) le::append32(out, w);
}

DirEntry::DirEntry(const wchar_t* newName, unsigned char newType, unsigned int newChildID) {
    std::memset(this, 0, sizeof *this);
    size_t n = std::wcslen(newName);
    if (n >= 32) throw zverror("DirEntry::DirEntry(): newName is too big (length must be less 32)");
    std::wmemcpy(name, newName, n);
    length = static_cast<uint16_t>(2 * n + 2);
    type = newType;
    color = 1;
    leftSiblingID = rightSiblingID = kFreeSect;
    childID = newChildID;
    startingSectorLocation = kEndOfChain;
}

void DirEntry::read(const uint8_t* p) {
    for (int i = 0; i < 32; ++i) name[i] = static_cast<wchar_t>(le::get16(p + 2 * i));
    length = le::get16(p + 64);
    type = p[66];
    color = p[67];
    leftSiblingID = le::get32(p + 68);
    rightSiblingID = le::get32(p + 72);
    childID = le::get32(p + 76);
    std::memcpy(clsid, p + 80, 16);
    state = le::get32(p + 96);
    creationTime = le::get64(p + 100);
    modifiedTime = le::get64(p + 108);
    startingSectorLocation = le::get32(p + 116);
    streamSize = le::get64(p + 120);
}

void DirEntry::write(std::string& out) const {
    for (int i = 0; i < 32; ++i) le::append16(out, static_cast<uint16_t>(name[i]));
    le::append16(out, length);
    out.push_back(static_cast<char>(type));
    out.push_back(static_cast<char>(color));
    le::append32(out, leftSiblingID);
    le::append32(out, rightSiblingID);
    le::append32(out, childID);
    out.append(reinterpret_cast<const char*>(clsid), 16);
    le::append32(out, state);
    le::append64(out, creationTime);
    le::append64(out, modifiedTime);
    le::append32(out, startingSectorLocation);
    le::append64(out, streamSize);
}

std::wstring DirEntry::nameText() const {
    size_t n = 0;
    while (n < 32 && name[n]) ++n;
    return std::wstring(name, n);
}

// ---------------------------------------------------------------- state

XlsStream::XlsStream() { reset(true); }

void XlsStream::reset(bool newBook) {
    _out.assign(kHeaderSize, '\0');
    _outBase = 0;
    _image = nullptr;
    endLoad();
    _eof = false;
    _header.reset();
    _sectorSize = 1u << _header.sectorShift;
    _miniSectorSize = 1u << _header.miniSectorShift;
    _difat.assign(109, kFreeSect);
    _stream = nullptr;
    if (newBook) {
        _dir.clear();
        _dir.emplace_back(L"Root Entry", 5, 1);
        _dir.emplace_back(L"Workbook", 2, kFreeSect);
        _workbook = 1;
        _kept.clear();
        _miniFat.clear();
        _fat.clear();
        return;
    }
    for (size_t i = 0; i < _dir.size(); ++i) {
        if (isNamed(_dir[i], L"Workbook")) {
            _workbook = i;
            return;
        }
    }
    throw zverror("Xls::reset(): workbook section is not found");
}

void XlsStream::calcFileSize() {
    if (_source || !_stream) {
        _fileSize = _sourceSize;
        return;
    }
    _stream->seekg(0, std::ios::end);
    std::streamoff end = _stream->tellg();
    _fileSize = end > 0 ? static_cast<uint64_t>(end) : 0;
    _stream->seekg(0, std::ios::beg);
}

uint32_t XlsStream::size() const {
    return _workbook < _dir.size() ? static_cast<uint32_t>(_dir[_workbook].streamSize) : 0;
}

bool XlsStream::smallWorkbook() const { return _workbook < _dir.size() && _dir[_workbook].streamSize < 4096; }

// ---------------------------------------------------------------- loading

const uint8_t* XlsStream::fileBytes(uint64_t offset, size_t n) {
    if (offset > _fileSize || n > _fileSize - offset) return nullptr;
    if (_source) return reinterpret_cast<const uint8_t*>(_source) + offset;
    if (offset >= _windowStart && offset + n <= _windowStart + _windowLength)
        return reinterpret_cast<const uint8_t*>(_window.data()) + (offset - _windowStart);
    if (!_stream) return nullptr;
    // Refill the window from the stream; the bytes served from the old one are no longer at hand.
    _fastLeft = 0;
    _windowLength = 0;
    uint64_t start = offset & ~static_cast<uint64_t>(4095);
    size_t length = static_cast<size_t>(std::min<uint64_t>(std::max<uint64_t>(kWindow, offset - start + n), _fileSize - start));
    if (_window.size() < length) _window.resize(length);
    _stream->clear();
    _stream->seekg(static_cast<std::streamoff>(start), std::ios::beg);
    _stream->read(_window.data(), static_cast<std::streamsize>(length));
    std::streamsize got = _stream->gcount();
    _windowStart = start;
    _windowLength = got > 0 ? static_cast<size_t>(got) : 0;
    if (offset + n > _windowStart + _windowLength) return nullptr;
    return reinterpret_cast<const uint8_t*>(_window.data()) + (offset - _windowStart);
}

// Forgets the loaded file's bytes: the book keeps what it read, and the kept streams their own.
void XlsStream::endLoad() {
    std::vector<char>().swap(_window);
    _windowStart = 0;
    _windowLength = 0;
    _source = nullptr;
    _sourceSize = 0;
    _fastPtr = nullptr;
    _fastLeft = 0;
}

uint32_t XlsStream::readWordAt(uint64_t offset, const char* corruptMessage) {
    const uint8_t* p = fileBytes(offset, 4);
    if (!p) throw zverror(corruptMessage);
    return le::get32(p);
}

void XlsStream::readHeader(unsigned& bytesRead) {
    // The file is read where it lies: in memory, or through a window on the stream.
    _fastLeft = 0;
    _windowLength = 0;
    const uint8_t* head = _fileSize >= 512 ? fileBytes(0, 512) : nullptr;
    if (!head) throw zverror("readHeader: file is corrupt (size < 512 bytes)");
    _header.read(head);
    bytesRead += 512;
    if (_header.sectorShift < 7 || _header.sectorShift > 16 || _header.miniSectorShift < 1 ||
        _header.miniSectorShift > _header.sectorShift)
        throw zverror("invalid file format");
    _sectorSize = 1u << _header.sectorShift;
    _miniSectorSize = 1u << _header.miniSectorShift;

    loadDifat();
    loadFat();
    loadMiniFat();
    loadDir();
    bytesRead = static_cast<unsigned>(std::min<uint64_t>(_fileSize, 0xFFFFFFFFu));

    _workbook = _dir.size();
    for (size_t i = 0; i < _dir.size() && _workbook == _dir.size(); ++i)
        if (isNamed(_dir[i], L"Workbook")) _workbook = i;
    for (size_t i = 0; i < _dir.size() && _workbook == _dir.size(); ++i)
        if (isNamed(_dir[i], L"Book")) _workbook = i;
    if (_workbook == _dir.size()) throw zverror("Xls::read(): workbook section is not found");

    _rootChain.clear();
    if (!_dir.empty()) {
        for (uint32_t sector = _dir[0].startingSectorLocation;
             sector < _fat.size() && _rootChain.size() <= _fat.size(); sector = _fat[sector])
            _rootChain.push_back(sector);
    }
    _sector = _dir[_workbook].startingSectorLocation;
    if (_sector == kEndOfChain) throw zverror("Xls::read(): workbook stream is empty");
    if (smallWorkbook()) {
        goMiniSector(_sector);
    } else {
        // A damaged file may mark the first sector as free or as a FAT sector: move on to data.
        while (_sector < _fat.size() &&
               (_fat[_sector] == kFatSect || _fat[_sector] == kFreeSect || _fat[_sector] == kEndOfChain))
            ++_sector;
        goSector(_sector);
    }
    _offsetInSector = 0;
    _streamPos = 0;
    _sectorsFollowed = 0;
    _eof = false;
}

void XlsStream::loadDifat() {
    const uint32_t words = _sectorSize / 4;
    const uint32_t declared = _header.numDifatSectors;
    if (static_cast<uint64_t>(declared) * _sectorSize > _fileSize) throw zverror("loadDifat: file is corrupt [1]");
    _difat.assign(109 + static_cast<size_t>(words - 1) * declared, kFreeSect);
    std::copy(_header.difat, _header.difat + 109, _difat.begin());
    uint32_t sector = _header.firstDifatSector;
    uint32_t count = 0;
    if (sector != kEndOfChain && sector != kFreeSect) {
        size_t at = 109;
        uint64_t counter = 512;
        while (true) {
            if (count >= declared)
                throw zverror("Xls::loadDifat(): difat chain contains more sectors than _header.numDifatSectors (" +
                              std::to_string(declared) + ")");
            uint64_t base = static_cast<uint64_t>(sector + 1ull) * _sectorSize;
            for (uint32_t i = 0; i + 1 < words; ++i) {
                counter += 4;
                if (counter > _fileSize) throw zverror("loadDifat: file is corrupt [1]");
                _difat[at++] = readWordAt(base + 4ull * i, "loadDifat: file is corrupt [1]");
            }
            counter += 4;
            if (counter > _fileSize) throw zverror("loadDifat: file is corrupt [2]");
            uint32_t link = readWordAt(base + 4ull * (words - 1), "loadDifat: file is corrupt [2]");
            ++count;
            if (link == kEndOfChain || link == kFreeSect) break;
            sector = link;
        }
    }
    if (count != declared)
        throw zverror("Xls::loadDifat(): difat chain sectors (" + std::to_string(count) +
                      ") not equal _header.numDifatSectors (" + std::to_string(declared) + ")");
}

void XlsStream::loadFat() {
    const uint32_t words = _sectorSize / 4;
    uint32_t notFree = 0;
    for (uint32_t w : _difat)
        if (w != kFreeSect) ++notFree;
    if (notFree != _header.numFatSectors)
        throw zverror("Xls::loadFat(): extract fat sectors (" + std::to_string(notFree) +
                      ") not equal _header.numFatSectors (" + std::to_string(_header.numFatSectors) + ")");
    if (static_cast<uint64_t>(notFree) * _sectorSize > _fileSize) throw zverror("loadFat: file is corrupt");
    _fat.assign(static_cast<size_t>(notFree) * words, kFreeSect);
    size_t at = 0;
    for (uint32_t w : _difat) {
        if (w == kFreeSect) continue;
        uint64_t base = static_cast<uint64_t>(w + 1ull) * _sectorSize;
        const uint8_t* p = fileBytes(base, _sectorSize);
        if (!p) throw zverror("loadFat: file is corrupt");
        for (uint32_t i = 0; i < words; ++i) _fat[at++] = le::get32(p + 4 * i);
    }
}

void XlsStream::loadMiniFat() {
    _miniFat.clear();
    if (_header.firstMiniFatSector == 0) return;
    const uint32_t words = _sectorSize / 4;
    if (static_cast<uint64_t>(_header.numMiniFatSectors) * _sectorSize > _fileSize)
        throw zverror("loadMiniFat: file is corrupt");
    _miniFat.assign(static_cast<size_t>(words) * _header.numMiniFatSectors, kFreeSect);
    uint32_t sector = _header.firstMiniFatSector;
    if (_miniFat.empty() || sector == kEndOfChain) return;
    size_t at = 0;
    while (true) {
        if (at >= _miniFat.size()) throw zverror("error in loading minifat");
        uint64_t base = static_cast<uint64_t>(sector + 1ull) * _sectorSize;
        const uint8_t* p = fileBytes(base, _sectorSize);
        if (!p) throw zverror("loadMiniFat: file is corrupt");
        for (uint32_t i = 0; i < words; ++i) _miniFat[at++] = le::get32(p + 4 * i);
        if (sector >= _fat.size()) throw zverror("loadMiniFat: error in fat");
        uint32_t next = _fat[sector];
        if (next == sector) throw zverror("loadMiniFat: error in fat");
        if (next == kEndOfChain) break;
        sector = next;
    }
}

void XlsStream::loadDir() {
    _dir.clear();
    const uint32_t first = _header.firstDirSector;
    if (first == kEndOfChain) return;
    uint64_t count = 0;
    for (uint32_t sector = first; sector != kEndOfChain;) {
        if (sector >= _fat.size())
            throw zverror("Xls::loadDir(): sector #" + std::to_string(sector) + " is not found in _fat");
        uint32_t next = _fat[sector];
        if (next == sector) throw zverror("loadDir: error in fat [1]");
        ++count;
        if (count * _sectorSize > _fileSize) throw zverror("loadDir: file is corrupt [1]");
        sector = next;
    }
    const uint32_t perSector = _sectorSize / 128;
    _dir.resize(static_cast<size_t>(count) * perSector);
    size_t index = 0;
    for (uint32_t sector = first; sector != kEndOfChain;) {
        uint64_t base = static_cast<uint64_t>(sector + 1ull) * _sectorSize;
        for (uint32_t i = 0; i < perSector; ++i) {
            if (index >= _dir.size()) throw zverror("Xls::loadDir(): unexpected DirEntry found");
            uint64_t at = base + 128ull * i;
            const uint8_t* p = fileBytes(at, 128);
            if (!p) throw zverror("loadDir: file is corrupt [2]");
            _dir[index++].read(p);
        }
        uint32_t next = _fat[sector];
        if (next == sector) throw zverror("loadDir: error in fat [2]");
        sector = next;
    }
}

void XlsStream::goSector(uint32_t sector) {
    _fastLeft = 0;
    _sector = sector;
    _readPos = static_cast<uint64_t>(sector + 1ull) * _sectorSize;
}

// Mini sectors are found through the root entry's chain: writers do fragment the mini stream.
void XlsStream::goMiniSector(uint32_t sector) {
    _fastLeft = 0;
    _sector = sector;
    uint64_t offset = static_cast<uint64_t>(sector) * _miniSectorSize;
    uint64_t index = offset / _sectorSize;
    if (index >= _rootChain.size()) {
        _readPos = _fileSize;
        return;
    }
    _readPos = static_cast<uint64_t>(_rootChain[index] + 1ull) * _sectorSize + offset % _sectorSize;
}

int XlsStream::readSlow(char* data, int n) {
    if (n <= 0) return 0;
    int got = readChain(data, n, smallWorkbook());
    _streamPos += static_cast<unsigned>(got);
    return got;
}

// Reads across sectors: a regular stream follows the FAT, a small one the mini FAT. The end of
// the chain (or anything that is not a sector number, or a cycle) ends the stream.
int XlsStream::readChain(char* data, int n, bool mini) {
    const std::vector<uint32_t>& table = mini ? _miniFat : _fat;
    const uint32_t sectorSize = mini ? _miniSectorSize : _sectorSize;
    int total = 0;
    while (n > 0 && !_eof) {
        uint32_t room = sectorSize - _offsetInSector;
        if (room == 0) {
            if (_sector >= table.size() || table[_sector] >= kDifSect || ++_sectorsFollowed > table.size()) {
                _eof = true;
                break;
            }
            if (mini)
                goMiniSector(table[_sector]);
            else
                goSector(table[_sector]);
            _offsetInSector = 0;
            continue;
        }
        if (_fastLeft == 0) {
            // The rest of this sector, as far as the file holds it.
            uint32_t avail = _readPos < _fileSize ? static_cast<uint32_t>(std::min<uint64_t>(room, _fileSize - _readPos)) : 0;
            const uint8_t* p = avail ? fileBytes(_readPos, avail) : nullptr;
            if (!p) {
                _eof = true;
                break;
            }
            _fastPtr = reinterpret_cast<const char*>(p);
            _fastLeft = avail;
        }
        uint32_t take = std::min<uint32_t>(_fastLeft, static_cast<uint32_t>(n));
        std::memcpy(data + total, _fastPtr, take);
        _fastPtr += take;
        _fastLeft -= take;
        _readPos += take;
        _offsetInSector += take;
        total += static_cast<int>(take);
        n -= static_cast<int>(take);
    }
    return total;
}

uint16_t XlsStream::peekInt16() {
    setCheckPoint(0);
    uint16_t value = 0;
    readInt16(&value);
    restoreCheckPoint();
    return value;
}

void XlsStream::setCheckPoint(uint16_t value) {
    _checkPoint.readPos = _readPos;
    _checkPoint.sector = _sector;
    _checkPoint.offsetInSector = _offsetInSector;
    _checkPoint.sectorsFollowed = _sectorsFollowed;
    _checkPoint.value = value;
}

uint16_t XlsStream::restoreCheckPoint() {
    _fastLeft = 0;
    _readPos = _checkPoint.readPos;
    _sector = _checkPoint.sector;
    _offsetInSector = _checkPoint.offsetInSector;
    _sectorsFollowed = _checkPoint.sectorsFollowed;
    return _checkPoint.value;
}

void XlsStream::checkContinue(uint16_t& left) {
    if (left != 0) return;
    uint16_t id = 0, size = 0;
    readInt16(&id);
    readInt16(&size);
    left = size;
}

namespace {
// Reads n bytes that may run on into CONTINUE records.
int readContinued(XlsStream& xls, char* data, int n, uint16_t& left, const char* message) {
    int total = 0;
    while (n > 0) {
        if (left == 0) {
            uint16_t id = 0, size = 0;
            if (xls.readInt16(&id) < 2 || id != rt::Continue) throw zverror(message);
            xls.readInt16(&size);
            left = size;
            if (left == 0) continue;
        }
        int take = std::min<int>(n, left);
        int got = xls.read(data + total, take);
        total += got;
        n -= got;
        left = static_cast<uint16_t>(left - got);
        if (got < take) break;
    }
    return total;
}
}  // namespace

int XlsStream::readInt16(uint16_t* value, uint16_t& left) {
    return readContinued(*this, reinterpret_cast<char*>(value), 2, left, "readInt16: CONTINUE record not found");
}

int XlsStream::readInt32(uint32_t* value, uint16_t& left) {
    return readContinued(*this, reinterpret_cast<char*>(value), 4, left, "readInt32: CONTINUE record not found");
}

int XlsStream::readWithContinueRecords(char* data, int n, uint16_t& left) {
    if (n < 1) return 0;
    return readContinued(*this, data, n, left, "readWithContinueRecords: CONTINUE record not found");
}

void XlsStream::readSections() {
    _kept.clear();
    for (size_t i = 0; i < _dir.size(); ++i) {
        const DirEntry& entry = _dir[i];
        if (i == _workbook || entry.startingSectorLocation == kEndOfChain) continue;
        bool keep = entry.streamSize >= _header.miniStreamCutoff ||
                    (entry.streamSize != 0 && (isNamed(entry, L"Root Entry") || entry.type == 5));
        if (!keep) continue;
        // Kept streams live in regular sectors: follow their own FAT chain. The root entry holds
        // the mini stream whatever a writer named it.
        uint64_t want = std::min<uint64_t>(entry.streamSize & 0xFFFFFFFFu, _fileSize);
        std::string bytes;
        bytes.reserve(static_cast<size_t>(want));
        uint32_t sector = entry.startingSectorLocation;
        uint64_t steps = 0;
        while (bytes.size() < want && sector < _fat.size() && steps++ <= _fat.size()) {
            uint64_t base = static_cast<uint64_t>(sector + 1ull) * _sectorSize;
            if (base >= _fileSize) break;
            size_t take = static_cast<size_t>(std::min<uint64_t>({want - bytes.size(), _sectorSize, _fileSize - base}));
            const uint8_t* p = fileBytes(base, take);
            if (!p) break;
            bytes.append(reinterpret_cast<const char*>(p), take);
            sector = _fat[sector];
        }
        _kept.emplace(i, std::move(bytes));
    }
    endLoad();
}

// ---------------------------------------------------------------- saving

int XlsStream::write(uint16_t id, uint16_t size) {
    writeInt16(id);
    writeInt16(size);
    return 4;
}

int XlsStream::write(uint16_t id, const char* data, int size) {
    write(id, static_cast<uint16_t>(size));
    if (size > 0) write(data, size);
    return 4 + (size > 0 ? size : 0);
}

int XlsStream::writeInt16(uint16_t value, uint16_t& left) {
    for (int i = 0; i < 2; ++i) {
        if (left == 0) writeContinue(*this, left);
        char byte = static_cast<char>(value >> (8 * i));
        write(&byte, 1);
        --left;
    }
    return 2;
}

int XlsStream::writeInt32(uint32_t value, uint16_t& left) {
    for (int i = 0; i < 4; ++i) {
        if (left == 0) writeContinue(*this, left);
        char byte = static_cast<char>(value >> (8 * i));
        write(&byte, 1);
        --left;
    }
    return 4;
}

void XlsStream::patch(uint32_t pos, const void* data, size_t n) {
    uint64_t at = static_cast<uint64_t>(pos) + kHeaderSize;
    if (at + n > _outBase + _out.size()) throw zverror(kWriteError);
    const char* bytes = static_cast<const char*>(data);
    // What a stream has taken already is patched in the stream.
    size_t flushed = at < _outBase ? static_cast<size_t>(std::min<uint64_t>(n, _outBase - at)) : 0;
    if (flushed) {
        if (!_stream) throw zverror(kWriteError);
        _stream->seekp(static_cast<std::streamoff>(at), std::ios::beg);
        _stream->write(bytes, static_cast<std::streamsize>(flushed));
        _stream->seekp(static_cast<std::streamoff>(_outBase), std::ios::beg);
        if (!*_stream) throw zverror(kWriteError);
    }
    if (n > flushed) std::memcpy(&_out[static_cast<size_t>(at + flushed - _outBase)], bytes + flushed, n - flushed);
}

// Hands all but the last `keep` bytes to the stream.
void XlsStream::flushOut(size_t keep) {
    if (!_stream || _out.size() <= keep) return;
    size_t n = _out.size() - keep;
    _stream->write(_out.data(), static_cast<std::streamsize>(n));
    if (!*_stream) throw zverror(kWriteError);
    _out.erase(0, n);
    _outBase += n;
}

unsigned XlsStream::appendTail(size_t size, char fill) {
    size_t rest = size % _sectorSize;
    if (rest) {
        std::string pad(_sectorSize - rest, fill);
        append(pad.data(), pad.size());
    }
    return ceilDiv(size, _sectorSize);
}

void XlsStream::close() {
    if (!_stream && !_image) throw zverror(kWriteError);
    const uint32_t wordsPerSector = _sectorSize / 4;
    uint32_t d = 0;
    if (written()) {
        // The workbook never goes to the mini stream: it is padded to the cutoff.
        if (written() < 4096) {
            std::string pad(static_cast<size_t>(4096 - written()), '\0');
            append(pad.data(), pad.size());
        }
        DirEntry& wb = _dir.at(_workbook);
        wb.startingSectorLocation = 0;
        wb.streamSize = written();
        d = appendTail(static_cast<size_t>(written()), 0);
    }
    for (auto& kept : _kept) {
        DirEntry& entry = _dir.at(kept.first);
        entry.startingSectorLocation = d;
        entry.streamSize = kept.second.size();
        append(kept.second.data(), kept.second.size());
        d += appendTail(kept.second.size(), 0);
    }
    std::string file;
    if (!_miniFat.empty()) {
        _header.firstMiniFatSector = d;
        for (uint32_t w : _miniFat) le::append32(file, w);
        append(file.data(), file.size());
        file.clear();
        uint32_t n = appendTail(_miniFat.size() * 4, 0);
        _header.numMiniFatSectors = n;
        d += n;
    }
    const uint32_t r = ceilDiv(_dir.size(), _sectorSize / 128);
    const uint32_t a = ceilDiv(static_cast<uint64_t>(d) + r, wordsPerSector);
    const uint32_t b = ceilDiv(a, wordsPerSector);
    uint32_t f = a + b + ceilDiv(b, wordsPerSector);
    if (b > 100) f += 3;
    const uint32_t difatWords = wordsPerSector - 1;
    const uint32_t x = f > 109 ? ceilDiv(f - 109, difatWords) : 0;
    _header.numFatSectors = f;
    _header.numDifatSectors = x;

    _fat.assign(static_cast<size_t>(f) * wordsPerSector, kFreeSect);
    size_t at = 0;
    for (uint32_t i = 0; i < d; ++i) _fat[at++] = i + 1 < d ? i + 1 : kEndOfChain;
    for (uint32_t i = 0; i < x; ++i) _fat[at++] = kDifSect;
    for (uint32_t i = 0; i < f; ++i) _fat[at++] = kFatSect;
    const uint32_t firstDir = d + x + f;
    for (uint32_t i = 0; i < r; ++i) _fat[at++] = i + 1 < r ? firstDir + i + 1 : kEndOfChain;
    // Each stream after the first ends the chain of the one before it.
    if (!_miniFat.empty() && _header.firstMiniFatSector > 0) {
        if (_header.firstMiniFatSector > _fat.size()) throw zverror("miniFatSectorLocation is out of range");
        _fat[_header.firstMiniFatSector - 1] = kEndOfChain;
    }
    for (auto& kept : _kept) {
        uint32_t start = _dir[kept.first].startingSectorLocation;
        if (start == 0) continue;
        if (start > _fat.size()) throw zverror("startingSectorLocation is out of range");
        _fat[start - 1] = kEndOfChain;
    }

    const uint32_t firstFat = d + x;
    for (uint32_t i = 0; i < 109; ++i) _header.difat[i] = i < f ? firstFat + i : kFreeSect;
    _header.firstDifatSector = x ? d : kEndOfChain;
    if (x) {
        _difat.assign(static_cast<size_t>(x) * difatWords, kFreeSect);
        for (uint32_t i = 109; i < f; ++i) _difat[i - 109] = firstFat + i;
        for (uint32_t s = 0; s < x; ++s) {
            for (uint32_t i = 0; i < difatWords; ++i) le::append32(file, _difat[s * difatWords + i]);
            le::append32(file, s + 1 < x ? d + s + 1 : kEndOfChain);
        }
    }
    for (uint32_t w : _fat) le::append32(file, w);
    _header.firstDirSector = firstDir;
    for (const DirEntry& entry : _dir) entry.write(file);
    append(file.data(), file.size());
    appendTail(_dir.size() * 128, 0);

    std::string head;
    _header.write(head);
    _fileSize = _outBase + _out.size();
    std::string rest(kHeaderSize, '\0');
    rest.swap(_out);  // the buffer leaves with the file; the next save starts afresh
    if (_outBase == 0) {
        std::memcpy(&rest[0], head.data(), kHeaderSize);
        if (!_stream) {
            _image->swap(rest);
            return;
        }
    }
    if (!_stream) throw zverror(kWriteError);
    _stream->write(rest.data(), static_cast<std::streamsize>(rest.size()));
    if (_outBase != 0) {
        // The header's place went out with the first bytes: write it there now.
        _stream->seekp(0, std::ios::beg);
        _stream->write(head.data(), static_cast<std::streamsize>(kHeaderSize));
        _stream->seekp(static_cast<std::streamoff>(_fileSize), std::ios::beg);
    }
    _outBase = 0;
    _stream->flush();
    if (!*_stream) throw zverror(kWriteError);
}

void XlsStream::flush() {
    if (_stream) _stream->flush();
}

std::wstring XlsStream::dump() const {
    std::wostringstream out;
    auto words = [&](const wchar_t* title, const std::vector<uint32_t>& v) {
        out << title << L"\n";
        for (size_t i = 0; i < v.size(); ++i) {
            out << std::hex << std::setw(9) << v[i] << std::dec;
            if (i % 8 == 7) out << L"\n";
        }
        out << L"\n";
    };
    words(L"[Difat]", _difat);
    words(L"[Fat]", _fat);
    out << L"[Dir]\n";
    for (const DirEntry& e : _dir) {
        out << L"[DirEntry]\nname: " << e.nameText() << L"\nlength: " << e.length << L"\ntype: " << e.type
            << L"\ncolor: " << e.color << L"\nleftSiblingID: " << e.leftSiblingID << L"\nrightSiblingID: "
            << e.rightSiblingID << L"\nchildID: " << e.childID << L"\nclsid:";
        for (uint8_t c : e.clsid) out << L" " << c;
        out << L"\nstate: " << e.state << L"\ncreationTime: " << e.creationTime << L"\nmodifiedTime: "
            << e.modifiedTime << L"\nstartingSectorLocation: " << e.startingSectorLocation
            << L"\nstreamSize: " << e.streamSize << L"\n";
    }
    return out.str();
}

// Out of line, so that the field readers stay small enough to inline.
void RecordReader::fail() const { throw zverror(std::string(_name) + " size is incorrect"); }

void writeContinue(XlsStream& xls, uint16_t& left) {
    uint32_t sizeField = xls.writePos() + left - 8226;
    xls.patchInt16(sizeField, static_cast<uint16_t>(8224 - left));
    xls.write(rt::Continue, 8224);
    left = 8224;
}

void finishContinue(XlsStream& xls, uint16_t& left) {
    uint32_t sizeField = xls.writePos() + left - 8226;
    uint16_t size = static_cast<uint16_t>(8224 - left);
    xls.patchInt16(sizeField, size);
    left = size;
}

}  // namespace zelvar
