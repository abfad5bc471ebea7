#include "preflight/CheckSummary.h"

#include <QJsonDocument>

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
