#pragma once

#include <QMap>
#include <QSet>
#include <QString>
#include <QVector>

#include "preflight/Finding.h"

/// Counts the findings of many pages. It keeps no finding of a document, so that it does not grow
/// with them.
class CheckSummary
{
public:
    /// Takes over the findings of a page and returns those that are new: what is wrong with a blank
    /// counts once, however many documents it prints.
    QVector<Finding> add(const QVector<Finding>& pageFindings);

    int documents() const { return m_documents; } ///< pages that were added
    int findings() const { return m_findings; }

    /// "Проверено документов: 120, замечаний: 3".
    QString words() const;

    /// How many findings there are of each kind, joined by commas; empty if there are none.
    QString kindWords() const;

private:
    int m_documents = 0;
    int m_findings = 0;
    QMap<Finding::Kind, int> m_kinds;
    QSet<QByteArray> m_ofBlanks;
};
