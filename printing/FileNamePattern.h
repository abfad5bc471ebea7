#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QVector>

#include <optional>

#include "printing/PrintDocument.h"

/// Names of the files that a batch writes into one folder. In a pattern such as
/// "{#LNAME}_{#BLANK_NO}.pdf" what stands in braces is expanded for the document as a blank's text
/// is; the rest is taken as it stands. Every name is fit for the file systems of Windows and Linux,
/// ends in the suffix, and is given once, letter case aside.
class FileNamePattern
{
public:
    /// An empty pattern is the usual one: ID, surname and first name. `suffix` begins with a dot;
    /// the pattern may name it or leave it out.
    explicit FileNamePattern(const QString& pattern, const QString& suffix = ".pdf");

    /// False if the braces do not match.
    bool isValid() const { return m_isValid; }

    /// A new name for a document of the open database. One that was given before gets " (2)" and
    /// so on; one of which nothing is left becomes the ID. None if the document can't be read.
    std::optional<QString> nameFor(const PrintDocument& document);

    /// Counts a name as given.
    void reserve(const QString& name) { m_given.insert(name.toCaseFolded()); }

private:
    struct Piece
    {
        QString text;
        bool isExpanded;
    };

    bool parse(const QString& pattern);
    std::optional<QString> stemFor(const PrintDocument& document) const;

    QString m_suffix;
    QVector<Piece> m_pieces;
    bool m_isValid;
    QSet<QString> m_given;            // in lower case
    QHash<QString, int> m_lastNumber; // of each name that came more than once
};
