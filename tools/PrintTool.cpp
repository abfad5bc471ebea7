#include "tools/PrintTool.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QTextStream>

#include "app/AppHelpers.h"
#include "app/TerminalText.h"
#include "store/DataBase.h"
#include "store/OrgData.h"
#include "store/Schema.h"
#include "store/TableShape.h"
#include "tools/CalibrationJob.h"
#include "tools/CheckJob.h"
#include "tools/Interruption.h"
#include "tools/JobResult.h"
#include "tools/PrintJob.h"
#include "tools/PrintOptions.h"
#include "tools/ProofJob.h"
#include "tools/UserLanguage.h"

namespace {

/// What this file says, in the language of the user.
class Text
{
    Q_DECLARE_TR_FUNCTIONS(PrintTool)
};

constexpr int success = 0;
constexpr int someFailed = 1;
constexpr int failure = 2;

int fail(QTextStream& err, const QString& reason)
{
    err << "zelvora-print: " << onOneLine(reason) << '\n';
    return failure;
}

/// The status, unless what was written came to nothing: a status may be all that a script reads.
/// A reader that went away wanted no more.
int afterWriting(QTextStream& out, QTextStream& err, int status)
{
    QString error;
    if (!flushOutput(out, &error) && !isReaderGone()) {
        return fail(err, error);
    }
    return status;
}

int exitStatus(JobResult result)
{
    switch (result) {
    case JobResult::Done:
        return success;
    case JobResult::SomeFailed:
        return someFailed;
    case JobResult::NotDone:
        break;
    }
    return failure;
}

int runAction(const PrintOptions& options, QTextStream& out, QTextStream& err)
{
    switch (options.action()) {
    case PrintOptions::Action::Print:
        return exitStatus(PrintJob(options, out, err).run());
    case PrintOptions::Action::Calibration:
        return exitStatus(CalibrationJob(options, out, err).printSheet());
    case PrintOptions::Action::Offsets:
        return exitStatus(CalibrationJob(options, out, err).tellOffsets());
    case PrintOptions::Action::Check:
        return exitStatus(CheckJob(options, out, err).run());
    case PrintOptions::Action::Proof:
        break;
    }
    return exitStatus(ProofJob(options, out, err).run());
}

bool printsDocuments(const PrintOptions& options)
{
    return options.action() != PrintOptions::Action::Calibration &&
           options.action() != PrintOptions::Action::Offsets;
}

/// Offsets for a sheet that no blank names are but a sum.
bool needsDatabase(const PrintOptions& options)
{
    return options.action() != PrintOptions::Action::Offsets || !options.blank().isEmpty();
}

/// Reads the organisation's data; false after a report. A file that was named has to be there, and
/// one that can't be read must not print as nothing.
bool readOrganisation(const PrintOptions& options, QTextStream& err)
{
    const bool isNamed = !options.organisationFile().isEmpty();
    if (isNamed) {
        orgDataPath = options.organisationFile();
    }
    const OrgDataFile found = readOrgData();
    if (found == OrgDataFile::Broken && (isNamed || printsDocuments(options))) {
        fail(err, Text::tr("can't read the organisation's data %1").arg(orgDataPath));
        return false;
    }
    if (found == OrgDataFile::Missing && isNamed) {
        fail(err, Text::tr("there is no file %1").arg(orgDataPath));
        return false;
    }
    return true;
}

/// Why the open database is none to print from, though it may well be read; empty if it is.
QString whyUnusable()
{
    const QSqlDatabase database = QSqlDatabase::database();
    for (const TableDefinition& table : schemaTables()) {
        const TableKind kind = tableKind(database, table.name);
        if (kind == TableKind::Computed) {
            return Text::tr("the database has computations in the place of the table %1")
                .arg(table.name);
        }
        const bool isPrinted = table.name == "docs" || table.name == "blanks";
        const QStringList missing = missingColumns(database, table);
        if (isPrinted && kind == TableKind::Stored && !missing.isEmpty()) {
            return Text::tr("the table %1 has no column %2").arg(table.name, missing.first());
        }
    }
    return QString();
}

/// Opens the database; false, after a report, if it can't be or is none of ours.
bool openDatabase(QTextStream& err)
{
    if (!dataBase.open()) {
        fail(err, Text::tr("can't open the database %1").arg(appFilePath("docs.db")));
        return false;
    }
    const QString reason = whyUnusable();
    if (!reason.isEmpty()) {
        fail(err, reason);
    }
    return reason.isEmpty();
}

} // namespace

int runPrintTool(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    PrintOptions options;
    if (!options.parse(arguments)) {
        fail(err, options.error());
        err << Text::tr("Help: zelvora-print --help") << '\n';
        return failure;
    }
    if (options.helpWanted()) {
        out << PrintOptions::helpText();
        return afterWriting(out, err, success);
    }
    if (!options.directory().isEmpty()) {
        setAppDirPath(options.directory());
    }
    if (!readOrganisation(options, err)) {
        return failure;
    }
    if (needsDatabase(options) && !openDatabase(err)) {
        return failure;
    }
    return afterWriting(out, err, runAction(options, out, err));
}
