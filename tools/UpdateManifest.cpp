#include "tools/UpdateManifest.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QStringList>

#include "tools/RepeatedKey.h"
#include "tools/UpdateStatement.h"

namespace {

/// What this file says, in the language of the user.
class Text
{
    Q_DECLARE_TR_FUNCTIONS(UpdateManifest)
};

const char* const sqlKey = "sql";
const char* const argumentKey = "argument";

bool isVersion(const QString& text)
{
    // A pattern's "$" would let a line end through.
    static const QRegularExpression numbers("\\A[0-9]{1,9}(\\.[0-9]{1,9}){3}\\z");
    return numbers.match(text).hasMatch();
}

QByteArray compact(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

/// "line 3, column 7" of a byte offset.
QString placeOf(const QByteArray& json, int offset)
{
    const QByteArray before = json.left(offset);
    const int line = before.count('\n') + 1;
    const int column = QString::fromUtf8(before.mid(before.lastIndexOf('\n') + 1)).size() + 1;
    return Text::tr("line %1, column %2").arg(line).arg(column);
}

/// Reads the parts of a manifest one by one; the first error ends it.
class ManifestReader
{
public:
    bool read(const QByteArray& json, UpdatePackage& package)
    {
        QJsonParseError parsed{};
        const QJsonDocument document = QJsonDocument::fromJson(json, &parsed);
        if (parsed.error != QJsonParseError::NoError) {
            // The parser has gone one character beyond the one it does not understand.
            return fail(placeOf(json, qMax(parsed.offset - 1, 0)), parsed.errorString());
        }
        const std::optional<RepeatedKey> repeated = RepeatedKey::find(json);
        if (repeated) {
            return fail(placeOf(json, repeated->offset),
                        Text::tr("the key is given twice: %1").arg(repeated->key));
        }
        if (!document.isObject()) {
            return fail(Text::tr("top level"), Text::tr("an object is expected"));
        }
        return readHeader(document.object(), package);
    }

    QString error() const { return m_error; }

private:
    bool readHeader(const QJsonObject& manifest, UpdatePackage& package)
    {
        if (!checkKeys(QString(), manifest, {"update_version", "parts"}) ||
            !checkVersion("update_version", manifest.value("update_version")))
        {
            return false;
        }
        m_updateVersion = manifest.value("update_version").toString();
        package.header = compact({{"update_version", m_updateVersion}});
        const QJsonValue parts = manifest.value("parts");
        if (!parts.isUndefined() && !parts.isArray()) {
            return fail("parts", Text::tr("an array is expected"));
        }
        const QJsonArray array = parts.toArray();
        for (int i = 0; i < array.size(); ++i) {
            UpdatePart part;
            if (!readPart(QString("parts[%1]").arg(i), array[i], part)) {
                return false;
            }
            package.parts.append(part);
        }
        return true;
    }

    bool readPart(const QString& place, const QJsonValue& value, UpdatePart& part)
    {
        if (!value.isObject()) {
            return fail(place, Text::tr("an object is expected"));
        }
        const QJsonObject source = value.toObject();
        const QJsonValue type = source.value("type");
        const bool isFunction = type == QJsonValue("cppFunction");
        if (!type.isUndefined() && !isFunction && type != QJsonValue("sqlQuery")) {
            return fail(place + ".type", Text::tr("\"sqlQuery\" or \"cppFunction\" is expected"));
        }
        const QString payloadKey = isFunction ? argumentKey : sqlKey;
        QStringList known{"version", "type", "ignore_errors", payloadKey};
        if (isFunction) {
            known << "function_name";
        }
        if (!checkKeys(place, source, known) || !checkPartVersion(place, source) ||
            !checkFlag(place, source) || (isFunction && !checkFunction(place, source)) ||
            !readText(place + "." + payloadKey, source.value(payloadKey), part.payload) ||
            (!isFunction && !checkStatement(place, part.payload)))
        {
            return false;
        }
        QJsonObject json = source;
        json.remove(payloadKey);
        part.json = compact(json);
        part.unused = "";
        return true;
    }

    bool checkKeys(const QString& place, const QJsonObject& object, const QStringList& known)
    {
        const QStringList keys = object.keys();
        for (const QString& key : keys) {
            if (!known.contains(key)) {
                return fail(place.isEmpty() ? key : place + "." + key, Text::tr("unknown key"));
            }
        }
        return true;
    }

    bool checkVersion(const QString& place, const QJsonValue& version)
    {
        return isVersion(version.toString()) ||
               fail(place, Text::tr("a version of four numbers is expected, for example "
                                    "\"1.2.0.0\""));
    }

    /// A part above the version that the package brings would be applied again by the next one.
    bool checkPartVersion(const QString& place, const QJsonObject& part)
    {
        const QJsonValue version = part.value("version");
        if (!checkVersion(place + ".version", version)) {
            return false;
        }
        return !isNewerVersion(m_updateVersion, version.toString()) ||
               fail(place + ".version", Text::tr("the version is above update_version"));
    }

    bool checkFlag(const QString& place, const QJsonObject& part)
    {
        const QJsonValue flag = part.value("ignore_errors");
        return flag.isUndefined() || flag.isBool() ||
               fail(place + ".ignore_errors", Text::tr("true or false is expected"));
    }

    bool checkFunction(const QString& place, const QJsonObject& part)
    {
        return part.value("function_name") == QJsonValue("crutchFrdoA") ||
               fail(place + ".function_name", Text::tr("\"crutchFrdoA\" is expected"));
    }

    /// An update is applied as a whole or not at all, which takes one transaction.
    bool checkStatement(const QString& place, const QString& statement)
    {
        const QString word = wordAgainstTransaction(statement);
        return word.isEmpty() ||
               fail(place + "." + sqlKey,
                    Text::tr("%1 is not possible: an update is one transaction").arg(word));
    }

    bool readText(const QString& place, const QJsonValue& value, QString& text)
    {
        QStringList lines;
        const QJsonArray array = value.isArray() ? value.toArray() : QJsonArray{value};
        for (const QJsonValue& line : array) {
            if (!line.isString()) {
                return fail(place, Text::tr("a text or an array of lines is expected"));
            }
            lines << line.toString();
        }
        text = lines.join('\n');
        return !text.trimmed().isEmpty() || fail(place, Text::tr("the text is empty"));
    }

    bool fail(const QString& place, const QString& reason)
    {
        m_error = place + ": " + reason;
        return false;
    }

    QString m_updateVersion;
    QString m_error;
};

QJsonValue readableText(const QString& text)
{
    const QStringList lines = text.split('\n');
    return lines.size() > 1 ? QJsonValue(QJsonArray::fromStringList(lines)) : QJsonValue(text);
}

QJsonObject readablePart(const UpdatePart& part)
{
    QJsonObject readable = parseUpdateJson(part.json);
    const bool isFunction = readable.value("type") == QJsonValue("cppFunction");
    readable.insert(isFunction ? argumentKey : sqlKey, readableText(part.payload));
    return readable;
}

} // namespace

bool packageFromManifest(const QByteArray& manifest, UpdatePackage& package, QString& error)
{
    ManifestReader reader;
    UpdatePackage made;
    if (!reader.read(manifest, made)) {
        error = reader.error();
        return false;
    }
    package = made;
    return true;
}

QByteArray manifestFromPackage(const UpdatePackage& package)
{
    QJsonArray parts;
    for (const UpdatePart& part : package.parts) {
        parts.append(readablePart(part));
    }
    QJsonObject manifest = parseUpdateJson(package.header);
    manifest.insert("parts", parts);
    return QJsonDocument(manifest).toJson();
}
