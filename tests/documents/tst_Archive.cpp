#include <QtTest>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QTableWidget>
#include <QToolBar>

#include <cstring>
#include <memory>

#include "app/AppHelpers.h"
#include "documents/Archive.h"
#include "documents/MainWindow.h"
#include "forms/FormDefinitions.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"
#include "support/Process.h"
#include "support/TempApplication.h"

namespace {

QByteArray bytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no such file)");
}

void writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

} // namespace

/// Saving the database to an archive file and restoring it, through the toolbar's actions.
class tst_Archive : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void savesBytesAndLeavesTheDatabaseOpen();
    void saveDialog();
    void saveCancelled();
    void existingArchiveIsKept();
    void saveIntoMissingFolder();
    void saveIntoUnwritableFolder();
    void saveOntoFullDevice();
    void saveWithoutDatabase();
    void restoreReplacesTheDatabase();
    void restoreDialog();
    void restoreCancelled();
    void restoreOfMissingFile_data();
    void restoreOfMissingFile();
    void restoreKeepsFiltersTypesAndSorting();
    void twoRestoresKeepOneGeneration();
    void restoreOfTheDatabaseItself();
    void restoreAfterAFailedOne();
    void failedRestoresKeepTheOnlyData();
    void restoreOfTheBackupItself();
    void interruptedChangeIsUndoneFirst_data();
    void interruptedChangeIsUndoneFirst();
    void strayJournalSpoilsNothing();
    void restoreOfTextFile();
    void restoreOfAnotherDatabase();
    void restoredDatabaseCanBeWritten();
    void restoreOfAReadOnlyArchive();
    void restoreEmptiesThePane();

private:
    void leaveAnInterruptedChange();
    void trigger(const QString& text);
    void restore(const QString& archive);
    QTableWidget* list() const { return m_window->findChild<QTableWidget*>("docsWidget"); }
    QStringList surnames() const;
    void addDocument(const QString& lname);
    QString makeArchive(const QString& name, const QString& lname);

    std::unique_ptr<TempApplication> m_app;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<ModalDriver> m_driver;
};

void tst_Archive::initTestCase()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void tst_Archive::init()
{
    m_app = std::make_unique<TempApplication>();
    m_app->exec("INSERT INTO forms (FORM_NAME) VALUES ('Диплом')");
    addDocument("Живая");
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    m_driver = std::make_unique<ModalDriver>();
}

void tst_Archive::cleanup()
{
    m_driver.reset();
    m_window.reset();
    m_app.reset();
}

void tst_Archive::trigger(const QString& text)
{
    const auto actions = m_window->findChild<QToolBar*>("toolBarTop")->actions();
    for (QAction* action : actions) {
        if (action->text() == text) {
            action->trigger();
            QVERIFY2(m_driver->finished(), m_driver->failures());
            return;
        }
    }
    QFAIL("no such action");
}

void tst_Archive::restore(const QString& archive)
{
    m_driver->expectFileDialog(archive);
    trigger("ЗАГРУЗИТЬ\nИЗ АРХИВА");
}

QStringList tst_Archive::surnames() const
{
    QStringList names;
    for (int row = 0; row < list()->rowCount(); ++row) {
        names << list()->item(row, 0)->text().section(' ', 0, 0);
    }
    return names;
}

void tst_Archive::addDocument(const QString& lname)
{
    m_app->exec("INSERT INTO docs (LNAME, DOC_TYPE, ISSUE_DATE, TEMPLATE, CONTENT) "
                "VALUES (?, 1, '2024-06-20', 0, '{}')",
                {lname});
}

// A database of the right schema with one document, made by another process.
QString tst_Archive::makeArchive(const QString& name, const QString& lname)
{
    QString path = m_app->path(name);
    const ProcessResult result =
        runPython("import shutil, sqlite3, sys\n"
                  "shutil.copy(sys.argv[1], sys.argv[2])\n"
                  "db = sqlite3.connect(sys.argv[2])\n"
                  "db.execute('DELETE FROM docs')\n"
                  "db.execute('INSERT INTO docs (LNAME, DOC_TYPE, TEMPLATE) VALUES (?, 1, 0)',\n"
                  "           (sys.argv[3],))\n"
                  "db.commit()\n",
                  {m_app->path("docs.db"), path, lname});
    if (result.exitCode != 0) {
        qFatal("%s", result.err.constData());
    }
    return path;
}

