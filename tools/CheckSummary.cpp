#include "tools/CheckSummary.h"

#include <QJsonDocument>
#include <QStringList>

#include "tools/UserLanguage.h"

QVector<Finding> CheckSummary::add(const QVector<Finding>& pageFindings)
{
    ++m_documents;
    QVector<Finding> added;
    for (const Finding& finding : pageFindings) {
        if (finding.isOfBlank()) {
            const QByteArray key = QJsonDocument(finding.toJson()).toJson(QJsonDocument::Compact);
            if (m_ofBlanks.contains(key)) {
                continue;
            }
            m_ofBlanks << key;
        }
        added << finding;
        ++m_findings;
        ++m_kinds[finding.kind];
    }
    return added;
}

QString CheckSummary::words() const
{
    return inUserLanguage("Проверено документов: %1, замечаний: %2",
                          "Documents checked: %1, findings: %2")
        .arg(m_documents)
        .arg(m_findings);
}

QString CheckSummary::kindWords() const
{
    QStringList parts;
    for (auto it = m_kinds.cbegin(); it != m_kinds.cend(); ++it) {
        parts << Finding::kindCaption(it.key()) + QString::fromUtf8(" — ") +
                     QString::number(it.value());
    }
    return parts.join(", ");
}
