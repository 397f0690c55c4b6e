// Every public operation carries its comment block in one form: what it does, "Fails with:" and
// the messages, then a two-line example. The test reads the headers as a reader would.
#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::vector<std::string> readLines(const std::string& path) {
    std::ifstream in(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

struct Declaration {
    std::string name;
    std::string comment;  // the block that stands right before it, empty when there is none
};

// The comment block that ends on the line before `at`, or "".
std::string commentBefore(const std::vector<std::string>& lines, size_t at) {
    if (at == 0 || lines[at - 1].find("*/") == std::string::npos) return "";
    size_t first = at - 1;
    while (first > 0 && lines[first].find("/*") == std::string::npos) --first;
    std::string text;
    for (size_t k = first; k < at; ++k) text += lines[k] + "\n";
    return text;
}

// Pure virtual operations and exported factories of zelvar.h, each with its comment.
std::vector<Declaration> cppDeclarations(const std::vector<std::string>& lines) {
    static const std::regex operation(R"(^\s*virtual [^~(]*?\b(\w+)\()");
    static const std::regex factory(R"(^ZELVAR_API .*\b(\w+)\(void\);)");
    std::vector<Declaration> found;
    for (size_t i = 0; i < lines.size(); ++i) {
        std::smatch m;
        if (std::regex_search(lines[i], m, operation) || std::regex_search(lines[i], m, factory))
            found.push_back({m[1], commentBefore(lines, i)});
    }
    return found;
}

// Exported functions of zelvar_c.h. The W form may share the comment of the A form right above.
std::vector<Declaration> cDeclarations(const std::vector<std::string>& lines) {
    static const std::regex function(R"(^ZELVAR_API .*?\b(zv\w+)\()");
    std::vector<Declaration> found;
    for (size_t i = 0; i < lines.size(); ++i) {
        std::smatch m;
        if (!std::regex_search(lines[i], m, function)) continue;
        std::string name = m[1];
        std::string comment = commentBefore(lines, i);
        std::smatch previous;
        if (comment.empty() && i > 0 && std::regex_search(lines[i - 1], previous, function) && !found.empty() &&
            name.back() == 'W' && previous[1].str() == name.substr(0, name.size() - 1) + "A")
            comment = found.back().comment;
        found.push_back({name, comment});
    }
    return found;
}

// What the form asks of a comment block; empty when it is met.
std::string formProblem(const std::string& comment) {
    if (comment.empty()) return "no comment block";
    if (comment.find("Fails with:") == std::string::npos) return "no \"Fails with:\" line";
    int exampleLines = 0;
    std::istringstream in(comment);
    for (std::string line; std::getline(in, line);)
        if (line.find(" *     ") != std::string::npos) ++exampleLines;
    if (exampleLines < 2) return "no two-line example";
    return "";
}

void expectDocumented(const std::vector<Declaration>& declarations) {
    int missing = 0;
    for (const Declaration& d : declarations) {
        std::string problem = formProblem(d.comment);
        if (!problem.empty()) {
            ++missing;
            ADD_FAILURE() << d.name << ": " << problem;
        }
    }
    EXPECT_EQ(missing, 0) << "declarations without their comment block";
}

TEST(HeaderDocs, EveryOperationOfTheCppHeaderHasItsCommentBlock) {
    std::vector<Declaration> declarations = cppDeclarations(readLines(ZELVAR_SOURCE_DIR "/include/zelvar.h"));
    // 217 interface operations and the 8 factories (binary and XML).
    EXPECT_EQ(declarations.size(), 225u);
    expectDocumented(declarations);
}

TEST(HeaderDocs, EveryFunctionOfTheCHeaderHasItsCommentBlock) {
    std::vector<Declaration> declarations = cDeclarations(readLines(ZELVAR_SOURCE_DIR "/include/zelvar_c.h"));
    EXPECT_EQ(declarations.size(), 2u * 217u + 8u);  // A and W of each operation, and the factories
    expectDocumented(declarations);
}

// The C header is generated: each of its comments says what the C++ one says, up to the example.
TEST(HeaderDocs, TheCHeaderTellsWhatTheCppHeaderTells) {
    std::vector<Declaration> cpp = cppDeclarations(readLines(ZELVAR_SOURCE_DIR "/include/zelvar.h"));
    std::vector<Declaration> c = cDeclarations(readLines(ZELVAR_SOURCE_DIR "/include/zelvar_c.h"));
    auto prose = [](const std::string& comment) {
        std::string text;
        std::istringstream in(comment);
        for (std::string line; std::getline(in, line);) {
            if (line.find(" *     ") != std::string::npos) break;
            text += line.substr(line.find_first_not_of(" /*")) + "\n";
        }
        return text;
    };
    int compared = 0;
    for (const Declaration& op : cpp) {
        if (op.name.rfind("zv", 0) == 0) continue;  // the factories are written out by hand in both
        for (const Declaration& f : c) {
            // zvSheetWriteNumA belongs to ISheetT::writeNum: the class word, then the capitalised name.
            std::string tail = op.name;
            tail[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(tail[0])));
            if (f.name.size() > tail.size() + 1 && f.name.compare(f.name.size() - tail.size() - 1, tail.size(), tail) == 0 &&
                f.name.back() == 'A' && prose(f.comment) == prose(op.comment)) {
                ++compared;
                break;
            }
        }
    }
    EXPECT_EQ(compared, 217);
}

}  // namespace
