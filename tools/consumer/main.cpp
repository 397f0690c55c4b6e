// Writes a cell, saves to memory, loads it again and prints the value: the C++ interfaces work.
#include <cstdio>
#include <string_view>

#include "zelvar.h"

int main() {
    zelvar::IBookA* book = zvCreateBookA();
    zelvar::IBookA* copy = zvCreateBookA();
    const char* data = nullptr;
    unsigned size = 0;
    bool ok = book && copy && book->addSheet("C++")->writeStr(0, 0, "forty-two") &&
              book->saveRaw(&data, &size) && copy->loadRaw(data, size);
    const char* text = ok ? copy->getSheet(0)->readStr(0, 0) : nullptr;
    ok = text && std::string_view(text) == "forty-two";
    std::printf("%s\n", ok ? "consumer ok" : book ? book->errorMessage() : "no book");
    if (book) book->release();
    if (copy) copy->release();
    return ok ? 0 : 1;
}