void tst_Archive::savesBytesAndLeavesTheDatabaseOpen()
{
    const QByteArray live = bytes(m_app->path("docs.db"));
    const QString target = m_app->path("copy.zlv");
    m_driver->expectFileDialog(target);
    trigger("СОХРАНИТЬ\nВ АРХИВ");
    QCOMPARE(bytes(target), live);
    QCOMPARE(bytes(m_app->path("docs.db")), live);
    addDocument("Вторая");                        // the connection is still there
    QCOMPARE(surnames(), QStringList({"Живая"})); // and no refresh has followed
}

void tst_Archive::saveDialog()
{
    QDir(m_app->path()).mkdir("storage");
    QString title;
    QStringList filters;
    QString folder;
    QString name;
    QWidget* parent = nullptr;
    const QString before = QDateTime::currentDateTime().toString("dd-MM-yy hh-mm");
    m_driver->expect<QFileDialog>([&](QFileDialog* dialog) {
        title = dialog->windowTitle();
        filters = dialog->nameFilters();
        folder = dialog->directory().absolutePath();
        name = dialog->findChild<QLineEdit*>("fileNameEdit")->text();
        parent = dialog->parentWidget();
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
        static_cast<QDialog*>(dialog)->reject();
    });
    trigger("СОХРАНИТЬ\nВ АРХИВ");
    const QString after = QDateTime::currentDateTime().toString("dd-MM-yy hh-mm");
    QCOMPARE(title, QString("Сохранить как"));
    QCOMPARE(filters, QStringList({"Zelvora Files (*.zlv)"}));
    QCOMPARE(folder, QDir(m_app->path("storage")).absolutePath());
    QVERIFY(name == "docs_" + before + ".zlv" || name == "docs_" + after + ".zlv");
    QCOMPARE(parent, m_window.get());
}

void tst_Archive::saveCancelled()
{
    const QStringList before = QDir(m_app->path()).entryList();
    m_driver->expectFileDialogCancelled(); // the folder "storage" does not exist
    trigger("СОХРАНИТЬ\nВ АРХИВ");
    QCOMPARE(QDir(m_app->path()).entryList(), before);
}

void tst_Archive::existingArchiveIsKept()
{
    const QString target = m_app->path("old.zlv");
    writeFile(target, "old archive");
    const QByteArray live = bytes(m_app->path("docs.db"));
    m_driver->expectFileDialog(target);
    m_driver->expectMessageStarting("Сохранить как", "old.zlv", "Yes"); // replace it?
    m_driver->expectMessage("Ошибка", "Не удалось сохранить\n" + target, "OK");
    trigger("СОХРАНИТЬ\nВ АРХИВ");
    QCOMPARE(bytes(target), QByteArray("old archive"));
    QCOMPARE(bytes(m_app->path("docs.db")), live);
}

void tst_Archive::saveIntoMissingFolder()
{
    const QByteArray live = bytes(m_app->path("docs.db"));
    const QStringList before = QDir(m_app->path()).entryList();
    QVERIFY(!saveArchive(m_app->path("nowhere/copy.zlv")));
    QVERIFY(!saveArchive(m_app->path("docs.db/copy.zlv")));
    QCOMPARE(QDir(m_app->path()).entryList(), before);
    QCOMPARE(bytes(m_app->path("docs.db")), live);
}

void tst_Archive::saveIntoUnwritableFolder()
{
    const QString folder = m_app->path("locked");
    QVERIFY(QDir().mkdir(folder));
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
    const bool locked = !QFile(folder + "/probe").open(QIODevice::WriteOnly);
    if (!locked) {
        QSKIP("this user may write everywhere");
    }
    const QString target = folder + "/copy.zlv";
    m_driver->expectFileDialog(target);
    m_driver->expectMessage("Ошибка", "Не удалось сохранить\n" + target, "OK");
    trigger("СОХРАНИТЬ\nВ АРХИВ");
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QVERIFY(QDir(folder).isEmpty());
}

