// The compound file around a binary workbook and the byte channel that records are read from and
// written to. Only the workbook stream is understood; every other stream of a loaded file is
// carried through a save byte for byte. A save always writes a complete new file in one pass.
#pragma once
#include <cstdint>
#include <cstring>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace zelvar {

constexpr uint32_t kFreeSect = 0xFFFFFFFF;
constexpr uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr uint32_t kFatSect = 0xFFFFFFFD;
constexpr uint32_t kDifSect = 0xFFFFFFFC;

struct XlsHeader {
    uint8_t signature[8];
    uint8_t clsid[16];
    uint16_t minorVersion, majorVersion, byteOrder, sectorShift, miniSectorShift;
    uint8_t reserved[6];
    uint32_t numDirSectors, numFatSectors, firstDirSector, transactionSignature, miniStreamCutoff,
        firstMiniFatSector, numMiniFatSectors, firstDifatSector, numDifatSectors;
    uint32_t difat[109];

    void reset();
    // Reads the 512 bytes; only the signature is checked ("invalid file format").
    void read(const uint8_t* data);
    void write(std::string& out) const;
};

struct DirEntry {
    wchar_t name[32];
    uint16_t length;
    uint8_t type, color;
    uint32_t leftSiblingID, rightSiblingID, childID;
    uint8_t clsid[16];
    uint32_t state;
    uint64_t creationTime, modifiedTime;
    uint32_t startingSectorLocation;
    uint64_t streamSize;

    DirEntry() = default;
    DirEntry(const wchar_t* name, unsigned char type, unsigned int childID);
    void read(const uint8_t* data);
    void write(std::string& out) const;
    std::wstring nameText() const;
};

class XlsStream {
public:
    XlsStream();
    explicit XlsStream(const char*, int) : XlsStream() {}

    // newBook: an empty file with a root and a "Workbook" entry; otherwise the directory and the
    // kept streams of the loaded file stay for the next save.
    void reset(bool newBook);
    // The stream that a load reads from or a save writes to. A save streams the workbook out as
    // it goes when the stream is attached before the records are written; otherwise the bytes
    // wait in memory until close.
    void setStreamPtr(std::iostream* stream) { _stream = stream; }
    // A load straight from bytes in memory, which must stay valid until the load returns.
    void setSource(const char* data, uint64_t size) {
        _source = data;
        _sourceSize = size;
    }
    std::iostream* stream() const { return _stream; }
    explicit operator bool() const { return _stream != nullptr; }
    void calcFileSize();
    uint64_t fileSize() const { return _fileSize; }
    // Size of the workbook stream as its directory entry says.
    uint32_t size() const;
    bool eof() const { return _eof; }

    // ---- loading ----
    void readHeader(unsigned& bytesRead);
    void readSections();
    // Most reads lie inside the current sector and are served by one copy.
    int read(char* data, int n) {
        if (n > 0 && static_cast<uint32_t>(n) <= _fastLeft) {
            std::memcpy(data, _fastPtr, static_cast<size_t>(n));
            _fastPtr += n;
            _fastLeft -= static_cast<uint32_t>(n);
            _readPos += static_cast<uint32_t>(n);
            _offsetInSector += static_cast<uint32_t>(n);
            _streamPos += static_cast<uint32_t>(n);
            return n;
        }
        return readSlow(data, n);
    }
    int readInt16(uint16_t* value) { return read(reinterpret_cast<char*>(value), 2); }
    int readInt32(uint32_t* value) { return read(reinterpret_cast<char*>(value), 4); }
    int readDouble(double* value) { return read(reinterpret_cast<char*>(value), 8); }
    uint16_t peekInt16();
    void setCheckPoint(uint16_t value);
    uint16_t restoreCheckPoint();
    // Reads a record header into left when left is 0; the id is not tested.
    void checkContinue(uint16_t& left);
    // Byte-wise reads that continue into the next CONTINUE record when the current piece ends.
    int readInt16(uint16_t* value, uint16_t& left);
    int readInt32(uint32_t* value, uint16_t& left);
    int readWithContinueRecords(char* data, int n, uint16_t& left);
    // Bytes of the workbook stream consumed so far.
    uint64_t bytesRead() const { return _streamPos; }

