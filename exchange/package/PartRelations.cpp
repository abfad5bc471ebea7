#include "exchange/package/PartRelations.h"

#include <QDir>
#include <QUrl>

#include "exchange/package/PackageReader.h"
#include "exchange/package/PartReader.h"
#include "exchange/package/XmlOutput.h"

namespace {

const QString documentTypes =
    QStringLiteral("http://schemas.openxmlformats.org/officeDocument/2006/relationships/");
const QString coreProperties = QStringLiteral(
    "http://schemas.openxmlformats.org/package/2006/relationships/metadata/core-properties");

/// Folder of a part, with its slash; empty for parts at the root.
QString folderOf(const QString& part)
{
    return part.left(part.lastIndexOf('/') + 1);
}

QString relationsPartOf(const QString& part)
{
    const QString folder = folderOf(part);
    return folder + "_rels/" + part.mid(folder.size()) + ".rels";
}

/// The part that a target means, seen from a folder.
QString partOf(const QString& target, const QString& folder, const PackageReader& package)
{
    QString path = QString(target).replace('\\', '/');
    path = QDir::cleanPath(path.startsWith('/') ? path.mid(1) : folder + path);
    // Names are stored as they are written in an address, or as they read.
    return package.contains(path) ? path : QUrl::fromPercentEncoding(path.toUtf8());
}

} // namespace

std::optional<PartRelations> PartRelations::of(const QString& part, PackageReader& package,
                                               QString* error)
{
    PartRelations result;
    const QString name = relationsPartOf(part);
    if (!package.contains(name)) {
        return result;
    }
    const std::optional<QByteArray> bytes = package.read(name, error);
    if (!bytes) {
        return {};
    }
    PartReader reader(*bytes);
    if (reader.enter("Relationships", Vocabulary::Relations)) {
        while (reader.nextChild()) {
            const QString type = reader.attribute("Type").toString();
            const QString target = reader.attribute("Target").toString();
            const bool isExternal = reader.attribute("TargetMode") == QLatin1String("External");
            const QString id = reader.attribute("Id").toString();
            if (!result.m_places.contains(id)) {
                result.m_places.insert(id, result.m_relations.size());
            }
            result.m_relations.append(
                {id, type.mid(type.lastIndexOf('/') + 1),
                 isExternal ? target : partOf(target, folderOf(part), package), isExternal});
            reader.skip();
        }
    }
    if (!reader.isWellToTheEnd()) {
        if (error) {
            *error = name + ": " + reader.error();
        }
        return {};
    }
    return result;
}

const PartRelation* PartRelations::first(const char* kind) const
{
    for (const PartRelation& relation : m_relations) {
        if (!relation.isExternal && relation.kind == QLatin1String(kind)) {
            return &relation;
        }
    }
    return nullptr;
}

const PartRelation* PartRelations::byId(const QString& id) const
{
    const auto place = m_places.constFind(id);
    return place == m_places.constEnd() ? nullptr : &m_relations[place.value()];
}

QString RelationList::add(const char* kind, const QString& target, bool isExternal)
{
    const QString id = "rId" + QString::number(m_relations.size() + 1);
    m_relations.append({id, kind, target, isExternal});
    return id;
}

QByteArray RelationList::xml() const
{
    XmlOutput out;
    out.start("Relationships");
    out.attribute("xmlns", "http://schemas.openxmlformats.org/package/2006/relationships");
    for (const PartRelation& relation : m_relations) {
        out.start("Relationship");
        out.attribute("Id", relation.id);
        out.attribute("Type", relation.kind == QLatin1String("core-properties")
                                  ? coreProperties
                                  : documentTypes + relation.kind);
        out.attribute("Target", relation.target);
        if (relation.isExternal) {
            out.attribute("TargetMode", "External");
        }
        out.end("Relationship");
    }
    out.end("Relationships");
    return out.bytes();
}
