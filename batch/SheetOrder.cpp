#include "batch/SheetOrder.h"

#include <QCollator>
#include <QHash>

#include <algorithm>

namespace {

QString blankKey(const PlannedSheet& sheet)
{
    return sheet.sheet.blank.id.toString();
}

/// The places of the blanks by their first sheet.
QHash<QString, int> blankRanks(const QVector<PlannedSheet>& sheets)
{
    QHash<QString, int> ranks;
    for (const PlannedSheet& sheet : sheets) {
        const QString key = blankKey(sheet);
        if (!ranks.contains(key)) {
            ranks.insert(key, ranks.size());
        }
    }
    return ranks;
}

QStringList keysOf(const PlannedSheet& sheet, SheetOrder::By by)
{
    return by == SheetOrder::By::Name
               ? QStringList{sheet.sheet.document.surname, sheet.sheet.document.name}
               : QStringList{sheet.blankSeries, sheet.blankNumber};
}

} // namespace

QVector<PlannedSheet> inOrder(const QVector<PlannedSheet>& sheets, const SheetOrder& order)
{
    QVector<PlannedSheet> result = sheets;
    if (order.by != SheetOrder::By::List) {
        QCollator collator(QLocale(QLocale::Russian));
        collator.setNumericMode(true); // "9" before "10"
        std::stable_sort(
            result.begin(), result.end(), [&](const PlannedSheet& a, const PlannedSheet& b) {
                const QStringList left = keysOf(a, order.by);
                const QStringList right = keysOf(b, order.by);
                const int first = collator.compare(left[0], right[0]);
                return first != 0 ? first < 0 : collator.compare(left[1], right[1]) < 0;
            });
    }
    if (order.blankAfterBlank) {
        const QHash<QString, int> ranks = blankRanks(sheets);
        std::stable_sort(result.begin(), result.end(),
                         [&ranks](const PlannedSheet& a, const PlannedSheet& b) {
                             return ranks[blankKey(a)] < ranks[blankKey(b)];
                         });
    }
    return result;
}

QString sheetKey(const PlannedSheet& sheet)
{
    return sheet.sheet.document.id.toString() + '/' + blankKey(sheet);
}

bool isPrintable(const PlannedSheet& sheet)
{
    return !sheet.isHeldBack && !sheet.sheet.blank.id.isNull();
}

int blankCount(const QVector<PlannedSheet>& sheets)
{
    return blankRanks(sheets).size();
}
