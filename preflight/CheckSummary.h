#pragma once

#include <QByteArray>
#include <QMap>
#include <QSet>
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

    /// How many findings there are of each kind that was found.
    const QMap<Finding::Kind, int>& kinds() const { return m_kinds; }

private:
    int m_documents = 0;
    int m_findings = 0;
    QMap<Finding::Kind, int> m_kinds;
    QSet<QByteArray> m_ofBlanks;
};
