#pragma once

#include <QSaveFile>
#include <QString>

/// A file that gets its name whole or not at all. Until then an older one of the name stands as it
/// was; what is no regular file (a folder, a device, a pipe) is never replaced, and no database is.
class TargetFile
{
public:
    /// What becomes of a symbolic link at the path. Who names a link means the file behind it; in a
    /// folder that fills with files of the program's own names, a link would lead them out of it.
    enum class Links
    {
        Follow,
        Replace
    };

    explicit TargetFile(const QString& path, Links links = Links::Follow);

    /// Whether a file may take this name: none has it, or a regular one that is no database, or a
    /// link as told above.
    static bool isAllowed(const QString& path, Links links = Links::Follow);

    /// False if the name may not be taken or nothing can be written beside it.
    bool open();

    /// To be written to while the file is open.
    QIODevice& device() { return m_file; }

    /// Gives the file its name. False if not all of it could be written.
    bool commit();

    /// Why the last call failed: the system's text, or empty where the name may not be taken.
    QString errorString() const;

private:
    const QString m_path;
    const Links m_links;
    bool m_replacesLink = false;
    bool m_isRefused = false;
    QSaveFile m_file;
};

/// Whether a file can be made in the folder, which must exist. Tried with a hidden one, which goes
/// again: rights alone do not tell.
bool canWriteInto(const QString& folder);

/// Template for QTemporaryFile of a hidden unfinished PDF file in the folder, as removeLeftovers()
/// knows it.
QString unfinishedPdf(const QString& folder);

/// Removes what runs that were killed have left in the folder: hidden unfinished files, and only
/// those with a name that the program alone gives. One that was written to within the last day may
/// belong to a run that goes on.
void removeLeftovers(const QString& folder);

/// A name in the folder for an unfinished file, which removeLeftovers() knows.
QString unfinishedPath(const QString& folder, const QString& suffix);
