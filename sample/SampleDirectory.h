#pragma once

#include <QString>

/// How the making of a sample ended, and what the detail of a failure is.
enum class SampleResult
{
    Done,
    DatabaseExists,   ///< the path of the database that is there already
    FolderRefused,    ///< the path of the folder that can't be made
    FileRefused,      ///< the path of the file that can't be written, and why
    DatabaseNotFilled ///< the database's reason
};

/// Makes a whole application directory to try the program on: "docs.db" with forms, lists, blanks,
/// documents and templates, the backgrounds of the blanks, workbooks for export and import, and the
/// folders that the dialogs start in. Made-up data of an organisation go to
/// "data/Zelvora/orgData.json" below the directory, where a program finds them if the directory's
/// "data" is its data location.
///
/// Refuses a directory that holds a "docs.db"; any other file that is there already stays as it
/// is. On failure `detail` (may be null) gets what the result is about; no "docs.db" is left behind
/// then.
SampleResult createSampleDirectory(const QString& directory, QString* detail);
