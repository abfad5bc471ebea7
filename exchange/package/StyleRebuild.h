#pragma once

#include <QSet>
#include <QString>
#include <QVector>

#include "exchange/package/XmlOutput.h"

class PartReader;
struct ElementRule;

/// The formats of a workbook, as the library needs them: the lists that formats point into come
/// first, every number points into its list, and a format says which of its parts apply.
class StyleRebuild
{
public:
    /// Reads the part of the formats. If it is damaged or has too many, returns false and puts the
    /// reason into `error` (may be null).
    bool read(const QByteArray& part, QString* error);

    /// How many formats cells, rows and columns can point to.
    int formats() const { return m_formats.size(); }
    /// How many formats rules of a sheet can point to.
    int differences() const { return m_differenceCount; }

    QByteArray xml();

private:
    /// A format of cells, with numbers that point into the lists.
    struct Format
    {
        int number = 0;
        int font = 0;
        int fill = 0;
        int border = 0;
        bool hasNumber = false;
        bool hasFont = false;
        bool hasBorder = false;
        QByteArray alignment; ///< XML, empty without one
    };

    void readList(PartReader& reader);
    void readNumbers(PartReader& reader);
    void readFormats(PartReader& reader);
    Format readFormat(PartReader& reader) const;
    void writeFormat(const Format& format, XmlOutput& out) const;
    int within(int index, int count) const { return index < count ? index : 0; }

    XmlOutput m_numbers;
    XmlOutput m_fonts;
    XmlOutput m_fills;
    XmlOutput m_borders;
    XmlOutput m_differences;
    XmlOutput m_colours;
    int m_fontCount = 0;
    int m_fillCount = 0;
    int m_borderCount = 0;
    int m_differenceCount = 0;
    QSet<int> m_ownNumbers; ///< identifiers of the workbook's own number formats
    QVector<Format> m_formats;
};

/// The properties of a font, as a text's run has them.
const QVector<ElementRule>& runFontRules();
