#include "tools/CheckJob.h"

#include <QJsonDocument>
#include <QTextStream>

JobResult CheckJob::run()
{
    if (!selectDocuments()) {
        return JobResult::NotDone;
    }
    writeHead();
    checkAll();
    writeTail();
    if (m_summary.documents() == 0) {
        return JobResult::NotDone;
    }
    const bool isAll = m_summary.documents() == m_selection.documents().size() &&
                       m_selection.unknownIds().isEmpty();
    return isAll && m_summary.findings() == 0 ? JobResult::Done : JobResult::SomeFailed;
}

void CheckJob::checkAll()
{
    PageCheck check;
    check.setBackgroundPrinted(m_options.withBackground());
    check.setMargins(m_options.margins().value_or(QMarginsF()));
    for (const PrintDocument& document : m_selection.documents()) {
        const QVariant blank = blankOf(document, check.preview());
        if (blank.isNull()) {
            continue;
        }
        if (!check.check(document.id, blank)) {
            reportUnreadable(document);
            continue;
        }
        for (const Finding& finding : m_summary.add(check.findings())) {
            write(finding);
        }
    }
}

void CheckJob::writeHead()
{
    if (m_options.asJson()) {
        m_out << "{\"documents\": " << m_selection.documents().size() << ", \"findings\": [";
    }
}

void CheckJob::write(const Finding& finding)
{
    if (!m_options.asJson()) {
        m_out << finding.words() << '\n';
        return;
    }
    m_out << (m_isFirst ? "\n" : ",\n")
          << QString::fromUtf8(QJsonDocument(finding.toJson()).toJson(QJsonDocument::Compact));
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
