#pragma once

#include <QString>

/// Makes a whole application directory to try the program on: "docs.db" with forms, lists, blanks,
/// documents and templates, the backgrounds of the blanks, workbooks for export and import, and the
/// folders that the dialogs start in. Made-up data of an organisation go to
/// "data/Zelvora/orgData.json" below the directory, where a program finds them if the directory's
/// "data" is its data location.
///
/// Refuses a directory that holds a "docs.db"; any other file that is there already stays as it
/// is. On failure returns false and puts the reason into `error` (may be null); no "docs.db" is
/// left behind then.
bool createSampleDirectory(const QString& directory, QString* error);
