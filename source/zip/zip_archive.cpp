#include "zip/zip_archive.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <exception>

#include "zip/zip_compressor.h"
#include "zip/zip_exception.h"

namespace zelvar {

namespace {

// Deflate can't shrink data by more than about 1032 to 1; a stated size past that bound
// belongs to a damaged entry and must not decide how much memory is taken.
constexpr uint64_t kMaxDeflateRatio = 1032;

}  // namespace

CZipArchive::~CZipArchive() {
    try {
        Close(1);
    } catch (...) {
    }
}

void CZipArchive::Open(CZipAbstractFile& file, int mode) {
    if (!IsClosed()) CZipException::Throw(CZipException::internalError);
    bool readOnly = mode != zipCreate;
    m_storage.Open(&file, readOnly);
    m_centralDir.Init(&m_storage);
    if (!readOnly) return;
    try {
        m_centralDir.Read();
    } catch (...) {
        m_storage.Close();
        m_centralDir.Init(nullptr);
        throw;
    }
}

void CZipArchive::Open(const std::string& path, int mode, uint64_t) {
    if (!IsClosed()) CZipException::Throw(CZipException::internalError);
    m_file.Open(path, mode == zipCreate ? CZipFile::modeCreate : CZipFile::modeRead);
    m_bOwnFile = true;
    try {
        Open(m_file, mode);
    } catch (...) {
        m_bOwnFile = false;
        try {
            m_file.Close();
        } catch (...) {
        }
        throw;
    }
}

void CZipArchive::Close(int afterException, bool) {
    if (IsClosed()) return;
    // Whatever fails on the way, the archive ends up closed; the first failure is reported.
    std::exception_ptr failure;
    if (!m_storage.IsReadOnly() && afterException == 0) {
        try {
            m_centralDir.Write();
            m_storage.GetFile()->Flush();
        } catch (...) {
            failure = std::current_exception();
        }
    }
    m_storage.Close();
    if (m_bOwnFile) {
        m_bOwnFile = false;
        try {
            m_file.Close();
        } catch (...) {
            if (!failure && afterException == 0) failure = std::current_exception();
        }
    }
    if (failure) std::rethrow_exception(failure);
}

const CZipFileHeader* CZipArchive::GetFileInfo(unsigned index) const {
    if (index >= m_centralDir.m_headers.size()) return nullptr;
    return &m_centralDir.m_headers[index];
}

bool CZipArchive::AddNewFile(CZipMemFile& source, const std::string& utf8Name, int level, int,
                             unsigned bufferSize) {
    if (IsClosed() || m_storage.IsReadOnly()) return false;
    if (bufferSize == 0) bufferSize = 65536;
    const char* data = source.Data();
    unsigned size = static_cast<unsigned>(source.GetLength());
    OpenNewFile(utf8Name, size <= 4 ? 0 : level);
    for (unsigned done = 0; done < size;) {
        unsigned step = std::min(bufferSize, size - done);
        WriteNewFile(data + done, step);
        done += step;
    }
    CloseNewFile();
    return true;
}

void CZipArchive::OpenNewFile(const std::string& utf8Name, int level) {
    if (IsClosed() || m_storage.IsReadOnly() || m_newCompressor) CZipException::Throw(CZipException::internalError);
    CZipFileHeader& header = m_newHeader;
    header = CZipFileHeader();
    header.m_uExternalAttr = CZipFileHeader::kDefaultAttributes;
    header.SetTime(time(nullptr));
    if (utf8Name.empty()) {
        char generated[32];
        std::snprintf(generated, sizeof generated, "file%u", GetCount());
        header.SetFileName(generated);
    } else {
        header.SetFileName(utf8Name);
    }

    if (level < -1 || level > 9) level = -1;
    header.m_uMethod = m_uCompressionMethod;
    if (level == 0 && header.m_uMethod == CZipCompressor::methodDeflate)
        header.m_uMethod = CZipCompressor::methodStore;
    if (header.m_uMethod == CZipCompressor::methodDeflate) {
        if (level == 1)
            header.m_uFlag |= 6;
        else if (level == 2)
            header.m_uFlag |= 4;
        else if (level == 8 || level == 9)
            header.m_uFlag |= 2;
    }

    // One deflate compressor serves all entries of the archive in turn.
    std::unique_ptr<CZipCompressor> compressor =
        header.m_uMethod == CZipCompressor::methodDeflate && m_spareDeflate ? std::move(m_spareDeflate)
                                                                            : CZipCompressor::Create(header.m_uMethod);
    if (!compressor) CZipException::Throw(CZipException::internalError);
    header.WriteLocal(m_storage);
    compressor->InitCompression(&m_storage, level);
    m_newCompressor = std::move(compressor);
}

void CZipArchive::WriteNewFile(const char* data, unsigned size) {
    if (!m_newCompressor) CZipException::Throw(CZipException::internalError);
    m_newCompressor->Compress(data, size);
}

void CZipArchive::CloseNewFile() {
    if (!m_newCompressor) CZipException::Throw(CZipException::internalError);
    std::unique_ptr<CZipCompressor> compressor = std::move(m_newCompressor);
    compressor->FinishCompression();
    CZipFileHeader& header = m_newHeader;
    header.m_uCrc32 = compressor->m_uCrc32;
    header.m_uComprSize = compressor->m_uComprSize;
    header.m_uUncomprSize = compressor->m_uUncomprSize;
    header.PatchLocal(m_storage);
    if (header.m_uMethod == CZipCompressor::methodDeflate) m_spareDeflate = std::move(compressor);
    m_centralDir.m_headers.push_back(std::move(header));
}

bool CZipArchive::ExtractFile(unsigned index, CZipMemFile& target, bool, unsigned) {
    const CZipFileHeader* header = GetFileInfo(index);
    if (!header || IsClosed()) return false;
    std::unique_ptr<CZipCompressor> compressor = CZipCompressor::Create(header->m_uMethod);
    if (!compressor) return false;
    if (header->m_uFlag & CZipFileHeader::kFlagEncrypted) CZipException::Throw(CZipException::badPassword);
    uint64_t dataStart = header->ReadLocal(m_storage);
    if (header->IsDirectory()) return true;

    uint64_t expected = header->m_uUncomprSize;
    uint64_t compressed = header->m_uComprSize;
    bool plausible = header->m_uMethod == CZipCompressor::methodStore
                         ? expected == compressed
                         : expected <= compressed * kMaxDeflateRatio + kMaxDeflateRatio;
    if (!plausible) CZipException::Throw(CZipException::badZipFile);
    uint64_t start = target.GetPosition();
    if (start + expected > UINT32_MAX) CZipException::Throw(CZipException::tooBigSize);
    if (target.GetLength() < start + expected) target.SetLength(start + expected);
    target.Seek(static_cast<int64_t>(start), CZipAbstractFile::begin);

    m_storage.Seek(dataStart);
    compressor->InitDecompression(&m_storage, compressed);
    char* out = target.Data() + start;
    // One call for the whole block: zlib then needs no copies into its window between calls.
    uint64_t done = compressor->Decompress(out, static_cast<unsigned>(expected));
    // Data that go on past the stated size are as wrong as data that stop short of it.
    char extra;
    if (done != expected || compressor->Decompress(&extra, 1) != 0 ||
        compressor->m_uCrc32 != header->m_uCrc32)
        CZipException::Throw(CZipException::badCrc);
    target.Seek(static_cast<int64_t>(start + done), CZipAbstractFile::begin);
    return true;
}

}  // namespace zelvar
