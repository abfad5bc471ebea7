#include "printing/BlankChoice.h"

#include "render/page/BlankList.h"
#include "tools/UserLanguage.h"

BlankChoice chooseBlank(const QVariant& docId, const QString& wanted)
{
    const BlankList blanks = blanksOfDocument(docId, nullptr);
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
