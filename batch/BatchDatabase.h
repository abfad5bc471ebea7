#pragma once

#include <QString>
#include <QVector>

/// The database of the application directory, opened for reading alone on Qt's default connection,
/// so that the main program can go on working with it. What fails is told in a sentence for the
/// user.
class BatchDatabase
{
public:
    /// Opens the file anew, whatever was open before: one that has been replaced keeps its name.
    /// False, with the reason in `error` (may be null), if it can't be read.
    bool open(QString* error);

    /// Whether the file has changed since it was opened last, or is another one, or is gone.
    bool hasChanged() const;

    /// Whether the open database can be read at this moment; if not, why not.
    static bool isReadable(QString* error);

private:
    /// Size and time of the files that make up the database; a missing one has neither.
    static QVector<qint64> stamp();

    QVector<qint64> m_stamp;
};
