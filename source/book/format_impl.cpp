#include "book/format_impl.h"

#include "book/book_impl.h"
#include "book/font_impl.h"

namespace zelvar {

template <class T>
FormatImplT<T>::FormatImplT(BookImplT<T>* book) : _book(book) {}

// The file's font numbering skips index 4, so positions from 4 on are stored one higher.
template <class T>
IFontT<T>* FormatImplT<T>::font() const {
    _book->setOk();
    auto& fonts = _book->fonts();
    size_t position;
    if (ifnt < 4) {
        position = ifnt;
    } else if (ifnt > 4) {
        position = ifnt - 1u;
    } else {
        _book->setMessage("incorrect font");
        return nullptr;
    }
    if (position >= fonts.size()) {
        _book->setMessage("incorrect font");
        return nullptr;
    }
    return fonts[position];
}

// Stores position + 1 whatever the position: fonts made by addFont (position 5 and up) map back
// exactly, while the first four default fonts come back as their neighbour.
template <class T>
bool FormatImplT<T>::setFont(IFontT<T>* font) {
    auto& fonts = _book->fonts();
    bool found = false;
    for (size_t i = 0; i < fonts.size(); ++i) {
        if (static_cast<IFontT<T>*>(fonts[i]) == font) {
            ifnt = static_cast<uint16_t>(i + 1);
            found = true;
        }
    }
    if (!found) {
        _book->setMessage("specified font not found");
        return false;
    }
    _book->setOk();
    return true;
}

template <class T>
bool FormatImplT<T>::setRotation(int value) {
    if ((value < 0 || value > 180) && value != 255) {
        _book->setMessage("rotation must be in range 0-180 or 255");
        return false;
    }
    setBits(align, 8, 0xFF, value);
    _book->setOk();
    return true;
}

template <class T>
void FormatImplT<T>::setBorder(BorderStyle style) {
    setBorderLeft(style);
    setBorderRight(style);
    setBorderTop(style);
    setBorderBottom(style);
}

template <class T>
void FormatImplT<T>::setBorderColor(Color color) {
    setBorderLeftColor(color);
    setBorderRightColor(color);
    setBorderTopColor(color);
    setBorderBottomColor(color);
}

template <class T>
const T* FormatImplT<T>::customNumFormat() const {
    if (ifmt < 164) return nullptr;
    return _book->customNumFormat(ifmt);
}

template class FormatImplT<char>;
template class FormatImplT<wchar_t>;

}  // namespace zelvar
