#include "render/DocumentTags.h"

#include <QSqlError>
#include <QSqlRecord>

#include "render/TagExpansion.h"

DocumentTags::DocumentTags(const QVariant& docId)
{
    m_query.setForwardOnly(true);
    m_isPrepared = m_query.prepare("SELECT * FROM docs WHERE ID = " + docId.toString() + ";");
}

QString DocumentTags::expand(const QString& text, QString* error)
{
    return tryExpand(text, error).value_or(text);
}

std::optional<QString> DocumentTags::tryExpand(const QString& text, QString* error)
{
    if (!m_isPrepared || !m_query.exec() || !m_query.next()) {
        if (error) {
            *error = m_query.lastError().text();
        }
        return std::nullopt;
    }
    if (takeRow()) {
        m_values = documentTagValues(m_query);
        m_content = documentTagContent(m_query);
    }
    return expandTags(text, m_values, m_content);
}

bool DocumentTags::takeRow()
{
    if (m_row.isEmpty()) {
        m_row.resize(m_query.record().count());
    }
    bool isChanged = m_values.isEmpty();
    for (int i = 0; i < m_row.size(); ++i) {
        const QVariant value = m_query.value(i);
        if (m_row[i] != value) {
            m_row[i] = value;
            isChanged = true;
        }
    }
    return isChanged;
}
