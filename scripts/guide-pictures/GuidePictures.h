#pragma once

#include <QString>
#include <QStringList>

/// Draws the pictures of the user guide: opens every window on the sample that the application
/// directory holds, fills and selects what the picture is to show, and writes it to
/// `folder`/NAME.png with the window's title above it. `only` names the steps to take, as the
/// source lists them; empty means all.
///
/// The database must be open. It is changed on the way, so that it should be a copy made for this.
/// False if some picture could not be written or a name in `only` is unknown.
bool makeGuidePictures(const QString& folder, const QStringList& only);