    // ---- saving ----
    void writeHeader() {}
    int write(const char* data, int n) {
        if (n <= 0) return 0;
        append(data, static_cast<size_t>(n));
        return n;
    }
    int write(uint16_t id, uint16_t size);
    int write(uint16_t id, const char* data, int size);
    int writeInt16(uint16_t value) { return write(reinterpret_cast<const char*>(&value), 2); }
    int writeInt32(uint32_t value) { return write(reinterpret_cast<const char*>(&value), 4); }
    int writeDouble(double value) { return write(reinterpret_cast<const char*>(&value), 8); }
    int writeInt16(uint16_t value, uint16_t& left);
    int writeInt32(uint32_t value, uint16_t& left);
    // Position within the workbook stream being written.
    uint32_t writePos() const { return static_cast<uint32_t>(_outBase + _out.size() - kHeaderSize); }
    // Overwrites bytes already written, for lengths and offsets known only later.
    void patch(uint32_t pos, const void* data, size_t n);
    void patchInt16(uint32_t pos, uint16_t value) { patch(pos, &value, 2); }
    void patchInt32(uint32_t pos, uint32_t value) { patch(pos, &value, 4); }
    // Writes the file: workbook stream, kept streams, mini FAT, DIFAT, FAT, directory, header.
    // Without a stream the file goes to the image target, if one is set.
    void close();
    // Where close leaves the whole file when no stream is attached; reset forgets it.
    void setImageTarget(std::string* image) { _image = image; }
    void flush();

    std::wstring dump() const;

    // Inspection, for tests and diagnostics.
    const XlsHeader& header() const { return _header; }
    const std::vector<DirEntry>& directory() const { return _dir; }
    const std::vector<uint32_t>& fat() const { return _fat; }
    // Kept streams by directory index.
    const std::map<size_t, std::string>& keptStreams() const { return _kept; }

private:
    void loadDifat();
    void loadFat();
    void loadMiniFat();
    void loadDir();
    uint32_t readWordAt(uint64_t offset, const char* corruptMessage);
    void goSector(uint32_t sector);
    void goMiniSector(uint32_t sector);
    int readSlow(char* data, int n);
    int readChain(char* data, int n, bool mini);
    bool smallWorkbook() const;
    // n bytes of the loaded file at offset, or null past its end. The pointer stays valid until
    // the next call: a file read through a stream is seen through a window.
    const uint8_t* fileBytes(uint64_t offset, size_t n);
    void endLoad();
    unsigned appendTail(size_t size, char fill);
    uint64_t written() const { return _outBase + _out.size() - kHeaderSize; }
    void append(const char* data, size_t n) {
        _out.append(data, n);
        if (_out.size() >= kFlushAt && _stream) flushOut(kKeepUnflushed);
    }
    void flushOut(size_t keep);

    static constexpr size_t kHeaderSize = 512;
    static constexpr size_t kFlushAt = 256u << 10;
    // Bytes kept back at a flush, so that the back-patching of a record's recent size fields
    // stays in memory.
    static constexpr size_t kKeepUnflushed = 32u << 10;
    static constexpr size_t kWindow = 256u << 10;

    std::iostream* _stream = nullptr;
    // The loaded file: a block in memory, or the stream seen through a window of kWindow bytes.
    const char* _source = nullptr;
    uint64_t _sourceSize = 0;
    std::vector<char> _window;
    uint64_t _windowStart = 0;
    size_t _windowLength = 0;
    // The bytes of the current sector from the read position on, while they are at hand.
    const char* _fastPtr = nullptr;
    uint32_t _fastLeft = 0;
    XlsHeader _header;
    uint32_t _sectorSize = 512;
    uint32_t _miniSectorSize = 64;
    std::vector<uint32_t> _difat;
    std::vector<uint32_t> _fat;
    std::vector<uint32_t> _miniFat;
    std::vector<DirEntry> _dir;
    std::vector<uint32_t> _rootChain;  // sectors of the mini stream, in order
    size_t _workbook = 1;
    std::map<size_t, std::string> _kept;

    // Read cursor: current sector, offset in it, file position.
    uint32_t _sector = 0;
    uint32_t _offsetInSector = 0;
    uint64_t _readPos = 0;
    uint64_t _streamPos = 0;
    uint64_t _sectorsFollowed = 0;
    bool _eof = false;
    struct CheckPoint {
        uint64_t readPos = 0, streamPos = 0;
        uint32_t sector = 0, offsetInSector = 0;
        uint64_t sectorsFollowed = 0;
        uint16_t value = 0;
        bool eof = false;
    } _checkPoint;

    // The file being written, from offset _outBase on: a place for the header, then the workbook
    // stream, then the rest. What a stream has taken already is gone from memory.
    std::string _out;
    uint64_t _outBase = 0;
    std::string* _image = nullptr;
    uint64_t _fileSize = 0;
};

// Both text widths share one container; the alias keeps the record classes' template form.
template <class T>
using Xls = XlsStream;

// Closes the current piece of a record that continues: patches its size and opens a CONTINUE.
void writeContinue(XlsStream& xls, uint16_t& left);
// Patches the size of the last piece.
void finishContinue(XlsStream& xls, uint16_t& left);

}  // namespace zelvar
