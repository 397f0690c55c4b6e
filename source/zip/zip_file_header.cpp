#include "zip/zip_file_header.h"

#include <zlib.h>

#include "frame/little_endian.h"
#include "zip/zip_exception.h"
#include "zip/zip_storage.h"
#include "zip/zip_text.h"

namespace zelvar {

using namespace le;

namespace {

constexpr uint16_t kExtraZip64 = 0x0001;
constexpr uint16_t kExtraUnicodePath = 0x7075;
constexpr uint32_t kAllOnes32 = 0xFFFFFFFF;
constexpr unsigned kMaxField = 0xFFFF;

[[noreturn]] void damaged() { CZipException::Throw(CZipException::badZipFile); }

// The local header's Zip64 extra holds both sizes; returns false when there is none.
bool findLocalZip64(const std::string& extra, uint64_t* uncompressed, uint64_t* compressed) {
    const unsigned char* p = reinterpret_cast<const unsigned char*>(extra.data());
    size_t left = extra.size();
    while (left >= 4) {
        uint16_t id = get16(p), size = get16(p + 2);
        if (size > left - 4) return false;
        if (id == kExtraZip64 && size >= 16) {
            *uncompressed = get64(p + 4);
            *compressed = get64(p + 12);
            return true;
        }
        p += 4 + size;
        left -= 4 + size;
    }
    return false;
}

}  // namespace

void CZipFileHeader::SetFileName(const std::string& utf8Name) {
    if (utf8Name.size() > kMaxField) CZipException::Throw(CZipException::tooLongData);
    m_storedName = utf8Name;
    m_fileName = utf8Name;
    m_iState = kStateUtf8Name;
    m_uFlag |= kFlagUtf8;
}

bool CZipFileHeader::IsDirectory() const {
    return !m_fileName.empty() && (m_fileName.back() == '/' || m_fileName.back() == '\\');
}

bool CZipFileHeader::NeedsZip64() const {
    return m_uComprSize >= kAllOnes32 || m_uUncomprSize >= kAllOnes32 || m_uOffset >= kAllOnes32;
}

void CZipFileHeader::SetTime(time_t when) {
    struct tm parts;
    if (!localtime_r(&when, &parts)) {
        m_uModDate = 1 + 1 * 32;  // 1 January 1980
        m_uModTime = 0;
        return;
    }
    int year = parts.tm_year + 1900;
    year = year <= 1980 ? 0 : year - 1980;
    m_uModDate = static_cast<uint16_t>(parts.tm_mday + (parts.tm_mon + 1) * 32 + year * 512);
    m_uModTime = static_cast<uint16_t>((parts.tm_sec >> 1) + parts.tm_min * 32 + parts.tm_hour * 2048);
}

void CZipFileHeader::DecodeName() {
    if (m_uFlag & kFlagUtf8) {
        m_iState = kStateUtf8Name;
        m_fileName = m_storedName;
        return;
    }
    switch (m_uSystemCompatibility) {
        case 3:
        case 7:
        case 20:
            m_fileName = m_storedName;
            break;
        default:
            m_fileName = ziptext::cp437ToUtf8(m_storedName);
            break;
    }
}

void CZipFileHeader::ReadExtra(const unsigned char* p, size_t size) {
    while (size >= 4) {
        uint16_t id = get16(p);
        uint16_t length = get16(p + 2);
        if (length > size - 4) break;  // a torn last field is kept but not interpreted
        const unsigned char* data = p + 4;
        if (id == kExtraZip64) {
            // Only the fields that hold all ones are present, in this order.
            size_t at = 0;
            auto take64 = [&](uint64_t& field) {
                if (at + 8 > length) damaged();
                field = get64(data + at);
                at += 8;
            };
            if (m_uUncomprSize == kAllOnes32) take64(m_uUncomprSize);
            if (m_uComprSize == kAllOnes32) take64(m_uComprSize);
            if (m_uOffset == kAllOnes32) take64(m_uOffset);
            if (m_uDiskStart == 0xFFFF) {
                if (at + 4 > length) damaged();
                m_uDiskStart = get32(data + at);
            }
        } else if (id == kExtraUnicodePath && length >= 5 && data[0] == 1) {
            uLong crc = crc32(0, reinterpret_cast<const Bytef*>(m_storedName.data()),
                              static_cast<uInt>(m_storedName.size()));
            if (get32(data + 1) == crc) {
                m_fileName.assign(reinterpret_cast<const char*>(data + 5), length - 5);
                m_iState = kStateUtf8Name;
            }
        }
        p += 4 + length;
        size -= 4 + length;
    }
}

size_t CZipFileHeader::ReadCentral(const unsigned char* p, size_t avail) {
    if (avail < kCentralSize || get32(p) != kCentralSignature) damaged();
    m_uVersionMadeBy = p[4];
    m_uSystemCompatibility = p[5];
    m_uVersionNeeded = get16(p + 6);
    m_uFlag = get16(p + 8);
    m_uMethod = get16(p + 10);
    m_uModTime = get16(p + 12);
    m_uModDate = get16(p + 14);
    m_uCrc32 = get32(p + 16);
    m_uComprSize = get32(p + 20);
    m_uUncomprSize = get32(p + 24);
    size_t nameSize = get16(p + 28), extraSize = get16(p + 30), commentSize = get16(p + 32);
    m_uDiskStart = get16(p + 34);
    m_uInternalAttr = get16(p + 36);
    m_uExternalAttr = get32(p + 38);
    m_uOffset = get32(p + 42);
    size_t total = kCentralSize + nameSize + extraSize + commentSize;
    if (total > avail) damaged();
    const char* text = reinterpret_cast<const char*>(p + kCentralSize);
    m_storedName.assign(text, nameSize);
    m_centralExtra.assign(text + nameSize, extraSize);
    m_comment.assign(text + nameSize + extraSize, commentSize);
    m_uEncryptionMethod = (m_uFlag & kFlagEncrypted) ? 0 : 255;
    DecodeName();
    ReadExtra(p + kCentralSize + nameSize, extraSize);
    return total;
}

void CZipFileHeader::WriteLocal(CZipStorage& storage) {
    if (m_storedName.size() > kMaxField) CZipException::Throw(CZipException::tooLongData);
    m_uOffset = storage.GetPosition() - storage.m_uBytesBeforeZip;
    m_uVersionNeeded = IsDirectory() ? 10 : m_uOffset >= kAllOnes32 ? 45 : 20;
    unsigned char h[kLocalSize];
    put32(h, kLocalSignature);
    put16(h + 4, m_uVersionNeeded);
    put16(h + 6, m_uFlag);
    put16(h + 8, m_uMethod);
    put16(h + 10, m_uModTime);
    put16(h + 12, m_uModDate);
    put32(h + 14, 0);
    put32(h + 18, 0);
    put32(h + 22, 0);
    put16(h + 26, static_cast<uint32_t>(m_storedName.size()));
    put16(h + 28, 0);
    storage.Write(h, kLocalSize);
    storage.Write(m_storedName.data(), static_cast<unsigned>(m_storedName.size()));
}

void CZipFileHeader::PatchLocal(CZipStorage& storage) {
    // The local header has no room for 64-bit sizes, and entries come from 32-bit blocks.
    if (m_uComprSize >= kAllOnes32 || m_uUncomprSize >= kAllOnes32)
        CZipException::Throw(CZipException::tooBigSize);
    unsigned char fields[12];
    put32(fields, m_uCrc32);
    put32(fields + 4, static_cast<uint32_t>(m_uComprSize));
    put32(fields + 8, static_cast<uint32_t>(m_uUncomprSize));
    storage.Flush();
    CZipAbstractFile* file = storage.GetFile();
    uint64_t end = file->GetPosition();
    storage.Seek(m_uOffset + 14);
    file->Write(fields, sizeof fields);
    file->Seek(static_cast<int64_t>(end), CZipAbstractFile::begin);
}

void CZipFileHeader::WriteCentral(CZipStorage& storage) const {
    std::string extra;
    if (m_uOffset >= kAllOnes32) {
        append16(extra, kExtraZip64);
        append16(extra, 8);
        append64(extra, m_uOffset);
    }
    std::string record;
    record.reserve(kCentralSize + m_storedName.size() + extra.size());
    append32(record, kCentralSignature);
    record.push_back(static_cast<char>(m_uVersionMadeBy));
    record.push_back(static_cast<char>(m_uSystemCompatibility));
    append16(record, m_uVersionNeeded);
    append16(record, m_uFlag);
    append16(record, m_uMethod);
    append16(record, m_uModTime);
    append16(record, m_uModDate);
    append32(record, m_uCrc32);
    append32(record, m_uComprSize >= kAllOnes32 ? kAllOnes32 : static_cast<uint32_t>(m_uComprSize));
    append32(record, m_uUncomprSize >= kAllOnes32 ? kAllOnes32 : static_cast<uint32_t>(m_uUncomprSize));
    append16(record, static_cast<uint32_t>(m_storedName.size()));
    append16(record, static_cast<uint32_t>(extra.size()));
    append16(record, 0);  // comment
    append16(record, 0);  // disk start
    append16(record, m_uInternalAttr);
    append32(record, m_uExternalAttr);
    append32(record, m_uOffset >= kAllOnes32 ? kAllOnes32 : static_cast<uint32_t>(m_uOffset));
    record += m_storedName;
    record += extra;
    storage.Write(record.data(), static_cast<unsigned>(record.size()));
}

uint64_t CZipFileHeader::ReadLocal(CZipStorage& storage) const {
    uint64_t length = storage.GetLength();
    uint64_t start = m_uOffset + storage.m_uBytesBeforeZip;
    if (start < m_uOffset || start > length || length - start < kLocalSize) damaged();
    storage.Seek(m_uOffset);
    unsigned char h[kLocalSize];
    storage.Read(h, kLocalSize);
    if (get32(h) != kLocalSignature) damaged();
    uint16_t flag = get16(h + 6);
    if ((flag & 0xF) != (m_uFlag & 0xF) || get16(h + 8) != m_uMethod) damaged();
    unsigned nameSize = get16(h + 26), extraSize = get16(h + 28);
    uint64_t dataStart = m_uOffset + kLocalSize + nameSize + extraSize;
    if (!(flag & kFlagDataDescriptor)) {
        uint64_t uncompressed = get32(h + 22), compressed = get32(h + 18);
        if (uncompressed == kAllOnes32 || compressed == kAllOnes32) {
            if (start + kLocalSize + nameSize + extraSize > length) damaged();
            std::string extra(extraSize, '\0');
            storage.Seek(m_uOffset + kLocalSize + nameSize);
            storage.Read(&extra[0], extraSize);
            uint64_t big = 0, bigCompressed = 0;
            if (findLocalZip64(extra, &big, &bigCompressed)) {
                if (uncompressed == kAllOnes32) uncompressed = big;
                if (compressed == kAllOnes32) compressed = bigCompressed;
            }
        }
        if (get32(h + 14) != m_uCrc32 || uncompressed != m_uUncomprSize) damaged();
        if (compressed != 0 && compressed != m_uComprSize) damaged();
    }
    // The data must lie wholly inside the file.
    uint64_t dataFileStart = dataStart + storage.m_uBytesBeforeZip;
    if (dataFileStart > length || length - dataFileStart < m_uComprSize) damaged();
    return dataStart;
}

}  // namespace zelvar
