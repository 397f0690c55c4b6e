#include "zip/zip_compressor.h"

#include <algorithm>
#include <cstring>

#include "zip/zip_crc.h"
#include "zip/zip_exception.h"
#include "zip/zip_storage.h"

namespace zelvar {

namespace {

// The stream layout is checked by zlib against the version the caller was built for.
const char kZlibVersion[] = "1.2.7";
constexpr int kRawWindowBits = -15;  // raw deflate: no zlib wrapper, no checksum of zlib's own
constexpr int kMemLevel = 8;

void check(int result) {
    if (result != Z_OK) CZipException::ThrowZlib(result);
}

}  // namespace

std::unique_ptr<CZipCompressor> CZipCompressor::Create(uint16_t method) {
    if (method == methodStore) return std::make_unique<CZipStoreCompressor>();
    if (method == methodDeflate) return std::make_unique<CZipDeflateCompressor>();
    return nullptr;
}

void CZipCompressor::InitCompression(CZipStorage* storage, int) {
    m_pStorage = storage;
    m_uCrc32 = 0;
    m_uComprSize = m_uUncomprSize = 0;
}

void CZipCompressor::InitDecompression(CZipStorage* storage, uint64_t compressedSize) {
    m_pStorage = storage;
    m_uCrc32 = 0;
    m_uComprSize = compressedSize;
    m_uUncomprSize = 0;
    m_uComprLeft = compressedSize;
}

void CZipCompressor::UpdateCrc(const char* data, unsigned size) {
    m_uCrc32 = zipCrc32(m_uCrc32, data, size);
}

const char* CZipCompressor::FillInput(unsigned* size) {
    // Input already in memory is handed over whole, so that zlib can inflate an entry in
    // one call; from a file it comes in buffer-sized pieces.
    uint64_t piece = m_pStorage->IsInMemory() ? 0x40000000u : kBufferSize;
    *size = static_cast<unsigned>(std::min<uint64_t>(m_uComprLeft, piece));
    if (*size == 0) return nullptr;
    m_uComprLeft -= *size;
    if (const char* inPlace = m_pStorage->ReadInPlace(*size)) return inPlace;
    if (m_pBuffer.size() < kBufferSize) m_pBuffer.resize(kBufferSize);
    m_pStorage->Read(m_pBuffer.data(), *size);
    return m_pBuffer.data();
}

void CZipStoreCompressor::Compress(const char* data, unsigned size) {
    UpdateCrc(data, size);
    m_pStorage->Write(data, size);
    m_uUncomprSize += size;
    m_uComprSize += size;
}

unsigned CZipStoreCompressor::Decompress(char* out, unsigned size) {
    unsigned count = static_cast<unsigned>(std::min<uint64_t>(m_uComprLeft, size));
    m_pStorage->Read(out, count);
    m_uComprLeft -= count;
    m_uUncomprSize += count;
    UpdateCrc(out, count);
    return count;
}

CZipDeflateCompressor::~CZipDeflateCompressor() {
    if (m_bDeflating || m_bDeflateKept) deflateEnd(&m_stream);
    if (m_bInflating) inflateEnd(&m_stream);
}

void CZipDeflateCompressor::InitCompression(CZipStorage* storage, int level) {
    CZipCompressor::InitCompression(storage, level);
    m_pBuffer.resize(kBufferSize);
    if (m_bDeflateKept && m_keptLevel == level) {
        // The state of the previous entry, reset: the same as a new one, without its 270 kB
        // being freed and taken again (and its pages faulted in again) for every entry.
        m_bDeflateKept = false;
        check(deflateReset(&m_stream));
    } else {
        if (m_bDeflateKept) deflateEnd(&m_stream);
        m_bDeflateKept = false;
        m_stream = z_stream{};
        check(deflateInit2_(&m_stream, level, Z_DEFLATED, kRawWindowBits, kMemLevel, Z_DEFAULT_STRATEGY,
                            kZlibVersion, static_cast<int>(sizeof(z_stream))));
    }
    m_keptLevel = level;
    m_bDeflating = true;
    m_stream.next_out = reinterpret_cast<Bytef*>(m_pBuffer.data());
    m_stream.avail_out = kBufferSize;
}

void CZipDeflateCompressor::WriteOutput() {
    unsigned produced = kBufferSize - m_stream.avail_out;
    if (produced) {
        m_pStorage->Write(m_pBuffer.data(), produced);
        m_uComprSize += produced;
    }
    m_stream.next_out = reinterpret_cast<Bytef*>(m_pBuffer.data());
    m_stream.avail_out = kBufferSize;
}

void CZipDeflateCompressor::Compress(const char* data, unsigned size) {
    UpdateCrc(data, size);
    m_uUncomprSize += size;
    m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data));
    m_stream.avail_in = size;
    while (m_stream.avail_in > 0) {
        check(deflate(&m_stream, Z_NO_FLUSH));
        if (m_stream.avail_out == 0) WriteOutput();
    }
}

void CZipDeflateCompressor::FinishCompression() {
    m_stream.avail_in = 0;
    for (;;) {
        int result = deflate(&m_stream, Z_FINISH);
        if (result != Z_OK && result != Z_STREAM_END) CZipException::ThrowZlib(result);
        if (result == Z_STREAM_END || m_stream.avail_out == 0) WriteOutput();
        if (result == Z_STREAM_END) break;
    }
    m_bDeflating = false;
    m_bDeflateKept = true;  // for the next entry; the destructor ends it
}

void CZipDeflateCompressor::InitDecompression(CZipStorage* storage, uint64_t compressedSize) {
    CZipCompressor::InitDecompression(storage, compressedSize);
    m_stream = z_stream{};
    check(inflateInit2_(&m_stream, kRawWindowBits, kZlibVersion, static_cast<int>(sizeof(z_stream))));
    m_bInflating = true;
    m_bStreamEnd = false;
}

unsigned CZipDeflateCompressor::Decompress(char* out, unsigned size) {
    m_stream.next_out = reinterpret_cast<Bytef*>(out);
    m_stream.avail_out = size;
    while (m_stream.avail_out > 0 && !m_bStreamEnd) {
        if (m_stream.avail_in == 0) {
            unsigned got = 0;
            const char* input = FillInput(&got);
            if (got == 0) break;  // the compressed data are used up before the stream's end
            m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input));
            m_stream.avail_in = got;
        }
        int result = inflate(&m_stream, Z_NO_FLUSH);
        if (result == Z_STREAM_END)
            m_bStreamEnd = true;
        else if (result == Z_BUF_ERROR)
            break;  // no progress possible
        else if (result != Z_OK)
            CZipException::ThrowZlib(result == Z_NEED_DICT ? Z_DATA_ERROR : result);
    }
    unsigned produced = size - m_stream.avail_out;
    m_uUncomprSize += produced;
    UpdateCrc(out, produced);
    return produced;
}

}  // namespace zelvar