void tst_Archive::saveOntoFullDevice()
{
    const QString shell = QStandardPaths::findExecutable("sh");
    if (shell.isEmpty()) {
        QSKIP("no shell to limit the size of files");
    }
    m_app->exec("INSERT INTO docs (TEMPLATE, CONTENT) VALUES (0, ?)", {QString(1 << 20, 'x')});
    const QByteArray live = bytes(m_app->path("docs.db"));
    QVERIFY(live.size() > (1 << 20));
    QVERIFY(QDir(m_app->path()).mkdir("full"));
    // A process that may write no more than a few kilobytes a file, as on a device that fills up.
    const QString script = "trap '' XFSZ; ulimit -f 8; exec \"$0\" --save \"$1\" \"$2\"";
    const ProcessResult limited =
        runProcess(shell, {"-c", script, QCoreApplication::applicationFilePath(), m_app->path(),
                           m_app->path("full/copy.zlv")});
    QCOMPARE(limited.exitCode, 1); // refused, not crashed
    QVERIFY(QDir(m_app->path("full")).isEmpty());
    QCOMPARE(bytes(m_app->path("docs.db")), live);
}

void tst_Archive::saveWithoutDatabase()
{
    m_window.reset();
    m_app = std::make_unique<TempApplication>(TempApplication::Database::None);
    m_window = std::make_unique<MainWindow>();
    const QString target = m_app->path("copy.zlv");
    m_driver->expectFileDialog(target);
    m_driver->expectMessage("Ошибка", "Не удалось сохранить\n" + target, "OK");
    trigger("СОХРАНИТЬ\nВ АРХИВ");
    QVERIFY(!QFile::exists(target));
}

void tst_Archive::restoreReplacesTheDatabase()
{
    const QString archive = makeArchive("a.zlv", "Архивная");
    const QByteArray saved = bytes(archive);
    const QByteArray live = bytes(m_app->path("docs.db"));
    restore(archive);
    QCOMPARE(bytes(m_app->path("docs.db")), saved);
    QCOMPARE(bytes(m_app->path("docs_backup.db")), live);
    QCOMPARE(bytes(archive), saved);
    QCOMPARE(surnames(), QStringList({"Архивная"}));
}

void tst_Archive::restoreDialog()
{
    QDir(m_app->path()).mkdir("storage");
    QString title;
    QStringList filters;
    QString folder;
    m_driver->expect<QFileDialog>([&](QFileDialog* dialog) {
        title = dialog->windowTitle();
        filters = dialog->nameFilters();
        folder = dialog->directory().absolutePath();
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptOpen);
        static_cast<QDialog*>(dialog)->reject();
    });
    trigger("ЗАГРУЗИТЬ\nИЗ АРХИВА");
    QCOMPARE(title, QString("Укажите файл архива"));
    QCOMPARE(filters, QStringList({"Zelvora Files (*.zlv)"}));
    QCOMPARE(folder, QDir(m_app->path("storage")).absolutePath());
}

void tst_Archive::restoreCancelled()
{
    const QByteArray live = bytes(m_app->path("docs.db"));
    m_driver->expectFileDialogCancelled();
    trigger("ЗАГРУЗИТЬ\nИЗ АРХИВА");
    QCOMPARE(bytes(m_app->path("docs.db")), live);
    QVERIFY(!QFile::exists(m_app->path("docs_backup.db")));
    QCOMPARE(surnames(), QStringList({"Живая"}));
}

void tst_Archive::restoreOfMissingFile_data()
{
    QTest::addColumn<bool>("folder");

    QTest::newRow("deleted while the dialog stood") << false;
    QTest::newRow("a folder now") << true;
}

void tst_Archive::restoreOfMissingFile()
{
    QFETCH(bool, folder);
    const QString archive = makeArchive("gone.zlv", "Архивная");
    writeFile(m_app->path("docs_backup.db"), "the one before");
    const QByteArray live = bytes(m_app->path("docs.db"));
    m_driver->expect<QFileDialog>([&](QFileDialog* dialog) {
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(archive);
        // The file goes between the dialog's own check and the restore.
        connect(dialog, &QDialog::accepted, dialog, [&] {
            QFile::remove(archive);
            if (folder) {
                QDir().mkdir(archive);
            }
        });
        static_cast<QDialog*>(dialog)->accept();
    });
    m_driver->expectMessage("Ошибка", "Не верно указан файл\n" + archive, "OK");
    trigger("ЗАГРУЗИТЬ\nИЗ АРХИВА");
    QCOMPARE(bytes(m_app->path("docs.db")), live);
    QCOMPARE(bytes(m_app->path("docs_backup.db")), QByteArray("the one before"));
    addDocument("Вторая"); // never closed
}

