#include "render/qr/QrMaskTrial.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

using MaskTable = std::array<QrMaskTrial::MaskLines, QrPatterns::maskCount>;

enum class Orientation
{
    Columns,
    Rows
};

constexpr MaskTable makeMaskTable(Orientation orientation)
{
    constexpr int period = QrPatterns::maskPeriod;
    MaskTable table{};
    for (int mask = 0; mask < QrPatterns::maskCount; ++mask) {
        for (int line = 0; line < period; ++line) {
            std::uint64_t once = 0;
            for (int bit = 0; bit < period; ++bit) {
                const bool inverts = orientation == Orientation::Columns
                                         ? QrPatterns::maskInverts(mask, line, bit)
                                         : QrPatterns::maskInverts(mask, bit, line);
                once |= std::uint64_t{inverts} << bit;
            }
            for (int word = 0; word < QrMaskTrial::maxWords; ++word) {
                const int phase = word * QrMaskTrial::wordBits % period;
                std::uint64_t& bits = table[mask][line][word];
                bits = once >> phase;
                for (int at = period - phase; at < QrMaskTrial::wordBits; at += period) {
                    bits |= once << at;
                }
            }
        }
    }
    return table;
}

constexpr MaskTable columnMasks = makeMaskTable(Orientation::Columns);
constexpr MaskTable rowMasks = makeMaskTable(Orientation::Rows);

/// Counts set bits in four lanes of 16 bits, so that the compiler can add up many words at once.
/// A lane takes at least 65535 / 16 = 4095 words; a symbol has 531.
class BitCount
{
public:
    void add(std::uint64_t word)
    {
        word -= word >> 1 & 0x5555555555555555;
        word = (word & 0x3333333333333333) + (word >> 2 & 0x3333333333333333);
        word = (word + (word >> 4)) & 0x0F0F0F0F0F0F0F0F;
        m_lanes += (word & 0x00FF00FF00FF00FF) + (word >> 8 & 0x00FF00FF00FF00FF);
    }

    int total() const
    {
        std::uint64_t sum = 0;
        for (int lane = 0; lane < 4; ++lane) {
            sum += m_lanes >> (16 * lane) & 0xFFFF;
        }
        return static_cast<int>(sum);
    }

private:
    std::uint64_t m_lanes = 0;
};

/// Eight bytes with the first one in the lowest bits, on a machine of any byte order.
std::uint64_t loadBytes(const std::uint8_t* bytes)
{
    std::uint64_t word = 0;
    for (int i = 0; i < 8; ++i) {
        word |= std::uint64_t{bytes[i]} << (8 * i);
    }
    return word;
}

/// Bit 0 of each byte of `word`, that of the lowest byte first.
std::uint64_t gatherLowBits(std::uint64_t word)
{
    return (word & 0x0101010101010101) * 0x0102040810204080 >> 56;
}

/// Turns a block of 64 by 64 bits about its diagonal: bit b of line l goes to bit l of line b.
void transposeBlock(std::array<std::uint64_t, 64>& block)
{
    std::uint64_t low = 0x00000000FFFFFFFF;
    for (int step = 32; step != 0; step >>= 1, low ^= low << step) {
        for (int i = 0; i < 64; i = ((i | step) + 1) & ~step) {
            const std::uint64_t swapped = (block[i] >> step ^ block[i | step]) & low;
            block[i] ^= swapped << step;
            block[i | step] ^= swapped;
        }
    }
}

} // namespace

QrMaskTrial::QrMaskTrial(const QrEncoder::Matrix& modules, int moduleCount, int errorLevel)
    : m_side(moduleCount)
    , m_level(errorLevel)
    , m_words((moduleCount + wordBits - 1) / wordBits)
{
    readColumns(modules);
    transpose(m_columns.unmasked, m_rows.unmasked);
    transpose(m_columns.data, m_rows.data);
    alternatePadding(m_columns.unmasked);
    alternatePadding(m_rows.unmasked);
}

int QrMaskTrial::penalty(int mask)
{
    applyMask(m_columns, columnMasks[mask]);
    applyMask(m_rows, rowMasks[mask]);
    QrPatterns::visitFormatModules(QrPatterns::formatInformation(m_level, mask), m_side,
                                   [this](int x, int y, bool dark) {
                                       if (!dark) {
                                           return;
                                       }
                                       setDark(m_columns.masked, x, y);
                                       setDark(m_rows.masked, y, x);
                                   });

    return runAndFinderPenalty(m_columns.masked) + runAndFinderPenalty(m_rows.masked) +
           squarePenalty(m_rows.masked) + balancePenalty(m_rows.masked);
}

void QrMaskTrial::readColumns(const QrEncoder::Matrix& modules)
{
    std::array<std::uint8_t, std::size_t{maxWords} * wordBits> column{};
    for (int x = 0; x < m_side; ++x) {
        std::copy_n(modules[x].begin(), m_side, column.begin());
        const std::ptrdiff_t first = start(x);
        for (int y = 0; y < m_side; y += 8) {
            const std::uint64_t flags = loadBytes(&column[y]);
            const std::uint64_t dark = gatherLowBits(flags >> 4 | flags >> 1);
            const std::uint64_t function = gatherLowBits(flags >> 5);
            const std::ptrdiff_t word = first + y / wordBits;
            const int shift = y % wordBits;
            m_columns.unmasked[word] |= dark << shift;
            m_columns.data[word] |= (function ^ 0xFF) << shift;
        }
        // The last eight modules reach past the edge.
        m_columns.data[first + m_words - 1] &= ~std::uint64_t{0} >> paddingBits();
    }
}

