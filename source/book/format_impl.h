// A cell format of the binary book: the XF record's fields with the public interface laid over
// their bits, so that saving is a field copy.
#pragma once
#include <cstdint>

#include "zelvar.h"

namespace zelvar {

template <class T> class BookImplT;

template <class T>
class FormatImplT : public IFormatT<T> {
public:
    explicit FormatImplT(BookImplT<T>* book);

    IFontT<T>* font() const override;
    bool setFont(IFontT<T>* font) override;
    int numFormat() const override { return ifmt; }
    void setNumFormat(int numFormat) override { ifmt = static_cast<uint16_t>(numFormat); }
    AlignH alignH() const override { return static_cast<AlignH>(align & 7); }
    void setAlignH(AlignH value) override { setBits(align, 0, 7, value); }
    AlignV alignV() const override { return static_cast<AlignV>((align >> 4) & 7); }
    void setAlignV(AlignV value) override { setBits(align, 4, 7, value); }
    bool wrap() const override { return (align >> 3) & 1; }
    void setWrap(bool wrap = true) override { setBits(align, 3, 1, wrap); }
    int rotation() const override { return (align >> 8) & 0xFF; }
    bool setRotation(int rotation) override;
    int indent() const override { return (align >> 16) & 0xF; }
    void setIndent(int indent) override { setBits(align, 16, 0xF, indent); }
    bool shrinkToFit() const override { return (align >> 20) & 1; }
    void setShrinkToFit(bool shrink = true) override { setBits(align, 20, 1, shrink); }
    void setBorder(BorderStyle style = BorderThin) override;
    void setBorderColor(Color color) override;
    BorderStyle borderLeft() const override { return static_cast<BorderStyle>(border & 0xF); }
    void setBorderLeft(BorderStyle style = BorderThin) override { setBits(border, 0, 0xF, style); }
    BorderStyle borderRight() const override { return static_cast<BorderStyle>((border >> 4) & 0xF); }
    void setBorderRight(BorderStyle style = BorderThin) override { setBits(border, 4, 0xF, style); }
    BorderStyle borderTop() const override { return static_cast<BorderStyle>((border >> 8) & 0xF); }
    void setBorderTop(BorderStyle style = BorderThin) override { setBits(border, 8, 0xF, style); }
    BorderStyle borderBottom() const override { return static_cast<BorderStyle>((border >> 12) & 0xF); }
    void setBorderBottom(BorderStyle style = BorderThin) override { setBits(border, 12, 0xF, style); }
    Color borderLeftColor() const override { return static_cast<Color>((border >> 16) & 0x7F); }
    void setBorderLeftColor(Color color) override { setBits(border, 16, 0x7F, color); }
    Color borderRightColor() const override { return static_cast<Color>((border >> 23) & 0x7F); }
    void setBorderRightColor(Color color) override { setBits(border, 23, 0x7F, color); }
    Color borderTopColor() const override { return static_cast<Color>(colour & 0x7F); }
    void setBorderTopColor(Color color) override { setBits(colour, 0, 0x7F, color); }
    Color borderBottomColor() const override { return static_cast<Color>((colour >> 7) & 0x7F); }
    void setBorderBottomColor(Color color) override { setBits(colour, 7, 0x7F, color); }
    BorderDiagonal borderDiagonal() const override { return static_cast<BorderDiagonal>((border >> 30) & 3); }
    void setBorderDiagonal(BorderDiagonal value) override { setBits(border, 30, 3, value); }
    BorderStyle borderDiagonalStyle() const override { return static_cast<BorderStyle>((colour >> 21) & 0xF); }
    void setBorderDiagonalStyle(BorderStyle style) override { setBits(colour, 21, 0xF, style); }
    Color borderDiagonalColor() const override { return static_cast<Color>((colour >> 14) & 0x7F); }
    void setBorderDiagonalColor(Color color) override { setBits(colour, 14, 0x7F, color); }
    FillPattern fillPattern() const override { return static_cast<FillPattern>((colour >> 26) & 0x3F); }
    void setFillPattern(FillPattern pattern) override { setBits(colour, 26, 0x3F, pattern); }
    Color patternForegroundColor() const override { return static_cast<Color>(fill & 0x7F); }
    void setPatternForegroundColor(Color color) override { setBits16(fill, 0, 0x7F, color); }
    Color patternBackgroundColor() const override { return static_cast<Color>((fill >> 7) & 0x7F); }
    void setPatternBackgroundColor(Color color) override { setBits16(fill, 7, 0x7F, color); }
    bool locked() const override { return flags & 1; }
    void setLocked(bool locked = true) override { setBits16(flags, 0, 1, locked); }
    bool hidden() const override { return (flags >> 1) & 1; }
    void setHidden(bool hidden = true) override { setBits16(flags, 1, 1, hidden); }

    // Reading order only gains bits.
    void setReadOrder(unsigned value) { align |= value << 22; }
    // Text of a custom number format id (164 and up), else null.
    const T* customNumFormat() const;

    // Record fields in file order.
    uint16_t ifnt = 0;
    uint16_t ifmt = 0;
    uint16_t flags = 0xFFF5;       // bit 0 locked, 1 hidden, 2 style XF, 4-15 parent
    uint32_t align = 0xFC000020;   // see the accessors; bits 26-31 mark attributes in use
    uint32_t border = 64u << 16 | 64u << 23;
    uint32_t colour = 64u | 64u << 7;
    uint16_t fill = 64 | 65 << 7;

private:
    // A value wider than its field runs over into the next ones, as the file's bit layout does.
    static void setBits(uint32_t& word, unsigned shift, uint32_t mask, int value) {
        word = (word & ~(mask << shift)) | (static_cast<uint32_t>(value) << shift);
    }
    static void setBits16(uint16_t& word, unsigned shift, uint32_t mask, int value) {
        word = static_cast<uint16_t>((word & ~(mask << shift)) | (static_cast<uint32_t>(value) << shift));
    }

    BookImplT<T>* _book;
};

}  // namespace zelvar