void tst_Archive::restoreKeepsFiltersTypesAndSorting()
{
    const QString archive = makeArchive("a.zlv", "Вторая");
    const ProcessResult changed =
        runProcess("sqlite3", {archive, "UPDATE forms SET FORM_NAME = 'Другая';"
                                        "INSERT INTO docs (LNAME, DOC_TYPE, TEMPLATE) VALUES "
                                        "('Третья', 1, 0), ('Первая', 1, 0);"});
    QCOMPARE(changed.exitCode, 0);
    list()->sortByColumn(0, Qt::AscendingOrder);
    m_window->findChild<QLineEdit*>("filterNameEdit")->setText("нет такой");
    m_window->findChild<QComboBox*>("filterTypeCmb")->setCurrentIndex(0);
    m_window->findChild<QCheckBox*>("dateCheck")->setChecked(true);
    restore(archive);
    QCOMPARE(surnames(), QStringList({"Вторая", "Первая", "Третья"}));
    QVERIFY(list()->isSortingEnabled());
    QCOMPARE(m_window->findChild<QLineEdit*>("filterNameEdit")->text(), QString("нет такой"));
    QVERIFY(m_window->findChild<QCheckBox*>("dateCheck")->isChecked());
    // The types are those of the old file until they are read the next time.
    QCOMPARE(docTypeNames, (QMap<int, QString>{{1, "Диплом"}}));
    QCOMPARE(m_window->findChild<QComboBox*>("filterTypeCmb")->currentText(), QString("Диплом"));
    QCOMPARE(list()->item(0, 2)->text(), QString("Диплом"));
}

void tst_Archive::twoRestoresKeepOneGeneration()
{
    const QString first = makeArchive("first.zlv", "Первая");
    const QString second = makeArchive("second.zlv", "Вторая");
    restore(first);
    const QByteArray afterFirst = bytes(m_app->path("docs.db"));
    restore(second);
    QCOMPARE(bytes(m_app->path("docs.db")), bytes(second));
    QCOMPARE(bytes(m_app->path("docs_backup.db")), afterFirst);
    QCOMPARE(surnames(), QStringList({"Вторая"}));
}

void tst_Archive::restoreOfTheDatabaseItself()
{
    const QString live = m_app->path("docs.db");
    const QByteArray content = bytes(live);
    const LogCatcher log;
    m_driver->expectFileDialog(live);
    m_driver->expectMessage("Ошибка", "Не удалось скопировать\n" + live, "OK");
    trigger("ЗАГРУЗИТЬ\nИЗ АРХИВА");
    QCOMPARE(bytes(m_app->path("docs_backup.db")), content);
    QCOMPARE(log.count("Database not found!"), 1);
    QVERIFY(log.contains("Unable to select from docs query"));
    QCOMPARE(list()->rowCount(), 0);
    QCOMPARE(m_window->findChild<QTableWidget*>("contentWidget")->rowCount(), 0);
    // Nothing that the window does now makes a file appear where the database stood.
    m_window->applyFilters();
    m_window->loadDocTypes();
    m_window->onEditDoc();
    QVERIFY(!QFile::exists(live));
}

void tst_Archive::restoreAfterAFailedOne()
{
    const QString archive = makeArchive("a.zlv", "Архивная");
    const QString live = m_app->path("docs.db");
    m_driver->expectFileDialog(live);
    m_driver->expectMessage("Ошибка", "Не удалось скопировать\n" + live, "OK");
    trigger("ЗАГРУЗИТЬ\nИЗ АРХИВА");
    restore(archive);
    QCOMPARE(bytes(live), bytes(archive));
    QCOMPARE(surnames(), QStringList({"Архивная"}));
}

