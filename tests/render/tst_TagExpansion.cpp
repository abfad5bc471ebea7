#include <QtTest>

#include <QDate>
#include <QJsonArray>
#include <QJsonDocument>

#include "render/TagExpansion.h"
#include "store/OrgData.h"
#include "support/TempApplication.h"

namespace {

/// A row of `docs` by tag, every value as text.
QJsonObject sampleValues()
{
    return {{"#ID", "7"},
            {"#BLANK_SER", "АБ"},
            {"#BLANK_NO", "000123"},
            {"#FNAME", "Иван"},
            {"#LNAME", "Иванов"},
            {"#MNAME", ""},
            {"#BIRTH_DATE", "2003-05-05"},
            {"#DOC_TYPE", "3"},
            {"#DOC_GROUP", "9А"},
            {"#ISSUE_DATE", "2021-12-31"},
            {"#EDIT_DATE", ""},
            {"#DUPLICATE", "1"},
            {"#TEMPLATE", "0"},
            {"#TEMPLATE_NAME", ""}};
}

QJsonObject sampleContent()
{
    return {{"#SPECIALTY", QJsonObject{{"type", 0}, {"value", "Сварщик"}}},
            {"#QUALIFICATION", QJsonObject{{"type", 1}, {"value", "хорошо"}}},
            {"#HOURS", QJsonObject{{"type", 2}, {"value", 144}}},
            {"#HOURS_NEW", QJsonObject{{"type", 2}, {"value", ""}}},
            {"#HOURS_NONE", QJsonObject{{"type", 2}}},
            {"#PROTOCOL_DATE", QJsonObject{{"type", 3}, {"value", "15.06.2024"}}},
            {"#GRADES", QJsonObject{{"type", 4}, {"value", QJsonArray{QJsonArray{"а", "б"}}}}},
            {"#NOTE", QJsonObject{{"type", 5}, {"value", "первая\nвторая"}}},
            {"#NUMBER_AS_TEXT", QJsonObject{{"type", 0}, {"value", 12}}},
            {"#NO_VALUE", QJsonObject{{"type", 1}}},
            {"#NO_TYPE", QJsonObject{{"value", "без типа"}}},
            {"#NO_ENTRY", "строка"},
            {"#LNAME", QJsonObject{{"type", 0}, {"value", "из формы"}}},
            {"#ORG_REGION", QJsonObject{{"type", 0}, {"value", "из формы"}}}};
}

} // namespace

/// Tags of a text and what they become.
class tst_TagExpansion : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void dateInWords_data();
    void dateInWords();
    void shortName_data();
    void shortName();
    void singleTag_data();
    void singleTag();
    void wholeText_data();
    void wholeText();
    void longText();
    void documentOfTheDatabase();
    void everyColumnButContentIsATag();
    void documentThatCannotBeRead_data();
    void documentThatCannotBeRead();
    void documentWithBrokenContent_data();
    void documentWithBrokenContent();
    void contentStoredAsBytes();
};

void tst_TagExpansion::init()
{
    orgNameFormat1 = "школу № 5";
    orgNameFormat2 = "школе № 5";
    orgRegion = "Тверская область";
    orgLocality = "г. Тверь";
    orgDirector = "Петров Пётр Петрович";
}

void tst_TagExpansion::cleanup()
{
    for (QString* text : {&orgNameFormat1, &orgNameFormat2, &orgRegion, &orgLocality, &orgDirector})
    {
        text->clear();
    }
}

void tst_TagExpansion::dateInWords_data()
{
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QString>("words");

    const QStringList months = {"января", "февраля", "марта",    "апреля",  "мая",    "июня",
                                "июля",   "августа", "сентября", "октября", "ноября", "декабря"};
    for (int month = 1; month <= 12; ++month) {
        QTest::addRow("month %d", month)
            << QDate(2021, month, 28) << "28 " + months[month - 1] + " 2021";
    }
    QTest::newRow("no leading zero") << QDate(2021, 5, 5) << "5 мая 2021";
    QTest::newRow("short year") << QDate(987, 1, 1) << "1 января 987";
    QTest::newRow("invalid") << QDate() << "0  0";
    QTest::newRow("no such day") << QDate(2021, 2, 30) << "0  0";
}

