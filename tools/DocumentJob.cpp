#include "tools/DocumentJob.h"

#include <QDir>

#include "preflight/PageCheck.h"
#include "printing/BlankChoice.h"
#include "tools/Interruption.h"
#include "tools/UserLanguage.h"

namespace {

QString nameOf(const PrintDocument& document)
{
    return inUserLanguage("документ ", "document ") + document.id.toString() + ": ";
}

} // namespace

bool DocumentJob::selectDocuments()
{
    if (!m_selection.load(m_options.selection())) {
        report(m_selection.error());
        return false;
    }
    for (const qint64 id : m_selection.unknownIds()) {
        report(inUserLanguage("нет документа ", "there is no document ") + QString::number(id));
    }
    if (m_selection.documents().isEmpty() && m_selection.unknownIds().isEmpty()) {
        report(inUserLanguage("таких документов нет", "there are no such documents"));
    }
    return !m_selection.documents().isEmpty();
}

bool DocumentJob::forEachDocument(const std::function<void(const PrintDocument&)>& work)
{
    const QVector<PrintDocument>& documents = m_selection.documents();
    for (int i = 0; i < documents.size(); ++i) {
        if (isInterrupted()) {
            m_progress.clear();
            return false;
        }
        m_progress.show(i, documents.size());
        work(documents[i]);
    }
    m_progress.clear();
    return true;
}

QVariant DocumentJob::blankOf(const PrintDocument& document)
{
    const BlankChoice blank = chooseBlank(document.id, m_options.blank());
    if (blank.id.isNull()) {
        report(nameOf(document) + blank.problem);
    }
    return blank.id;
}

void DocumentJob::reportUnreadable(const PrintDocument& document)
{
    report(nameOf(document) +
           inUserLanguage("не удалось прочитать его или бланк", "it or its blank can't be read"));
}

bool DocumentJob::makeFolder()
{
    if (QDir().mkpath(m_options.output())) {
        return true;
    }
    report(inUserLanguage("не удалось создать каталог ", "can't make the folder ") +
           m_options.output());
    return false;
}

bool DocumentJob::prepare(PageCheck& check)
{
    check.setBackgroundPrinted(m_options.withBackground());
    if (m_options.margins()) {
        check.setMargins(*m_options.margins());
        return true;
    }
    if (!m_options.printer().isEmpty() && !check.setPrinter(m_options.printer())) {
        reportNoPrinter();
        return false;
    }
    return true;
}

bool DocumentJob::checkPage(const PrintDocument& document, PageCheck& check)
{
    const QVariant blank = blankOf(document);
    if (blank.isNull()) {
        return false;
    }
    if (!check.check(document.id, blank)) {
        reportUnreadable(document);
        return false;
    }
    return true;
}
