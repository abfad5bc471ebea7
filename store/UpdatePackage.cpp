#include "store/UpdatePackage.h"

#include <QDataStream>
#include <QJsonDocument>
#include <QStringList>

namespace {

uint component(const QStringList& version, int index)
{
    return index < version.size() ? version[index].toUInt() : 0;
}

} // namespace

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

bool isNewerVersion(const QString& current, const QString& candidate)
{
    const QStringList currentParts = current.split('.');
    const QStringList candidateParts = candidate.split('.');
    const int count = qMax(currentParts.size(), candidateParts.size());
    for (int i = 0; i < count; ++i) {
        const uint ours = component(currentParts, i);
        const uint theirs = component(candidateParts, i);
        if (ours != theirs) {
            return theirs > ours;
        }
    }
    return false;
}