void tst_TagExpansion::dateInWords()
{
    QFETCH(QDate, date);
    QFETCH(QString, words);
    QCOMPARE(dateToWords(date), words);
}

void tst_TagExpansion::shortName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("result");

    QTest::newRow("three parts") << "Иванов Иван Иванович"
                                 << "Иванов И. И. ";
    QTest::newRow("two parts") << "Иванов Иван"
                               << "Иванов И. ";
    QTest::newRow("one part") << "Иванов"
                              << "Иванов ";
    QTest::newRow("four parts") << "Иванов Иван Иванович Оглы"
                                << "Иванов И. И. ";
    QTest::newRow("empty") << ""
                           << " ";
    QTest::newRow("two blanks in a row") << "Иванов  Иван"
                                         << "Иванов . И. ";
    QTest::newRow("blank at the end") << "Иванов "
                                      << "Иванов . ";
    QTest::newRow("tab is no blank") << "Иванов\tИван"
                                     << "Иванов\tИван ";
}

void tst_TagExpansion::shortName()
{
    QFETCH(QString, name);
    QFETCH(QString, result);
    QCOMPARE(shortPersonName(name), result);
}

void tst_TagExpansion::singleTag_data()
{
    QTest::addColumn<QString>("tag");
    QTest::addColumn<bool>("replaced");
    QTest::addColumn<QString>("result");

    QTest::newRow("organisation 1") << "#ORG_NAME_1" << true << "школу № 5";
    QTest::newRow("organisation 2") << "#ORG_NAME_2" << true << "школе № 5";
    QTest::newRow("region, not the form's field") << "#ORG_REGION" << true << "Тверская область";
    QTest::newRow("locality") << "#ORG_LOCALITY" << true << "г. Тверь";
    QTest::newRow("director") << "#ORG_DIRECTOR" << true << "Петров Пётр Петрович";
    QTest::newRow("director, short") << "#ORG_DIRECTOR_SHORT" << true << "Петров П. П. ";
    QTest::newRow("unknown of the organisation") << "#ORG_NAME_3" << false << "#ORG_NAME_3";
    QTest::newRow("duplicate") << "#DUPLICATE" << true << "ДУБЛИКАТ";
    QTest::newRow("date") << "#ISSUE_DATE" << true << "31 декабря 2021";
    QTest::newRow("date of birth") << "#BIRTH_DATE" << true << "5 мая 2003";
    QTest::newRow("no date") << "#EDIT_DATE" << true << "0  0";
    QTest::newRow("column") << "#BLANK_NO" << true << "000123";
    QTest::newRow("column, not the form's field") << "#LNAME" << true << "Иванов";
    QTest::newRow("empty column") << "#MNAME" << true << "";
    QTest::newRow("column that the editor does not offer") << "#DOC_TYPE" << true << "3";
    QTest::newRow("text field") << "#SPECIALTY" << true << "Сварщик";
    QTest::newRow("list field") << "#QUALIFICATION" << true << "хорошо";
    QTest::newRow("counter") << "#HOURS" << true << "144";
    QTest::newRow("counter of a new document") << "#HOURS_NEW" << true << "0";
    QTest::newRow("counter without a value") << "#HOURS_NONE" << true << "0";
    QTest::newRow("date field stays as stored") << "#PROTOCOL_DATE" << true << "15.06.2024";
    QTest::newRow("table") << "#GRADES" << false << "#GRADES";
    QTest::newRow("lines") << "#NOTE" << true << "первая\nвторая";
    QTest::newRow("value that is no string") << "#NUMBER_AS_TEXT" << true << "";
    QTest::newRow("no value") << "#NO_VALUE" << true << "";
    QTest::newRow("no type") << "#NO_TYPE" << true << "без типа";
    QTest::newRow("entry that is no object") << "#NO_ENTRY" << true << "";
    QTest::newRow("unknown") << "#NOBODY" << false << "#NOBODY";
    QTest::newRow("lower case") << "#lname" << false << "#lname";
    QTest::newRow("bare") << "#" << false << "#";
}

void tst_TagExpansion::singleTag()
{
    QFETCH(QString, tag);
    QFETCH(bool, replaced);
    QFETCH(QString, result);
    QString text = tag;
    QCOMPARE(expandTag(text, sampleValues(), sampleContent()), replaced);
    QCOMPARE(text, result);
}

