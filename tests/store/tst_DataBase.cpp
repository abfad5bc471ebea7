#include <QtTest>

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>

#include "store/DataBase.h"
#include "support/LogCatcher.h"
#include "support/TempApplication.h"

/// Opening and closing of the document database.
class tst_DataBase : public QObject
{
    Q_OBJECT

private slots:
    void absentFileStaysAbsent();
    void opensOnTheDefaultConnection();
    void reopensAfterClose();
};

void tst_DataBase::absentFileStaysAbsent()
{
    TempApplication app(TempApplication::Database::None);
    LogCatcher log;
    QVERIFY(!dataBase.open());
    QCOMPARE(log.count("Database not found!"), 1);
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

void tst_DataBase::reopensAfterClose()
{
    TempApplication app;
    const int first = app.exec("INSERT INTO docs (LNAME, TEMPLATE) VALUES ('А', 0)").toInt();
    dataBase.close();
    QVERIFY(dataBase.open());
    QCOMPARE(app.value("SELECT LNAME FROM docs WHERE ID = ?", {first}).toString(), QString("А"));
}

QTEST_MAIN(tst_DataBase)
#include "tst_DataBase.moc"
