#include "exchange/CellName.h"

namespace {

constexpr int lettersMax = 3;
constexpr int rowDigitsMax = 7; // sheets have 1,048,576 rows
constexpr int lettersInAlphabet = 26;

/// Walks over the parts of a cell's name.
class NameReader
{
public:
    explicit NameReader(const QString& name)
        : m_at(name.constBegin())
        , m_end(name.constEnd())
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

    QString::const_iterator m_at;
    QString::const_iterator m_end;
};

} // namespace

QXlsx::CellReference cellFromName(const QString& name)
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
