#include "printing/BlankChoice.h"

#include "render/PrinPreviewDialog.h"
#include "tools/UserLanguage.h"

BlankChoice chooseBlank(PrinPreviewDialog& preview, const QVariant& docId, const QString& wanted)
{
    const PrinPreviewDialog::BlankList blanks = preview.loadBlanksForDoc(docId);
    if (blanks.isEmpty()) {
        return {QVariant(), inUserLanguage("для него нет бланков", "no blank prints it")};
    }
    if (wanted.isEmpty()) {
        return {blanks.first().second, QString()};
    }
    for (const auto& [name, id] : blanks) {
        if (id.toString() == wanted) {
            return {id, QString()};
        }
    }
    for (const auto& [name, id] : blanks) {
        if (name == wanted) {
            return {id, QString()};
        }
    }
    return {QVariant(), inUserLanguage("нет бланка ", "it has no blank ") + wanted};
}
