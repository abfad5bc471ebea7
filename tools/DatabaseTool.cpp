#include "tools/DatabaseTool.h"

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

constexpr int success = 0;
constexpr int findingsExist = 1;
constexpr int failure = 2;

QString helpText()
{
    return inUserLanguage(
        "Использование: zelvora-db КОМАНДА ПУТЬ\n"
        "               zelvora-db backup ФАЙЛ КАТАЛОГ [--keep ЧИСЛО]\n"
        "\n"
        "  create ФАЙЛ     создать базу данных без документов, со стандартными формами и списками\n"
        "  sample КАТАЛОГ  создать в каталоге учебный пример: базу данных, бланки с фонами,\n"
        "                  двести документов, шаблоны документов и обмена с таблицами\n"
        "  check ФАЙЛ      проверить базу данных, ничего в ней не меняя: структуру, записи JSON\n"
        "                  и ссылки; у файла docs.db — также фоны и таблицы рядом с ним\n"
        "  backup ФАЙЛ КАТАЛОГ\n"
        "                  создать в каталоге архив базы данных (.zlv) с датой в имени, если\n"
        "                  база изменилась; с ней в это время можно работать\n"
        "  --keep ЧИСЛО    хранить столько последних архивов, более старые удалять\n"
        "  --help          показать эту справку\n"
        "\n"
        "Существующие файлы никогда не перезаписываются. Код завершения: 0 — всё в порядке,\n"
        "1 — проверка нашла ошибки, 2 — задание не выполнено.\n",
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

QString fileExists()
{
    return inUserLanguage("файл уже существует: ", "the file exists already: ");
}

QString whyNoSample(SampleResult result)
{
    switch (result) {
    case SampleResult::DatabaseExists:
        return fileExists();
    case SampleResult::FolderRefused:
        return inUserLanguage("не удалось создать каталог ", "cannot make the directory ");
    case SampleResult::FileRefused:
        return inUserLanguage("не удалось записать файл ", "cannot write the file ");
    case SampleResult::DatabaseNotFilled:
    case SampleResult::Done:
        break;
    }
    return QString();
}

QString noPathGiven()
{
    return inUserLanguage("не указан файл или каталог", "no file or folder is named");
}

int create(const QString& path, QTextStream& out, QTextStream& err)
{
    if (QFileInfo::exists(path) || QFileInfo(path).isSymLink()) {
        return fail(err, fileExists() + path);
    }
    QString error;
    if (!createDatabaseFile(path, &error, insertStandardContent)) {
        return fail(err,
                    inUserLanguage("база данных не создана: ", "no database was made: ") + error);
    }
    out << inUserLanguage("Создана база данных ", "Made the database ") << onOneLine(path) << '\n';
    return success;
}

int sample(const QString& path, QTextStream& out, QTextStream& err)
{
    QString detail;
    const SampleResult result = createSampleDirectory(path, &detail);
    if (result != SampleResult::Done) {
        return fail(err, whyNoSample(result) + detail);
    }
    out << inUserLanguage("Учебный пример создан в каталоге ", "Made the sample in ")
        << onOneLine(path) << '\n';
    return success;
}

int check(const QString& path, QTextStream& out, QTextStream& err)
{
    DatabaseCheck check(path);
    if (!check.run()) {
        return fail(err, check.error());
    }
    if (check.hasWaitingChange()) {
        out << inUserLanguage("Последнее изменение базы прервано; его отменит следующее открытие. "
                              "Проверено то, что останется.\n",
                              "The last change of the database was interrupted; the next opening "
                              "will undo it. What will remain was checked.\n");
    }
    for (const QString& finding : check.findings()) {
        out << onOneLine(finding) << '\n';
    }
    if (!check.findings().isEmpty()) {
        out << inUserLanguage("Найдено ошибок: ", "Findings: ") << check.findings().size() << '\n';
        return findingsExist;
    }
    out << inUserLanguage("Ошибок не найдено: ", "Nothing found: ") << onOneLine(path) << '\n';
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
    err << "zelvora-db: " << inUserLanguage("неизвестная команда: ", "unknown command: ")
        << onOneLine(command) << '\n'
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
