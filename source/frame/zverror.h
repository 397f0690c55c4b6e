// The library's one exception type. Inner code throws it; every public operation
// catches it and turns its text into the book's message.
#pragma once
#include <exception>
#include <string>

namespace zelvar {

class zverror : public std::exception {
public:
    explicit zverror(std::string text) : _text(std::move(text)) {}
    explicit zverror(const char* text) : _text(text ? text : "") {}
    const char* what() const noexcept override;

private:
    std::string _text;
};

}  // namespace zelvar
