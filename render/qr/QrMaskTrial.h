#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "render/QrEncoder.h"
#include "render/qr/QrPatterns.h"

/// Weighs the masks of one symbol.
///
/// The placed but unmasked modules are kept as bits, once by columns and once by rows, so that a
/// mask is a few word operations per line and 64 lines are searched at a time. Lives on the stack,
/// allocates nothing.
class QrMaskTrial
{
public:
    static constexpr int wordBits = 64;
    static constexpr int maxWords = (QrEncoder::maxModuleCount + wordBits - 1) / wordBits;

    /// What one mask inverts, for as many lines as it takes to repeat.
    using MaskLines = std::array<std::array<std::uint64_t, maxWords>, QrPatterns::maskPeriod>;

    /// `modules`: function patterns drawn, format modules reserved as light, codewords placed.
    /// `moduleCount`: modules per side. `errorLevel`: 0 = L, 1 = M, 2 = Q, 3 = H.
    QrMaskTrial(const QrEncoder::Matrix& modules, int moduleCount, int errorLevel);

    /// Penalty of the symbol with `mask` (0 to 7) applied and its format information written.
    int penalty(int mask);

private:
    /// Light lines on either side of the symbol, so that a search may look past its edges.
    static constexpr int margin = 6;

    /// Lines of `words` words each, with the margins; bit n of a line is its module n.
    using Lines =
        std::array<std::uint64_t, std::size_t{QrEncoder::maxModuleCount + 2 * margin} * maxWords>;

    struct Board
    {
        Lines unmasked; ///< dark before masking; light where the format information goes
        Lines data;     ///< modules that a mask may invert
        Lines masked;   ///< dark with the mask under trial
    };

    /// Index of the first word of `line`; the lines of the margins have numbers past the edges.
    std::ptrdiff_t start(int line) const { return (margin + line) * m_words; }

    /// Bits of a line behind its last module, all of them in its last word.
    int paddingBits() const { return static_cast<int>(m_words) * wordBits - m_side; }

    void readColumns(const QrEncoder::Matrix& modules);
    void transpose(const Lines& from, Lines& to) const;
    void alternatePadding(Lines& lines) const;

    void applyMask(Board& board, const MaskLines& maskLines) const;
    void setDark(Lines& lines, int line, int bit) const;

    int runAndFinderPenalty(const Lines& lines) const;
    int squarePenalty(const Lines& lines) const;
    int balancePenalty(const Lines& lines) const;

    const int m_side; ///< modules per side
    const int m_level;
    const std::ptrdiff_t m_words; ///< words per line
    Board m_columns{};
    Board m_rows{};
};
