#pragma once

#include <QHash>
#include <QString>
#include <QVector>

#include <optional>

class PackageReader;

/// What a part of a package refers to.
struct PartRelation
{
    QString id;
    QString kind;   ///< last word of the type, for example "worksheet"
    QString target; ///< name of a part of the package, or an address outside of it
    bool isExternal = false;
};

/// The relations of one part; of the package itself if the part has no name.
class PartRelations
{
public:
    /// Reads the relations; a part may have none. Returns nothing if they are damaged, and puts the
    /// reason into `error` (may be null).
    static std::optional<PartRelations> of(const QString& part, PackageReader& package,
                                           QString* error);

    /// The first relation of a kind to a part that is there; else null.
    const PartRelation* first(const char* kind) const;
    /// The relation with an identifier, whatever it refers to; else null.
    const PartRelation* byId(const QString& id) const;

private:
    QVector<PartRelation> m_relations;
    QHash<QString, int> m_places; ///< of the first relation with each identifier
};

/// The relations of a part under construction, as XML.
class RelationList
{
public:
    /// Adds a relation of a document and returns its identifier.
    QString add(const char* kind, const QString& target, bool isExternal = false);
    bool isEmpty() const { return m_relations.isEmpty(); }
    QByteArray xml() const;

private:
    QVector<PartRelation> m_relations;
};
