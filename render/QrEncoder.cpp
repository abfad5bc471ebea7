#include "render/QrEncoder.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "render/qr/QrBlocks.h"
#include "render/qr/QrMaskTrial.h"
#include "render/qr/QrPatterns.h"
#include "render/qr/QrRemainder.h"
#include "render/qr/QrTables.h"

namespace {

constexpr int maxDataBits = QrEncoder::maxDataCodewords * 8;

/// No version holds more bytes of any text: version 40-L takes 7089 digits.
constexpr std::size_t maxSourceLength = 7089;

constexpr int firstVersionOfGroup[QrTables::versionGroupCount] = {1, 10, 27};
constexpr int lastVersionOfGroup[QrTables::versionGroupCount] = {9, 26, 40};

int groupOfVersion(int version)
{
    if (version < firstVersionOfGroup[1]) {
        return 0;
    }
    return version < firstVersionOfGroup[2] ? 1 : 2;
}

/// Value of each byte in alphanumeric mode, -1 for a byte that has none.
constexpr std::array<std::int16_t, 256> makeAlphanumericValues()
{
    constexpr char characters[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ $%*+-./:";
    std::array<std::int16_t, 256> values{};
    for (std::int16_t& value : values) {
        value = -1;
    }
    for (int i = 0; characters[i] != '\0'; ++i) {
        values[static_cast<std::uint8_t>(characters[i])] = static_cast<std::int16_t>(i);
    }
    return values;
}

constexpr std::array<std::int16_t, 256> alphanumericValues = makeAlphanumericValues();

bool isKanjiPair(std::uint8_t first, std::uint8_t second)
{
    const bool isLead = (first >= 0x81 && first <= 0x9F) || (first >= 0xE0 && first <= 0xEB);
    if (!isLead || second < 0x40) {
        return false;
    }
    if (first == 0x9F) {
        return second <= 0xFC;
    }
    return first != 0xEB || second <= 0xBF;
}

QrEncoder::Mode singleByteMode(std::uint8_t byte)
{
    const int value = alphanumericValues[byte];
    if (value < 0) {
        return QrEncoder::Byte;
    }
    return value < 10 ? QrEncoder::Numeric : QrEncoder::Alphanumeric;
}

/// The bits of `codewords` in order, most significant first.
class CodewordBits
{
public:
    CodewordBits(const std::uint8_t* firstCodeword, int codewordCount)
        : m_codewords(firstCodeword)
        , m_left(codewordCount * 8)
    {
    }

    int count() const { return m_left; }

    bool takeBit()
    {
        const int bit = m_codewords[m_position >> 3] >> (7 - (m_position & 7)) & 1;
        ++m_position;
        --m_left;
        return bit != 0;
    }

    /// At least eight bits must be left.
    std::uint8_t takeByte()
    {
        const int offset = m_position & 7;
        const std::uint8_t* const at = m_codewords + (m_position >> 3);
        m_position += 8;
        m_left -= 8;
        if (offset == 0) {
            return at[0];
        }
        return static_cast<std::uint8_t>(at[0] << offset | at[1] >> (8 - offset));
    }

private:
    const std::uint8_t* const m_codewords;
    int m_position = 0;
    int m_left;
};

/// Four modules of a column, in the order of the rows.
using FourModules = std::array<std::uint8_t, 4>;

/// For each byte the modules that its bits 7, 5, 3 and 1 give in the right column of a strip. The
/// left column holds the bits between them: those of the byte shifted left by one.
constexpr std::array<FourModules, 256> makeStripModules(bool upwards)
{
    std::array<FourModules, 256> table{};
    for (int byte = 0; byte < 256; ++byte) {
        for (int i = 0; i < 4; ++i) {
            const bool isSet = (byte >> (7 - 2 * i) & 1) != 0;
            table[byte][upwards ? 3 - i : i] = isSet ? QrEncoder::DataBit : 0;
        }
    }
    return table;
}

constexpr std::array<FourModules, 256> upwardModules = makeStripModules(true);
constexpr std::array<FourModules, 256> downwardModules = makeStripModules(false);

bool isFree(std::uint8_t module)
{
    return (module & QrEncoder::Function) == 0;
}

/// Whether none of four modules belongs to a function pattern.
bool areFree(const std::uint8_t* four)
{
    return isFree(four[0] | four[1] | four[2] | four[3]);
}

/// Fills the free modules of two columns of `rowCount` rows, while there are bits.
void placeStrip(CodewordBits& bits, std::uint8_t* right, std::uint8_t* left, int rowCount,
                bool upwards)
{
    const auto& fourModules = upwards ? upwardModules : downwardModules;
    for (int row = 0; row < rowCount;) {
        // Mostly four rows are free, and take eight bits at once.
        const int top = upwards ? rowCount - 4 - row : row;
        if (row + 4 <= rowCount && bits.count() >= 8 && areFree(right + top) && areFree(left + top))
        {
            const std::uint8_t byte = bits.takeByte();
            std::copy_n(fourModules[byte].begin(), 4, right + top);
            std::copy_n(fourModules[byte << 1 & 0xFF].begin(), 4, left + top);
            row += 4;
            continue;
        }

        const int y = upwards ? rowCount - 1 - row : row;
        for (std::uint8_t* const column : {right, left}) {
            if (isFree(column[y]) && bits.count() > 0) {
                column[y] = bits.takeBit() ? QrEncoder::DataBit : 0;
            }
        }
        ++row;
    }
}

} // namespace

bool QrEncoder::encodeData(int errorLevel, int lowestVersion, bool autoExtend, int mask,
                           const char* source, int sourceLength)
{
    level = errorLevel;
    maskingNumber = mask;
    if (errorLevel < 0 || errorLevel >= QrTables::levelCount || mask < -1 ||
        mask >= QrPatterns::maskCount || lowestVersion < 0 ||
        lowestVersion > QrTables::versionCount || source == nullptr)
    {
        return false;
    }

    const std::size_t length =
        sourceLength > 0 ? static_cast<std::size_t>(sourceLength) : std::strlen(source);
    if (length == 0) {
        return false;
    }

    const int found =
        findVersion(lowestVersion, reinterpret_cast<const std::uint8_t*>(source), length);
    if (found == 0) {
        return false;
    }
    if (lowestVersion != 0 && found > lowestVersion && !autoExtend) {
        return false;
    }

    version = std::max(found, lowestVersion);
    padStream();
    interleaveData();
    appendErrorCorrection();
    moduleCount = version * 4 + 17;

    drawFunctionPatterns();
    placeCodewords();
    if (maskingNumber == -1) {
        maskingNumber = chooseMask();
    }
    applyMask(maskingNumber);
    writeFormatInformation(maskingNumber);
    flatten();
    return true;
}

/// The lowest version that holds the text, of the groups from that of `lowestVersion` on; 0 if
/// there is none. The stream is then written with the widths of the group it was found in.
int QrEncoder::findVersion(int lowestVersion, const std::uint8_t* source, std::size_t length)
{
    dataBitCount = -1;
    if (length > maxSourceLength) {
        return 0;
    }

    for (int group = groupOfVersion(lowestVersion); group < QrTables::versionGroupCount; ++group) {
        if (!classify(source, static_cast<int>(length))) {
            return 0;
        }
        QrBlocks::joinNumericWithAlphanumeric(*this, group);
        QrBlocks::joinShortBlocks(*this, group);
        if (!writeStream(source, group)) {
            continue;
        }

        const int need = (dataBitCount + 7) / 8;
        for (int v = firstVersionOfGroup[group]; v <= lastVersionOfGroup[group]; ++v) {
            if (QrTables::versions[v].dataCodewords[level] >= need) {
                return v;
            }
        }
    }
    return 0;
}

/// Splits the text into blocks of one mode. Returns false if the tables cannot hold them.
bool QrEncoder::classify(const std::uint8_t* source, int length)
{
    blockLengths.fill(0);
    blockCount = 0;
    for (int i = 0; i < length;) {
        const bool isKanji = i + 1 < length && isKanjiPair(source[i], source[i + 1]);
        const Mode mode = isKanji ? Kanji : singleByteMode(source[i]);
        const int itemLength = isKanji ? 2 : 1;

        if (blockCount == 0 || blockModes[blockCount - 1] != mode) {
            if (blockCount == maxDataCodewords) {
                return false;
            }
            blockModes[blockCount++] = mode;
        }
        blockLengths[blockCount - 1] += itemLength;
        i += itemLength;
    }
    return true;
}

/// Writes all blocks with the count widths of `group`. Returns false if the stream overflowed.
bool QrEncoder::writeStream(const std::uint8_t* source, int group)
{
    dataCodewords.fill(0);
    dataBitCount = 0;
    for (int i = 0; i < blockCount; ++i) {
        const int mode = blockModes[i];
        const int length = blockLengths[i];
        appendBits(1 << mode, QrTables::modeIndicatorBits);
        appendBits(mode == Kanji ? length / 2 : length, QrTables::countIndicatorBits[mode][group]);

        switch (mode) {
        case Numeric:
            writeNumeric(source, length);
            break;
        case Alphanumeric:
            writeAlphanumeric(source, length);
            break;
        case Kanji:
            writeKanji(source, length);
            break;
        default:
            for (int at = 0; at < length; ++at) {
                appendBits(source[at], 8);
            }
        }
        source += length;
    }
    return dataBitCount >= 0;
}

void QrEncoder::writeNumeric(const std::uint8_t* digits, int length)
{
    constexpr int bitsOfDigits[] = {0, 4, 7, 10};
    for (int i = 0; i < length; i += 3) {
        const int count = std::min(3, length - i);
        int value = 0;
        for (int j = 0; j < count; ++j) {
            value = value * 10 + (digits[i + j] - '0');
        }
        appendBits(value, bitsOfDigits[count]);
    }
}

void QrEncoder::writeAlphanumeric(const std::uint8_t* characters, int length)
{
    int i = 0;
    for (; i + 1 < length; i += 2) {
        appendBits(alphanumericValues[characters[i]] * 45 + alphanumericValues[characters[i + 1]],
                   11);
    }
    if (i < length) {
        appendBits(alphanumericValues[characters[i]], 6);
    }
}

void QrEncoder::writeKanji(const std::uint8_t* pairs, int length)
{
    for (int i = 0; i < length; i += 2) {
        const int code = pairs[i] << 8 | pairs[i + 1];
        const int offset = code - (code >= 0x8140 && code <= 0x9FFC ? 0x8140 : 0xC140);
        appendBits((offset >> 8) * 192 + (offset & 0xFF), 13);
    }
}

/// Appends the low `count` bits of `value`, 16 at most. A stream that has overflowed stays so.
void QrEncoder::appendBits(int value, int count)
{
    if (dataBitCount < 0) {
        return;
    }
    if (dataBitCount + count > maxDataBits) {
        dataBitCount = -1;
        return;
    }

    // The bits reach into three bytes at most, which are clear behind the stream's end.
    const std::uint32_t bits = static_cast<std::uint32_t>(value) & ((1U << count) - 1);
    std::uint32_t window = bits << (24 - count - dataBitCount % 8);
    for (int at = dataBitCount / 8; window != 0; ++at) {
        dataCodewords[at] |= static_cast<std::uint8_t>(window >> 16);
        window = window << 8 & 0xFFFFFF;
    }
    dataBitCount += count;
}

/// Appends the terminator and fills the data codewords of the version.
void QrEncoder::padStream()
{
    const int dataCount = QrTables::versions[version].dataCodewords[level];
    appendBits(0, std::min(4, dataCount * 8 - dataBitCount));

    std::uint8_t padding = 236;
    for (int i = (dataBitCount + 7) / 8; i < dataCount; ++i) {
        dataCodewords[i] = padding;
        padding ^= 236 ^ 17;
    }
}

void QrEncoder::interleaveData()
{
    const QrTables::VersionRecord& record = QrTables::versions[version];
    const QrTables::BlockGroup* const groups = record.blocks[level];
    std::fill_n(allCodewords.begin(), record.totalCodewords, std::uint8_t{0});

    const int rsBlockCount = groups[0].count + groups[1].count;
    const int commonLength = groups[0].dataCodewords;
    const std::uint8_t* data = dataCodewords.data();
    for (int block = 0; block < rsBlockCount; ++block) {
        for (int i = 0; i < commonLength; ++i) {
            allCodewords[rsBlockCount * i + block] = *data++;
        }
        // The one codeword more of the second group's blocks stands behind all others.
        if (block >= groups[0].count) {
            allCodewords[rsBlockCount * commonLength + block - groups[0].count] = *data++;
        }
    }
}

void QrEncoder::appendErrorCorrection()
{
    const QrTables::VersionRecord& record = QrTables::versions[version];
    const QrTables::BlockGroup* const groups = record.blocks[level];
    const int rsBlockCount = groups[0].count + groups[1].count;
    const int errorCodewords = groups[0].totalCodewords - groups[0].dataCodewords;

    const QrRemainder remainder(errorCodewords);
    const std::uint8_t* data = dataCodewords.data();
    for (int block = 0; block < rsBlockCount; ++block) {
        const int length = groups[block < groups[0].count ? 0 : 1].dataCodewords;
        rsWork.fill(0);
        remainder.divide(data, length, rsWork.data());
        for (int i = 0; i < errorCodewords; ++i) {
            allCodewords[record.dataCodewords[level] + rsBlockCount * i + block] = rsWork[i];
        }
        data += length;
    }
    allCodewordCount = record.totalCodewords;
}

void QrEncoder::drawFunctionPatterns()
{
    for (auto& column : modules) {
        column.fill(0);
    }

    drawFinder(0, 0);
    drawFinder(moduleCount - 7, 0);
    drawFinder(0, moduleCount - 7);
    drawSeparators();
    reserveFormatModules();
    if (version >= 7) {
        drawVersionInformation();
    }
    drawAlignments();
    drawTiming();
}

void QrEncoder::drawFinder(int left, int top)
{
    for (int y = 0; y < 7; ++y) {
        for (int x = 0; x < 7; ++x) {
            setFunctionModule(left + x, top + y, (QrTables::finderRows[y] >> (6 - x) & 1) != 0);
        }
    }
}

void QrEncoder::drawSeparators()
{
    const int far = moduleCount - 8;
    for (int i = 0; i < 8; ++i) {
        setFunctionModule(i, 7, false);
        setFunctionModule(7, i, false);
        setFunctionModule(far + i, 7, false);
        setFunctionModule(far, i, false);
        setFunctionModule(i, far, false);
        setFunctionModule(7, far + i, false);
    }
}

/// Keeps the codewords off the modules of the format information, which depends on the mask.
void QrEncoder::reserveFormatModules()
{
    setFunctionModule(8, 8, false);
    for (int i = 0; i < 8; ++i) {
        setFunctionModule(8, i, false);
        setFunctionModule(i, 8, false);
        setFunctionModule(8, moduleCount - 1 - i, false);
        setFunctionModule(moduleCount - 1 - i, 8, false);
    }
}

void QrEncoder::drawVersionInformation()
{
    const int information = QrPatterns::versionInformation(version);
    for (int i = 0; i < 6; ++i) {
        for (int j = 0; j < 3; ++j) {
            const bool dark = (information >> (3 * i + j) & 1) != 0;
            setFunctionModule(i, moduleCount - 11 + j, dark);
            setFunctionModule(moduleCount - 11 + j, i, dark);
        }
    }
}

void QrEncoder::drawAlignments()
{
    const QrTables::VersionRecord& record = QrTables::versions[version];
    for (int i = 0; i < record.alignmentCount; ++i) {
        const int x = record.alignment[i];
        drawAlignment(x, 6);
        drawAlignment(6, x);
        for (int j = 0; j < record.alignmentCount; ++j) {
            drawAlignment(x, record.alignment[j]);
        }
    }
}

/// Draws nothing where a finder has taken the centre.
void QrEncoder::drawAlignment(int centreX, int centreY)
{
    if ((modules[centreX][centreY] & Function) != 0) {
        return;
    }
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 5; ++x) {
            const bool dark = (QrTables::alignmentRows[y] >> (4 - x) & 1) != 0;
            setFunctionModule(centreX - 2 + x, centreY - 2 + y, dark);
        }
    }
}

