#include <QtTest>

#include <QDir>
#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include "store/Schema.h"
#include "support/Process.h"

namespace {

QString sqlite(const QString& file, const QString& statement)
{
    return QString::fromUtf8(runProcess("sqlite3", {file, statement}).out).trimmed();
}

/// "NAME TYPE" of each column in physical order, as the sqlite3 program sees the table.
QString columnsOf(const QString& file, const QString& table)
{
    return sqlite(file, "SELECT group_concat(name || ' ' || type, ', ') FROM pragma_table_info('" +
                            table + "')");
}

} // namespace

/// The table definitions, read back by a program of its own.
class tst_Schema : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void columnsStandInOrder_data();
    void columnsStandInOrder();
    void holdsExactlyTheSixTables();
    void keysAreAssignedByTheDatabase_data();
    void keysAreAssignedByTheDatabase();
    void keysAreNotUsedAgain();
    void versionTableHasNoKeyAndNoRow();
    void existingFileIsRefused();
    void fillPutsRowsIn();
    void failedFillLeavesNoFile();
    void unwritablePlaceIsAnError();
    void nameTakenMeanwhileIsAnError();
    void readOnlyDatabaseIsAnError();
    void statementsOnAnExistingDatabaseChangeNothing();

private:
    QString file() const { return m_dir->filePath("new.db"); }

    QScopedPointer<QTemporaryDir> m_dir;
};

void tst_Schema::init()
{
    m_dir.reset(new QTemporaryDir);
    QString error;
    QVERIFY2(createDatabaseFile(file(), &error), qPrintable(error));
}

void tst_Schema::columnsStandInOrder_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("columns");
    QTest::newRow("docs") << "docs"
                          << "ID INTEGER, BLANK_SER TEXT, BLANK_NO TEXT, FNAME TEXT, LNAME TEXT, "
                             "MNAME TEXT, BIRTH_DATE TEXT, DOC_TYPE INTEGER, DOC_GROUP TEXT, "
                             "ISSUE_DATE TEXT, EDIT_DATE TEXT, DUPLICATE INTEGER, TEMPLATE "
                             "INTEGER, TEMPLATE_NAME TEXT, CONTENT TEXT";
    QTest::newRow("forms") << "forms"
                           << "ID INTEGER, FORM_NAME TEXT, FORM_FULLNAME TEXT, FIELDS TEXT";
    QTest::newRow("lists") << "lists"
                           << "ID INTEGER, LIST_NAME TEXT, LIST_ITEMS TEXT";
    QTest::newRow("blanks") << "blanks"
                            << "ID INTEGER, NAME TEXT, FORM_ID INTEGER, PAPER_FORMAT INTEGER, "
                               "PAPER_ORIENTATION INTEGER, PAGES INTEGER, FONT TEXT, FONT_SIZE "
                               "INTEGER, BACKGROUND_IMG TEXT, SIZE_WIDTH INTEGER, SIZE_HEIGHT "
                               "INTEGER, OFFSET_X INTEGER, OFFSET_Y INTEGER, CONTENT TEXT";
    QTest::newRow("export") << "export"
                            << "ID INTEGER, NAME TEXT, FIELDS TEXT, TYPE INTEGER, TEMPLATE TEXT, "
                               "FROM_ROW INTEGER, TO_ROW INTEGER, DATE_FORMAT TEXT";
    QTest::newRow("zvsys") << "zvsys"
                           << "DB_VERSION TEXT";
}

void tst_Schema::columnsStandInOrder()
{
    QFETCH(QString, table);
    QFETCH(QString, columns);
    QCOMPARE(columnsOf(file(), table), columns);
}

void tst_Schema::holdsExactlyTheSixTables()
{
    QCOMPARE(sqlite(file(), "SELECT group_concat(name) FROM (SELECT name FROM sqlite_master WHERE "
                            "type = 'table' AND name NOT LIKE 'sqlite_%' ORDER BY name)"),
             QString("blanks,docs,export,forms,lists,zvsys"));
    QCOMPARE(sqlite(file(), "PRAGMA integrity_check"), QString("ok"));
}

void tst_Schema::keysAreAssignedByTheDatabase_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("column");
    QTest::newRow("docs") << "docs"
                          << "LNAME";
    QTest::newRow("forms") << "forms"
                           << "FORM_NAME";
    QTest::newRow("lists") << "lists"
                           << "LIST_NAME";
    QTest::newRow("blanks") << "blanks"
                            << "NAME";
    QTest::newRow("export") << "export"
                            << "NAME";
}

