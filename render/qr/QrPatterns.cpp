#include "render/qr/QrPatterns.h"

namespace QrPatterns {

namespace {

/// `value` followed by the remainder of its division by `generator`, which has the given degree.
int appendBchRemainder(int value, int valueBits, int generator, int degree)
{
    int remainder = value << degree;
    for (int bit = valueBits - 1; bit >= 0; --bit) {
        if ((remainder >> (bit + degree) & 1) != 0) {
            remainder ^= generator << bit;
        }
    }
    return value << degree | remainder;
}

} // namespace

int formatInformation(int level, int mask)
{
    constexpr int levelCodes[] = {1, 0, 3, 2};
    constexpr int inversion = 0x5412;
    return appendBchRemainder(levelCodes[level] << 3 | mask, 5, 0x537, 10) ^ inversion;
}

int versionInformation(int version)
{
    return appendBchRemainder(version, 6, 0x1F25, 12);
}

} // namespace QrPatterns
