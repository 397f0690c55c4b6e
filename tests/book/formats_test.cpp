// Formats and fonts of the binary book: bit fields, limits and the file's font numbering.
#include <string>

#include "test_util.h"

using namespace zelvar;
using namespace zvtest;

template <class T>
class FormatsTest : public ::testing::Test {};
TYPED_TEST_SUITE(FormatsTest, Widths);

TYPED_TEST(FormatsTest, RotationAcceptsDegreesAndStacked) {
    auto book = newBook<TypeParam>();
    IFormatT<TypeParam>* f = book->addFormat();
    for (int ok : {0, 90, 180, 255}) {
        EXPECT_TRUE(f->setRotation(ok));
        EXPECT_EQ(ok, f->rotation());
    }
    f->setRotation(45);
    for (int bad : {181, 254, -1, 256}) {
        EXPECT_FALSE(f->setRotation(bad));
        EXPECT_STREQ("rotation must be in range 0-180 or 255", book->errorMessage());
        EXPECT_EQ(45, f->rotation());
    }
}

TYPED_TEST(FormatsTest, PropertiesAreIndependentBitFields) {
    auto book = newBook<TypeParam>();
    IFormatT<TypeParam>* f = book->addFormat();
    f->setAlignH(HAlignCenterAcross);
    f->setAlignV(VAlignDistributed);
    f->setWrap(true);
    f->setRotation(180);
    f->setIndent(15);
    f->setShrinkToFit(true);
    f->setBorderLeft(BorderThin);
    f->setBorderRight(BorderSlantDashDot);
    f->setBorderTop(BorderDouble);
    f->setBorderBottom(BorderHair);
    f->setBorderLeftColor(ColorRed);
    f->setBorderRightColor(ColorIndex63);
    f->setBorderTopColor(ColorSystemForeground);
    f->setBorderBottomColor(ColorSystemBackground);
    f->setBorderDiagonal(DiagonalBoth);
    f->setBorderDiagonalStyle(BorderMediumDashDotDot);
    f->setBorderDiagonalColor(ColorTeal);
    f->setFillPattern(FillGray0625);
    f->setPatternForegroundColor(ColorSystemForeground);
    f->setPatternBackgroundColor(ColorSystemBackground);
    f->setLocked(false);
    f->setHidden(true);
    f->setNumFormat(NumFormatPercentD2);
    EXPECT_EQ(HAlignCenterAcross, f->alignH());
    EXPECT_EQ(VAlignDistributed, f->alignV());
    EXPECT_TRUE(f->wrap());
    EXPECT_EQ(180, f->rotation());
    EXPECT_EQ(15, f->indent());
    EXPECT_TRUE(f->shrinkToFit());
    EXPECT_EQ(BorderThin, f->borderLeft());
    EXPECT_EQ(BorderSlantDashDot, f->borderRight());
    EXPECT_EQ(BorderDouble, f->borderTop());
    EXPECT_EQ(BorderHair, f->borderBottom());
    EXPECT_EQ(ColorRed, f->borderLeftColor());
    EXPECT_EQ(ColorIndex63, f->borderRightColor());
    EXPECT_EQ(ColorSystemForeground, f->borderTopColor());
    EXPECT_EQ(ColorSystemBackground, f->borderBottomColor());
    EXPECT_EQ(DiagonalBoth, f->borderDiagonal());
    EXPECT_EQ(BorderMediumDashDotDot, f->borderDiagonalStyle());
    EXPECT_EQ(ColorTeal, f->borderDiagonalColor());
    EXPECT_EQ(FillGray0625, f->fillPattern());
    EXPECT_EQ(ColorSystemForeground, f->patternForegroundColor());
    EXPECT_EQ(ColorSystemBackground, f->patternBackgroundColor());
    EXPECT_FALSE(f->locked());
    EXPECT_TRUE(f->hidden());
    EXPECT_EQ(NumFormatPercentD2, f->numFormat());
    f->setIndent(3);
    EXPECT_EQ(3, f->indent());
    EXPECT_TRUE(f->shrinkToFit());
    f->setBorder(BorderMedium);
    f->setBorderColor(ColorBlue);
    EXPECT_EQ(BorderMedium, f->borderLeft());
    EXPECT_EQ(BorderMedium, f->borderBottom());
    EXPECT_EQ(ColorBlue, f->borderRightColor());
    EXPECT_EQ(ColorBlue, f->borderTopColor());
    EXPECT_EQ(DiagonalBoth, f->borderDiagonal());
}

TYPED_TEST(FormatsTest, FontNumberingSkipsIndexFour) {
    auto book = newBook<TypeParam>();
    IFormatT<TypeParam>* f = book->addFormat();
    EXPECT_EQ(book->font(0), f->font());
    // The file's numbering has no font 4: setting font 0 stores 1, which reads back as font 1.
    EXPECT_TRUE(f->setFont(book->font(0)));
    EXPECT_EQ(book->font(1), f->font());
    EXPECT_TRUE(f->setFont(book->font(3)));
    EXPECT_EQ(nullptr, f->font());
    EXPECT_STREQ("incorrect font", book->errorMessage());
    // Fonts made by addFont sit at position 5 and later and map back exactly.
    IFontT<TypeParam>* mine = book->addFont();
    EXPECT_TRUE(f->setFont(mine));
    EXPECT_EQ(mine, f->font());
    auto other = newBook<TypeParam>();
    EXPECT_FALSE(f->setFont(other->font(0)));
    EXPECT_STREQ("specified font not found", book->errorMessage());
    EXPECT_EQ(mine, f->font());
}

