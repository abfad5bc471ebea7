#include "batch/PlannedSheet.h"

QVector<PrintSheet> printSheets(const QVector<PlannedSheet>& planned)
{
    QVector<PrintSheet> sheets;
    sheets.reserve(planned.size());
    for (const PlannedSheet& sheet : planned) {
        sheets << sheet.sheet;
    }
    return sheets;
}
