#include "printing/PrintSheet.h"

#include <QHash>

namespace {

/// The blanks of forms, each form's read once.
class FormBlanks
{
public:
    BlankList of(const QVariant& formId)
    {
        const QString key = formId.toString();
        const auto known = m_blanks.constFind(key);
        if (known != m_blanks.constEnd()) {
            return *known;
        }
        QString error;
        BlankList blanks = blanksOfForm(formId, &error);
        if (error.isEmpty()) { // what could not be read may be readable for the next document
            m_blanks.insert(key, blanks);
        }
        return blanks;
    }

private:
    QHash<QString, BlankList> m_blanks;
};

} // namespace

QVector<PrintSheet> sheetsOf(const QVector<PrintDocument>& documents, const QString& wantedBlank)
{
    FormBlanks blanks;
    QVector<PrintSheet> sheets;
    sheets.reserve(documents.size());
    for (const PrintDocument& document : documents) {
        PrintSheet sheet;
        sheet.document = document;
        sheet.blank = chooseBlank(blanks.of(document.formId), wantedBlank);
        sheets.append(sheet);
    }
    return sheets;
}
