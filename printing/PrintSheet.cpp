#include "printing/PrintSheet.h"

QVector<PrintSheet> sheetsOf(const QVector<PrintDocument>& documents, const QString& wantedBlank)
{
    QVector<PrintSheet> sheets;
    sheets.reserve(documents.size());
    for (const PrintDocument& document : documents) {
        PrintSheet sheet;
        sheet.document = document;
        sheet.blank = chooseBlank(document.id, wantedBlank);
        sheets.append(sheet);
    }
    return sheets;
}
