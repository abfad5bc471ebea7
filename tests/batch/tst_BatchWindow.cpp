#include <QtTest>

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QSqlDatabase>
#include <QSqlQuery>

#include "BatchDesk.h"
#include "batch/CheckStep.h"
#include "batch/StepButton.h"

/// The window for batches and its database.
class tst_BatchWindow : public QObject
{
    Q_OBJECT

private slots:
    void isNamed();
    void readsAnew();
    void readsAnewWhenActivated();
    void writesNothing();
    void databaseReplaced();
    void databaseUnreadable_data();
    void databaseUnreadable();
    void stepsByTheKeyboard();
    void tabReachesEverything();
    void fitsASmallScreen();
};

namespace {

QLabel* problemOf(BatchDesk& desk)
{
    return named<QLabel>(desk.window(), "databaseProblem");
}

void activate(QWidget& window)
{
    QWidget other;
    other.show();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
}

} // namespace

void tst_BatchWindow::isNamed()
{
    BatchDesk desk;
    desk.open();
    QCOMPARE(desk.window().windowTitle(), QString("Zelvora - Печать партии"));
    QCOMPARE(desk.status("documentsButton"), QString("Документов нет"));
}

void tst_BatchWindow::readsAnew()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addDocuments(3);
    desk.open();
    desk.tick(2);
    desk.change("DELETE FROM docs WHERE LNAME = 'Фамилия0001'");
    desk.change("UPDATE docs SET LNAME = 'Яковлев' WHERE LNAME = 'Фамилия0002'");
    QTest::keyClick(&desk.window(), Qt::Key_F5);
    QCOMPARE(desk.people(), QStringList({"Фамилия0003", "Яковлев"}));
    QVERIFY(!desk.isTicked(0));
    QVERIFY(desk.isTicked(1)); // the same document
    QCOMPARE(desk.status("documentsButton"), QString("Выбрано 1 из 2"));
}

void tst_BatchWindow::readsAnewWhenActivated()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addDocuments(1);
    desk.open();
    desk.change("UPDATE docs SET LNAME = 'Яковлева с очень длинной фамилией'");
    QCOMPARE(desk.people(), QStringList("Фамилия0001"));
    activate(desk.window());
    QTRY_COMPARE(desk.people(), QStringList("Яковлева"));
}

void tst_BatchWindow::writesNothing()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addDocuments(1);
    desk.open();
    QSqlQuery query;
    QVERIFY(!query.exec("DELETE FROM docs"));
    // And another program can write meanwhile.
    desk.change("INSERT INTO docs (LNAME, FNAME, DOC_TYPE, TEMPLATE) VALUES ('А', 'Б', 1, 0)");
}

void tst_BatchWindow::databaseReplaced()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addDocuments(2);
    desk.open();
    // As an archive is brought back: another file takes the name.
    const QString path = desk.path("docs.db");
    QVERIFY(QFile::copy(path, path + ".new"));
    {
        QSqlDatabase other = QSqlDatabase::addDatabase("QSQLITE", "other");
        other.setDatabaseName(path + ".new");
        QVERIFY(other.open());
        other.exec("DELETE FROM docs WHERE LNAME = 'Фамилия0001'");
    }
    QSqlDatabase::removeDatabase("other");
    QVERIFY(QFile::remove(path));
    QVERIFY(QFile::rename(path + ".new", path));
    activate(desk.window());
    QTRY_COMPARE(desk.people(), QStringList("Фамилия0002"));
}

void tst_BatchWindow::databaseUnreadable_data()
{
    QTest::addColumn<QByteArray>("content"); // null: no file
    QTest::addColumn<QString>("said");
    QTest::newRow("gone") << QByteArray() << "Нет файла базы данных";
    QTest::newRow("no database") << QByteArray(4000, 'x') << "это не база данных";
    QTest::newRow("empty") << QByteArray("") << "Базу данных не удалось прочитать";
}

void tst_BatchWindow::databaseUnreadable()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, said);
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addDocuments(2);
    desk.open();
    desk.tick(1);
    QFile file(desk.path("docs.db"));
    QVERIFY(file.remove());
    if (!content.isNull()) {
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
    }
    QTest::keyClick(&desk.window(), Qt::Key_F5);
    QVERIFY(problemOf(desk)->isVisible());
    QVERIFY2(problemOf(desk)->text().contains(said), qPrintable(problemOf(desk)->text()));
    QCOMPARE(desk.status("documentsButton"), QString("Выбрано 1 из 2")); // as it was read last
    QCOMPARE(QFile::exists(desk.path("docs.db")), !content.isNull());
}

void tst_BatchWindow::stepsByTheKeyboard()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addDocuments(1);
    desk.open();
    auto* check = desk.window().findChild<CheckStep*>();
    QTest::keyClick(&desk.window(), Qt::Key_2, Qt::ControlModifier);
    QTRY_VERIFY(check->isVisible());
    QTest::keyClick(&desk.window(), Qt::Key_1, Qt::ControlModifier);
    QTRY_VERIFY(!check->isVisible());
}

void tst_BatchWindow::tabReachesEverything()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addBlank({});
    desk.addDocuments(3);
    desk.open();
    named<QLineEdit>(desk.window(), "filterNameEdit")->setFocus();
    for (const char* name :
         {"filterGroupEdit", "filterTypeCmb", "dateCheck", "selectAllCheck", "documentsTable"})
    {
        QVERIFY2(tabTo(named<QWidget>(desk.window(), name)), name);
    }
    pressKey(Qt::Key_Space);
    for (const char* name : {"blanksTable", "toCheckButton", "documentsButton"}) {
        QVERIFY2(tabTo(named<QWidget>(desk.window(), name)), name);
    }
    named<QWidget>(desk.window(), "toCheckButton")->setFocus();
    pressKey(Qt::Key_Space);
    for (const char* name :
         {"onlyFindingsCheck", "findingsTree", "proofView", "holdErrorsCheck", "reportButton"})
    {
        QVERIFY2(tabTo(named<QWidget>(desk.window(), name)), name);
    }
}

void tst_BatchWindow::fitsASmallScreen()
{
    BatchDesk desk;
    const QString longName(150, QChar(0x0429)); // the widest letter
    desk.addForm(longName);
    desk.addForm(longName);
    desk.addBlank({}, {{"NAME", longName}});
    desk.addDocument({}, {{"LNAME", longName}, {"FNAME", longName}, {"DOC_GROUP", longName}});
    desk.addDocument({}, {{"LNAME", longName}, {"DOC_TYPE", 2}});
    desk.open();
    desk.tick(2);
    QVERIFY(desk.window().minimumSizeHint().width() <= 1366);
    QVERIFY(desk.window().minimumSizeHint().height() <= 700);
    clickButton(desk.window(), "toCheckButton");
    QVERIFY(desk.window().minimumSizeHint().width() <= 1366);
    QCOMPARE(desk.window().size(), QSize(1366, 700));
    // What does not fit is told in a tip.
    QTreeWidget* tree = desk.findings();
    const QRect row = tree->visualItemRect(tree->topLevelItem(tree->topLevelItemCount() - 1));
    QVERIFY(toolTipAt(tree->viewport(), row.center()).contains(longName));
}

QTEST_MAIN(tst_BatchWindow)
#include "tst_BatchWindow.moc"
