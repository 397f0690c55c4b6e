// The archive's table of entries: read from the end record and the central directory of an
// existing archive, or collected while adding and written out at the close.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "zip/zip_file_header.h"

namespace zelvar {

class CZipStorage;

class CZipCentralDir {
public:
    static constexpr uint32_t kEndSignature = 0x06054B50;
    static constexpr uint32_t kZip64EndSignature = 0x06064B50;
    static constexpr uint32_t kZip64LocatorSignature = 0x07064B50;
    static constexpr unsigned kEndSize = 22;
    static constexpr unsigned kZip64EndSize = 56;
    static constexpr unsigned kZip64LocatorSize = 20;
    // Names are always stored as UTF-8 with flag bit 11.
    static constexpr int kUnicodeMode = 2;

    struct Info {
        uint64_t m_uEndOffset = 0;      // file position of the end record
        uint64_t m_uOffset = 0;         // archive position of the central directory
        uint64_t m_uSize = 0;           // its size in bytes
        uint64_t m_uEntriesOnDisk = 0;
        uint64_t m_uEntriesNumber = 0;
        uint32_t m_uThisDisk = 0;
        uint32_t m_uDiskWithCD = 0;
        bool m_bInArchive = false;
    };

    void Init(CZipStorage* storage) { m_pStorage = storage; m_headers.clear(); m_info = Info(); }
    // Reads the end record and all central entries, sorted into the order of the file.
    void Read();
    // Writes all entries in the order they were added, then the end records.
    void Write();

    std::vector<CZipFileHeader> m_headers;
    Info m_info;
    std::string m_szComment;
    // Checks left out when reading: the entries-on-disk count against the total.
    unsigned m_iIgnoredChecks = 0x300;

private:
    void ReadZip64(uint64_t endPosition);
    void WriteEnd(uint64_t centralOffset, uint64_t centralSize);

    CZipStorage* m_pStorage = nullptr;
};

}  // namespace zelvar
