#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QVariant>

#include "support/PrintFixture.h"
#include "support/Process.h"

/// Path of zelvora-print.
QString printProgram();

/// The environment of a program without a display; `locale` is the user's language.
QProcessEnvironment noDisplay(const QString& locale);

/// Runs zelvora-print in an environment without a display; `locale` is the user's language.
ProcessResult runPrint(const QStringList& arguments, const QString& locale = "C.UTF-8");
ProcessResult runPrint(const QStringList& arguments, const QProcessEnvironment& environment);

/// Makes the sample in a directory with zelvora-db.
ProcessResult makeSample(const QString& directory);

/// An application directory for zelvora-print: documents of the forms 1 (three, "Иванов",
/// "Петрова", "Иваненко", with the IDs 1 to 3) and 2 (one, "О'Нил", ID 4), a template (ID 5), and
/// three blanks: "Альбом" (landscape, with a QR code, moved by 2 and -3 mm) and "Книга" (A5,
/// portrait, over a black picture) of form 1, "Чужой" of form 2.
class PrintDirectory : public PrintFixture
{
public:
    PrintDirectory();

    /// Adds a document; returns its ID.
    QVariant person(const QString& surname, const QString& group, const QString& issued,
                    int type = 1);

    /// Names of the files in a folder of the directory, sorted.
    QStringList filesIn(const QString& folder) const;

    /// Runs zelvora-print on the directory.
    ProcessResult print(const QStringList& arguments, const QString& locale = "C.UTF-8") const;

    /// Adds a document with a table, and a blank "Полный" for it with a frame of every kind; the
    /// document's ID.
    QVariant addFullPage();

    QVariant landscape; ///< ID of "Альбом"
    QVariant portrait;  ///< ID of "Книга"
};
