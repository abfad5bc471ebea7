#pragma once

#include <QCoreApplication>
#include <QString>
#include <QTemporaryDir>

#include <memory>

/// A database file to read from, as the next program that opens it will find it. If a change of it
/// was interrupted, by a power cut for example, its journal lies beside it, and whoever opens it
/// undoes that change first. Here that happens to a copy: the file itself is never changed. So it
/// does where reading alone would leave new files beside the database.
class SettledDatabase
{
    Q_DECLARE_TR_FUNCTIONS(SettledDatabase)

public:
    explicit SettledDatabase(const QString& path);

    /// Looks for an interrupted change, and makes the copy if it takes one. False if that failed;
    /// error() then says why.
    bool settle();

    /// Whether an interrupted change waits to be undone.
    bool hasWaitingChange() const { return m_hasWaitingChange; }

    /// The file to read from: the database, or the copy, which lives as long as this object.
    QString path() const;

    QString error() const { return m_error; }

private:
    bool copyFiles();
    bool isRefused() const;

    const QString m_path;
    std::unique_ptr<QTemporaryDir> m_folder; // of the copy
    bool m_hasWaitingChange = false;
    QString m_error;
};
