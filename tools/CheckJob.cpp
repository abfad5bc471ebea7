#include "tools/CheckJob.h"

#include <QJsonDocument>
#include <QTextStream>

#include "app/TerminalText.h"
#include "preflight/PageCheck.h"
#include "printing/BatchCheck.h"
#include "tools/Interruption.h"
#include "tools/PrintWords.h"
#include "tools/UserLanguage.h"

JobResult CheckJob::run()
{
    if (!selectDocuments()) {
        return JobResult::NotDone;
    }
    BatchCheck check(m_sheets, *this);
    if (!prepare(check.pageCheck())) {
        return JobResult::NotDone;
    }
    writeHead();
    const bool isWhole = check.run();
    m_progress.clear();
    writeTail();
    if (!isWhole && !isReaderGone()) {
        report(tr("interrupted"));
    }
    if (m_summary.documents() == 0) {
        return JobResult::NotDone;
    }
    const bool isAll = m_summary.documents() == m_sheets.size() && allKnown();
    return isAll && m_summary.findings() == 0 ? JobResult::Done : JobResult::SomeFailed;
}

void CheckJob::sheetChecked(int /*sheet*/, PageCheck& check)
{
    for (const Finding& finding : m_summary.add(check.findings())) {
        write(finding);
    }
}

void CheckJob::writeHead()
{
    if (m_options.asJson()) {
        m_out << "{\"documents\": " << m_sheets.size() << ", \"findings\": [";
    }
}

void CheckJob::write(const Finding& finding)
{
    m_progress.clear();
    if (!m_options.asJson()) {
        m_out << m_words.sentence(finding) << '\n';
        flushOutput(m_out);
        return;
    }
    QJsonObject json = finding.toJson();
    json["message"] = m_words.what(finding);
    m_out << (m_isFirst ? "\n" : ",\n")
          << jsonForTerminal(QJsonDocument(json).toJson(QJsonDocument::Compact));
    m_isFirst = false;
    flushOutput(m_out);
}

void CheckJob::writeTail()
{
    if (m_options.asJson()) {
        m_out << "], \"checked\": " << m_summary.documents() << "}\n";
    } else {
        m_out << inWords(m_summary) << '\n';
    }
}
