#include <QtTest>

#include "forms/FormDefinitions.h"
#include "preflight/TagCheck.h"
#include "store/OrgData.h"
#include "support/PrintFixture.h"

namespace {

TagCheck checkOf(const QString& surname)
{
    return {QJsonObject{{"#LNAME", surname},
                        {"#FNAME", "Иван"},
                        {"#ISSUE_DATE", "2021-06-25"},
                        {"#EDIT_DATE", "2021-02-30"}},
            QJsonObject{{"#GRADES", tableEntry({{"Физика", "5"}})},
                        {"#NOTE", valueEntry(FieldType::text, "R&amp;D")}}};
}

QStringList tagsOf(const QVector<TagCheck::Value>& values)
{
    QStringList tags;
    for (const TagCheck::Value& value : values) {
        tags << value.tag;
    }
    return tags;
}

} // namespace

/// What of an item's text does not come out as it was meant.
class tst_TagCheck : public QObject
{
    Q_OBJECT

private slots:
    void unexpandedTags_data();
    void unexpandedTags();
    void emptyDates();
    void emptyTags();
    void droppedTail_data();
    void droppedTail();
    void markup_data();
    void markup();
    void markupOfTheRightTag();
    void markupOfOrganisation();
};

void tst_TagCheck::unexpandedTags_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("tags");
    QTest::newRow("known") << "#LNAME #FNAME" << QStringList();
    QTest::newRow("none") << "Выдан" << QStringList();
    QTest::newRow("unknown") << "Г. #CITY, #CITY" << QStringList{"#CITY"};
    QTest::newRow("joined") << "#LNAME#FNAME" << QStringList{"#LNAME#FNAME"};
    QTest::newRow("parted by a caret") << "#LNAME^#FNAME" << QStringList();
    QTest::newRow("digit behind") << "#LNAME2" << QStringList{"#LNAME2"};
    QTest::newRow("underscore") << "#NO_SUCH_TAG." << QStringList{"#NO_SUCH_TAG"};
    QTest::newRow("lower case") << "#lname и #Lname" << QStringList({"#lname", "#Lname"});
    QTest::newRow("lone sign") << "запись # 5" << QStringList{"#"};
    QTest::newRow("table in a text") << "Оценки: #GRADES." << QStringList{"#GRADES"};
    QTest::newRow("capital Cyrillic") << "#ФИО" << QStringList{"#ФИО"};
}

void tst_TagCheck::unexpandedTags()
{
    QFETCH(QString, text);
    QTEST(checkOf("Иванов").unexpandedTags(text), "tags");
    // A value's own signs are no tags.
    QCOMPARE(checkOf("#NOBODY").unexpandedTags("#LNAME"), QStringList());
}

void tst_TagCheck::emptyDates()
{
    const TagCheck check = checkOf("Иванов");
    QCOMPARE(check.emptyDates("Выдан #ISSUE_DATE"), QStringList());
    QCOMPARE(check.emptyDates("#EDIT_DATE, #EDIT_DATE"), QStringList{"#EDIT_DATE"});
    QCOMPARE(check.emptyDates("#BIRTH_DATE"), QStringList{"#BIRTH_DATE"});
    QCOMPARE(check.expanded("#BIRTH_DATE"), QString("0  0"));
}

