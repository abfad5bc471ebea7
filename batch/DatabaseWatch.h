#pragma once

#include <QDateTime>
#include <QVariant>

/// Looks, before each sheet of a batch, whether the open database is still the one that the batch
/// was planned from, and holds it as it is while the sheet is printed. How long looking waits
/// for a lock is up to the connection: it should be next to nothing, for a window that waits is
/// dead. Who finds the database busy looks again later.
class DatabaseWatch
{
public:
    enum class State
    {
        Same,
        Changed,  ///< others have stored something in it
        Busy,     ///< another program holds it for itself
        Replaced, ///< another file has its name, or none
        Unreadable
    };

    DatabaseWatch();
    ~DatabaseWatch();
    DatabaseWatch(const DatabaseWatch&) = delete;
    DatabaseWatch& operator=(const DatabaseWatch&) = delete;

    /// What has become of it since it was last taken as it is. If it is the same, nobody can change
    /// it until release().
    State look();
    void release();

    /// Takes the database as it is now; false if it can't be read.
    bool accept();

private:
    struct Print
    {
        QVariant version; // of what the connection sees
        QDateTime written;
        qint64 size = -1;
    };

    bool read(Print& print);

    Print m_known;
    bool m_isHeld = false;
};
