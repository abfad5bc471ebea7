#include "tools/DatabaseTool.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTextStream>

#include "app/TerminalText.h"
#include "sample/SampleDirectory.h"
#include "sample/StandardContent.h"
#include "store/Schema.h"
#include "tools/BackupCommand.h"
#include "tools/DatabaseCheck.h"
#include "tools/Interruption.h"
#include "tools/UserLanguage.h"

namespace {

/// What this file says, in the language of the user.
class Text
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseTool)
};

constexpr int success = 0;
constexpr int findingsExist = 1;
constexpr int failure = 2;

QString helpText()
{
    return Text::tr(
        "Usage: zelvora-db COMMAND PATH\n"
        "       zelvora-db backup FILE DIR [--keep N]\n"
        "\n"
        "  create FILE  make a database without documents, with the standard forms and lists\n"
        "  sample DIR   make a sample to try in the directory: a database, blanks with\n"
        "               backgrounds, two hundred documents, document and exchange templates\n"
        "               with workbooks\n"
        "  check FILE   check a database without changing it: its tables, its JSON and its\n"
        "               references; for a file called docs.db also the backgrounds and\n"
        "               workbooks that it names\n"
        "  backup FILE DIR\n"
        "               make an archive of a database (.zlv) in the directory, with the date in\n"
        "               its name, if the database has changed; it may be in use meanwhile\n"
        "  --keep N     keep that many of the newest archives, remove older ones\n"
        "  --help       show this help\n"
        "\n"
        "Existing files are never overwritten. Exit status: 0 if all is well, 1 if the check\n"
        "found something, 2 if the job could not be done.\n");
}

int fail(QTextStream& err, const QString& reason)
{
    err << "zelvora-db: " << onOneLine(reason) << '\n';
    return failure;
}

QString fileExists(const QString& path)
{
    return Text::tr("the file exists already: %1").arg(path);
}

QString whyNoSample(SampleResult result, const QString& detail)
{
    switch (result) {
    case SampleResult::DatabaseExists:
        return fileExists(detail);
    case SampleResult::FolderRefused:
        return Text::tr("cannot make the directory %1").arg(detail);
    case SampleResult::FileRefused:
        return Text::tr("cannot write the file %1").arg(detail);
    case SampleResult::DatabaseNotFilled:
    case SampleResult::Done:
        break;
    }
    return detail;
}

QString noPathGiven()
{
    return Text::tr("no file or folder is named");
}

int create(const QString& path, QTextStream& out, QTextStream& err)
{
    if (QFileInfo::exists(path) || QFileInfo(path).isSymLink()) {
        return fail(err, fileExists(path));
    }
    QString error;
    if (!createDatabaseFile(path, &error, insertStandardContent)) {
        return fail(err, Text::tr("no database was made: %1").arg(error));
    }
    out << Text::tr("Made the database %1").arg(onOneLine(path)) << '\n';
    return success;
}

int sample(const QString& path, QTextStream& out, QTextStream& err)
{
    QString detail;
    const SampleResult result = createSampleDirectory(path, &detail);
    if (result != SampleResult::Done) {
        return fail(err, whyNoSample(result, detail));
    }
    out << Text::tr("Made the sample in %1").arg(onOneLine(path)) << '\n';
    return success;
}

int check(const QString& path, QTextStream& out, QTextStream& err)
{
    DatabaseCheck check(path);
    if (!check.run()) {
        return fail(err, check.error());
    }
    if (check.hasWaitingChange()) {
        out << Text::tr("The last change of the database was interrupted; the next opening "
                        "will undo it. What will remain was checked.")
            << '\n';
    }
    for (const QString& finding : check.findings()) {
        out << onOneLine(finding) << '\n';
    }
    if (!check.findings().isEmpty()) {
        out << Text::tr("Findings: %n", nullptr, check.findings().size()) << '\n';
        return findingsExist;
    }
    out << Text::tr("Nothing found: %1").arg(onOneLine(path)) << '\n';
    return success;
}

int runCommand(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    if (arguments.contains("--help") || arguments.contains("-h")) {
        out << helpText();
        return success;
    }
    if (arguments.value(0) == "backup") {
        return runBackupCommand(arguments.mid(1), out, err) ? success : failure;
    }
    if (arguments.size() != 2) {
        err << helpText();
        return failure;
    }
    const QString& command = arguments[0];
    const QString& path = arguments[1];
    if (path.isEmpty()) {
        return fail(err, noPathGiven()); // a script's variable may be unset
    }
    if (command == "create") {
        return create(path, out, err);
    }
    if (command == "sample") {
        return sample(path, out, err);
    }
    if (command == "check") {
        return check(path, out, err);
    }
    err << "zelvora-db: " << Text::tr("unknown command: %1").arg(onOneLine(command)) << '\n'
        << helpText();
    return failure;
}

} // namespace

int runDatabaseTool(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    const int status = runCommand(arguments, out, err);
    QString error;
    if (!flushOutput(out, &error) && !isReaderGone()) {
        return fail(err, error);
    }
    return status;
}
