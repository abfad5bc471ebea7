#pragma once

#include <QString>

// The archive of the whole database: a file of the user's choice, byte for byte a copy of
// "docs.db". What these functions refuse, the caller tells the user.

/// Filter of the archive file dialogs.
extern const QString archiveFileFilter;

/// The folder on which the archive dialogs open, with a trailing separator. It need not exist.
QString archiveFolder();

/// The path that the save dialog proposes: a name with the current date and time in that folder.
QString newArchivePath();

/// Copies the live database to `target`; the connection stays as it is. False if it could not be
/// copied, for example because a file of that name exists, which is then left alone, or because a
/// failing disk keeps the live file from being whole.
bool saveArchive(const QString& target);

/// Closes the connection, moves the live database to "docs_backup.db", in place of the one before,
/// and puts a copy of `archive` in its stead. False if there is no copy: then the data stand in the
/// backup, or, if the live file could not be moved, where they stood. Without a live file the
/// backup stays as it is, and so does everything if the archive is the backup that would have to
/// go. The caller opens the connection again in any case.
bool replaceDatabase(const QString& archive);