// After the first failure no live file stands: the backup is all there is.
void tst_Archive::failedRestoresKeepTheOnlyData()
{
    const QString live = m_app->path("docs.db");
    const QByteArray content = bytes(live);
    m_driver->expectFileDialog(live);
    m_driver->expectMessage("Ошибка", "Не удалось скопировать\n" + live, "OK");
    trigger("ЗАГРУЗИТЬ\nИЗ АРХИВА");
    for (int i = 0; i < 2; ++i) {
        QVERIFY(!replaceDatabase(m_app->path("gone.zlv")));
        QVERIFY(!QFile::exists(live));
        QCOMPARE(bytes(m_app->path("docs_backup.db")), content);
    }
    // The way back through the program: the backup is an archive like any other.
    restore(m_app->path("docs_backup.db"));
    QCOMPARE(bytes(live), content);
    QCOMPARE(bytes(m_app->path("docs_backup.db")), content);
    QCOMPARE(surnames(), QStringList({"Живая"}));
}

// It would have to be deleted before it could be copied.
void tst_Archive::restoreOfTheBackupItself()
{
    restore(makeArchive("a.zlv", "Архивная"));
    const QByteArray live = bytes(m_app->path("docs.db"));
    const QString backup = m_app->path("docs_backup.db");
    const QByteArray previous = bytes(backup);
    m_driver->expectFileDialog(backup);
    m_driver->expectMessage("Ошибка", "Не удалось скопировать\n" + backup, "OK");
    trigger("ЗАГРУЗИТЬ\nИЗ АРХИВА");
    QCOMPARE(bytes(backup), previous);
    QCOMPARE(bytes(m_app->path("docs.db")), live);
    QCOMPARE(surnames(), QStringList({"Архивная"}));
}

// A process that ends amid a change, half of which is in the file already.
void tst_Archive::leaveAnInterruptedChange()
{
    m_app->exec("INSERT INTO docs (LNAME, DOC_TYPE, TEMPLATE, CONTENT) VALUES ('Вторая', 1, 0, ?)",
                {QString(1 << 20, 'x')});
    const ProcessResult result =
        runPython("import os, sqlite3, sys\n"
                  "db = sqlite3.connect(sys.argv[1], isolation_level=None)\n"
                  "db.execute('PRAGMA cache_size = 1')\n"
                  "db.execute('BEGIN')\n"
                  "db.execute(\"UPDATE docs SET LNAME = 'Половина', CONTENT = '{}' || CONTENT\")\n"
                  "os._exit(0)\n",
                  {m_app->path("docs.db")});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(QFile::exists(m_app->path("docs.db-journal")));
}

void tst_Archive::interruptedChangeIsUndoneFirst_data()
{
    QTest::addColumn<bool>("restores");
    QTest::addColumn<QString>("copy");
    QTest::newRow("save") << false << "copy.zlv";
    QTest::newRow("restore") << true << "docs_backup.db";
}

void tst_Archive::interruptedChangeIsUndoneFirst()
{
    QFETCH(bool, restores);
    QFETCH(QString, copy);
    const QString archive = makeArchive("a.zlv", "Архивная");
    const QByteArray saved = bytes(archive);
    leaveAnInterruptedChange();
    if (restores) {
        restore(archive);
        QCOMPARE(bytes(m_app->path("docs.db")), saved);
        QCOMPARE(surnames(), QStringList({"Архивная"}));
    } else {
        m_driver->expectFileDialog(m_app->path(copy));
        trigger("СОХРАНИТЬ\nВ АРХИВ");
    }
    QVERIFY(!QFile::exists(m_app->path("docs.db-journal")));
    const ProcessResult read = runProcess(
        "sqlite3", {m_app->path(copy), "PRAGMA integrity_check", "SELECT LNAME FROM docs"});
    QCOMPARE(QString::fromUtf8(read.out), QString("ok\nЖивая\nВторая\n"));
}

// A journal without its database must not be played back into the next one.
void tst_Archive::strayJournalSpoilsNothing()
{
    const QString archive = makeArchive("a.zlv", "Архивная");
    const QByteArray saved = bytes(archive);
    leaveAnInterruptedChange();
    QVERIFY(QFile::rename(m_app->path("docs.db"), m_app->path("elsewhere.db")));
    restore(archive);
    QCOMPARE(bytes(m_app->path("docs.db")), saved);
    QCOMPARE(surnames(), QStringList({"Архивная"}));
}

