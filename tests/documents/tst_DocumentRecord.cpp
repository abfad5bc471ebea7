#include <QtTest>

#include "documents/DocDialog.h"
#include "documents/DocumentRecord.h"
#include "support/LogCatcher.h"
#include "support/TempApplication.h"

namespace {

// As the content stands in a statement: indented.
const char* const contentText = "{\n    \"#A\": {\n        \"type\": 0\n    }\n}\n";

void fill(DocDialog& dialog)
{
    dialog.setSeries("107704");
    dialog.setNumber("0012345");
    dialog.setFname("Мария");
    dialog.setLname("Д'Арк");
    dialog.setMname("Александровна");
    dialog.setBirthDate("2004-03-17");
    dialog.setDocType(3);
    dialog.setDocGroup("ПК-41");
    dialog.setIssueDate("2024-06-30");
    dialog.setEditDate("2024-07-01");
    dialog.setDuplicate(1);
    dialog.setContent({{"#A", QJsonObject{{"type", 0}}}});
}

// A text as a message of the debug log shows it.
QString logged(const QString& text)
{
    QString message;
    QDebug(&message).nospace() << text;
    return message;
}

} // namespace

/// The statements on a document's row, seen where they are logged: the apostrophe in the surname
/// makes each of them fail.
class tst_DocumentRecord : public QObject
{
    Q_OBJECT

private slots:
    void insertStatements();
    void updateStatement();
};

void tst_DocumentRecord::insertStatements()
{
    TempApplication app;
    DocDialog dialog;
    fill(dialog);
    const QString head =
        "INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME,BIRTH_DATE, DOC_TYPE, "
        "DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE,TEMPLATE, TEMPLATE_NAME, CONTENT) VALUES ("
        "'107704', '0012345', 'Мария', 'Д'Арк', 'Александровна', '2004-03-17', 3, 'ПК-41', "
        "'2024-06-30', '2024-07-01', 1";
    LogCatcher log;
    QVERIFY(!insertDocument(dialog).isValid());
    QCOMPARE(log.messages().value(0), QString("error insert into docs "));
    QCOMPARE(log.messages().value(2), logged(head + ", 0 , '', '" + contentText + "');"));

    log.clear();
    QVERIFY(!insertDocumentTemplate(dialog, "Ш").isValid());
    QCOMPARE(log.messages().value(0), QString("error insert into docs "));
    QCOMPARE(log.messages().value(2), logged(head + ", 1 , 'Ш', '" + contentText + "');"));
    QCOMPARE(app.value("SELECT COUNT(*) FROM docs").toInt(), 0);
}

void tst_DocumentRecord::updateStatement()
{
    TempApplication app;
    app.exec("INSERT INTO docs (ID, LNAME) VALUES (7, 'Прежняя')");
    DocDialog dialog;
    fill(dialog);
    LogCatcher log;
    updateDocument(dialog, 7);
    QCOMPARE(log.messages().value(0), QString("error update into docs "));
    QCOMPARE(log.messages().value(2),
             logged(QString("UPDATE docs SET BLANK_SER = '107704', BLANK_NO = '0012345', "
                            "FNAME = 'Мария', LNAME = 'Д'Арк', MNAME = 'Александровна', "
                            "BIRTH_DATE = '2004-03-17', DOC_TYPE = 3, DOC_GROUP = 'ПК-41', "
                            "ISSUE_DATE = '2024-06-30', EDIT_DATE = '2024-07-01', DUPLICATE = 1, "
                            "CONTENT = '") +
                    contentText + "' WHERE ID = 7;"));
    QCOMPARE(app.value("SELECT LNAME FROM docs WHERE ID = 7").toString(), QString("Прежняя"));
}

QTEST_MAIN(tst_DocumentRecord)
#include "tst_DocumentRecord.moc"
