#pragma once

#include <QHash>
#include <QString>
#include <QVector>

#include "exchange/package/XmlOutput.h"

class PartReader;

/// The texts that cells share by their number: those of the workbook, and behind them those that
/// stood in the cells themselves, of which the library would lose all but the last run.
class SharedTexts
{
public:
    /// Reads the part of the texts. If it is damaged, returns false and puts the reason into
    /// `error` (may be null).
    bool read(const QByteArray& part, QString* error);

    int count() const { return m_sizes.size(); }
    /// Bytes that a text takes in each cell that shares it.
    int size(int index) const { return m_sizes[index]; }

    /// Adds the text of the element that the reader is at. Returns its number, or -1 if the element
    /// has none.
    int add(PartReader& reader);

    QByteArray xml();

private:
    bool copy(PartReader& reader, XmlOutput& out);

    XmlOutput m_texts;
    QVector<int> m_sizes;
    QHash<QByteArray, int> m_added; ///< number by XML
};
