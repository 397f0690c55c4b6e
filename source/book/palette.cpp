#include "book/palette.h"

#include "frame/zverror.h"

namespace zelvar {

namespace {
const uint32_t kDefaultPalette[Palette::kColors] = {
    0x000000, 0xFFFFFF, 0xFF0000, 0x00FF00, 0x0000FF, 0xFFFF00, 0xFF00FF, 0x00FFFF,
    0x800000, 0x008000, 0x000080, 0x808000, 0x800080, 0x008080, 0xC0C0C0, 0x808080,
    0x9999FF, 0x993366, 0xFFFFCC, 0xCCFFFF, 0x660066, 0xFF8080, 0x0066CC, 0xCCCCFF,
    0x000080, 0xFF00FF, 0xFFFF00, 0x00FFFF, 0x800080, 0x800000, 0x008080, 0x0000FF,
    0x00CCFF, 0xCCFFFF, 0xCCFFCC, 0xFFFF99, 0x99CCFF, 0xFF99CC, 0xCC99FF, 0xFFCC99,
    0x3366FF, 0x33CCCC, 0x99CC00, 0xFFCC00, 0xFF9900, 0xFF6600, 0x666699, 0x969696,
    0x003366, 0x339966, 0x003300, 0x333300, 0x993300, 0x993366, 0x333399, 0x333333};
}  // namespace

Palette::Palette() { reset(); }

void Palette::reset() {
    ccv = kColors;
    colors.assign(kColors, LongRGB());
    for (int i = 0; i < kColors; ++i) {
        colors[i].red = static_cast<uint8_t>(kDefaultPalette[i] >> 16);
        colors[i].green = static_cast<uint8_t>(kDefaultPalette[i] >> 8);
        colors[i].blue = static_cast<uint8_t>(kDefaultPalette[i]);
        used[i] = false;
    }
}

int Palette::addRGB(int red, int green, int blue) {
    int count = static_cast<int>(colors.size()) < kColors ? static_cast<int>(colors.size()) : kColors;
    for (int i = 0; i < count; ++i) {
        const LongRGB& c = colors[i];
        if (c.red == red && c.green == green && c.blue == blue) {
            used[i] = true;
            return i + 8;
        }
    }
    for (int i = 0; i < count; ++i) {
        if (used[i]) continue;
        used[i] = true;
        colors[i].red = static_cast<uint8_t>(red);
        colors[i].green = static_cast<uint8_t>(green);
        colors[i].blue = static_cast<uint8_t>(blue);
        return i + 8;
    }
    throw zverror("no free color index, limit is reached for xls format");
}

void Palette::getRGB(int color, int* red, int* green, int* blue) const {
    // Indexes below 8 or beyond the table wrap round to large numbers and fail at().
    const LongRGB& c = colors.at(static_cast<size_t>(static_cast<unsigned>(color) - 8u));
    if (red) *red = c.red;
    if (green) *green = c.green;
    if (blue) *blue = c.blue;
}

}  // namespace zelvar
