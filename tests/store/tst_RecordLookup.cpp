#include <QtTest>

#include "store/RecordLookup.h"
#include "support/TempApplication.h"

/// Rows that an ID or a name means.
class tst_RecordLookup : public QObject
{
    Q_OBJECT

private slots:
    void byIdOrName();
    void anIdComesBeforeAName();
    void whatIsNotThere();
    void unreadableTable();
};

void tst_RecordLookup::byIdOrName()
{
    TempApplication app;
    app.exec(
        "INSERT INTO forms (ID, FORM_NAME) VALUES (7, 'Диплом'), (3, 'Диплом'), (5, 'Справка')");
    QCOMPARE(recordsByIdOrName("forms", "FORM_NAME", "5", nullptr), QVariantList{5});
    QCOMPARE(recordsByIdOrName("forms", "FORM_NAME", "Справка", nullptr), QVariantList{5});
    QCOMPARE(recordsByIdOrName("forms", "FORM_NAME", "Диплом", nullptr), (QVariantList{3, 7}));
}

void tst_RecordLookup::anIdComesBeforeAName()
{
    TempApplication app;
    app.exec("INSERT INTO forms (ID, FORM_NAME) VALUES (1, '2'), (2, 'Диплом'), (3, '2')");
    QCOMPARE(recordsByIdOrName("forms", "FORM_NAME", "2", nullptr), QVariantList{2});
}

void tst_RecordLookup::whatIsNotThere()
{
    TempApplication app;
    app.exec("INSERT INTO forms (ID, FORM_NAME) VALUES (1, 'Диплом')");
    QString error;
    for (const char* text : {"", "2", "диплом", "%", "1 "}) {
        QVERIFY(recordsByIdOrName("forms", "FORM_NAME", text, &error).isEmpty());
    }
    QVERIFY(error.isEmpty());
}

void tst_RecordLookup::unreadableTable()
{
    TempApplication app;
    app.exec("DROP TABLE forms");
    QString error;
    QVERIFY(recordsByIdOrName("forms", "FORM_NAME", "1", &error).isEmpty());
    QVERIFY2(error.contains("no such table: forms"), qPrintable(error));
    QVERIFY(recordsByIdOrName("forms", "FORM_NAME", "1", nullptr).isEmpty());
}

QTEST_GUILESS_MAIN(tst_RecordLookup)
#include "tst_RecordLookup.moc"
