// The archive engine: one archive opened read-only or created, whole entries added from
// memory or extracted into memory.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "zip/zip_central_dir.h"
#include "zip/zip_compressor.h"
#include "zip/zip_file.h"
#include "zip/zip_mem_file.h"
#include "zip/zip_storage.h"

namespace zelvar {

class CZipArchive {
public:
    enum OpenMode { zipOpenReadOnly = 3, zipCreate = 4 };

    CZipArchive() = default;
    ~CZipArchive();
    CZipArchive(const CZipArchive&) = delete;
    CZipArchive& operator=(const CZipArchive&) = delete;

    // Opens on a file the caller keeps; read-only mode reads the central directory at once.
    void Open(CZipAbstractFile& file, int mode);
    void Open(const std::string& path, int mode, uint64_t volumeSize = 0);
    // Writes the central directory of a created archive unless closing after a failure
    // (afterException != 0); a read-only archive just lets go of its file.
    void Close(int afterException = 0, bool updateTimeStamp = false);
    bool IsClosed() const { return !m_storage.IsOpen(); }

    // Adds the source's bytes from its start as one entry. Level -1 is zlib's default;
    // sources of 4 bytes or fewer are stored.
    bool AddNewFile(CZipMemFile& source, const std::string& utf8Name, int level = -1, int flags = 7,
                    unsigned bufferSize = 65536);
    // The same in steps, for data that come in pieces: a local header, the data pushed through
    // the compressor as they come, then the sizes and CRC patched into the header. One entry
    // at a time; the level is not lowered for small data here.
    void OpenNewFile(const std::string& utf8Name, int level = -1);
    void WriteNewFile(const char* data, unsigned size);
    void CloseNewFile();
    // Extracts the whole entry at the target's position; false for a method not handled.
    bool ExtractFile(unsigned index, CZipMemFile& target, bool rewind = true, unsigned bufferSize = 65536);

    unsigned GetCount() const { return static_cast<unsigned>(m_centralDir.m_headers.size()); }
    const CZipFileHeader* GetFileInfo(unsigned index) const;
    const std::string& GetGlobalComment() const { return m_centralDir.m_szComment; }

    uint16_t m_uCompressionMethod = 8;

private:
    CZipStorage m_storage;
    CZipCentralDir m_centralDir;
    CZipFile m_file;  // used when opened by path
    bool m_bOwnFile = false;
    CZipFileHeader m_newHeader;  // the entry being written
    std::unique_ptr<CZipCompressor> m_newCompressor;
    std::unique_ptr<CZipCompressor> m_spareDeflate;  // the last entry's, kept for the next
};

}  // namespace zelvar
