#include "preflight/TagCheck.h"

#include <QDate>

#include "render/TagExpansion.h"
#include "render/page/MarkupBound.h"
#include "render/page/MarkupDocument.h"

namespace {

/// The tags of a text in their order, each as often as it stands there.
QStringList tagsOf(const QString& text)
{
    QStringList tags;
    int end = 0;
    for (int begin = text.indexOf('#'); begin >= 0; begin = text.indexOf('#', end)) {
        end = tagEnd(text, begin);
        tags << text.mid(begin, end - begin);
    }
    return tags;
}

/// The text with one of its tags replaced wherever it stands.
QString withTagReplaced(const QString& text, const QString& tag, const QString& value)
{
    QString result;
    int cursor = 0;
    for (int begin = text.indexOf('#'); begin >= 0; begin = text.indexOf('#', cursor)) {
        const int end = tagEnd(text, begin);
        const bool isWanted = text.midRef(begin, end - begin) == tag;
        result += text.midRef(cursor, begin - cursor);
        result += isWanted ? QStringRef(&value) : text.midRef(begin, end - begin);
        cursor = end;
    }
    return result + text.midRef(cursor);
}

/// What the rich text engine shows of a text item's finished text, blanks joined.
QString shownText(const QString& finished)
{
    MarkupDocument document;
    document.setHtml(boundedMarkup("<p>" + QString(finished).replace('\n', "<br>") + "</p>").text);
    return document.toPlainText().simplified();
}

bool mayHoldMarkup(const QString& value)
{
    return value.contains('<') || value.contains('&');
}

} // namespace

TagCheck::TagCheck(const QJsonObject& docValues, const QJsonObject& docContent)
    : m_docValues(docValues)
    , m_docContent(docContent)
{
}

QString TagCheck::expanded(const QString& text) const
{
    return expandTags(text, m_docValues, m_docContent);
}

QStringList TagCheck::unexpandedTags(const QString& text) const
{
    QStringList names;
    int end = 0;
    for (int begin = text.indexOf('#'); begin >= 0; begin = text.indexOf('#', end)) {
        end = tagEnd(text, begin);
        QString tag = text.mid(begin, end - begin);
        if (expandTag(tag, m_docValues, m_docContent)) {
            continue;
        }
        int nameEnd = end;
        while (nameEnd < text.size() && (text[nameEnd].isLetterOrNumber() || text[nameEnd] == '_'))
        {
            ++nameEnd;
        }
        names << text.mid(begin, nameEnd - begin);
    }
    names.removeDuplicates();
    return names;
}

QStringList TagCheck::emptyDates(const QString& text) const
{
    static const QString noDate = dateToWords(QDate());
    QStringList tags = tagsOf(text);
    tags.removeDuplicates();
    QStringList empty;
    for (const QString& tag : qAsConst(tags)) {
        if (isDateTag(tag) && valueOf(tag) == noDate) {
            empty << tag;
        }
    }
    return empty;
}

QStringList TagCheck::emptyTags(const QString& text) const
{
    QStringList tags = tagsOf(text);
    tags.removeDuplicates();
    QStringList empty;
    for (const QString& tag : qAsConst(tags)) {
        QString value = tag;
        if (tag == QLatin1String("#DUPLICATE") || !expandTag(value, m_docValues, m_docContent)) {
            continue;
        }
        if (value.remove('^').remove("\\n").trimmed().isEmpty()) {
            empty << tag;
        }
    }
    return empty;
}

QString TagCheck::droppedTail(const QString& text) const
{
    if (text.isEmpty()) {
        return QString();
    }
    const int lastTag = text.lastIndexOf('#');
    const int tailBegin = lastTag < 0 ? 0 : tagEnd(text, lastTag);
    const QString tail = text.mid(tailBegin);
    const bool leavesInk = tail != "^" && !tail.trimmed().isEmpty();
    return tail.size() == 1 && leavesInk ? tail : QString();
}

QVector<TagCheck::Value> TagCheck::valuesReadAsMarkup(const QString& text) const
{
    static const QString placeholder = QString(2, QChar(0xFDD0)); // stands in no text
    QStringList tags = tagsOf(text);
    tags.removeDuplicates();
    QVector<Value> values;
    for (const QString& tag : qAsConst(tags)) {
        const QString value = valueOf(tag);
        if (!mayHoldMarkup(value)) {
            continue;
        }
        // In its place, since what stands around a value can complete its markup.
        const QString rest = expanded(withTagReplaced(text, tag, placeholder));
        const QString inserted = QString(value).remove('^').replace("\\n", "\n");
        const auto shownWith = [&](const QString& insertion) {
            return shownText(QString(rest).replace(placeholder, insertion));
        };
        if (shownWith(inserted) != shownWith(inserted.toHtmlEscaped())) {
            values.append({tag, value});
        }
    }
    return values;
}

QString TagCheck::valueOf(const QString& tag) const
{
    QString value = tag;
    return expandTag(value, m_docValues, m_docContent) ? value : QString();
}
