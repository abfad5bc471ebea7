#include <QtTest>

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include "store/DataBase.h"
#include "support/LogCatcher.h"
#include "support/TempApplication.h"

namespace {

QByteArray fileContent(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

/// The insert of the document dialogs, composed by plain concatenation as they do it.
QString documentInsert(const QString& surname)
{
    return "INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME,BIRTH_DATE, DOC_TYPE, "
           "DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE,TEMPLATE, TEMPLATE_NAME, CONTENT) VALUES ('"
           "1', '2', 'Иван', '" +
           surname + "', '', '2000-01-01', 1, '9А', '2020-06-25', '2020-06-25', 0, 0 , '', '{}');";
}

} // namespace

/// Opening and closing of the document database, and what statements on it give.
class tst_DataBase : public QObject
{
    Q_OBJECT

private slots:
    void absentFileStaysAbsent();
    void opensOnTheDefaultConnection();
    void directoryInPlaceOfTheFileFailsAndIsLogged();
    void textFileOpensAndEveryStatementFails_data();
    void textFileOpensAndEveryStatementFails();
    void reopensAfterClose();
    void reopensAnotherFileUnderTheSameName();
    void closeKeepsTheRegistration();
    void vanishedFileIsNotMadeAgain();
    void documentsAndTemplatesAreToldApart();
    void apostropheBreaksAConcatenatedStatement();
    void newBlankHasNullContent();
    void lastInsertIdIsAnInteger();
};

void tst_DataBase::absentFileStaysAbsent()
{
    TempApplication app(TempApplication::Database::None);
    LogCatcher log;
    QVERIFY(!dataBase.open());
    QCOMPARE(log.count("Database not found!"), 1);
    QVERIFY(!QFile::exists(app.path("docs.db")));

    QSqlQuery query;
    QVERIFY(!query.exec("SELECT * FROM docs WHERE docs.TEMPLATE = 0;"));
    QVERIFY(!query.exec("CREATE TABLE IF NOT EXISTS zvsys (DB_VERSION TEXT);"));
    QVERIFY(!QFile::exists(app.path("docs.db")));
}

void tst_DataBase::opensOnTheDefaultConnection()
{
    TempApplication app;
    const QSqlDatabase connection = QSqlDatabase::database();
    QCOMPARE(connection.driverName(), QString("QSQLITE"));
    QCOMPARE(connection.hostName(), QString("Zelvora"));
    QCOMPARE(connection.databaseName(), app.path("docs.db"));
    QSqlQuery query;
    QVERIFY(query.exec("SELECT COUNT(*) FROM docs"));
}

void tst_DataBase::directoryInPlaceOfTheFileFailsAndIsLogged()
{
    TempApplication app(TempApplication::Database::None);
    QVERIFY(QDir(app.path()).mkdir("docs.db"));
    LogCatcher log;
    QVERIFY(!dataBase.open());
    QCOMPARE(log.count("Database not found!"), 0);
    QCOMPARE(log.count("unable to open database file"), 1);
}

void tst_DataBase::textFileOpensAndEveryStatementFails_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("a line") << QByteArray("Это не база данных.\n");
    QTest::newRow("pages") << QByteArray("Это не база данных.\n").repeated(500);
}

void tst_DataBase::textFileOpensAndEveryStatementFails()
{
    TempApplication app(TempApplication::Database::None);
    QFETCH(QByteArray, text);
    QVERIFY(writeFile(app.path("docs.db"), text));

    // SQLite looks into the file at the first statement only.
    QVERIFY(dataBase.open());
    QSqlQuery query;
    QVERIFY(!query.exec("SELECT * FROM docs WHERE docs.TEMPLATE = 0;"));
    QVERIFY2(query.lastError().text().contains("not a database"),
             qPrintable(query.lastError().text()));
    QVERIFY(!query.exec("CREATE TABLE IF NOT EXISTS zvsys (DB_VERSION TEXT);"));
    query.finish();
    dataBase.close();
    QCOMPARE(fileContent(app.path("docs.db")), text);
}

void tst_DataBase::reopensAfterClose()
{
    TempApplication app;
    const int first = app.exec("INSERT INTO docs (LNAME, TEMPLATE) VALUES ('А', 0)").toInt();
    dataBase.close();
    LogCatcher log;
    QVERIFY(dataBase.open());
    QCOMPARE(log.messages(), QStringList());
    QCOMPARE(app.value("SELECT LNAME FROM docs WHERE ID = ?", {first}).toString(), QString("А"));
}