void tst_TagExpansion::wholeText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");

    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("one character") << "5"
                                   << "";
    QTest::newRow("two characters") << "15"
                                    << "15";
    QTest::newRow("no tag") << "Выдан"
                            << "Выдан";
    QTest::newRow("tag alone") << "#LNAME"
                               << "Иванов";
    QTest::newRow("tag at the end") << "Выдан: #LNAME"
                                    << "Выдан: Иванов";
    QTest::newRow("tags and blanks") << "#LNAME #FNAME #MNAME"
                                     << "Иванов Иван ";
    QTest::newRow("tail of one character") << "#LNAME,"
                                           << "Иванов";
    QTest::newRow("tail of two characters") << "#LNAME, "
                                            << "Иванов, ";
    QTest::newRow("tail of one character behind text") << "от #LNAME."
                                                       << "от Иванов";
    QTest::newRow("one character between tags stays") << "#LNAME,#FNAME"
                                                      << "Иванов,Иван";
    QTest::newRow("a \"#\" does not end a tag") << "#LNAME#FNAME"
                                                << "#LNAME#FNAME";
    QTest::newRow("joined by ^") << "#LNAME^#FNAME"
                                 << "ИвановИван";
    QTest::newRow("^ before a digit") << "серия #BLANK_SER^2 и"
                                      << "серия АБ2 и";
    QTest::newRow("^ and one digit") << "#BLANK_SER^2"
                                     << "АБ2";
    QTest::newRow("^ alone behind a tag") << "#LNAME^"
                                          << "Иванов";
    QTest::newRow("only ^") << "^^"
                            << "";
    QTest::newRow("longest run") << "#ORG_DIRECTOR_SHORT"
                                 << "Петров П. П. ";
    QTest::newRow("shorter tag") << "#ORG_DIRECTOR и"
                                 << "Петров Пётр Петрович и";
    QTest::newRow("digit behind a tag") << "#LNAME2 и"
                                        << "#LNAME2 и";
    QTest::newRow("underscore behind a tag") << "#LNAME_ и"
                                             << "#LNAME_ и";
    QTest::newRow("lower case behind a tag") << "#LNAMEs2"
                                             << "Ивановs2";
    QTest::newRow("Cyrillic behind a tag") << "#LNAMEу!"
                                           << "Иванову!";
    QTest::newRow("lower case tag") << "#lname"
                                    << "#lname";
    QTest::newRow("bare \"#\"") << "№ # 5"
                                << "№ # 5";
    QTest::newRow("unknown tag and text") << "#NOBODY здесь"
                                          << "#NOBODY здесь";
    QTest::newRow("table in a text") << "см. #GRADES ниже"
                                     << "см. #GRADES ниже";
    QTest::newRow("line feed") << "один\\nдва"
                               << "один\nдва";
    QTest::newRow("line feed in a value") << "#NOTE: да"
                                          << "первая\nвторая: да";
    QTest::newRow("parted by ^") << "один\\^nдва"
                                 << "один\nдва";
    QTest::newRow("real line feed") << "один\nдва"
                                    << "один\nдва";
    QTest::newRow("backslash of something else") << "один\\tдва"
                                                 << "один\\tдва";
    QTest::newRow("duplicate and text") << "(#DUPLICATE) да"
                                        << "(ДУБЛИКАТ) да";
    QTest::newRow("empty value") << "[#MNAME] да"
                                 << "[] да";
    QTest::newRow("last tag of one letter") << "##"
                                            << "##";
}

void tst_TagExpansion::wholeText()
{
    QFETCH(QString, text);
    QFETCH(QString, result);
    QCOMPARE(expandTags(text, sampleValues(), sampleContent()), result);
}

void tst_TagExpansion::longText()
{
    // Quadratic work would need minutes here.
    const int count = 200000;
    const QString result =
        expandTags(QString("#LNAME^ ").repeated(count) + "конец", sampleValues(), sampleContent());
    QCOMPARE(result, QString("Иванов ").repeated(count) + "конец");
    const QString run(1000000, '#');
    QCOMPARE(expandTags(run, sampleValues(), sampleContent()), run);
}