void tst_Archive::restoreOfTextFile()
{
    const QString archive = m_app->path("letter.zlv");
    const QByteArray text = QByteArray("Это письмо, а не база данных.\n").repeated(100);
    writeFile(archive, text);
    const QByteArray live = bytes(m_app->path("docs.db"));
    const LogCatcher log;
    restore(archive);
    QVERIFY(log.contains("Unable to select from docs query"));
    QCOMPARE(list()->rowCount(), 0);
    QCOMPARE(bytes(m_app->path("docs_backup.db")), live);
    QCOMPARE(bytes(m_app->path("docs.db")), text);
}

void tst_Archive::restoreOfAnotherDatabase()
{
    const QString archive = m_app->path("other.zlv");
    QCOMPARE(runProcess("sqlite3", {archive, "CREATE TABLE songs (TITLE TEXT);"}).exitCode, 0);
    const QByteArray live = bytes(m_app->path("docs.db"));
    const LogCatcher log;
    restore(archive);
    QVERIFY(log.contains("no such table: docs"));
    QCOMPARE(list()->rowCount(), 0);
    QCOMPARE(bytes(m_app->path("docs_backup.db")), live);
}

void tst_Archive::restoredDatabaseCanBeWritten()
{
    const QString archive = makeArchive("a.zlv", "Архивная");
    const QByteArray saved = bytes(archive);
    restore(archive);
    addDocument("Новая");
    const ProcessResult read =
        runProcess("sqlite3", {m_app->path("docs.db"), "SELECT LNAME FROM docs ORDER BY ID"});
    QCOMPARE(read.out, QByteArray("Архивная\nНовая\n"));
    QCOMPARE(bytes(archive), saved);
}

void tst_Archive::restoreOfAReadOnlyArchive()
{
    const QString archive = makeArchive("a.zlv", "Архивная");
    QVERIFY(QFile::setPermissions(archive, QFile::ReadOwner));
    QStringList command = {QCoreApplication::applicationFilePath(), "--restore", m_app->path(),
                           archive};
    if (QFile(archive).open(QIODevice::ReadWrite)) {
        // For who may write everything all files look writable.
        const QString setpriv = QStandardPaths::findExecutable("setpriv");
        if (setpriv.isEmpty()) {
            QSKIP("this user may write everything");
        }
        command = QStringList{setpriv, "--bounding-set", "-dac_override"} + command;
    }
    const ProcessResult restored = runProcess(command.takeFirst(), command);
    QVERIFY2(restored.exitCode == 0, restored.err.constData());
    QVERIFY(QFile::permissions(m_app->path("docs.db")) & QFile::WriteOwner);
    QVERIFY(!(QFile::permissions(archive) & QFile::WriteOwner));
    QCOMPARE(bytes(m_app->path("docs.db")), bytes(archive));
}

void tst_Archive::restoreEmptiesThePane()
{
    auto* pane = m_window->findChild<QTableWidget*>("contentWidget");
    QCOMPARE(pane->rowCount(), 4);
    // The rows go without a selection that goes with them.
    list()->setSelectionMode(QAbstractItemView::NoSelection);
    list()->selectionModel()->select(QItemSelection(), QItemSelectionModel::Clear);
    m_window->selChange();
    pane->setRowCount(2); // as something left it
    writeFile(m_app->path("text.zlv"), "Это не база данных.");
    restore(m_app->path("text.zlv"));
    QCOMPARE(list()->rowCount(), 0);
    QCOMPARE(pane->rowCount(), 0);
}

// Run as "tst_Archive --save DIRECTORY TARGET" it only saves, with "--restore" it only restores:
// the half of a test that needs a process of its own.
int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    if (argc == 4 && std::strcmp(argv[1], "--save") == 0) {
        setAppDirPath(QString::fromLocal8Bit(argv[2]));
        return saveArchive(QString::fromLocal8Bit(argv[3])) ? 0 : 1;
    }
    if (argc == 4 && std::strcmp(argv[1], "--restore") == 0) {
        setAppDirPath(QString::fromLocal8Bit(argv[2]));
        return replaceDatabase(QString::fromLocal8Bit(argv[3])) ? 0 : 1;
    }
    tst_Archive test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_Archive.moc"
