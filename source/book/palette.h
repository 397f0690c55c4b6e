// The 56 colours of a binary book that cells, fonts and borders refer to by index 8 to 63.
#pragma once
#include <cstdint>
#include <vector>

namespace zelvar {

struct LongRGB {
    uint8_t red = 0, green = 0, blue = 0, reserved = 0;
};

class Palette {
public:
    static constexpr int kColors = 56;

    Palette();
    void reset();
    // Index of the colour: an entry already holding it, else the first entry not asked for yet,
    // which is overwritten. Throws when all 56 have been asked for.
    int addRGB(int red, int green, int blue);
    // Throws the standard range error for an index outside 8 to 63.
    void getRGB(int color, int* red, int* green, int* blue) const;

    int16_t ccv = kColors;
    std::vector<LongRGB> colors;
    bool used[kColors];
};

}  // namespace zelvar
