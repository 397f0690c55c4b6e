// A font of the binary book: the Font record's fields with the public interface over them.
#pragma once
#include <cstdint>

#include "frame/text.h"
#include "zelvar.h"

namespace zelvar {

template <class T> class BookImplT;

template <class T>
class FontImplT : public IFontT<T> {
public:
    explicit FontImplT(BookImplT<T>* book);

    int size() const override;
    void setSize(int size) override;
    bool italic() const override;
    void setItalic(bool italic = true) override;
    bool strikeOut() const override;
    void setStrikeOut(bool strikeOut = true) override;
    Color color() const override;
    void setColor(Color color) override;
    bool bold() const override;
    void setBold(bool bold = true) override;
    Script script() const override;
    void setScript(Script script) override;
    Underline underline() const override;
    void setUnderline(Underline underline) override;
    const T* name() const override;
    bool setName(const T* name) override;

    // Record fields in file order.
    uint16_t dyHeight = 200;  // twentieths of a point
    uint16_t grbit = 0;       // bit 1 italic, bit 3 strike-out
    uint16_t icv = 32767;
    uint16_t bls = 400;
    uint16_t sss = 0;
    uint8_t uls = 0;
    uint8_t bFamily = 0;
    uint8_t bCharSet = 0;
    uint8_t reserved = 0;
    std::wstring fontName = L"Arial";

private:
    BookImplT<T>* _book;
    mutable XString _nameText;
};

}  // namespace zelvar
