// Bytes taken as the arguments of the QR encoder and the text to encode. A finished symbol is
// checked by what can be read off its modules.

#include <QPixmap>
#include <QString>

#include <array>

#include "fuzz/FuzzSupport.h"
#include "render/QrEncoder.h"
#include "render/QrPixmap.h"

namespace {

constexpr int argumentBytes = 4;
constexpr int pixmapEvery = 4; // inputs; a pixmap takes as long as all the rest
constexpr int untouched = -77;
constexpr std::uint8_t untouchedModule = 0xA5;

struct Arguments
{
    int level;
    int lowestVersion;
    bool autoExtend;
    int mask;
};

/// Mostly in range, now and then a step out of it.
Arguments argumentsOf(const QByteArray& input)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(input.constData());
    return {bytes[0] % 6 - 1, bytes[1] % 43 - 1, (bytes[2] & 1) != 0, bytes[3] % 11 - 2};
}

bool inRange(const Arguments& arguments)
{
    return arguments.level >= 0 && arguments.level <= 3 && arguments.lowestVersion >= 0 &&
           arguments.lowestVersion <= 40 && arguments.mask >= -1 && arguments.mask <= 7;
}

bool isDark(const QrEncoder& symbol, int x, int y)
{
    return symbol.modules[x][y] == 1;
}

/// A finder with its light frame, as far as that lies in the symbol.
void checkFinder(const QrEncoder& symbol, int left, int top)
{
    for (int x = -1; x <= 7; ++x) {
        for (int y = -1; y <= 7; ++y) {
            const int column = left + x;
            const int row = top + y;
            if (column < 0 || row < 0 || column >= symbol.moduleCount || row >= symbol.moduleCount)
            {
                continue;
            }
            const int ring = qMax(qAbs(x - 3), qAbs(y - 3));
            require(isDark(symbol, column, row) == (ring != 2 && ring != 4), "finders are whole");
        }
    }
}

void checkFunctionPatterns(const QrEncoder& symbol)
{
    const int side = symbol.moduleCount;
    checkFinder(symbol, 0, 0);
    checkFinder(symbol, side - 7, 0);
    checkFinder(symbol, 0, side - 7);
    for (int i = 8; i < side - 8; ++i) {
        require(isDark(symbol, i, 6) == (i % 2 == 0), "the upper timing line alternates");
        require(isDark(symbol, 6, i) == (i % 2 == 0), "the left timing line alternates");
    }
    require(isDark(symbol, 8, side - 8), "the lone dark module is there");
}

/// The remainder of the format information's code, 10 bits.
int formatRemainder(int data)
{
    constexpr int generator = 0x537;
    int value = data << 10;
    for (int bit = 14; bit >= 10; --bit) {
        if ((value & (1 << bit)) != 0) {
            value ^= generator << (bit - 10);
        }
    }
    return value;
}

/// The format information beside the top left finder.
void checkFormat(const QrEncoder& symbol)
{
    constexpr std::array<int, 4> levelBits = {1, 0, 3, 2};
    const int data = levelBits[symbol.level] << 3 | symbol.maskingNumber;
    const int format = (data << 10 | formatRemainder(data)) ^ 0x5412;
    for (int bit = 0; bit < 15; ++bit) {
        const int along = bit < 6 ? bit : bit + 1;      // down the column 8, past the timing line
        const int back = bit < 9 ? 15 - bit : 14 - bit; // along the row 8, towards the left edge
        const bool dark = bit < 8 ? isDark(symbol, 8, along) : isDark(symbol, back, 8);
        require(dark == ((format >> bit & 1) != 0), "the format tells level and mask");
    }
}

int darkModules(const QrEncoder& symbol)
{
    int dark = 0;
    for (int x = 0; x < symbol.moduleCount; ++x) {
        for (int y = 0; y < symbol.moduleCount; ++y) {
            require(symbol.modules[x][y] <= 1, "a module is dark or light");
            dark += symbol.modules[x][y];
        }
    }
    return dark;
}

void checkSymbol(const QrEncoder& symbol, const Arguments& arguments)
{
    require(symbol.version >= 1 && symbol.version <= 40, "there is such a version");
    require(symbol.version >= arguments.lowestVersion, "the version is no lower than asked for");
    require(arguments.autoExtend || arguments.lowestVersion == 0 ||
                symbol.version == arguments.lowestVersion,
            "the version is as asked for");
    require(symbol.level == arguments.level, "the level is as asked for");
    require(symbol.moduleCount == 17 + 4 * symbol.version, "the side follows the version");
    require(symbol.maskingNumber >= 0 && symbol.maskingNumber <= 7, "there is such a mask");
    require(arguments.mask < 0 || symbol.maskingNumber == arguments.mask,
            "the mask is as asked for");
    const int dark = darkModules(symbol);
    require(dark > 0 && dark < symbol.moduleCount * symbol.moduleCount,
            "a symbol has both colours");
    checkFunctionPatterns(symbol);
    checkFormat(symbol);
}

void checkUntouched(const QrEncoder& symbol)
{
    require(symbol.moduleCount == untouched, "a refused text leaves the side alone");
    for (const auto& column : symbol.modules) {
        for (const std::uint8_t module : column) {
            require(module == untouchedModule, "a refused text leaves the modules alone");
        }
    }
}

void checkPixmap(const QString& text)
{
    constexpr int emptySide = 8;
    constexpr int smallestSide = 73;
    constexpr int largestSide = 185;
    QPixmap pixmap;
    makeQrPixmap(text, pixmap);
    const int side = pixmap.width();
    require(pixmap.height() == side, "the picture is a square");
    require(side == emptySide || (side >= smallestSide && side <= largestSide),
            "the picture has the size of a symbol with its quiet zone");
}

} // namespace

void tryInput(const QByteArray& input)
{
    if (input.size() < argumentBytes) {
        return;
    }
    const Arguments arguments = argumentsOf(input);
    const QByteArray text = input.mid(argumentBytes);
    static auto* symbol = new QrEncoder;
    symbol->moduleCount = untouched;
    for (auto& column : symbol->modules) {
        column.fill(untouchedModule);
    }
    const bool isEncoded =
        symbol->encodeData(arguments.level, arguments.lowestVersion, arguments.autoExtend,
                           arguments.mask, text.constData(), text.size());
    require(!isEncoded || inRange(arguments), "arguments out of range are refused");
    if (isEncoded) {
        checkSymbol(*symbol, arguments);
    } else {
        checkUntouched(*symbol);
    }
    if (text.size() % pixmapEvery == 0) {
        checkPixmap(QString::fromUtf8(text));
    }
}
