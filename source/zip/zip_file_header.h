// One entry of an archive: the fields of its central directory record, and the reading and
// writing of its local and central headers.
#pragma once
#include <cstdint>
#include <ctime>
#include <string>

namespace zelvar {

class CZipStorage;

class CZipFileHeader {
public:
    static constexpr uint32_t kLocalSignature = 0x04034B50;
    static constexpr uint32_t kCentralSignature = 0x02014B50;
    static constexpr unsigned kLocalSize = 30;
    static constexpr unsigned kCentralSize = 46;
    static constexpr uint32_t kDefaultAttributes = 0x81A40000;  // Unix regular file, mode 0644
    static constexpr int kStateUtf8Name = 4;
    static constexpr uint16_t kFlagEncrypted = 0x0001;
    static constexpr uint16_t kFlagDataDescriptor = 0x0008;
    static constexpr uint16_t kFlagUtf8 = 0x0800;

    // Parses the central record at p, of which avail bytes are in the directory; returns
    // the bytes it takes. Throws badZipFile when it runs past the directory.
    size_t ReadCentral(const unsigned char* p, size_t avail);
    // Writes the local header at the storage's position, which becomes the entry's offset;
    // CRC and sizes are patched later by PatchLocal.
    void WriteLocal(CZipStorage& storage);
    // Overwrites CRC and sizes of the local header already written, returning to the end.
    void PatchLocal(CZipStorage& storage);
    void WriteCentral(CZipStorage& storage) const;
    // Reads the local header, checks it against this central record and returns the archive
    // position of the entry's data.
    uint64_t ReadLocal(CZipStorage& storage) const;

    // Stores the UTF-8 name; a name ending in a slash marks a directory.
    void SetFileName(const std::string& utf8Name);
    // The name in UTF-8, decoded from the stored bytes as the entry's flags and system say.
    const std::string& GetFileName() const { return m_fileName; }
    void SetTime(time_t when);
    bool IsDirectory() const;
    bool NeedsZip64() const;

    uint8_t m_uVersionMadeBy = 46;
    uint8_t m_uSystemCompatibility = 3;
    uint16_t m_uVersionNeeded = 20;
    uint16_t m_uFlag = 0;
    uint16_t m_uMethod = 8;
    uint16_t m_uModTime = 0;
    uint16_t m_uModDate = 0;
    uint32_t m_uCrc32 = 0;
    uint64_t m_uComprSize = 0;
    uint64_t m_uUncomprSize = 0;
    uint32_t m_uDiskStart = 0;
    uint16_t m_uInternalAttr = 0;
    uint32_t m_uExternalAttr = kDefaultAttributes;
    uint64_t m_uOffset = 0;
    uint8_t m_uEncryptionMethod = 255;  // none
    int m_iState = 0;
    std::string m_storedName;  // the name's bytes as in the archive
    std::string m_comment;
    std::string m_centralExtra;

private:
    void DecodeName();
    void ReadExtra(const unsigned char* p, size_t size);

    std::string m_fileName;
};

}  // namespace zelvar
