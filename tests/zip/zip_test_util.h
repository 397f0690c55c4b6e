// Shared helpers of the ZIP tests: scratch files, running the independent tools, and a
// package built in memory with the writer.
#pragma once
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <utility>
#include <vector>

#include "frame/zverror.h"
#include "zip/zip_reader.h"
#include "zip/zip_writer.h"

namespace ziptest {

inline std::string tmpPath(const std::string& name) { return std::string(ZELVAR_TEST_TMP) + "/zip-" + name; }

inline bool fileExists(const std::string& path) {
    struct stat info;
    return ::stat(path.c_str(), &info) == 0;
}

inline std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

inline void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

struct CommandResult {
    int status = -1;
    std::string output;
};

// Runs a shell command and collects its standard output.
inline CommandResult run(const std::string& command) {
    CommandResult result;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe) return result;
    char chunk[65536];
    size_t got;
    while ((got = std::fread(chunk, 1, sizeof chunk, pipe)) > 0) result.output.append(chunk, got);
    int status = ::pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

inline bool haveTool(const std::string& tool) { return run("command -v " + tool + " >/dev/null 2>&1").status == 0; }

inline std::string python() { return ZELVAR_PYTHON; }
inline bool havePython() { return !python().empty() && fileExists(python()); }

// Runs a Python script given as text; its output is returned.
inline CommandResult runPython(const std::string& script, const std::string& args = "") {
    std::string path = tmpPath("script.py");
    writeFile(path, script);
    return run(python() + " " + path + " " + args + " 2>&1");
}

inline std::string shellQuote(const std::string& text) {
    std::string out = "'";
    for (char c : text) {
        if (c == '\'')
            out += "'\\''";
        else
            out += c;
    }
    return out + "'";
}

struct Entry {
    std::string name;  // without the leading slash
    std::string bytes;
};

// Closes a writer to memory and takes its archive.
inline std::string closeToString(zelvar::ZipWriter& writer) {
    writer.close();
    const char* data = nullptr;
    unsigned size = 0;
    writer.getRaw(&data, &size);
    std::string out(data, size);
    std::free(const_cast<char*>(data));
    return out;
}

// A package written to memory with the writer; names get the package's leading "/".
inline std::string writeMemory(const std::vector<Entry>& entries) {
    zelvar::ZipWriter writer;
    for (const Entry& e : entries)
        writer.add(L"/" + std::wstring(e.name.begin(), e.name.end()), e.bytes.data(),
                   static_cast<unsigned>(e.bytes.size()));
    return closeToString(writer);
}

// Everything the reader sees: names (as package paths) and bytes, in index order.
struct Listing {
    std::vector<std::wstring> names;
    std::vector<std::string> bytes;
};

inline Listing readAll(zelvar::ZipReader& reader) {
    Listing listing;
    for (unsigned i = 0; i < reader.size(); ++i) {
        listing.names.push_back(reader.name(i));
        const char* data = nullptr;
        unsigned size = 0;
        reader.data(i, &data, &size);
        listing.bytes.emplace_back(data ? std::string(data, size) : std::string());
        std::free(const_cast<char*>(data));
    }
    return listing;
}

inline Listing readMemory(const std::string& archive) {
    zelvar::ZipReader reader(archive.data(), static_cast<unsigned>(archive.size()));
    return readAll(reader);
}

inline std::string errorOf(const std::string& archive) {
    try {
        readMemory(archive);
    } catch (const zelvar::zverror& e) {
        return e.what();
    }
    return "";
}

// Worksheet-like text that deflates well but not trivially.
inline std::string sheetXml(int rows) {
    std::string xml = "<?xml version=\"1.0\"?><worksheet><sheetData>";
    for (int r = 1; r <= rows; ++r) {
        xml += "<row r=\"" + std::to_string(r) + "\">";
        for (int c = 0; c < 5; ++c)
            xml += "<c r=\"" + std::string(1, char('A' + c)) + std::to_string(r) + "\" s=\"" +
                   std::to_string((r * 7 + c) % 4) + "\"><v>" + std::to_string(r * 31 + c * 17 % 1000) +
                   "</v></c>";
        xml += "</row>";
    }
    return xml + "</sheetData></worksheet>";
}

}  // namespace ziptest
