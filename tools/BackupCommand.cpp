#include "tools/BackupCommand.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include "app/TerminalText.h"
#include "tools/DatabaseBackup.h"
#include "tools/Interruption.h"

namespace {

/// What this file says, in the language of the user.
class Text
{
    Q_DECLARE_TR_FUNCTIONS(BackupCommand)
};

/// What the command is asked to do.
struct BackupOptions
{
    QString database;
    QString folder;
    int kept = 0; // archives; 0 keeps all
};

QString usage()
{
    return Text::tr("a file and a folder are needed: zelvora-db backup FILE DIR [--keep N]");
}

bool readOptions(const QStringList& arguments, BackupOptions& options, QString& error)
{
    constexpr int mostKept = 100000;
    QCommandLineParser parser;
    const QCommandLineOption keep("keep", QString(), "keep");
    parser.addOption(keep);
    if (!parser.parse(QStringList("zelvora-db") + arguments)) {
        error = Text::tr("wrong options: %1").arg(parser.errorText());
        return false;
    }
    const QStringList places = parser.positionalArguments();
    if (places.size() != 2 || places.contains(QString())) {
        error = usage();
        return false;
    }
    if (parser.values(keep).size() > 1) {
        error = Text::tr("given twice: --keep");
        return false;
    }
    options.database = places[0];
    options.folder = places[1];
    if (!parser.isSet(keep)) {
        return true;
    }
    bool isNumber = false;
    options.kept = parser.value(keep).toInt(&isNumber);
    if (!isNumber || options.kept < 1 || options.kept > mostKept) {
        error = Text::tr("--keep is no number from 1 to %1: %2")
                    .arg(QString::number(mostKept), parser.value(keep));
        return false;
    }
    return true;
}

bool fail(QTextStream& err, const QString& reason)
{
    err << "zelvora-db: " << onOneLine(reason) << '\n';
    return false;
}

} // namespace

bool runBackupCommand(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    BackupOptions options;
    QString error;
    if (!readOptions(arguments, options, error)) {
        return fail(err, error);
    }
    watchForInterruption(std::chrono::seconds(5));
    DatabaseBackup backup(options.database, options.folder);
    switch (backup.make()) {
    case DatabaseBackup::Result::Made:
        out << Text::tr("Made the archive %1").arg(onOneLine(backup.archive())) << '\n';
        break;
    case DatabaseBackup::Result::Unchanged:
        out << Text::tr("The database has not changed, it is kept in the archive %1")
                   .arg(onOneLine(backup.archive()))
            << '\n';
        break;
    case DatabaseBackup::Result::Interrupted:
        return fail(err, Text::tr("interrupted, no archive was made"));
    case DatabaseBackup::Result::Failed:
        return fail(err, backup.error());
    }
    if (options.kept == 0) {
        return true;
    }
    const bool areRemoved = backup.removeBeyond(options.kept);
    for (const QString& path : backup.removed()) {
        out << Text::tr("Removed the old archive %1").arg(onOneLine(path)) << '\n';
    }
    return areRemoved || fail(err, backup.error());
}
