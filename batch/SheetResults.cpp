#include "batch/SheetResults.h"

#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <numeric>

namespace {

bool areSame(const QVector<PlannedSheet>& a, const QVector<PlannedSheet>& b)
{
    return std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(),
                      [](const PlannedSheet& left, const PlannedSheet& right) {
                          return sheetKey(left) == sheetKey(right) &&
                                 left.sheet.copies == right.sheet.copies &&
                                 left.sheet.withBackground == right.sheet.withBackground;
                      });
}

} // namespace

void SheetResults::begin(const QVector<PlannedSheet>& listed, const SheetOrder& order)
{
    m_listed = listed;
    m_sheets = inOrder(listed, order);
    m_outcomes = QVector<SheetOutcome>(m_sheets.size());
    m_rows.clear();
    m_spoiltBefore.clear();
}

bool SheetResults::takeOver(const QVector<PlannedSheet>& listed)
{
    if (!areSame(listed, m_listed)) {
        return false;
    }
    m_listed = listed;
    QHash<QString, const PlannedSheet*> fresh;
    for (const PlannedSheet& sheet : m_listed) {
        fresh.insert(sheetKey(sheet), &sheet);
    }
    for (PlannedSheet& sheet : m_sheets) {
        sheet = *fresh.value(sheetKey(sheet));
    }
    return true;
}

bool SheetResults::isPrinted(int row) const
{
    return m_outcomes[row].state == SheetOutcome::State::Printed;
}

QVector<int> SheetResults::allRows() const
{
    QVector<int> rows(count());
    std::iota(rows.begin(), rows.end(), 0);
    return rows;
}

QVector<int> SheetResults::unprintedRows() const
{
    QVector<int> rows;
    for (int row = 0; row < count(); ++row) {
        if (!isPrinted(row)) {
            rows << row;
        }
    }
    return rows;
}

bool SheetResults::isAnyPrintable(const QVector<int>& rows) const
{
    return std::any_of(rows.cbegin(), rows.cend(),
                       [this](int row) { return isPrintable(m_sheets[row]); });
}

QVector<PlannedSheet> SheetResults::sheetsFor(const QVector<int>& rows, PrintTarget& target) const
{
    QVector<PlannedSheet> sheets;
    for (const int row : rows) {
        sheets.append(m_sheets[row]);
        const QFileInfo file(m_outcomes[row].file);
        if (file.path() == QFileInfo(target.place).filePath()) {
            sheets.last().sheet.fileName = file.fileName();
        }
    }
    for (const SheetOutcome& outcome : m_outcomes) {
        target.namesInUse << QFileInfo(outcome.file).fileName();
    }
    return sheets;
}

void SheetResults::beginRun(const QVector<int>& rows)
{
    m_rows = rows;
    m_spoiltBefore.clear();
    for (const int row : rows) {
        const int spoilt = m_outcomes[row].spoilt;
        m_spoiltBefore << spoilt;
        m_outcomes[row] = SheetOutcome();
        m_outcomes[row].spoilt = spoilt;
    }
}

void SheetResults::take(int sheet, const PlannedSheet& planned, const SheetOutcome& outcome)
{
    const int row = m_rows[sheet];
    m_sheets[row] = planned;
    m_outcomes[row] = outcome;
    m_outcomes[row].spoilt += m_spoiltBefore[sheet];
}
