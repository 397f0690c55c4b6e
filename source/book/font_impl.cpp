#include "book/font_impl.h"

#include "book/book_impl.h"

namespace zelvar {

template <class T>
FontImplT<T>::FontImplT(BookImplT<T>* book) : _book(book) {}

template <class T>
int FontImplT<T>::size() const {
    return dyHeight / 20;
}

template <class T>
void FontImplT<T>::setSize(int size) {
    uint16_t height = static_cast<uint16_t>(size * 20);
    dyHeight = height > 8191 ? 8191 : height;
}

template <class T>
bool FontImplT<T>::italic() const {
    return (grbit >> 1) & 1;
}

template <class T>
void FontImplT<T>::setItalic(bool value) {
    grbit = static_cast<uint16_t>(value ? grbit | 2 : grbit & ~2);
}

template <class T>
bool FontImplT<T>::strikeOut() const {
    return (grbit >> 3) & 1;
}

template <class T>
void FontImplT<T>::setStrikeOut(bool value) {
    grbit = static_cast<uint16_t>(value ? grbit | 8 : grbit & ~8);
}

template <class T>
Color FontImplT<T>::color() const {
    return static_cast<Color>(icv);
}

template <class T>
void FontImplT<T>::setColor(Color color) {
    icv = static_cast<uint16_t>(color);
}

template <class T>
bool FontImplT<T>::bold() const {
    return bls > 699;
}

template <class T>
void FontImplT<T>::setBold(bool value) {
    bls = value ? 700 : 400;
}

template <class T>
Script FontImplT<T>::script() const {
    return static_cast<Script>(sss);
}

template <class T>
void FontImplT<T>::setScript(Script script) {
    sss = static_cast<uint16_t>(script);
}

template <class T>
Underline FontImplT<T>::underline() const {
    return static_cast<Underline>(uls);
}

template <class T>
void FontImplT<T>::setUnderline(Underline underline) {
    uls = static_cast<uint8_t>(underline);
}

template <class T>
const T* FontImplT<T>::name() const {
    _nameText.assign(fontName.c_str());
    const T* result = _nameText.template c_str<T>(_book->utf8Mode());
    if (_nameText.failed())
        _book->setMessage("warning: some characters have not been converted properly");
    else
        _book->setOk();
    return result;
}

template <class T>
bool FontImplT<T>::setName(const T* name) {
    return _book->guard(false, [&] {
        if (!name) return true;
        std::wstring wide;
        toWide(name, _book->utf8Mode(), wide);
        if (wide.size() > 255) throw zverror("string is too long");
        fontName = wide;
        return true;
    });
}

template class FontImplT<char>;
template class FontImplT<wchar_t>;

}  // namespace zelvar
