#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// A key that an object of a JSON text has a second time. The toolkit's parser keeps only the last
/// of the two values, and says nothing.
struct RepeatedKey
{
    QString key;
    int offset = 0; ///< of its second place, in bytes

    /// The first one of a text that is valid JSON; none if there is none.
    static std::optional<RepeatedKey> find(const QByteArray& json);
};
