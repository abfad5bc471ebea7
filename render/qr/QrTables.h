#pragma once

#include <array>
#include <cstdint>

/// Read-only tables of ISO/IEC 18004 (QR Code Model 2).
namespace QrTables {

constexpr int versionCount = 40;
constexpr int levelCount = 4;
constexpr int modeCount = 4;
constexpr int versionGroupCount = 3;
constexpr int modeIndicatorBits = 4;

/// A run of Reed-Solomon blocks of one size. A count of 0 means that the run is not used.
struct BlockGroup
{
    int count;
    int totalCodewords; ///< per block, data and error correction together
    int dataCodewords;  ///< per block
};

/// What the standard fixes for one version. Arrays by level are in the order L, M, Q, H.
struct VersionRecord
{
    int version;
    int totalCodewords;
    int dataCodewords[levelCount];
    int alignmentCount;
    int alignment[6]; ///< centre coordinates, without the coordinate 6 that all versions share
    BlockGroup blocks[levelCount][2];
};

/// Indexed by version; record 0 is empty.
extern const std::array<VersionRecord, versionCount + 1> versions;

/// Bits of the character count indicator, by mode (numeric, alphanumeric, 8-bit, Kanji) and by
/// version group (1 to 9, 10 to 26, 27 to 40).
extern const int countIndicatorBits[modeCount][versionGroupCount];

/// Powers of the primitive element 2 of GF(256) with the field polynomial 0x11D; the index runs
/// from 0 to 254.
extern const std::array<std::uint8_t, 255> exponents;

/// Logarithms to the base 2 in the same field. Zero has none; its entry is 0 and is never used.
extern const std::array<std::uint8_t, 256> logarithms;

constexpr int maxGeneratorDegree = 68;

/// Coefficients of one Reed-Solomon generator polynomial, as exponents of the primitive element,
/// highest degree first. The leading coefficient, which is always 1, is left out.
using Generator = std::array<std::uint8_t, maxGeneratorDegree>;

/// Indexed by the count of error correction codewords: 7, 10, 13, 15, 16, 17, 18 and every even
/// count from 20 to 68. The other records are empty.
extern const std::array<Generator, maxGeneratorDegree + 1> generators;

/// Rows of the finder and the alignment pattern, a set bit for each dark module.
constexpr std::array<std::uint8_t, 7> finderRows{0x7F, 0x41, 0x5D, 0x5D, 0x5D, 0x41, 0x7F};
constexpr std::array<std::uint8_t, 5> alignmentRows{0x1F, 0x11, 0x15, 0x11, 0x1F};

} // namespace QrTables
