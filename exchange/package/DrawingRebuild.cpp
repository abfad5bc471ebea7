#include "exchange/package/DrawingRebuild.h"

#include "exchange/package/DrawingRules.h"
#include "exchange/package/PackageLimits.h"
#include "exchange/package/PackageReader.h"
#include "exchange/package/PackageWriter.h"
#include "exchange/package/PartReader.h"
#include "exchange/package/PartRelations.h"
#include "exchange/package/XmlOutput.h"

namespace {

void tell(QString* error, const QString& reason)
{
    if (error) {
        *error = reason;
    }
}

/// Ending of a picture's name by what the picture begins with; empty for what is none.
QString pictureKind(const QByteArray& bytes)
{
    static const QVector<std::pair<QByteArray, QString>> kinds = {
        {"\x89PNG", "png"},
        {"\xff\xd8\xff", "jpeg"},
        {"GIF8", "gif"},
        {"BM", "bmp"},
        {QByteArray("II*\0", 4), "tiff"},
        {QByteArray("MM\0*", 4), "tiff"},
        {"\xd7\xcd\xc6\x9a", "wmf"},
        {QByteArray("\x01\0\0\0", 4), "emf"}};
    for (const auto& kind : kinds) {
        if (bytes.startsWith(kind.first)) {
            return kind.second;
        }
    }
    return QString();
}

/// The relation that the element at the end of a path below the reader's names.
QString relationBelow(PartReader& reader, const QVector<const char*>& path, const char* attribute,
                      int depth = 0)
{
    QString id;
    while (reader.nextChild()) {
        if (!reader.is(path[depth])) {
            reader.skip();
        } else if (depth + 1 < path.size()) {
            const QString below = relationBelow(reader, path, attribute, depth + 1);
            id = id.isEmpty() ? below : id;
        } else {
            id = reader.relation(attribute);
            reader.skip();
        }
    }
    return id;
}

/// The part that a relation of a kind refers to; empty without one.
QString partOf(const PartRelations& relations, const QString& id, const char* kind)
{
    const PartRelation* relation = relations.byId(id);
    return relation && !relation->isExternal && relation->kind == QLatin1String(kind)
               ? relation->target
               : QString();
}

} // namespace

DrawingRebuild::DrawingRebuild(PackageReader& package, PackageWriter& copy)
    : m_package(package)
    , m_copy(copy)
{
}

std::optional<QString> DrawingRebuild::add(const QString& part, QString* error)
{
    if (!m_package.contains(part)) {
        return QString();
    }
    const std::optional<QByteArray> bytes = m_package.read(part, error);
    const auto relations = PartRelations::of(part, m_package, error);
    if (!bytes || !relations) {
        return {};
    }
    PartReader reader(*bytes);
    RelationList newRelations;
    XmlOutput out;
    out.start("xdr:wsDr");
    DrawingRules::writeNamespaces(out);
    bool isDone = reader.enter("wsDr", Vocabulary::Drawing);
    while (isDone && reader.nextChild()) {
        isDone = copyAnchor(reader, *relations, newRelations, out, error);
    }
    out.end("xdr:wsDr");
    if (!reader.isWellToTheEnd()) {
        tell(error, part + ": " + reader.error());
        return {};
    }
    if (!isDone) {
        return {};
    }
    if (!out.bytes().contains("Anchor")) {
        return QString();
    }
    const QString file = QString("drawing%1.xml").arg(++m_drawingCount);
    m_copy.add("xl/drawings/" + file, out.bytes());
    m_copy.add("xl/drawings/_rels/" + file + ".rels", newRelations.xml());
    return "drawings/" + file;
}