void tst_TagCheck::emptyTags()
{
    const TagCheck check({{"#LNAME", "Иванов"},
                          {"#MNAME", ""},
                          {"#DOC_GROUP", " ^\\n "},
                          {"#DUPLICATE", "0"},
                          {"#ISSUE_DATE", ""}},
                         {{"#NOTE", valueEntry(FieldType::text, "")},
                          {"#NO", valueEntry(FieldType::counter, 0)},
                          {"#NOTHING", QJsonObject{{"type", 0}}}});
    QCOMPARE(check.emptyTags("#LNAME #NO"), QStringList());
    QCOMPARE(check.emptyTags("#MNAME, #MNAME и #NOTE"), QStringList({"#MNAME", "#NOTE"}));
    QCOMPARE(check.emptyTags("#NOTHING"), QStringList{"#NOTHING"});
    // Blanks, and signs that are taken out or end a line, leave no ink.
    QCOMPARE(check.emptyTags("#DOC_GROUP"), QStringList{"#DOC_GROUP"});
    // What has findings of its own, or says something by nothing.
    QCOMPARE(check.emptyTags("#DUPLICATE #ISSUE_DATE #UNKNOWN"), QStringList());
    QCOMPARE(check.emptyTags("#ORG_REGION #ORG_DIRECTOR_SHORT"),
             QStringList({"#ORG_REGION", "#ORG_DIRECTOR_SHORT"}));
    orgRegion = "Тверская область";
    QCOMPARE(check.emptyTags("#ORG_REGION"), QStringList());
    orgRegion.clear();
}

void tst_TagCheck::droppedTail_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("tail");
    QTest::newRow("comma") << "#LNAME,"
                           << ",";
    QTest::newRow("comma and blank") << "#LNAME, "
                                     << "";
    QTest::newRow("blank") << "#LNAME "
                           << "";
    QTest::newRow("caret") << "#LNAME^"
                           << "";
    QTest::newRow("tag at the end") << "5 #LNAME"
                                    << "";
    QTest::newRow("one character") << "5"
                                   << "5";
    QTest::newRow("two characters") << "15"
                                    << "";
    QTest::newRow("empty") << ""
                           << "";
}

void tst_TagCheck::droppedTail()
{
    QFETCH(QString, text);
    QTEST(checkOf("Иванов").droppedTail(text), "tail");
}

void tst_TagCheck::markup_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("isMarkup");
    QTest::newRow("plain") << "Иванов" << false;
    QTest::newRow("bold") << "<b>Иванов</b>" << true;
    QTest::newRow("entity") << "Иванов &amp; сын" << true;
    QTest::newRow("name in angle brackets") << "<Ромашка>" << true;
    QTest::newRow("line break tag") << "Иванов<br>Иван" << true;
    QTest::newRow("ampersand between blanks") << "Иванов & сын" << false;
    QTest::newRow("ampersand at the end") << "Иванов &" << false;
    QTest::newRow("quotes") << "ООО \"Ромашка\"" << false;
    QTest::newRow("several blanks") << "Иванов &  сын" << false;
}

void tst_TagCheck::markup()
{
    QFETCH(QString, value);
    QFETCH(bool, isMarkup);
    const QVector<TagCheck::Value> found = checkOf(value).valuesReadAsMarkup("Выдан #LNAME, 1");
    QCOMPARE(found.size(), isMarkup ? 1 : 0);
    if (isMarkup) {
        QCOMPARE(found[0].tag, QString("#LNAME"));
        QCOMPARE(found[0].text, value);
    }
}

void tst_TagCheck::markupOfTheRightTag()
{
    const TagCheck check = checkOf("A & B");
    QCOMPARE(tagsOf(check.valuesReadAsMarkup("#LNAME <b>#NOTE</b>, #NOTE")), QStringList{"#NOTE"});
    // Markup of the item's own text is meant.
    QCOMPARE(tagsOf(check.valuesReadAsMarkup("<b>#LNAME</b> &amp; #FNAME")), QStringList());
    // What stands behind the value completes it.
    QCOMPARE(tagsOf(checkOf("A &").valuesReadAsMarkup("#LNAME^amp; B")), QStringList{"#LNAME"});
}

void tst_TagCheck::markupOfOrganisation()
{
    orgNameFormat1 = "<Лицей>";
    QCOMPARE(tagsOf(checkOf("Иванов").valuesReadAsMarkup("#ORG_NAME_1,")),
             QStringList{"#ORG_NAME_1"});
    orgNameFormat1.clear();
}

QTEST_MAIN(tst_TagCheck)
#include "tst_TagCheck.moc"
