#pragma once

#include <QPoint>
#include <QVector>

#include "render/QrEncoder.h"

// What the standard says of a symbol, written down the slow way for the tests to compare with.

/// The masked format information, by level (L, M, Q, H) and mask.
constexpr int maskedFormatInformation[4][8] = {
    {0x77C4, 0x72F3, 0x7DAA, 0x789D, 0x662F, 0x6318, 0x6C41, 0x6976},
    {0x5412, 0x5125, 0x5E7C, 0x5B4B, 0x45F9, 0x40CE, 0x4F97, 0x4AA0},
    {0x355F, 0x3068, 0x3F31, 0x3A06, 0x24B4, 0x2183, 0x2EDA, 0x2BED},
    {0x1689, 0x13BE, 0x1CE7, 0x19D0, 0x0762, 0x0255, 0x0D0C, 0x083B},
};

/// Places of the format information's bits 0 to 14 beside the top left finder.
inline QVector<QPoint> firstFormatModules()
{
    return {{8, 0}, {8, 1}, {8, 2}, {8, 3}, {8, 4}, {8, 5}, {8, 7}, {8, 8},
            {7, 8}, {5, 8}, {4, 8}, {3, 8}, {2, 8}, {1, 8}, {0, 8}};
}

/// Places of the same bits beside the other two finders.
inline QVector<QPoint> secondFormatModules(int side)
{
    QVector<QPoint> places;
    for (int bit = 0; bit <= 7; ++bit) {
        places.append({side - 1 - bit, 8});
    }
    for (int bit = 8; bit <= 14; ++bit) {
        places.append({8, side - 7 + (bit - 8)});
    }
    return places;
}

/// The mask conditions, by row i and column j.
inline bool maskInverts(int mask, int i, int j)
{
    switch (mask) {
    case 0:
        return (i + j) % 2 == 0;
    case 1:
        return i % 2 == 0;
    case 2:
        return j % 3 == 0;
    case 3:
        return (i + j) % 3 == 0;
    case 4:
        return (i / 2 + j / 3) % 2 == 0;
    case 5:
        return (i * j) % 2 + (i * j) % 3 == 0;
    case 6:
        return ((i * j) % 2 + (i * j) % 3) % 2 == 0;
    default:
        return ((i * j) % 3 + (i + j) % 2) % 2 == 0;
    }
}

/// The penalty of a finished symbol (1 = dark, 0 = light), module by module.
class SlowPenalty
{
public:
    SlowPenalty(const QrEncoder::Matrix& matrix, int moduleCount)
        : m_modules(matrix)
        , m_count(moduleCount)
    {
    }

    int total() const { return runs() + squares() + finders() + balance(); }

    int runs() const
    {
        int penalty = 0;
        for (const bool fixedX : {true, false}) {
            for (int line = 0; line < m_count; ++line) {
                int position = 0;
                while (position < m_count - 4) {
                    const int start = position;
                    const bool colour = dark(fixedX, line, start);
                    while (position < m_count && dark(fixedX, line, position) == colour) {
                        ++position;
                    }
                    if (position - start >= 5) {
                        penalty += position - start - 2;
                    }
                }
            }
        }
        return penalty;
    }

    int squares() const
    {
        int penalty = 0;
        for (int x = 0; x + 1 < m_count; ++x) {
            for (int y = 0; y + 1 < m_count; ++y) {
                const int sum = m_modules[x][y] + m_modules[x + 1][y] + m_modules[x][y + 1] +
                                m_modules[x + 1][y + 1];
                if (sum == 0 || sum == 4) {
                    penalty += 3;
                }
            }
        }
        return penalty;
    }

    int finders() const
    {
        int penalty = 0;
        for (const bool fixedX : {true, false}) {
            for (int line = 0; line < m_count; ++line) {
                for (int j = 0; j <= m_count - 7; ++j) {
                    if (isFinder(fixedX, line, j)) {
                        penalty += 40;
                    }
                }
            }
        }
        return penalty;
    }

    int balance() const
    {
        int light = 0;
        for (int x = 0; x < m_count; ++x) {
            for (int y = 0; y < m_count; ++y) {
                light += m_modules[x][y] == 0 ? 1 : 0;
            }
        }
        const int percent = light * 100 / (m_count * m_count);
        return qAbs(50 - percent) / 5 * 10;
    }

private:
    bool dark(bool fixedX, int line, int position) const
    {
        return (fixedX ? m_modules[line][position] : m_modules[position][line]) == 1;
    }

    bool light(bool fixedX, int line, int position) const
    {
        return position < 0 || position >= m_count || !dark(fixedX, line, position);
    }

    bool isFinder(bool fixedX, int line, int j) const
    {
        if (j != 0 && dark(fixedX, line, j - 1)) {
            return false;
        }
        for (const int at : {0, 2, 3, 4, 6}) {
            if (!dark(fixedX, line, j + at)) {
                return false;
            }
        }
        if (dark(fixedX, line, j + 1) || dark(fixedX, line, j + 5)) {
            return false;
        }
        if (j != m_count - 7 && dark(fixedX, line, j + 7)) {
            return false;
        }

        const bool before =
            light(fixedX, line, j - 2) && light(fixedX, line, j - 3) && light(fixedX, line, j - 4);
        const bool behind =
            light(fixedX, line, j + 8) && light(fixedX, line, j + 9) && light(fixedX, line, j + 10);
        return before || behind;
    }

    const QrEncoder::Matrix& m_modules;
    const int m_count;
};
