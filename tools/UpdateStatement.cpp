#include "tools/UpdateStatement.h"

#include <QSet>

namespace {

/// Takes SQL apart into words and signs, and passes over white space, comments and texts in quotes.
class SqlWords
{
public:
    explicit SqlWords(const QString& sql)
        : m_sql(sql)
    {
    }

    /// The next word in capitals, the next sign, or an empty text at the end. A text in quotes is a
    /// sign too.
    QString next()
    {
        passOver();
        if (m_place >= m_sql.size()) {
            return QString();
        }
        const QChar first = m_sql[m_place];
        if (isPartOfWord(first)) {
            return word();
        }
        if (first == '\'' || first == '"' || first == '`' || first == '[') {
            m_place = behind(first == '[' ? QChar(']') : first, m_place + 1);
        } else {
            ++m_place;
        }
        return first;
    }

private:
    static bool isPartOfWord(QChar character)
    {
        return character.isLetterOrNumber() || character == '_' || character == '$';
    }

    QString word()
    {
        const int start = m_place;
        while (m_place < m_sql.size() && isPartOfWord(m_sql[m_place])) {
            ++m_place;
        }
        return m_sql.mid(start, m_place - start).toUpper();
    }

    void passOver()
    {
        constexpr ushort byteOrderMark = 0xfeff; // white space to SQLite
        while (m_place < m_sql.size()) {
            const QChar character = m_sql[m_place];
            if (character.isSpace() || character == QChar(byteOrderMark)) {
                ++m_place;
            } else if (m_sql.midRef(m_place, 2) == QLatin1String("--")) {
                m_place = behind("\n", m_place);
            } else if (m_sql.midRef(m_place, 2) == QLatin1String("/*")) {
                m_place = behind("*/", m_place + 2);
            } else {
                return;
            }
        }
    }

    /// The place behind the next occurrence, or the end: what is not closed goes on to there.
    int behind(const QString& end, int from) const
    {
        const int found = m_sql.indexOf(end, from);
        return found < 0 ? m_sql.size() : found + end.size();
    }

    const QString m_sql;
    int m_place = 0;
};

} // namespace

QString wordAgainstTransaction(const QString& sql)
{
    static const QSet<QString> refused{"BEGIN",   "COMMIT", "END",    "SAVEPOINT",
                                       "RELEASE", "ATTACH", "DETACH", "VACUUM"};
    SqlWords words(sql);
    bool isStart = true;       // of a statement
    bool maybeTrigger = false; // "CREATE", and perhaps "TEMP", so far
    bool isTrigger = false;
    QString before;
    QString beforeThat;
    for (QString word = words.next(); !word.isEmpty(); word = words.next()) {
        // That one undoes the transaction wherever it stands: "INSERT OR ROLLBACK" is no less.
        if (word == "ROLLBACK" || (isStart && refused.contains(word))) {
            return word;
        }
        if (word == ";") {
            // Only the END of a trigger closes it, not the statements in it, nor that of a CASE.
            isTrigger = isTrigger && !(before == "END" && beforeThat == ";");
            isStart = !isTrigger;
        } else {
            isTrigger = isTrigger || (maybeTrigger && word == "TRIGGER");
            maybeTrigger = (isStart && word == "CREATE") ||
                           (maybeTrigger && (word == "TEMP" || word == "TEMPORARY"));
            isStart = false;
        }
        beforeThat = before;
        before = word;
    }
    return QString();
}
