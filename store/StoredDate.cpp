#include "store/StoredDate.h"

#include <algorithm>

namespace {

bool isDigit(QChar c)
{
    return c >= '0' && c <= '9';
}

/// Four digits, two and two, with hyphens between them.
bool looksStored(const QString& text)
{
    constexpr int size = 10;
    constexpr int firstHyphen = 4;
    constexpr int secondHyphen = 7;
    if (text.size() != size || text[firstHyphen] != '-' || text[secondHyphen] != '-') {
        return false;
    }
    return std::count_if(text.cbegin(), text.cend(), isDigit) == size - 2;
}

} // namespace

const QString storedDateFormat = QStringLiteral("yyyy-MM-dd");

QDate dateFromStored(const QString& text)
{
    if (!looksStored(text)) {
        return QDate::fromString(text, storedDateFormat);
    }
    // The toolkit's own reading asks the system for its time zone, which takes longer than the
    // layout of a short text.
    return QDate(text.midRef(0, 4).toInt(), text.midRef(5, 2).toInt(), text.midRef(8, 2).toInt());
}
