#pragma once

#include <QString>
#include <QTemporaryDir>
#include <QVariant>

/// A temporary application directory with a fresh database that is open on the default
/// connection. While it lives it is the application directory and the current directory, and the
/// organisation data is kept in it; the globals are empty again afterwards.
class TempApplication
{
public:
    enum class Database
    {
        Empty, ///< "docs.db" with all tables and no rows, open
        None   ///< no "docs.db", nothing open
    };

    explicit TempApplication(Database database = Database::Empty);
    ~TempApplication();
    TempApplication(const TempApplication&) = delete;
    TempApplication& operator=(const TempApplication&) = delete;

    /// Path of the directory, or of a file in it.
    QString path(const QString& relative = QString()) const;

    /// Runs one statement on the default connection; a failure fails the test. Returns the new row
    /// of an insert.
    QVariant exec(const QString& sql, const QVariantList& positional = QVariantList());

    /// The first column of the first row; invalid if there is none.
    QVariant value(const QString& sql, const QVariantList& positional = QVariantList());

    /// The whole database as sqlite3's dump, read by a process of its own.
    QByteArray dump(const QString& file = "docs.db") const;

private:
    QTemporaryDir m_dir;
    QString m_oldCurrent;
    QString m_oldOrgDataPath;
};