void tst_DataBase::reopensAnotherFileUnderTheSameName()
{
    TempApplication app;
    app.exec("INSERT INTO docs (LNAME, TEMPLATE) VALUES ('Старая', 0)");
    dataBase.close();
    QVERIFY(QFile::copy(app.path("docs.db"), app.path("other.db")));
    QVERIFY(dataBase.open());
    app.exec("UPDATE docs SET LNAME = 'Новая'");
    dataBase.close();
    QVERIFY(QFile::remove(app.path("docs.db")));
    QVERIFY(QFile::rename(app.path("other.db"), app.path("docs.db")));
    QVERIFY(dataBase.open());
    QCOMPARE(app.value("SELECT LNAME FROM docs").toString(), QString("Старая"));
}

void tst_DataBase::closeKeepsTheRegistration()
{
    TempApplication app;
    dataBase.close();
    QVERIFY(QSqlDatabase::contains());
    QSqlQuery query;
    QVERIFY(!query.exec("SELECT COUNT(*) FROM docs"));
}

void tst_DataBase::vanishedFileIsNotMadeAgain()
{
    TempApplication app;
    dataBase.close();
    QVERIFY(QFile::remove(app.path("docs.db")));
    QVERIFY(!dataBase.open());
    QSqlQuery query;
    QVERIFY(!query.exec("SELECT COUNT(*) FROM docs"));
    QVERIFY(!QFile::exists(app.path("docs.db")));
}

void tst_DataBase::documentsAndTemplatesAreToldApart()
{
    TempApplication app;
    app.exec("INSERT INTO docs (LNAME, TEMPLATE, TEMPLATE_NAME) VALUES ('Документ', 0, '')");
    app.exec("INSERT INTO docs (LNAME, TEMPLATE, TEMPLATE_NAME) VALUES ('', 1, 'Первый')");
    app.exec("INSERT INTO docs (LNAME, TEMPLATE, TEMPLATE_NAME) VALUES ('', 2, 'Второй')");

    QSqlQuery documents("SELECT * FROM docs WHERE docs.TEMPLATE = 0;");
    QStringList surnames;
    while (documents.next()) {
        surnames << documents.value(4).toString();
    }
    QCOMPARE(surnames, QStringList{"Документ"});

    QSqlQuery templates("SELECT ID, TEMPLATE_NAME FROM docs WHERE TEMPLATE > 0;");
    QStringList names;
    while (templates.next()) {
        names << templates.value(1).toString();
    }
    QCOMPARE(names, (QStringList{"Первый", "Второй"}));
}

void tst_DataBase::apostropheBreaksAConcatenatedStatement()
{
    TempApplication app;
    QSqlQuery query;
    QVERIFY(query.exec(documentInsert("Иванов")));
    const int id = query.lastInsertId().toInt();
    const QByteArray before = app.dump();

    QVERIFY(!query.exec(documentInsert("д'Артаньян")));
    QVERIFY(query.lastError().text().contains("syntax error"));
    QVERIFY(!query.exec(
        QString("UPDATE docs SET BLANK_SER = '1', LNAME = 'О'Нил' WHERE ID = %1;").arg(id)));
    QCOMPARE(app.dump(), before);
}

void tst_DataBase::newBlankHasNullContent()
{
    TempApplication app;
    QSqlQuery query;
    QVERIFY(query.exec(
        "INSERT INTO blanks (NAME, FORM_ID, PAPER_FORMAT, PAPER_ORIENTATION, PAGES, FONT, "
        "FONT_SIZE, BACKGROUND_IMG, SIZE_WIDTH, SIZE_HEIGHT, OFFSET_X, OFFSET_Y) VALUES ('', 1, "
        "42, 0, 1, 'Times New Roman', 11, '', 297, 210, 0, 0)"));
    QVERIFY(query.exec("SELECT * FROM blanks WHERE ID = 1;"));
    QVERIFY(query.first());
    QVERIFY(query.value("CONTENT").isNull());
    QCOMPARE(query.value("SIZE_WIDTH").toInt(), 297);
    QCOMPARE(query.value("SIZE_HEIGHT").toInt(), 210);
}

void tst_DataBase::lastInsertIdIsAnInteger()
{
    TempApplication app;
    QSqlQuery query;
    QVERIFY(query.exec(documentInsert("Первый")));
    QCOMPARE(query.lastInsertId().type(), QVariant::LongLong);
    QCOMPARE(query.lastInsertId().toInt(), 1);

    QVERIFY(query.prepare("INSERT INTO lists (LIST_NAME, LIST_ITEMS) VALUES (:Name, :Items)"));
    for (int id = 1; id <= 3; id++) {
        query.bindValue(":Name", "Новый список");
        query.bindValue(":Items", "{}");
        QVERIFY(query.exec());
        QCOMPARE(query.lastInsertId().type(), QVariant::LongLong);
        QCOMPARE(query.lastInsertId().toInt(), id);
    }
}

QTEST_MAIN(tst_DataBase)
#include "tst_DataBase.moc"
