#include "zip/zip_central_dir.h"

#include <algorithm>

#include "frame/little_endian.h"
#include "zip/zip_exception.h"
#include "zip/zip_storage.h"

namespace zelvar {

using namespace le;

namespace {

constexpr uint32_t kAllOnes32 = 0xFFFFFFFF;
constexpr uint32_t kMaxComment = 0xFFFF;

[[noreturn]] void damaged() { CZipException::Throw(CZipException::badZipFile); }

}  // namespace

void CZipCentralDir::Read() {
    CZipStorage& storage = *m_pStorage;
    int64_t found = storage.LocateSignature(kEndSignature, kMaxComment + kEndSize);
    if (found < 0) CZipException::Throw(CZipException::cdirNotFound);
    uint64_t endPosition = static_cast<uint64_t>(found);
    uint64_t length = storage.GetLength();
    if (length - endPosition < kEndSize) CZipException::Throw(CZipException::cdirNotFound);

    unsigned char end[kEndSize];
    storage.GetFile()->Seek(found, CZipAbstractFile::begin);
    storage.Read(end, kEndSize);
    m_info.m_uEndOffset = endPosition;
    m_info.m_uThisDisk = get16(end + 4);
    m_info.m_uDiskWithCD = get16(end + 6);
    m_info.m_uEntriesOnDisk = get16(end + 8);
    m_info.m_uEntriesNumber = get16(end + 10);
    m_info.m_uSize = get32(end + 12);
    m_info.m_uOffset = get32(end + 16);
    // A comment cut short by the end of the file is taken as far as it goes.
    uint64_t commentSize = std::min<uint64_t>(get16(end + 20), length - endPosition - kEndSize);
    m_szComment.assign(static_cast<size_t>(commentSize), '\0');
    if (commentSize) storage.Read(&m_szComment[0], static_cast<unsigned>(commentSize));

    bool zip64 = m_info.m_uEntriesOnDisk >= 0xFFFF || m_info.m_uEntriesNumber >= 0xFFFF ||
                 m_info.m_uSize == kAllOnes32 || m_info.m_uOffset == kAllOnes32 ||
                 endPosition == m_info.m_uOffset + m_info.m_uSize + kZip64EndSize + kZip64LocatorSize;
    uint64_t directoryEnd = endPosition;  // where the central directory must have ended
    bool zip64Found = false;
    if (zip64 && endPosition >= kZip64LocatorSize) {
        unsigned char sig[4];
        storage.GetFile()->Seek(found - kZip64LocatorSize, CZipAbstractFile::begin);
        storage.Read(sig, 4);
        if (get32(sig) == kZip64LocatorSignature) {
            ReadZip64(endPosition - kZip64LocatorSize);
            directoryEnd = endPosition - kZip64LocatorSize - kZip64EndSize;
            zip64Found = true;
        }
    }

    if (m_info.m_uOffset + m_info.m_uSize < m_info.m_uOffset ||
        m_info.m_uOffset + m_info.m_uSize > directoryEnd)
        damaged();
    storage.m_uBytesBeforeZip = directoryEnd - (m_info.m_uOffset + m_info.m_uSize);
    if (zip64Found && storage.m_uBytesBeforeZip != 0)
        CZipException::Throw(CZipException::bytesBeforeInZip64);
    if (m_info.m_uSize > 0xFFFFFFFFu) damaged();
    if ((m_info.m_uEntriesNumber == 0) != (m_info.m_uSize == 0)) damaged();
    if (!(m_iIgnoredChecks & 0x100) && m_info.m_uEntriesNumber != m_info.m_uEntriesOnDisk) damaged();
    // Each entry takes at least 46 bytes, so a count the directory can't hold is damage; this
    // also bounds what is reserved below.
    if (m_info.m_uEntriesNumber > m_info.m_uSize / CZipFileHeader::kCentralSize) damaged();

    std::vector<unsigned char> directory(static_cast<size_t>(m_info.m_uSize));
    storage.Seek(m_info.m_uOffset);
    storage.Read(directory.data(), static_cast<unsigned>(directory.size()));
    m_headers.clear();
    m_headers.resize(static_cast<size_t>(m_info.m_uEntriesNumber));
    size_t at = 0;
    for (CZipFileHeader& header : m_headers)
        at += header.ReadCentral(directory.data() + at, directory.size() - at);

    std::sort(m_headers.begin(), m_headers.end(), [](const CZipFileHeader& a, const CZipFileHeader& b) {
        return a.m_uDiskStart != b.m_uDiskStart ? a.m_uDiskStart < b.m_uDiskStart : a.m_uOffset < b.m_uOffset;
    });
    // Entries may not share bytes: one whose data run into the next entry's header would let a
    // small archive inflate the same data again and again (an overlapping ZIP bomb). The local
    // header is at least kLocalSize bytes, so this bound never rejects entries that don't overlap.
    for (size_t i = 1; i < m_headers.size(); ++i) {
        const CZipFileHeader& before = m_headers[i - 1];
        if (m_headers[i].m_uDiskStart == before.m_uDiskStart &&
            before.m_uOffset + CZipFileHeader::kLocalSize + before.m_uComprSize > m_headers[i].m_uOffset)
            damaged();
    }
    m_info.m_bInArchive = true;
}

void CZipCentralDir::ReadZip64(uint64_t locatorPosition) {
    CZipStorage& storage = *m_pStorage;
    unsigned char locator[kZip64LocatorSize];
    storage.GetFile()->Seek(static_cast<int64_t>(locatorPosition), CZipAbstractFile::begin);
    storage.Read(locator, kZip64LocatorSize);
    uint64_t recordPosition = get64(locator + 8);
    // The record stands right before the locator; with bytes glued in front of the archive
    // the locator's offset would point elsewhere, which this format does not allow.
    if (locatorPosition < kZip64EndSize) CZipException::Throw(CZipException::noZip64);
    uint64_t expected = locatorPosition - kZip64EndSize;
    unsigned char record[kZip64EndSize];
    storage.GetFile()->Seek(static_cast<int64_t>(expected), CZipAbstractFile::begin);
    storage.Read(record, kZip64EndSize);
    if (get32(record) != kZip64EndSignature) CZipException::Throw(CZipException::noZip64);
    if (recordPosition != expected) CZipException::Throw(CZipException::bytesBeforeInZip64);
    m_info.m_uThisDisk = get32(record + 16);
    m_info.m_uDiskWithCD = get32(record + 20);
    m_info.m_uEntriesOnDisk = get64(record + 24);
    m_info.m_uEntriesNumber = get64(record + 32);
    m_info.m_uSize = get64(record + 40);
    m_info.m_uOffset = get64(record + 48);
}

void CZipCentralDir::Write() {
    CZipStorage& storage = *m_pStorage;
    uint64_t centralOffset = storage.GetPosition() - storage.m_uBytesBeforeZip;
    for (const CZipFileHeader& header : m_headers) header.WriteCentral(storage);
    uint64_t centralSize = storage.GetPosition() - storage.m_uBytesBeforeZip - centralOffset;
    WriteEnd(centralOffset, centralSize);
    storage.Flush();
}

void CZipCentralDir::WriteEnd(uint64_t centralOffset, uint64_t centralSize) {
    CZipStorage& storage = *m_pStorage;
    uint64_t count = m_headers.size();
    std::string out;
    if (count >= 0xFFFF || centralOffset >= kAllOnes32 || centralSize >= kAllOnes32) {
        uint64_t recordOffset = centralOffset + centralSize;
        append32(out, kZip64EndSignature);
        append64(out, kZip64EndSize - 12);  // size of the rest of the record
        append16(out, 45);                 // version made by
        append16(out, 45);                 // version needed
        append32(out, 0);                  // this disk
        append32(out, 0);                  // disk of the central directory
        append64(out, count);
        append64(out, count);
        append64(out, centralSize);
        append64(out, centralOffset);
        append32(out, kZip64LocatorSignature);
        append32(out, 0);  // disk of the Zip64 end record
        append64(out, recordOffset);
        append32(out, 1);  // number of disks
    }
    uint32_t shortCount = count >= 0xFFFF ? 0xFFFF : static_cast<uint32_t>(count);
    append32(out, kEndSignature);
    append16(out, 0);
    append16(out, 0);
    append16(out, shortCount);
    append16(out, shortCount);
    append32(out, centralSize >= kAllOnes32 ? kAllOnes32 : static_cast<uint32_t>(centralSize));
    append32(out, centralOffset >= kAllOnes32 ? kAllOnes32 : static_cast<uint32_t>(centralOffset));
    append16(out, 0);  // no archive comment
    storage.Write(out.data(), static_cast<unsigned>(out.size()));
}

}  // namespace zelvar
