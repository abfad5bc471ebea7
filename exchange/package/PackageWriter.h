#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>
#include <utility>

/// Makes a zip archive in memory. The parts are stored as they are: what reads the archive stands
/// in the same process.
class PackageWriter
{
public:
    void add(const QString& part, const QByteArray& bytes) { m_parts.append({part, bytes}); }

    /// The archive of all parts; nothing if there is no memory for it.
    std::optional<QByteArray> finish() const;

private:
    QVector<std::pair<QString, QByteArray>> m_parts;
};
