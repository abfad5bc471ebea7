#include <QtTest>

#include "render/DocumentTags.h"
#include "render/TagExpansion.h"
#include "support/TempApplication.h"

/// Many texts of one document.
class tst_DocumentTags : public QObject
{
    Q_OBJECT

private slots:
    void manyTexts();
    void everyTextReadsAnew();
    void becomesNull();
    void missingDocument();
    void unreadableDocuments();
    void brokenId();
};

void tst_DocumentTags::manyTexts()
{
    TempApplication app;
    const QVariant id =
        app.exec("INSERT INTO docs (LNAME, FNAME, DUPLICATE, CONTENT) VALUES "
                 "('Ким', 'Ли', 1, '{\"#CITY\":{\"type\":0,\"value\":\"Тверь\"}}')");
    DocumentTags tags(id);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(tags.expand("#LNAME #FNAME", nullptr), QString("Ким Ли"));
        QCOMPARE(tags.expand("#CITY", nullptr), QString("Тверь"));
        QCOMPARE(tags.expand("#DUPLICATE", nullptr), QString("ДУБЛИКАТ"));
        QCOMPARE(tags.expand("#UNKNOWN", nullptr), QString("#UNKNOWN"));
    }
}

void tst_DocumentTags::everyTextReadsAnew()
{
    TempApplication app;
    const QVariant id = app.exec("INSERT INTO docs (LNAME, CONTENT) VALUES "
                                 "('Ким', '{\"#CITY\":{\"type\":0,\"value\":\"Тверь\"}}')");
    DocumentTags tags(id);
    QCOMPARE(tags.expand("#LNAME, #CITY", nullptr), QString("Ким, Тверь"));
    app.exec("UPDATE docs SET LNAME = 'Пак'");
    QCOMPARE(tags.expand("#LNAME, #CITY", nullptr), QString("Пак, Тверь"));
    app.exec("UPDATE docs SET CONTENT = '{\"#CITY\":{\"type\":0,\"value\":\"Псков\"}}'");
    QCOMPARE(tags.expand("#LNAME, #CITY", nullptr), QString("Пак, Псков"));
}

void tst_DocumentTags::becomesNull()
{
    TempApplication app;
    const QVariant id = app.exec("INSERT INTO docs (LNAME, CONTENT) VALUES "
                                 "('Ким', '{\"#CITY\":{\"type\":0,\"value\":\"Тверь\"}}')");
    DocumentTags tags(id);
    QCOMPARE(tags.expand("#LNAME, #CITY", nullptr), QString("Ким, Тверь"));
    app.exec("UPDATE docs SET LNAME = NULL, CONTENT = NULL");
    QCOMPARE(tags.expand("#LNAME, #CITY", nullptr), QString(", #CITY"));
}

void tst_DocumentTags::missingDocument()
{
    TempApplication app;
    const QVariant id = app.exec("INSERT INTO docs (LNAME) VALUES ('Ким')");
    DocumentTags tags(id);
    QCOMPARE(tags.expand("#LNAME", nullptr), QString("Ким"));
    app.exec("DELETE FROM docs");
    QCOMPARE(tags.expand("#LNAME", nullptr), QString("#LNAME"));
    app.exec("INSERT INTO docs (ID, LNAME) VALUES (?, 'Пак')", {id});
    QCOMPARE(tags.expand("#LNAME", nullptr), QString("Пак"));
}

void tst_DocumentTags::unreadableDocuments()
{
    TempApplication app;
    app.exec("DROP TABLE docs");
    QString error;
    QCOMPARE(DocumentTags(1).expand("#LNAME", &error), QString("#LNAME"));
    QVERIFY2(error.contains("no such table"), qPrintable(error));
}

void tst_DocumentTags::brokenId()
{
    TempApplication app;
    QString error;
    DocumentTags tags{QVariant()};
    QCOMPARE(tags.expand("#LNAME", &error), QString("#LNAME"));
    QVERIFY2(error.contains("syntax error"), qPrintable(error));
    // Still so at the next text.
    error.clear();
    tags.expand("#LNAME", &error);
    QVERIFY2(error.contains("syntax error"), qPrintable(error));
}

QTEST_GUILESS_MAIN(tst_DocumentTags)
#include "tst_DocumentTags.moc"
