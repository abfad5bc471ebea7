#pragma once

#include <QString>

class QWidget;

/// Version of the application, four dotted numbers, as `--v` prints it.
extern const QString appVersion;

/// Label of the build that the window title shows behind the version.
extern const QString appBuildLabel;

/// The application directory: the folder of the executable, where the database and its neighbours
/// stand, unless setAppDirPath() named another one. No trailing separator.
QString appDirPath();

/// Makes another folder the application directory: companion programs that are told a directory
/// and tests that work on a copy use it. An empty path goes back to the executable's folder.
void setAppDirPath(const QString& path);

/// Full path of a file below the application directory: its path, "/" and `relative`.
QString appFilePath(const QString& relative);

/// Whether what stands at a path lies below a directory, wherever links lead. False if nothing
/// stands there.
bool liesBelow(const QString& path, const QString& directory);

/// A text for a message box that holds a text of others, such as a driver's message: it shows as it
/// stands, and what looks like markup is none, which could load files.
QString plainMessage(const QString& text);

/// Asks a question in a modal box with "Да" and "Нет"; true only if "Да" was clicked. Enter and
/// Escape mean "Нет".
bool askYesNo(const QString& text, QWidget* parent);
