// The compression methods an archive entry can use here: stored (0) and deflated (8), the
// latter as a raw zlib stream. Compressing writes to the storage; decompressing reads the
// entry's compressed bytes from the storage's current position.
#pragma once
#include <cstdint>
#include <memory>
#include <vector>

#include <zlib.h>

namespace zelvar {

class CZipStorage;

class CZipCompressor {
public:
    static constexpr uint16_t methodStore = 0;
    static constexpr uint16_t methodDeflate = 8;
    static constexpr unsigned kBufferSize = 65536;

    // Null for a method this engine does not handle.
    static std::unique_ptr<CZipCompressor> Create(uint16_t method);
    virtual ~CZipCompressor() = default;

    virtual void InitCompression(CZipStorage* storage, int level);
    // Takes the next block of uncompressed data.
    virtual void Compress(const char* data, unsigned size) = 0;
    virtual void FinishCompression() = 0;

    virtual void InitDecompression(CZipStorage* storage, uint64_t compressedSize);
    // Fills out with up to size bytes and returns the count; fewer than size only when the
    // entry's data are used up. Adds the bytes to the CRC.
    virtual unsigned Decompress(char* out, unsigned size) = 0;

    uint32_t m_uCrc32 = 0;
    uint64_t m_uComprSize = 0;
    uint64_t m_uUncomprSize = 0;

protected:
    // Gives the next piece of compressed input, in the file's memory or read into the
    // buffer; its size is 0 at the end.
    const char* FillInput(unsigned* size);
    void UpdateCrc(const char* data, unsigned size);

    CZipStorage* m_pStorage = nullptr;
    uint64_t m_uComprLeft = 0;
    std::vector<char> m_pBuffer;
};

class CZipStoreCompressor : public CZipCompressor {
public:
    void Compress(const char* data, unsigned size) override;
    void FinishCompression() override {}
    unsigned Decompress(char* out, unsigned size) override;
};

class CZipDeflateCompressor : public CZipCompressor {
public:
    ~CZipDeflateCompressor() override;
    void InitCompression(CZipStorage* storage, int level) override;
    void Compress(const char* data, unsigned size) override;
    void FinishCompression() override;
    void InitDecompression(CZipStorage* storage, uint64_t compressedSize) override;
    unsigned Decompress(char* out, unsigned size) override;

private:
    void WriteOutput();

    z_stream m_stream{};
    bool m_bDeflating = false;
    bool m_bDeflateKept = false;  // a finished deflate state that the next entry can reset and use
    int m_keptLevel = 0;
    bool m_bInflating = false;
    bool m_bStreamEnd = false;
};

}  // namespace zelvar