/// Copies an object with its place on the sheet. Returns false only if a part is damaged.
bool DrawingRebuild::copyAnchor(PartReader& reader, const PartRelations& relations,
                                RelationList& newRelations, XmlOutput& out, QString* error)
{
    const ElementRule* rule = DrawingRules::anchor(reader.name().toString());
    if (!rule) {
        reader.skip();
        return true;
    }
    const int mark = out.mark();
    out.start(rule->written);
    copyAttributes(reader, *rule, out);
    XmlOutput object;
    int corners = 0;
    bool isDone = true;
    while (isDone && reader.nextChild()) {
        const ElementRule* corner = nullptr;
        for (const ElementRule& child : rule->children) {
            corner = reader.is(child.name) ? &child : corner;
        }
        if (corner) {
            corners += copyElement(reader, *corner, out) ? 1 : 0;
        } else {
            isDone = copyObject(reader, relations, newRelations, object, error);
        }
    }
    out.raw(object.bytes());
    out.end(rule->written);
    if (object.bytes().isEmpty() || corners != rule->children.size()) {
        out.truncate(mark);
    }
    return isDone;
}

/// Copies what stands at a place, if the library keeps it. Returns false only on damage.
bool DrawingRebuild::copyObject(PartReader& reader, const PartRelations& relations,
                                RelationList& newRelations, XmlOutput& object, QString* error)
{
    if (!object.bytes().isEmpty()) {
        reader.skip(); // a place has one object
        return true;
    }
    if (++m_objectCount > PackageLimits::objects) {
        tell(error, "too many pictures");
        return false;
    }
    if (reader.is("pic")) {
        const QString id = relationBelow(reader, {"blipFill", "blip"}, "embed");
        const auto picture = addPicture(partOf(relations, id, "image"), error);
        if (picture && !picture->isEmpty()) {
            DrawingRules::writePicture(newRelations.add("image", *picture), object);
        }
        return picture.has_value();
    }
    if (reader.is("graphicFrame")) {
        const QString id = relationBelow(reader, {"graphic", "graphicData", "chart"}, "id");
        const auto chart = addChart(partOf(relations, id, "chart"), error);
        if (chart && !chart->isEmpty()) {
            DrawingRules::writeChartFrame(newRelations.add("chart", *chart), object);
        }
        return chart.has_value();
    }
    if (reader.is("cxnSp")) {
        DrawingRules::copyLine(reader, object);
        return true;
    }
    reader.skip();
    return true;
}

/// Copies a picture. Returns its new name as a drawing sees it, an empty one if it is none.
std::optional<QString> DrawingRebuild::addPicture(const QString& part, QString* error)
{
    if (part.isEmpty() || !m_package.contains(part)) {
        return QString();
    }
    const auto known = m_pictures.constFind(part);
    if (known != m_pictures.constEnd()) {
        return known.value();
    }
    const std::optional<QByteArray> bytes = m_package.read(part, error);
    if (!bytes) {
        return {};
    }
    const QString kind = pictureKind(*bytes);
    QString name;
    if (!kind.isEmpty()) {
        const QString file = QString("media/image%1.%2").arg(m_pictures.size() + 1).arg(kind);
        m_copy.add("xl/" + file, *bytes);
        name = "../" + file;
    }
    m_pictures.insert(part, name);
    return name;
}

/// Copies a chart. Returns its new name as a drawing sees it, an empty one if it is none that the
/// library writes.
std::optional<QString> DrawingRebuild::addChart(const QString& part, QString* error)
{
    if (part.isEmpty() || !m_package.contains(part)) {
        return QString();
    }
    const std::optional<QByteArray> bytes = m_package.read(part, error);
    if (!bytes) {
        return {};
    }
    PartReader reader(*bytes);
    XmlOutput out;
    const bool isKept = DrawingRules::copyChart(reader, out);
    if (!reader.isWellToTheEnd()) {
        tell(error, part + ": " + reader.error());
        return {};
    }
    if (!isKept) {
        return QString();
    }
    const QString file = QString("charts/chart%1.xml").arg(++m_chartCount);
    m_copy.add("xl/" + file, out.bytes());
    return "../" + file;
}
