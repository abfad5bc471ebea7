#pragma once

/// What a symbol holds besides its codewords: masks, format information, version information.
namespace QrPatterns {

constexpr int maskCount = 8;

/// All mask conditions repeat after this many modules, across and down.
constexpr int maskPeriod = 12;

/// True if `mask` (0 to 7) inverts the data module in column `x` and row `y`.
constexpr bool maskInverts(int mask, int x, int y)
{
    switch (mask) {
    case 0:
        return (x + y) % 2 == 0;
    case 1:
        return y % 2 == 0;
    case 2:
        return x % 3 == 0;
    case 3:
        return (x + y) % 3 == 0;
    case 4:
        return (y / 2 + x / 3) % 2 == 0;
    case 5:
        return x * y % 2 + x * y % 3 == 0;
    case 6:
        return (x * y % 2 + x * y % 3) % 2 == 0;
    default:
        return ((x + y) % 2 + x * y % 3) % 2 == 0;
    }
}

/// The 15 bits of the format information. `level`: 0 = L, 1 = M, 2 = Q, 3 = H.
int formatInformation(int level, int mask);

/// The 18 bits of the version information of `version` (7 to 40).
int versionInformation(int version);

/// Calls `visit(x, y, dark)` for each module of both copies of the format information, then for
/// the one module beside them that is always dark. `side` is the symbol's modules per side.
template <typename Visitor>
void visitFormatModules(int information, int side, Visitor visit)
{
    for (int bit = 0; bit < 15; ++bit) {
        const bool dark = (information >> bit & 1) != 0;

        // Around the top left finder, stepping over the timing patterns.
        if (bit < 8) {
            visit(8, bit < 6 ? bit : bit + 1, dark);
        } else {
            visit(bit == 8 ? 7 : 14 - bit, 8, dark);
        }

        // Shared by the other two finders.
        if (bit < 8) {
            visit(side - 1 - bit, 8, dark);
        } else {
            visit(8, side - 15 + bit, dark);
        }
    }
    visit(8, side - 8, true);
}

} // namespace QrPatterns
