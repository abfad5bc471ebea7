#include "tools/RepeatedKey.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QVector>

namespace {

/// The offset behind the string that begins at this one.
int endOfString(const QByteArray& json, int begin)
{
    int end = begin + 1;
    while (end < json.size() && json[end] != '"') {
        end += json[end] == '\\' ? 2 : 1;
    }
    return end + 1;
}

bool isKey(const QByteArray& json, int end)
{
    while (end < json.size() && QByteArray(" \t\r\n").contains(json[end])) {
        ++end;
    }
    return end < json.size() && json[end] == ':';
}

/// The string without its quotes and escape sequences.
QString decoded(const QByteArray& string)
{
    return QJsonDocument::fromJson('[' + string + ']').array().first().toString();
}

} // namespace

std::optional<RepeatedKey> RepeatedKey::find(const QByteArray& json)
{
    QVector<QSet<QString>> keys; // of the objects and arrays around the place
    for (int i = 0; i < json.size(); ++i) {
        const char c = json[i];
        if (c == '{' || c == '[') {
            keys.append(QSet<QString>());
        } else if ((c == '}' || c == ']') && !keys.isEmpty()) {
            keys.removeLast();
        } else if (c == '"') {
            const int end = endOfString(json, i);
            if (isKey(json, end) && !keys.isEmpty()) {
                const QString key = decoded(json.mid(i, end - i));
                if (keys.last().contains(key)) {
                    return RepeatedKey{key, i};
                }
                keys.last() << key;
            }
            i = end - 1;
        }
    }
    return std::nullopt;
}
