#pragma once

#include <QString>

#include <optional>

/// Turns what was read off the test sheet into the whole millimetres to enter as print offsets.
/// The system moves the print by an offset against its sign, in whole scene units, so that the way
/// on paper is not the number itself.
class PrintOffsets
{
public:
    /// An offset and what it does on paper, in millimetres.
    struct Offset
    {
        int value;        ///< to enter in the settings of the blank
        double moved;     ///< to the right or down; negative: to the left or up
        double remaining; ///< how far the print still lies too far right or too low
    };

    /// The limit of the blank's settings, to both sides.
    static constexpr int highest = 999;

    /// `unitLength` is the length of a scene unit on paper in millimetres.
    explicit PrintOffsets(double unitLength);

    /// The offset after which the least remains of a print that lies `readOff` millimetres too far
    /// right or too low (negative: too far left or too high); of two equal ones that nearer zero.
    Offset offsetFor(double readOff) const;

    /// Reads millimetres as people write them: "2", "-1,5", "+0.5", also with a minus sign that is
    /// no hyphen. Nothing if the text is none.
    static std::optional<double> millimetres(const QString& text);

private:
    Offset effectOf(int value, double readOff) const;

    double m_unitLength;
};
