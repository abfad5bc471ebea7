#include "batch/CsvText.h"

#include "app/TerminalText.h"

namespace {

QString csvCell(const QString& text)
{
    QString cell = onOneLine(text);
    const QString trimmed = cell.trimmed();
    if (!trimmed.isEmpty() && QStringLiteral("=+-@").contains(trimmed[0])) {
        cell.prepend('\'');
    }
    return '"' + cell.replace('"', "\"\"") + '"';
}

} // namespace

QByteArray csvStart()
{
    return QByteArrayLiteral("\xEF\xBB\xBF");
}

QByteArray csvRow(const QStringList& cells)
{
    QStringList quoted;
    for (const QString& cell : cells) {
        quoted << csvCell(cell);
    }
    return (quoted.join(';') + "\r\n").toUtf8();
}
