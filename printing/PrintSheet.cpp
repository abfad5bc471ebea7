#include "printing/PrintSheet.h"

#include "render/PrinPreviewDialog.h"

QVector<PrintSheet> sheetsOf(const QVector<PrintDocument>& documents, const QString& wantedBlank)
{
    PrinPreviewDialog preview{QVariant()};
    QVector<PrintSheet> sheets;
    sheets.reserve(documents.size());
    for (const PrintDocument& document : documents) {
        PrintSheet sheet;
        sheet.document = document;
        sheet.blank = chooseBlank(preview, document.id, wantedBlank);
        sheets.append(sheet);
    }
    return sheets;
}