void QrMaskTrial::transpose(const Lines& from, Lines& to) const
{
    std::array<std::uint64_t, wordBits> block{};
    for (int across = 0; across < m_words; ++across) {
        for (int down = 0; down < m_words; ++down) {
            const int firstLine = down * wordBits;
            const int lineCount = std::min(wordBits, m_side - firstLine);
            block.fill(0);
            for (int i = 0; i < lineCount; ++i) {
                block[i] = from[start(firstLine + i) + across];
            }

            transposeBlock(block);

            const int firstTurned = across * wordBits;
            const int turnedCount = std::min(wordBits, m_side - firstTurned);
            for (int i = 0; i < turnedCount; ++i) {
                to[start(firstTurned + i) + down] = block[i];
            }
        }
    }
}

/// Darkens the bits past the module count on every other line. So they hold no run, no square and
/// no finder, and the searches need not leave them out.
void QrMaskTrial::alternatePadding(Lines& lines) const
{
    const std::uint64_t padding = ~(~std::uint64_t{0} >> paddingBits());
    for (int line = 1; line < m_side; line += 2) {
        lines[start(line + 1) - 1] |= padding;
    }
}

void QrMaskTrial::applyMask(Board& board, const MaskLines& maskLines) const
{
    std::ptrdiff_t at = start(0);
    for (int line = 0; line < m_side; ++line) {
        const auto& maskLine = maskLines[line % QrPatterns::maskPeriod];
        for (int word = 0; word < m_words; ++word, ++at) {
            board.masked[at] = board.unmasked[at] ^ (maskLine[word] & board.data[at]);
        }
    }
}

void QrMaskTrial::setDark(Lines& lines, int line, int bit) const
{
    lines[start(line) + bit / wordBits] |= std::uint64_t{1} << (bit & (wordBits - 1));
}

/// The two terms that are taken along the modules of equal bit number, from line to line.
int QrMaskTrial::runAndFinderPenalty(const Lines& lines) const
{
    const std::uint64_t* const first = &lines[start(0)];
    BitCount runModules;
    BitCount runStarts;
    BitCount finders;

    // A position that starts five like modules: a run of n modules holds n - 4 of them, and the
    // first counts for two more, which makes n - 2.
    const auto likeFive = [this](const std::uint64_t* at) {
        const std::uint64_t all =
            at[0] & at[m_words] & at[2 * m_words] & at[3 * m_words] & at[4 * m_words];
        const std::uint64_t any =
            at[0] | at[m_words] | at[2 * m_words] | at[3 * m_words] | at[4 * m_words];
        return all | ~any;
    };

    // On line 0 a light run looks like one that comes from the margin.
    for (std::ptrdiff_t i = 0; i < m_words; ++i) {
        runStarts.add(likeFive(first + i) & ~first[i]);
    }

    const std::ptrdiff_t end = (m_side - 4) * m_words;
    for (std::ptrdiff_t i = 0; i < end; ++i) {
        const std::uint64_t* const at = first + i;
        const auto dark = [this, at](int distance) { return at[distance * m_words]; };

        const std::uint64_t like = likeFive(at);
        runModules.add(like);
        runStarts.add(like & (dark(-1) ^ dark(0)));

        const std::uint64_t pattern = dark(0) & ~dark(1) & dark(2) & dark(3) & dark(4) & ~dark(5) &
                                      dark(6) & ~dark(-1) & ~dark(7);
        const std::uint64_t lightBefore = ~(dark(-2) | dark(-3) | dark(-4));
        const std::uint64_t lightAfter = ~(dark(8) | dark(9) | dark(10));
        finders.add(pattern & (lightBefore | lightAfter));
    }
    return runModules.total() + 2 * runStarts.total() + 40 * finders.total();
}

/// 3 for every two by two modules of one colour. Padding bits alternate and so form none.
int QrMaskTrial::squarePenalty(const Lines& lines) const
{
    const std::uint64_t* const first = &lines[start(0)];
    BitCount squares;
    const std::ptrdiff_t end = (m_side - 1) * m_words;
    for (std::ptrdiff_t i = 0; i < end; ++i) {
        const std::uint64_t here = first[i];
        const std::uint64_t right = here >> 1 | first[i + 1] << 63;
        const std::uint64_t below = first[i + m_words];
        const std::uint64_t belowRight = below >> 1 | first[i + m_words + 1] << 63;
        squares.add(~((here ^ right) | (below ^ belowRight) | (here ^ below)));
    }
    return 3 * squares.total();
}

int QrMaskTrial::balancePenalty(const Lines& lines) const
{
    BitCount darkBits;
    for (std::ptrdiff_t i = start(0); i < start(m_side); ++i) {
        darkBits.add(lines[i]);
    }

    const int darkPadding = paddingBits() * (m_side / 2);
    const int light = m_side * m_side - (darkBits.total() - darkPadding);
    const int percentLight = light * 100 / (m_side * m_side);
    return std::abs(50 - percentLight) / 5 * 10;
}
