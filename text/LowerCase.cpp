#include "text/LowerCase.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace {

/// Capitals, each `step` after the one before it, whose small letters all lie `distance` further on.
struct CapitalRange {
    char16_t first;
    char16_t last;
    int step;
    int distance;
};

// clang-format off
constexpr std::array kCapitals = {
    CapitalRange{u'A',    u'Z',    1,   32}, // ASCII
    CapitalRange{0x00C0,  0x00D6,  1,   32}, // Latin-1, around the multiplication sign
    CapitalRange{0x00D8,  0x00DE,  1,   32},
    CapitalRange{0x0100,  0x012E,  2,    1}, // Latin of Europe; the dotted I of Turkish stays
    CapitalRange{0x0132,  0x0136,  2,    1},
    CapitalRange{0x0139,  0x0147,  2,    1},
    CapitalRange{0x014A,  0x0176,  2,    1},
    CapitalRange{0x0178,  0x0178,  1, -121},
    CapitalRange{0x0179,  0x017D,  2,    1},
    CapitalRange{0x01A0,  0x01A0,  1,    1}, // Vietnamese O and U with horn
    CapitalRange{0x01AF,  0x01AF,  1,    1},
    CapitalRange{0x01CD,  0x01DB,  2,    1}, // Pinyin
    CapitalRange{0x0386,  0x0386,  1,   38}, // Greek
    CapitalRange{0x0388,  0x038A,  1,   37},
    CapitalRange{0x038C,  0x038C,  1,   64},
    CapitalRange{0x038E,  0x038F,  1,   63},
    CapitalRange{0x0391,  0x03A1,  1,   32},
    CapitalRange{0x03A3,  0x03AB,  1,   32},
    CapitalRange{0x0400,  0x040F,  1,   80}, // Cyrillic
    CapitalRange{0x0410,  0x042F,  1,   32},
    CapitalRange{0x0460,  0x0480,  2,    1},
    CapitalRange{0x048A,  0x04BE,  2,    1},
    CapitalRange{0x04C1,  0x04CD,  2,    1},
    CapitalRange{0x04D0,  0x052E,  2,    1},
    CapitalRange{0x0531,  0x0556,  1,   48}, // Armenian
    CapitalRange{0x1E00,  0x1E94,  2,    1}, // Latin with two marks
    CapitalRange{0x1EA0,  0x1EFE,  2,    1}, // Vietnamese
    CapitalRange{0xFF21,  0xFF3A,  1,   32}, // full width
};
// clang-format on

char16_t LowerCaseUnit(char16_t unit)
{
    const auto* range = std::find_if(kCapitals.begin(), kCapitals.end(), [unit](const CapitalRange& r) {
        return unit >= r.first && unit <= r.last && (unit - r.first) % r.step == 0;
    });
    return range == kCapitals.end() ? unit : static_cast<char16_t>(unit + range->distance);
}

std::vector<char16_t> LowerCaseUnits()
{
    std::vector<char16_t> units(0x10000);
    for (std::size_t unit = 0; unit < units.size(); ++unit)
        units[unit] = LowerCaseUnit(static_cast<char16_t>(unit));
    return units;
}

} // namespace

char16_t LowerCase(char16_t unit)
{
    static const std::vector<char16_t> units = LowerCaseUnits();
    return units[unit];
}

std::u16string LowerCase(std::u16string_view text)
{
    std::u16string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), LowerCaseUnit);
    return lower;
}
