// Bytes taken as a text with tags, the values of a document's columns and its content, each ended
// by a zero byte. What the expansion gives is compared with that of a slow, simple one.

#include <QDate>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include "fuzz/FuzzSupport.h"
#include "render/TagExpansion.h"
#include "store/OrgData.h"

namespace {

QJsonObject objectOf(const QByteArray& bytes)
{
    return QJsonDocument::fromJson(bytes).object();
}

/// The same expansion by a regular expression; single tags are expanded by the function itself.
QString slowExpansion(const QString& text, const QJsonObject& values, const QJsonObject& content)
{
    static const QRegularExpression tags("#[A-Z0-9_#]*");
    QString result;
    int end = 0;
    QRegularExpressionMatchIterator matches = tags.globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        QString tag = match.captured();
        const bool isReplaced = expandTag(tag, values, content);
        require(isReplaced || tag == match.captured(), "a tag that is not known stays");
        result += text.mid(end, match.capturedStart() - end) + tag;
        end = match.capturedEnd();
    }
    const QString tail = text.mid(end);
    if (tail.size() != 1) {
        result += tail;
    }
    return result.split('^').join(QString()).split("\\n").join("\n");
}

/// Surname and at most two initials, cut out by the text's sections.
QString slowShortName(const QString& name)
{
    QString result = name.section(' ', 0, 0) + ' ';
    for (int part = 1; part <= qMin(name.count(' '), 2); ++part) {
        result += name.section(' ', part, part).left(1) + ". ";
    }
    return result;
}

} // namespace

void tryInput(const QByteArray& input)
{
    orgNameFormat1 = "Колледж";
    orgDirector = "Петров Пётр #LNAME";
    const QList<QByteArray> pieces = input.split('\0');
    const QString text = QString::fromUtf8(pieces.value(0));
    const QJsonObject values = objectOf(pieces.value(1));
    const QJsonObject content = objectOf(pieces.value(2));

    const QString expanded = expandTags(text, values, content);
    require(expanded == slowExpansion(text, values, content), "both expansions give the same");
    require(!expanded.contains('^') && !expanded.contains("\\n"), "no mark-up of ours is left");
    require(shortPersonName(text) == slowShortName(text), "both short names are the same");
    require(dateToWords(QDate::fromString(text, "yyyy-MM-dd")).count(' ') >= 2,
            "a date in words has three parts");
}
