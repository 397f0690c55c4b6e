// Helpers of the XML book tests: books of both text widths, package bytes, and entries of a
// package read back with the library's own archive reader.
#pragma once
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>

#include <zlib.h>

#include "zelvar.h"
#include "zip/zip_reader.h"
#include "zip/zip_writer.h"

namespace xmltest {

template <class T>
std::basic_string<T> S(const char* text) {
    return std::basic_string<T>(text, text + std::char_traits<char>::length(text));
}

template <class T>
zelvar::IBookT<T>* createXmlBook();
template <>
inline zelvar::IBookT<char>* createXmlBook<char>() { return zvCreateXMLBookA(); }
template <>
inline zelvar::IBookT<wchar_t>* createXmlBook<wchar_t>() { return zvCreateXMLBookW(); }

template <class T>
struct BookDeleter {
    void operator()(zelvar::IBookT<T>* book) const {
        if (book) book->release();
    }
};
template <class T>
using BookPtr = std::unique_ptr<zelvar::IBookT<T>, BookDeleter<T>>;

template <class T>
BookPtr<T> newXmlBook() {
    return BookPtr<T>(createXmlBook<T>());
}

// The package's entries, name (without the leading "/") to bytes.
inline std::map<std::string, std::string> entries(const char* data, unsigned size) {
    std::map<std::string, std::string> out;
    zelvar::ZipReader reader(data, size);
    for (unsigned i = 0; i < reader.size(); ++i) {
        const char* bytes = nullptr;
        unsigned length = 0;
        reader.data(i, &bytes, &length);
        std::wstring name = reader.name(i);
        out[std::string(name.begin() + 1, name.end())] = std::string(bytes, length);
        std::free(const_cast<char*>(bytes));
    }
    return out;
}

template <class T>
std::map<std::string, std::string> savedEntries(zelvar::IBookT<T>* book) {
    const char* data = nullptr;
    unsigned size = 0;
    EXPECT_TRUE(book->saveRaw(&data, &size)) << book->errorMessage();
    return entries(data, size);
}

// The first sheet's XML as the book saves it.
template <class T>
std::string sheetXml(zelvar::IBookT<T>* book) {
    return savedEntries(book)["xl/worksheets/sheet1.xml"];
}

inline bool contains(const std::string& text, const std::string& piece) { return text.find(piece) != std::string::npos; }

// A package of the given entries, names without the leading "/".
inline std::string makePackage(const std::map<std::string, std::string>& parts) {
    zelvar::ZipWriter writer;
    for (const auto& part : parts)
        writer.add(L"/" + std::wstring(part.first.begin(), part.first.end()), part.second.data(),
                   static_cast<unsigned>(part.second.size()));
    writer.close();
    const char* data = nullptr;
    unsigned size = 0;
    writer.getRaw(&data, &size);
    std::string bytes(data, size);
    std::free(const_cast<char*>(data));
    return bytes;
}

// A complete grey PNG of the given size, which image libraries open.
inline std::string wholePng(unsigned width, unsigned height) {
    auto be32 = [](std::string& out, unsigned long v) {
        for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<char>((v >> shift) & 0xFF));
    };
    auto chunk = [&](std::string& out, const char* type, const std::string& body) {
        be32(out, body.size());
        std::string typed = std::string(type, 4) + body;
        out += typed;
        be32(out, crc32(0, reinterpret_cast<const Bytef*>(typed.data()), static_cast<uInt>(typed.size())));
    };
    std::string header;
    be32(header, width);
    be32(header, height);
    header.append("\x08\x00\x00\x00\x00", 5);  // 8-bit grey, no interlace
    std::string rows;
    for (unsigned r = 0; r < height; ++r) rows += std::string(1, '\0') + std::string(width, static_cast<char>(r * 7));
    uLongf size = compressBound(static_cast<uLong>(rows.size()));
    std::string packed(size, '\0');
    compress(reinterpret_cast<Bytef*>(&packed[0]), &size, reinterpret_cast<const Bytef*>(rows.data()), static_cast<uLong>(rows.size()));
    packed.resize(size);
    std::string out("\x89PNG\r\n\x1a\n", 8);
    chunk(out, "IHDR", header);
    chunk(out, "IDAT", packed);
    chunk(out, "IEND", std::string());
    return out;
}

// A caller's text as narrow text, each character cut to 8 bits; empty for null.
template <class T>
std::string narrow(const T* text) {
    std::string out;
    if (text)
        for (; *text; ++text) out.push_back(static_cast<char>(*text));
    return out;
}

// Runs a shell command and gives its standard output; the exit status goes to status if given.
inline std::string run(const std::string& cmd, int* status = nullptr) {
    std::string out;
    FILE* pipe = popen(cmd.c_str(), "r");
    if (!pipe) return out;
    char buf[65536];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, pipe)) > 0) out.append(buf, n);
    int rc = pclose(pipe);
    if (status) *status = rc;
    return out;
}

inline std::string tmpPath(const std::string& name) { return std::string(ZELVAR_TEST_TMP) + "/" + name; }

}  // namespace xmltest
