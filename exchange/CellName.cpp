#include "exchange/CellName.h"

#include <QStringList>

#include "exchange/package/PackageLimits.h"

namespace {

constexpr int lettersMax = 3;
constexpr int rowDigitsMax = 7; // sheets have 1,048,576 rows
constexpr int lettersInAlphabet = 26;

/// Walks over the parts of a cell's name.
class NameReader
{
public:
    explicit NameReader(QStringView name)
        : m_at(name.begin())
        , m_end(name.end())
    {
    }

    void skipDollar()
    {
        if (m_at != m_end && *m_at == '$') {
            ++m_at;
        }
    }

    /// Number of the column, from 1; 0 without letters. "A" is 1, "AA" is 27.
    int readColumn()
    {
        int column = 0;
        for (int count = 0; count < lettersMax && isNextIn('A', 'Z'); ++count, ++m_at) {
            column = column * lettersInAlphabet + (m_at->unicode() - 'A' + 1);
        }
        return column;
    }

    /// Number of the row; 0 without digits, leading zeros do not count.
    int readRow()
    {
        while (isNextIn('0', '0')) {
            ++m_at;
        }
        int row = 0;
        for (int count = 0; count < rowDigitsMax && isNextIn('0', '9'); ++count, ++m_at) {
            row = row * 10 + (m_at->unicode() - '0');
        }
        return row;
    }

    bool atEnd() const { return m_at == m_end; }

private:
    bool isNextIn(char first, char last) const
    {
        return m_at != m_end && *m_at >= first && *m_at <= last;
    }

    QStringView::const_iterator m_at;
    QStringView::const_iterator m_end;
};

/// The area between two corners, "A1:B2" or, if they are one cell, "A1". Empty if it is none.
QString areaFromNames(QStringView first, QStringView last)
{
    const QXlsx::CellReference a = cellFromName(first);
    const QXlsx::CellReference b = cellFromName(last);
    if (!isOnSheet(a) || !isOnSheet(b)) {
        return QString();
    }
    const QXlsx::CellReference upperLeft(qMin(a.row(), b.row()), qMin(a.column(), b.column()));
    const QXlsx::CellReference lowerRight(qMax(a.row(), b.row()), qMax(a.column(), b.column()));
    const QString begin = upperLeft.toString();
    const QString end = lowerRight.toString();
    return begin == end ? begin : begin + ':' + end;
}

} // namespace

QXlsx::CellReference cellFromName(QStringView name)
{
    NameReader reader(name);
    reader.skipDollar();
    const int column = reader.readColumn();
    reader.skipDollar();
    const int row = reader.readRow();
    if (column < 1 || row < 1 || !reader.atEnd()) {
        return QXlsx::CellReference();
    }
    return QXlsx::CellReference(row, column);
}

bool isOnSheet(const QXlsx::CellReference& cell)
{
    return cell.isValid() && cell.row() <= PackageLimits::rows &&
           cell.column() <= PackageLimits::columns;
}

QString areasFromNames(QStringView names)
{
    QStringList areas;
    if (names.size() > PackageLimits::areas) {
        return QString();
    }
    const QStringList parts = names.toString().split(' ', Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        const int colon = part.indexOf(':');
        const QString area = areaFromNames(QStringView(part).left(colon < 0 ? part.size() : colon),
                                           QStringView(part).mid(colon + 1));
        if (!area.isEmpty()) {
            areas.append(area);
        }
    }
    return areas.join(' ');
}
