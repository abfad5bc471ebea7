#include "app/TerminalText.h"

namespace {

/// Marks that turn the direction of writing: a number behind one would read backwards.
bool turnsDirection(QChar c)
{
    switch (c.direction()) {
    case QChar::DirLRE:
    case QChar::DirRLE:
    case QChar::DirPDF:
    case QChar::DirLRO:
    case QChar::DirRLO:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
        return true;
    default:
        return false;
    }
}

} // namespace

QString onOneLine(QString text)
{
    for (QChar& c : text) {
        const QChar::Category category = c.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph || turnsDirection(c))
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
        if ((c.category() == QChar::Other_Control && c != '\n') || turnsDirection(c)) {
            result += QString("\\u%1").arg(c.unicode(), digits, 16, QChar('0'));
        } else {
            result += c;
        }
    }
    return result;
}
