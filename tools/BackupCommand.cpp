#include "tools/BackupCommand.h"

#include <QCommandLineParser>
#include <QTextStream>

#include "app/TerminalText.h"
#include "tools/DatabaseBackup.h"
#include "tools/Interruption.h"
#include "tools/UserLanguage.h"

namespace {

/// What the command is asked to do.
struct BackupOptions
{
    QString database;
    QString folder;
    int kept = 0; // archives; 0 keeps all
};

QString usage()
{
    return inUserLanguage("нужны файл и каталог: zelvora-db backup ФАЙЛ КАТАЛОГ [--keep ЧИСЛО]",
                          "a file and a folder are needed: zelvora-db backup FILE DIR [--keep N]");
}

bool readOptions(const QStringList& arguments, BackupOptions& options, QString& error)
{
    constexpr int mostKept = 100000;
    QCommandLineParser parser;
    const QCommandLineOption keep("keep", QString(), "keep");
    parser.addOption(keep);
    if (!parser.parse(QStringList("zelvora-db") + arguments)) {
        error = inUserLanguage("ошибка в ключах: ", "wrong options: ") + parser.errorText();
        return false;
    }
    const QStringList places = parser.positionalArguments();
    if (places.size() != 2 || places.contains(QString())) {
        error = usage();
        return false;
    }
    if (parser.values(keep).size() > 1) {
        error = inUserLanguage("дважды указан ключ --keep", "given twice: --keep");
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
        error =
            inUserLanguage("--keep — не число от 1 до %1: ", "--keep is no number from 1 to %1: ")
                .arg(mostKept) +
            parser.value(keep);
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
        out << inUserLanguage("Создан архив ", "Made the archive ") << onOneLine(backup.archive())
            << '\n';
        break;
    case DatabaseBackup::Result::Unchanged:
        out << inUserLanguage("База не изменилась, её хранит архив ",
                              "The database has not changed, it is kept in the archive ")
            << onOneLine(backup.archive()) << '\n';
        break;
    case DatabaseBackup::Result::Interrupted:
        return fail(
            err, inUserLanguage("прервано, архив не создан", "interrupted, no archive was made"));
    case DatabaseBackup::Result::Failed:
        return fail(err, backup.error());
    }
    if (options.kept == 0) {
        return true;
    }
    const bool areRemoved = backup.removeBeyond(options.kept);
    for (const QString& path : backup.removed()) {
        out << inUserLanguage("Удалён старый архив ", "Removed the old archive ") << onOneLine(path)
            << '\n';
    }
    return areRemoved || fail(err, backup.error());
}