void tst_Schema::keysAreAssignedByTheDatabase()
{
    QFETCH(QString, table);
    QFETCH(QString, column);
    const QString insert = QString("INSERT INTO %1 (%2) VALUES ('x');").arg(table, column);
    QCOMPARE(sqlite(file(), insert + insert + "SELECT group_concat(ID) FROM " + table),
             QString("1,2"));
    QCOMPARE(sqlite(file(), "SELECT pk FROM pragma_table_info('" + table + "') WHERE name = 'ID'"),
             QString("1"));
}

void tst_Schema::keysAreNotUsedAgain()
{
    QCOMPARE(sqlite(file(), "INSERT INTO forms (FORM_NAME) VALUES ('a'); DELETE FROM forms; INSERT "
                            "INTO forms (FORM_NAME) VALUES ('b'); SELECT ID FROM forms"),
             QString("2"));
}

void tst_Schema::versionTableHasNoKeyAndNoRow()
{
    QCOMPARE(sqlite(file(), "SELECT count(*) FROM zvsys"), QString("0"));
    QCOMPARE(sqlite(file(), "SELECT sum(pk) FROM pragma_table_info('zvsys')"), QString("0"));
}

void tst_Schema::existingFileIsRefused()
{
    sqlite(file(), "INSERT INTO lists (LIST_NAME) VALUES ('Пол')");
    QString error;
    QVERIFY(!createDatabaseFile(file(), &error));
    QCOMPARE(error, "file exists: " + file());
    QCOMPARE(sqlite(file(), "SELECT LIST_NAME FROM lists"), QString("Пол"));
}

void tst_Schema::fillPutsRowsIn()
{
    const QString path = m_dir->filePath("filled.db");
    QString error;
    QVERIFY2(createDatabaseFile(path, &error,
                                [](QSqlDatabase& database, QString*) {
                                    QSqlQuery query(database);
                                    return query.exec(
                                        "INSERT INTO lists (LIST_NAME) VALUES ('Оценки')");
                                }),
             qPrintable(error));
    QCOMPARE(sqlite(path, "SELECT LIST_NAME FROM lists"), QString("Оценки"));
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files), (QStringList{"filled.db", "new.db"}));
}

void tst_Schema::failedFillLeavesNoFile()
{
    QString error;
    QVERIFY(!createDatabaseFile(m_dir->filePath("failed.db"), &error,
                                [](QSqlDatabase& database, QString* reason) {
                                    QSqlQuery query(database);
                                    const bool ok = query.exec("INSERT INTO nowhere VALUES (1)");
                                    *reason = query.lastError().text();
                                    return ok;
                                }));
    QVERIFY2(error.contains("nowhere"), qPrintable(error));
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files), QStringList{"new.db"});
}

void tst_Schema::unwritablePlaceIsAnError()
{
    QString error;
    QVERIFY(!createDatabaseFile(m_dir->filePath("no/such/folder.db"), &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(!createDatabaseFile(m_dir->filePath("no/such/folder.db")));
}

void tst_Schema::nameTakenMeanwhileIsAnError()
{
    const QString path = m_dir->filePath("taken.db");
    QString error;
    QVERIFY(!createDatabaseFile(path, &error, [&path](QSqlDatabase&, QString*) {
        QFile other(path);
        return other.open(QIODevice::WriteOnly) && other.write("важное") > 0;
    }));
    QCOMPARE(error, "cannot be written: " + path);
    QFile other(path);
    QVERIFY(other.open(QIODevice::ReadOnly));
    QCOMPARE(other.readAll(), QByteArray("важное"));
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files), (QStringList{"new.db", "taken.db"}));
}

void tst_Schema::readOnlyDatabaseIsAnError()
{
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "read-only");
        database.setDatabaseName(":memory:");
        QVERIFY(database.open());
        QSqlQuery(database).exec("PRAGMA query_only = ON");
        QString error;
        QVERIFY(!createSchema(database, &error));
        QVERIFY2(error.contains("readonly"), qPrintable(error));
        QVERIFY(!createSchema(database));
    }
    QSqlDatabase::removeDatabase("read-only");
}

void tst_Schema::statementsOnAnExistingDatabaseChangeNothing()
{
    const QString before = sqlite(file(), ".dump");
    QStringList statements;
    for (const TableDefinition& table : schemaTables()) {
        statements << table.createStatement();
    }
    QCOMPARE(statements.size(), 6);
    QVERIFY(statements.contains("CREATE TABLE IF NOT EXISTS zvsys (DB_VERSION TEXT);"));
    sqlite(file(), statements.join(' '));
    QCOMPARE(sqlite(file(), ".dump"), before);
}

QTEST_GUILESS_MAIN(tst_Schema)
#include "tst_Schema.moc"
