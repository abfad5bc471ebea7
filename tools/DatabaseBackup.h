#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

class QDateTime;

/// Keeps dated archives of a document database in a folder. The database may be in use. Each
/// archive comes to be whole and checked, or not at all.
class DatabaseBackup
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseBackup)

public:
    enum class Result
    {
        Made,
        Unchanged,   ///< the newest archive holds just this database
        Interrupted, ///< the user ended it; nothing was made
        Failed       ///< nothing was made, error() says why
    };

    DatabaseBackup(const QString& database, const QString& folder);

    /// Makes an archive with the date and time in its name, unless nothing has changed since the
    /// newest one.
    Result make();

    /// Removes the oldest archives beyond this number, of this database's name and with names that
    /// make() gives. What could not be removed, if anything, is in error(); returns false then.
    bool removeBeyond(int number);

    /// The archive that was made, or the newest one that holds the same.
    QString archive() const { return m_archive; }

    /// The archives that removeBeyond() has removed.
    const QStringList& removed() const { return m_removed; }

    QString error() const { return m_error; }

private:
    Result copyTo(const QString& part);
    Result check(const QString& part);
    Result giveName(const QString& part);
    Result fail(const QString& reason);
    QStringList archives() const;
    QString nameAt(const QDateTime& time) const;

    const QString m_database;
    const QString m_folder;
    QString m_archive;
    QStringList m_removed;
    QString m_error;
};
