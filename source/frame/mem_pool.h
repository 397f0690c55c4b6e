// Arena for the strings and small objects of records: a book allocates from it while loading
// many thousands of strings and frees everything at once, never one by one.
#pragma once
#include <cstddef>
#include <vector>

namespace zelvar {

// Objects handed to the pool are deleted through this base when the pool is freed.
class BaseClass {
public:
    virtual ~BaseClass() {}
};

class MemPool {
public:
    static constexpr unsigned kBlockUnits = 10000000;

    MemPool() = default;
    MemPool(const MemPool&) = delete;
    MemPool& operator=(const MemPool&) = delete;
    ~MemPool() { free(); }

    // n chars (or wchar_ts) of uninitialised memory that live until free(); 0 gives null.
    char* allocA(unsigned n);
    wchar_t* allocW(unsigned n);
    // Copies a wide text of n characters and adds the terminator.
    wchar_t* copyW(const wchar_t* text, size_t n);
    void addPointer(BaseClass* object) { _objects.push_back(object); }
    void free();

private:
    std::vector<char*> _blocksA;
    unsigned _usedA = kBlockUnits;
    std::vector<wchar_t*> _blocksW;
    unsigned _usedW = kBlockUnits;
    std::vector<BaseClass*> _objects;
};

}  // namespace zelvar