void QrEncoder::drawTiming()
{
    for (int i = 8; i <= moduleCount - 9; ++i) {
        setFunctionModule(i, 6, i % 2 == 0);
        setFunctionModule(6, i, i % 2 == 0);
    }
}

void QrEncoder::setFunctionModule(int x, int y, bool dark)
{
    modules[x][y] = dark ? Function | FunctionDark : Function;
}

/// Fills the free modules along the standard's path: strips of two columns from the right, the
/// first one upwards, the next one downwards and so on.
void QrEncoder::placeCodewords()
{
    CodewordBits bits(allCodewords.data(), allCodewordCount);
    bool upwards = true;
    for (int x = moduleCount - 1; x > 0; x -= 2, upwards = !upwards) {
        if (x == 6) {
            x = 5; // the vertical timing pattern belongs to no strip
        }
        placeStrip(bits, modules[x].data(), modules[x - 1].data(), moduleCount, upwards);
    }
}

/// The mask with the lowest penalty, of equal ones that with the lowest number.
int QrEncoder::chooseMask() const
{
    QrMaskTrial trial(modules, moduleCount, level);
    int best = 0;
    int lowestPenalty = trial.penalty(0);
    for (int mask = 1; mask < QrPatterns::maskCount; ++mask) {
        const int penalty = trial.penalty(mask);
        if (penalty < lowestPenalty) {
            lowestPenalty = penalty;
            best = mask;
        }
    }
    return best;
}

