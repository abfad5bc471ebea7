#include "store/UpdatePackage.h"

#include <QDataStream>
#include <QJsonDocument>

bool readUpdatePart(QDataStream& stream, UpdatePart& part)
{
    stream >> part.json >> part.unused >> part.payload;
    return stream.status() == QDataStream::Ok;
}

void writeUpdatePart(QDataStream& stream, const UpdatePart& part)
{
    stream << part.json << part.unused << part.payload;
}

bool readUpdatePackage(QDataStream& stream, UpdatePackage& package)
{
    stream >> package.header;
    while (stream.status() == QDataStream::Ok && !stream.atEnd()) {
        UpdatePart part;
        if (readUpdatePart(stream, part)) {
            package.parts.append(part);
        }
    }
    return stream.status() == QDataStream::Ok;
}

void writeUpdatePackage(QDataStream& stream, const UpdatePackage& package)
{
    stream << package.header;
    for (const UpdatePart& part : package.parts) {
        writeUpdatePart(stream, part);
    }
}

QJsonObject parseUpdateJson(const QByteArray& json)
{
    return QJsonDocument::fromJson(json).object();
}