TYPED_TEST(FormatsTest, FontFieldsAndLimits) {
    auto book = newBook<TypeParam>();
    IFontT<TypeParam>* font = book->addFont();
    EXPECT_EQ(10, font->size());
    EXPECT_EQ(ColorAutomatic, font->color());
    EXPECT_FALSE(font->bold());
    font->setSize(500);
    EXPECT_EQ(409, font->size());
    font->setSize(14);
    font->setBold(true);
    font->setItalic(true);
    font->setStrikeOut(true);
    font->setColor(ColorNavy);
    font->setScript(ScriptSuper);
    font->setUnderline(UnderlineDoubleAccounting);
    EXPECT_TRUE(font->setName(S<TypeParam>("Courier New").c_str()));
    EXPECT_EQ(14, font->size());
    EXPECT_TRUE(font->bold());
    EXPECT_TRUE(font->italic());
    EXPECT_TRUE(font->strikeOut());
    EXPECT_EQ(ColorNavy, font->color());
    EXPECT_EQ(ScriptSuper, font->script());
    EXPECT_EQ(UnderlineDoubleAccounting, font->underline());
    EXPECT_EQ(S<TypeParam>("Courier New"), font->name());
    font->setItalic(false);
    EXPECT_FALSE(font->italic());
    EXPECT_TRUE(font->strikeOut());
    std::basic_string<TypeParam> longName(256, 'F');
    EXPECT_FALSE(font->setName(longName.c_str()));
    EXPECT_STREQ("string is too long", book->errorMessage());
    EXPECT_EQ(S<TypeParam>("Courier New"), font->name());
    EXPECT_TRUE(font->setName(longName.substr(0, 255).c_str()));

    IFontT<TypeParam>* copy = book->addFont(font);
    EXPECT_EQ(6, book->fontSize() - 1);
    EXPECT_EQ(14, copy->size());
    EXPECT_TRUE(copy->bold());
    EXPECT_EQ(UnderlineDoubleAccounting, copy->underline());
    EXPECT_EQ(longName.substr(0, 255), copy->name());
}

TYPED_TEST(FormatsTest, DefaultFontIsFontZero) {
    auto book = newBook<TypeParam>();
    book->setDefaultFont(S<TypeParam>("Verdana").c_str(), 12);
    EXPECT_STREQ("ok", book->errorMessage());
    int size = 0;
    EXPECT_EQ(S<TypeParam>("Verdana"), book->defaultFont(&size));
    EXPECT_EQ(12, size);
    EXPECT_EQ(S<TypeParam>("Verdana"), book->font(0)->name());
}

TYPED_TEST(FormatsTest, SpecialColoursRoundTrip) {
    auto book = newBook<TypeParam>();
    IFormatT<TypeParam>* f = book->addFormat();
    f->setPatternForegroundColor(ColorSystemBackground);
    f->setPatternBackgroundColor(ColorSystemForeground);
    EXPECT_EQ(ColorSystemBackground, f->patternForegroundColor());
    EXPECT_EQ(ColorSystemForeground, f->patternBackgroundColor());
    f->setBorderDiagonalColor(ColorSystemForeground);
    EXPECT_EQ(ColorSystemForeground, f->borderDiagonalColor());
}

TYPED_TEST(FormatsTest, AddFormatCopiesAcrossBooks) {
    auto source = newBook<TypeParam>();
    IFontT<TypeParam>* font = source->addFont();
    font->setName(S<TypeParam>("Georgia").c_str());
    font->setBold(true);
    IFormatT<TypeParam>* from = source->addFormat();
    from->setFont(font);
    from->setNumFormat(source->addCustomNumFormat(S<TypeParam>("0.0 \"m\"").c_str()));
    from->setAlignH(HAlignRight);
    from->setWrap(true);
    from->setRotation(90);
    from->setBorder(BorderDashed);
    from->setBorderColor(ColorGreen);
    from->setFillPattern(FillSolid);
    from->setPatternForegroundColor(ColorYellow);
    from->setHidden(true);

    auto target = newBook<TypeParam>();
    target->addCustomNumFormat(S<TypeParam>("taken").c_str());
    IFormatT<TypeParam>* copy = target->addFormat(from);
    ASSERT_TRUE(copy);
    EXPECT_EQ(22, target->formatSize());
    EXPECT_EQ(165, copy->numFormat());
    EXPECT_EQ(S<TypeParam>("0.0 \"m\""), target->customNumFormat(165));
    ASSERT_TRUE(copy->font());
    EXPECT_EQ(S<TypeParam>("Georgia"), copy->font()->name());
    EXPECT_TRUE(copy->font()->bold());
    EXPECT_EQ(HAlignRight, copy->alignH());
    EXPECT_TRUE(copy->wrap());
    EXPECT_EQ(90, copy->rotation());
    EXPECT_EQ(BorderDashed, copy->borderTop());
    EXPECT_EQ(ColorGreen, copy->borderLeftColor());
    EXPECT_EQ(FillSolid, copy->fillPattern());
    EXPECT_EQ(ColorYellow, copy->patternForegroundColor());
    EXPECT_TRUE(copy->hidden());
    EXPECT_TRUE(copy->locked());
    // A fresh format is a locked cell format on font 0.
    IFormatT<TypeParam>* plain = target->addFormat();
    EXPECT_TRUE(plain->locked());
    EXPECT_EQ(target->font(0), plain->font());
}