void QrEncoder::applyMask(int mask)
{
    // What the mask inverts in the columns of one period; a column is then one pass over bytes.
    std::array<std::array<std::uint8_t, maxModuleCount>, QrPatterns::maskPeriod> inversions{};
    for (int x = 0; x < QrPatterns::maskPeriod; ++x) {
        auto& column = inversions[x];
        for (int y = 0; y < QrPatterns::maskPeriod; ++y) {
            column[y] = QrPatterns::maskInverts(mask, x, y) ? MaskedDark : 0;
        }
        for (int y = QrPatterns::maskPeriod; y < moduleCount; ++y) {
            column[y] = column[y - QrPatterns::maskPeriod];
        }
    }

    const int side = moduleCount; // a copy: writing bytes could change the field itself
    for (int x = 0; x < side; ++x) {
        const auto& inversion = inversions[x % QrPatterns::maskPeriod];
        auto& column = modules[x];
        for (int y = 0; y < side; ++y) {
            const std::uint8_t module = column[y];
            const int masked = (module >> 1 ^ inversion[y]) & ~(module >> 5) & MaskedDark;
            column[y] = static_cast<std::uint8_t>((module & ~MaskedDark) | masked);
        }
    }
}

void QrEncoder::writeFormatInformation(int mask)
{
    QrPatterns::visitFormatModules(
        QrPatterns::formatInformation(level, mask), moduleCount,
        [this](int x, int y, bool dark) { setFunctionModule(x, y, dark); });
}

/// Leaves of each module whether it is dark.
void QrEncoder::flatten()
{
    const int side = moduleCount;
    for (int x = 0; x < side; ++x) {
        auto& column = modules[x];
        for (int y = 0; y < side; ++y) {
            column[y] = (column[y] & (MaskedDark | FunctionDark)) != 0 ? 1 : 0;
        }
    }
}
