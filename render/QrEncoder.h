#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// QR Code Model 2 encoder (ISO/IEC 18004).
///
/// The object is a plain work area of about 60 KB that `encodeData` fills. It allocates nothing,
/// keeps nothing between calls and leaves its fields uninitialised at construction.
///
/// The text is taken as raw bytes: they are classified by the four modes of the standard, with the
/// Shift-JIS test for Kanji, whatever their encoding is. No ECI header is written.
class QrEncoder
{
public:
    static constexpr int maxModuleCount = 177;
    static constexpr int maxDataCodewords = 2956;
    static constexpr int maxCodewords = 3706;
    static constexpr int maxBlockCodewords = 153;

    /// Flags of a byte of `modules` while a symbol is built.
    enum ModuleFlag : std::uint8_t
    {
        MaskedDark = 0x01,   ///< data module that is dark after masking
        DataBit = 0x02,      ///< data module whose bit is set, before masking
        FunctionDark = 0x10, ///< dark module of a function pattern
        Function = 0x20,     ///< belongs to a function pattern
    };

    enum Mode : std::uint8_t
    {
        Numeric,
        Alphanumeric,
        Byte,
        Kanji,
    };

    using Matrix = std::array<std::array<std::uint8_t, maxModuleCount>, maxModuleCount>;

    /// Encodes `source` and returns true if `version`, `moduleCount` and `modules` hold the
    /// finished symbol.
    ///
    /// Returns false, with `moduleCount` and `modules` untouched, if the text is empty, fits no
    /// version, or needs a higher version than allowed, and for arguments out of range.
    ///
    /// `errorLevel`: 0 = L, 1 = M, 2 = Q, 3 = H.
    /// `lowestVersion`: lowest version to use (1 to 40), or 0 for the smallest that fits.
    /// `autoExtend`: whether a text too long for `lowestVersion` may take a higher version.
    /// `mask`: 0 to 7, or -1 for the mask with the lowest penalty.
    /// `source`: the bytes to encode; must end with a zero byte if `sourceLength` is not positive.
    /// `sourceLength`: bytes to encode; 0 or less means up to the zero byte.
    bool encodeData(int errorLevel, int lowestVersion, bool autoExtend, int mask,
                    const char* source, int sourceLength);

    std::int32_t level;         ///< error correction level in use
    std::int32_t version;       ///< symbol version in use, 1 to 40
    std::int32_t maskingNumber; ///< the mask asked for, then the mask in use
    std::int32_t moduleCount;   ///< modules per side
    Matrix modules;             ///< first index column, second index row; 1 = dark, 0 = light

    std::int32_t dataBitCount; ///< bits written to `dataCodewords`; -1 after an overflow
    std::array<std::uint8_t, maxDataCodewords> dataCodewords; ///< most significant bit first

    std::int32_t blockCount;                                 ///< blocks of one mode
    std::array<std::uint8_t, maxDataCodewords> blockModes;   ///< `Mode` of each block
    std::array<std::int32_t, maxDataCodewords> blockLengths; ///< source bytes of each block

    std::int32_t allCodewordCount;                       ///< codewords of the whole symbol
    std::array<std::uint8_t, maxCodewords> allCodewords; ///< interleaved, error correction included
    std::array<std::uint8_t, maxBlockCodewords> rsWork;  ///< Reed-Solomon scratch of one block

private:
    int findVersion(int lowestVersion, const std::uint8_t* source, std::size_t length);
    bool classify(const std::uint8_t* source, int length);
    bool writeStream(const std::uint8_t* source, int group);
    void writeNumeric(const std::uint8_t* digits, int length);
    void writeAlphanumeric(const std::uint8_t* characters, int length);
    void writeKanji(const std::uint8_t* pairs, int length);
    void appendBits(int value, int count);
    void padStream();

    void interleaveData();
    void appendErrorCorrection();

    void drawFunctionPatterns();
    void drawFinder(int left, int top);
    void drawSeparators();
    void reserveFormatModules();
    void drawVersionInformation();
    void drawAlignment(int centreX, int centreY);
    void drawAlignments();
    void drawTiming();
    void setFunctionModule(int x, int y, bool dark);

    void placeCodewords();
    int chooseMask() const;
    void applyMask(int mask);
    void writeFormatInformation(int mask);
    void flatten();
};