void tst_TagExpansion::documentOfTheDatabase()
{
    TempApplication app;
    const QByteArray content =
        QJsonDocument(QJsonObject{{"#CITY", QJsonObject{{"type", 0}, {"value", "a^b\\nc"}}}})
            .toJson();
    const QVariant id =
        app.exec("INSERT INTO docs (LNAME, FNAME, DUPLICATE, ISSUE_DATE, TEMPLATE, CONTENT) "
                 "VALUES ('Ким', 'Ян', 0, '2020-02-29', 0, ?)",
                 {QString::fromUtf8(content)});
    QString error = "untouched";
    QCOMPARE(expandTagsForDoc("#LNAME #FNAME|#DUPLICATE|#ISSUE_DATE|#CITY", id, &error),
             QString("Ким Ян||29 февраля 2020|ab\nc"));
    QCOMPARE(error, QString("untouched"));
    QCOMPARE(expandTagsForDoc("#EDIT_DATE", id, nullptr), QString("0  0"));
}

void tst_TagExpansion::everyColumnButContentIsATag()
{
    TempApplication app;
    const QVariant id = app.exec(
        "INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME, BIRTH_DATE, DOC_TYPE, "
        "DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE, TEMPLATE, TEMPLATE_NAME, CONTENT) VALUES "
        "('s', 'n', 'f', 'l', 'm', NULL, 4, 'g', NULL, NULL, 0, 2, 't', 'c')");
    QCOMPARE(expandTagsForDoc("#ID #BLANK_SER #BLANK_NO #FNAME #LNAME #MNAME #DOC_TYPE #DOC_GROUP "
                              "#DUPLICATE #TEMPLATE #TEMPLATE_NAME #CONTENT",
                              id, nullptr),
             id.toString() + " s n f l m 4 g  2 t #CONTENT");
}

void tst_TagExpansion::documentThatCannotBeRead_data()
{
    QTest::addColumn<QVariant>("id");
    QTest::addColumn<bool>("statementFails");
    QTest::newRow("no such row") << QVariant(4711) << false;
    QTest::newRow("no number") << QVariant("'") << true;
    QTest::newRow("no ID") << QVariant() << true;
}

void tst_TagExpansion::documentThatCannotBeRead()
{
    QFETCH(QVariant, id);
    QFETCH(bool, statementFails);
    TempApplication app;
    QString error = "untouched";
    QCOMPARE(expandTagsForDoc("#LNAME^\\n5", id, &error), QString("#LNAME^\\n5"));
    QVERIFY(error != "untouched");
    QCOMPARE(!error.trimmed().isEmpty(), statementFails);
    QCOMPARE(expandTagsForDoc("#LNAME", id, nullptr), QString("#LNAME"));
}

void tst_TagExpansion::documentWithBrokenContent_data()
{
    QTest::addColumn<QVariant>("content");
    QTest::newRow("NULL") << QVariant();
    QTest::newRow("empty") << QVariant("");
    QTest::newRow("no JSON") << QVariant("{\"#CITY\":");
    QTest::newRow("an array") << QVariant("[1, 2]");
    QTest::newRow("a list of entries") << QVariant("{\"fields\": [{\"#CITY\": 1}]}");
}

void tst_TagExpansion::documentWithBrokenContent()
{
    QFETCH(QVariant, content);
    TempApplication app;
    const QVariant id = app.exec("INSERT INTO docs (LNAME, CONTENT) VALUES ('Ким', ?)", {content});
    QString error = "untouched";
    QCOMPARE(expandTagsForDoc("#LNAME #CITY", id, &error), QString("Ким #CITY"));
    QCOMPARE(error, QString("untouched"));
}

void tst_TagExpansion::contentStoredAsBytes()
{
    TempApplication app;
    const QByteArray content = "{\"#CITY\": {\"type\": 0, \"value\": \"Тверь\"}}";
    const QVariant id = app.exec("INSERT INTO docs (CONTENT) VALUES (?)", {content});
    QCOMPARE(expandTagsForDoc("г. #CITY", id, nullptr), QString("г. Тверь"));
}

QTEST_MAIN(tst_TagExpansion)
#include "tst_TagExpansion.moc"
