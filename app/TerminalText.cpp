#include "app/TerminalText.h"

QString onOneLine(QString text)
{
    for (QChar& c : text) {
        const QChar::Category category = c.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph)
        {
            c = ' ';
        }
    }
    return text;
}

QString jsonForTerminal(const QByteArray& json)
{
    constexpr int digits = 4;
    QString result;
    for (const QChar c : QString::fromUtf8(json)) {
        // Within a string JSON itself leaves only those behind U+007E as they are.
        if (c.category() == QChar::Other_Control && c != '\n') {
            result += QString("\\u%1").arg(c.unicode(), digits, 16, QChar('0'));
        } else {
            result += c;
        }
    }
    return result;
}
