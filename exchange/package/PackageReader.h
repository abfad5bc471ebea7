#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <memory>
#include <optional>

struct zip;

/// The parts of a zip archive in memory, by their names. Names are compared as packages compare
/// them: whatever the case, with "/" between folders. What is read in all is bounded.
class PackageReader
{
public:
    PackageReader();
    ~PackageReader();

    PackageReader(const PackageReader&) = delete;
    PackageReader& operator=(const PackageReader&) = delete;

    /// Reads the archive's directory. On failure, or if two parts have one name, returns false and
    /// puts the reason into `error` (may be null).
    bool open(const QByteArray& archive, QString* error);

    bool contains(const QString& part) const { return m_places.contains(key(part)); }

    /// Unpacks a part whole; its checksum is compared. On failure returns nothing and puts the
    /// reason into `error` (may be null).
    std::optional<QByteArray> read(const QString& part, QString* error);

private:
    struct Closer
    {
        void operator()(zip* archive) const;
    };

    static QString key(const QString& part);
    bool readDirectory(QString* error);

    QByteArray m_bytes; ///< outlives the archive over it
    std::unique_ptr<zip, Closer> m_archive;
    QHash<QString, quint64> m_places; ///< index in the archive by key
    qint64 m_unpacked = 0;            ///< bytes read so far
};
