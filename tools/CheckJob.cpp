#include "tools/CheckJob.h"

#include <QJsonDocument>
#include <QTextStream>

#include "app/TerminalText.h"
#include "tools/UserLanguage.h"

JobResult CheckJob::run()
{
    PageCheck check;
    if (!selectDocuments() || !prepare(check)) {
        return JobResult::NotDone;
    }
    writeHead();
    const bool isWhole = forEachDocument([&](const PrintDocument& document) {
        if (!checkPage(document, check)) {
            return;
        }
        for (const Finding& finding : m_summary.add(check.findings())) {
            write(finding);
        }
    });
    writeTail();
    if (!isWhole) {
        report(inUserLanguage("прервано", "interrupted"));
    }
    if (m_summary.documents() == 0) {
        return JobResult::NotDone;
    }
    const bool isAll = m_summary.documents() == m_selection.documents().size() &&
                       m_selection.unknownIds().isEmpty();
    return isAll && m_summary.findings() == 0 ? JobResult::Done : JobResult::SomeFailed;
}

void CheckJob::writeHead()
{
    if (m_options.asJson()) {
        m_out << "{\"documents\": " << m_selection.documents().size() << ", \"findings\": [";
    }
}

void CheckJob::write(const Finding& finding)
{
    m_progress.clear();
    if (!m_options.asJson()) {
        m_out << finding.words() << '\n';
        m_out.flush();
        return;
    }
    m_out << (m_isFirst ? "\n" : ",\n")
          << jsonForTerminal(QJsonDocument(finding.toJson()).toJson(QJsonDocument::Compact));
    m_isFirst = false;
}

void CheckJob::writeTail()
{
    if (m_options.asJson()) {
        m_out << "], \"checked\": " << m_summary.documents() << "}\n";
    } else {
        m_out << m_summary.words() << '\n';
    }
}
