#include "fuzz/WorkbookParts.h"

#include <QList>

namespace {

constexpr char mark = '\x1d';

}

WorkbookParts partsOf(const QByteArray& input)
{
    WorkbookParts parts;
    const QList<QByteArray> pieces = input.split(mark);
    for (const QByteArray& piece : pieces) {
        const int end = piece.indexOf('\n');
        if (end > 0) {
            parts.append({QString::fromUtf8(piece.left(end)), piece.mid(end + 1)});
        }
    }
    return parts;
}

QByteArray inputOf(const WorkbookParts& parts)
{
    QByteArray input;
    for (const auto& part : parts) {
        input += mark + part.first.toUtf8() + '\n' + part.second;
    }
    return input;
}
