// Text conversions at the archive's edge: entry names are UTF-8 inside the archive and wide
// outside; paths of files on disk take the C locale's multibyte form.
#pragma once
#include <string>

namespace zelvar {
namespace ziptext {

std::string wideToUtf8(const std::wstring& text);
// Invalid sequences become U+FFFD.
std::wstring utf8ToWide(const std::string& text);
// Names of archives made on systems whose names are in the DOS code page.
std::string cp437ToUtf8(const std::string& text);
// The locale's multibyte form, or UTF-8 when the locale can't express the path.
std::string pathToNarrow(const std::wstring& path);

}  // namespace ziptext
}  // namespace zelvar
