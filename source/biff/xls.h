// The compound file around a binary workbook and the byte channel that records are read from and
// written to. Only the workbook stream is understood; every other stream of a loaded file is
// carried through a save byte for byte. A save always writes a complete new file in one pass.
#pragma once
#include <cstdint>
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
    void setStreamPtr(std::iostream* stream) { _stream = stream; }
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
    int read(char* data, int n);
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
    int write(const char* data, int n);
    int write(uint16_t id, uint16_t size);
    int write(uint16_t id, const char* data, int size);
    int writeInt16(uint16_t value) { return write(reinterpret_cast<const char*>(&value), 2); }
    int writeInt32(uint32_t value) { return write(reinterpret_cast<const char*>(&value), 4); }
    int writeDouble(double value) { return write(reinterpret_cast<const char*>(&value), 8); }
    int writeInt16(uint16_t value, uint16_t& left);
    int writeInt32(uint32_t value, uint16_t& left);
    // Position within the workbook stream being written.
    uint32_t writePos() const { return static_cast<uint32_t>(_out.size()); }
    // Overwrites bytes already written, for lengths and offsets known only later.
    void patch(uint32_t pos, const void* data, size_t n);
    void patchInt16(uint32_t pos, uint16_t value) { patch(pos, &value, 2); }
    void patchInt32(uint32_t pos, uint32_t value) { patch(pos, &value, 4); }
    // Writes the file: workbook stream, kept streams, mini FAT, DIFAT, FAT, directory, header.
    void close();
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
    int readChain(char* data, int n, bool mini);
    bool smallWorkbook() const;
    void readHeaderBytes(unsigned& bytesRead);
    int readFile(char* data, int n);
    unsigned appendTail(std::string& out, size_t size, char fill);

    std::iostream* _stream = nullptr;
    std::string _file;  // the loaded file's bytes
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

    std::string _out;  // the workbook stream being written
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
