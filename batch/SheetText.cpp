#include "batch/SheetText.h"

#include "printing/PrintDocument.h"

QString personOf(const PrintDocument& document)
{
    return QString(document.surname + ' ' + document.name + ' ' + document.patronymic).simplified();
}

QString nounFor(int number, const QString& one, const QString& few, const QString& many)
{
    const int tens = number % 100;
    const int units = number % 10;
    if (units == 0 || units > 4 || (tens > 10 && tens < 15)) {
        return many;
    }
    return units == 1 ? one : few;
}

QString problemText(SheetOutcome::Reason reason)
{
    return reason == SheetOutcome::Reason::NoBlanks
               ? QString("У типа документа нет бланка, печатать не на чем")
               : QString("Документ или бланк не удалось прочитать. Возможно, он удалён");
}
