#include <QtTest>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include "app/AppStyle.h"
#include "store/ChangeOrgDataDlg.h"
#include "store/OrgData.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"
#include "support/Process.h"
#include "support/TempApplication.h"

namespace {

QPlainTextEdit* textOf(const QDialog& dialog, const QString& name)
{
    return dialog.findChild<QPlainTextEdit*>(name);
}

QLineEdit* lineOf(const QDialog& dialog, const QString& name)
{
    return dialog.findChild<QLineEdit*>(name);
}

void press(const QDialog& dialog, const QString& name)
{
    QTest::mouseClick(dialog.findChild<QPushButton*>(name), Qt::LeftButton);
}

void setGlobals(const QStringList& values)
{
    orgNameFormat1 = values.at(0);
    orgNameFormat2 = values.at(1);
    orgRegion = values.at(2);
    orgLocality = values.at(3);
    orgDirector = values.at(4);
}

QStringList globals()
{
    return {orgNameFormat1, orgNameFormat2, orgRegion, orgLocality, orgDirector};
}

QStringList shown(const QDialog& dialog)
{
    return {textOf(dialog, "textEditOrgName1")->toPlainText(),
            textOf(dialog, "textEditOrgName2")->toPlainText(),
            lineOf(dialog, "lineEditOrgRegion")->text(),
            lineOf(dialog, "lineEditOrgLocality")->text(),
            lineOf(dialog, "lineEditOrgDirector")->text()};
}

void writeFile(const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(orgDataPath).path());
    QFile file(orgDataPath);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray readFile()
{
    QFile file(orgDataPath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/// The dialog that changes the organisation's data.
class tst_ChangeOrgDataDlg : public QObject
{
    Q_OBJECT

private slots:
    void looks();
    void captionsAndLimits();
    void buttons();

    void showsTheFile();
    void withoutAFileShowsTheGlobals();
    void brokenFileEmptiesTheFields();

    void savesWhatWasTyped();
    void writtenFileAsAnotherProgramReadsIt();
    void savesAfterTheLoopHasEnded();
    void namesOnOneLine();
    void blanksOfTheLinesStay();
    void otherKeysAreDropped();
    void brokenFileIsReplaced();
    void closingChangesNothing_data();
    void closingChangesNothing();
    void unwritableFileIsPassedOver();
    void longLinesAreCutAtTheLimit();
};

void tst_ChangeOrgDataDlg::looks()
{
    TempApplication app(TempApplication::Database::None);
    baseStyleSheet = "QLabel { color: #010203; }";
    const ChangeOrgDataDlg dialog;
    baseStyleSheet.clear();
    QVERIFY(dialog.styleSheet().startsWith("QLabel { color: #010203; }\r\n"));
    QCOMPARE(dialog.windowTitle(), QString("Смена данных"));
    QCOMPARE(dialog.size(), QSize(745, 422));
    QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
    QCOMPARE(dialog.findChild<QWidget*>("widgetOrgDataInput")->minimumWidth(), 250);
}

void tst_ChangeOrgDataDlg::captionsAndLimits()
{
    TempApplication app(TempApplication::Database::None);
    ChangeOrgDataDlg dialog;
    dialog.show();
    QMap<QString, QString> captions; // by the name of the labelled editor
    const auto labels = dialog.findChildren<QLabel*>();
    for (const QLabel* label : labels) {
        QVERIFY(label->buddy());
        captions[label->buddy()->objectName()] = label->text();
        QVERIFY(label->mapTo(&dialog, QPoint()).y() < label->buddy()->mapTo(&dialog, QPoint()).y());
    }
    const QMap<QString, QString> expected = {
        {"textEditOrgName1", "Название организации в винительном падеже (кого/что?) "},
        {"textEditOrgName2", "Название организации в предложном падеже (о ком/о чём?) "},
        {"lineEditOrgLocality", "Населённый пункт "},
        {"lineEditOrgRegion", "Регион "},
        {"lineEditOrgDirector", "ФИО Руководителя организации (Фамилия Имя Отчество полностью) "}};
    QCOMPARE(captions, expected);

    QCOMPARE(textOf(dialog, "textEditOrgName1")->toolTip(),
             QString("Полное официальное наименование организации в соответствии с уставом (в "
                     "винительном падеже)"));
    QCOMPARE(textOf(dialog, "textEditOrgName2")->toolTip(),
             QString("Полное официальное наименование организации в соответствии с уставом (в "
                     "предложном падеже)"));
    const QString place =
        "Наименование места нахождения организации (поселок (село, деревня)), район, область "
        "(республика, край).\nЗаполняется в случае, если полное наименование организации не "
        "содержит информацию о местонахождении.";
    QCOMPARE(lineOf(dialog, "lineEditOrgLocality")->toolTip(), place);
    QCOMPARE(lineOf(dialog, "lineEditOrgRegion")->toolTip(), place);
    QCOMPARE(lineOf(dialog, "lineEditOrgDirector")->toolTip(),
             QString("Руководитель организации. (Формат: Фамилия Имя Отчество)"));
    for (const char* name : {"lineEditOrgLocality", "lineEditOrgRegion", "lineEditOrgDirector"}) {
        QCOMPARE(lineOf(dialog, name)->maxLength(), 500);
        QCOMPARE(lineOf(dialog, name)->minimumHeight(), 30);
    }
    QCOMPARE(textOf(dialog, "textEditOrgName1")->height(), 50);
    QCOMPARE(textOf(dialog, "textEditOrgName2")->height(), 50);
    const QRect region = lineOf(dialog, "lineEditOrgRegion")->geometry();
    const QRect locality = lineOf(dialog, "lineEditOrgLocality")->geometry();
    QVERIFY(region.right() < locality.left());
    QCOMPARE(region.top(), locality.top());
}

void tst_ChangeOrgDataDlg::buttons()
{
    TempApplication app(TempApplication::Database::None);
    const ChangeOrgDataDlg dialog;
    const auto* save = dialog.findChild<QPushButton*>("saveButton");
    const auto* close = dialog.findChild<QPushButton*>("closeButton");
    QCOMPARE(save->text(), QString("СОХРАНИТЬ"));
    QCOMPARE(save->property("btnRole1").toString(), QString("accept"));
    QCOMPARE(close->text(), QString("ЗАКРЫТЬ"));
    QCOMPARE(close->property("btnRole1").toString(), QString("cancel"));
}

void tst_ChangeOrgDataDlg::showsTheFile()
{
    TempApplication app(TempApplication::Database::None);
    setGlobals({"old", "old", "old", "old", "old"});
    writeFile(R"({"nameFormat1": "школу", "nameFormat2": "школе", "region": "Р", "director": 5})");
    const ChangeOrgDataDlg dialog;
    QCOMPARE(shown(dialog), QStringList({"школу", "школе", "Р", "", ""}));
    QCOMPARE(globals(), QStringList({"школу", "школе", "Р", "", ""}));
}

void tst_ChangeOrgDataDlg::withoutAFileShowsTheGlobals()
{
    TempApplication app(TempApplication::Database::None);
    const QStringList values = {"школу", "школе", "Р", "Н", "Д"};
    setGlobals(values);
    const ChangeOrgDataDlg dialog;
    QCOMPARE(shown(dialog), values);
}

void tst_ChangeOrgDataDlg::brokenFileEmptiesTheFields()
{
    TempApplication app(TempApplication::Database::None);
    setGlobals({"old", "old", "old", "old", "old"});
    writeFile("{ broken");
    const ChangeOrgDataDlg dialog;
    QCOMPARE(shown(dialog), QStringList({"", "", "", "", ""}));
}

void tst_ChangeOrgDataDlg::savesWhatWasTyped()
{
    TempApplication app(TempApplication::Database::None);
    ChangeOrgDataDlg dialog;
    ModalDriver driver;
    driver.expect<ChangeOrgDataDlg>([](ChangeOrgDataDlg* open) {
        QTest::keyClicks(textOf(*open, "textEditOrgName1"), "school A");
        QTest::keyClicks(textOf(*open, "textEditOrgName2"), "school B");
        QTest::keyClicks(lineOf(*open, "lineEditOrgRegion"), "region");
        QTest::keyClicks(lineOf(*open, "lineEditOrgLocality"), "town");
        QTest::keyClicks(lineOf(*open, "lineEditOrgDirector"), "Ivanov I I");
        press(*open, "saveButton");
    });
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QVERIFY2(driver.finished(), driver.failures());
    const QStringList typed = {"school A", "school B", "region", "town", "Ivanov I I"};
    QCOMPARE(globals(), typed);
    setGlobals({"", "", "", "", ""});
    QVERIFY(loadOrgData());
    QCOMPARE(globals(), typed);
}

void tst_ChangeOrgDataDlg::writtenFileAsAnotherProgramReadsIt()
{
    TempApplication app(TempApplication::Database::None);
    setGlobals({"школу «Ёлка»", "школе\"\\", "Р", "Н", "Д'Арк"});
    QVERIFY(!QFileInfo::exists(QFileInfo(orgDataPath).path())); // the folder is made, too
    ChangeOrgDataDlg dialog;
    dialog.show();
    press(dialog, "saveButton");
    const ProcessResult result = runPython(R"(
import json, sys
text = open(sys.argv[1], encoding="utf-8").read()
pairs = json.loads(text, object_pairs_hook=list)
assert [key for key, value in pairs] == [
    "director", "locality", "nameFormat1", "nameFormat2", "region"], pairs
assert dict(pairs) == {"director": "Д'Арк", "locality": "Н", "nameFormat1": "школу «Ёлка»",
                       "nameFormat2": "школе\"\\", "region": "Р"}, pairs
assert text.startswith('{\n    "director"'), text
)",
                                           {orgDataPath});
    QVERIFY2(result.exitCode == 0, result.err);
}

void tst_ChangeOrgDataDlg::savesAfterTheLoopHasEnded()
{
    TempApplication app(TempApplication::Database::None);
    ChangeOrgDataDlg dialog;
    bool savedAtAccept = true;
    connect(&dialog, &QDialog::accepted, this, [&] { savedAtAccept = QFile::exists(orgDataPath); });
    dialog.show();
    press(dialog, "saveButton");
    QVERIFY(!savedAtAccept);
    QVERIFY(QFile::exists(orgDataPath));
}

void tst_ChangeOrgDataDlg::namesOnOneLine()
{
    TempApplication app(TempApplication::Database::None);
    ChangeOrgDataDlg dialog;
    dialog.show();
    textOf(dialog, "textEditOrgName1")->setPlainText("  школу \n\n №\t1  города  ");
    textOf(dialog, "textEditOrgName2")->setPlainText("\n");
    press(dialog, "saveButton");
    loadOrgData();
    QCOMPARE(orgNameFormat1, QString("школу № 1 города"));
    QCOMPARE(orgNameFormat2, QString());
}

void tst_ChangeOrgDataDlg::blanksOfTheLinesStay()
{
    TempApplication app(TempApplication::Database::None);
    ChangeOrgDataDlg dialog;
    dialog.show();
    for (const char* name : {"lineEditOrgLocality", "lineEditOrgRegion", "lineEditOrgDirector"}) {
        QTest::keyClicks(lineOf(dialog, name), "  a  b ");
    }
    press(dialog, "saveButton");
    loadOrgData();
    QCOMPARE(orgRegion, QString("  a  b "));
    QCOMPARE(orgLocality, QString("  a  b "));
    QCOMPARE(orgDirector, QString("  a  b "));
}

void tst_ChangeOrgDataDlg::otherKeysAreDropped()
{
    TempApplication app(TempApplication::Database::None);
    writeFile(R"({"region": "Р", "phone": "123"})");
    ChangeOrgDataDlg dialog;
    dialog.show();
    press(dialog, "saveButton");
    const QJsonObject written = QJsonDocument::fromJson(readFile()).object();
    QCOMPARE(written.keys(),
             QStringList({"director", "locality", "nameFormat1", "nameFormat2", "region"}));
    QCOMPARE(written["region"], QJsonValue("Р"));
}

void tst_ChangeOrgDataDlg::brokenFileIsReplaced()
{
    TempApplication app(TempApplication::Database::None);
    writeFile("{ broken, and longer than what replaces it " + QByteArray(2000, 'x'));
    ChangeOrgDataDlg dialog;
    dialog.show();
    QTest::keyClicks(lineOf(dialog, "lineEditOrgRegion"), "r");
    press(dialog, "saveButton");
    QCOMPARE(QJsonDocument::fromJson(readFile()).object()["region"], QJsonValue("r"));
}

void tst_ChangeOrgDataDlg::closingChangesNothing_data()
{
    QTest::addColumn<bool>("byButton");
    QTest::newRow("button") << true;
    QTest::newRow("Escape") << false;
}

void tst_ChangeOrgDataDlg::closingChangesNothing()
{
    QFETCH(bool, byButton);
    TempApplication app(TempApplication::Database::None);
    const QByteArray bytes = R"({"region": "Р", "phone": "123"})";
    writeFile(bytes);
    ChangeOrgDataDlg dialog;
    const QStringList before = globals();
    dialog.show();
    QTest::keyClicks(lineOf(dialog, "lineEditOrgRegion"), "typed");
    if (byButton) {
        press(dialog, "closeButton");
    } else {
        QTest::keyClick(&dialog, Qt::Key_Escape);
    }
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(globals(), before);
    QCOMPARE(readFile(), bytes);
}

void tst_ChangeOrgDataDlg::unwritableFileIsPassedOver()
{
    TempApplication app(TempApplication::Database::None);
    QVERIFY(QDir().mkpath(orgDataPath)); // a folder stands where the file would
    ChangeOrgDataDlg dialog;
    dialog.show();
    QTest::keyClicks(lineOf(dialog, "lineEditOrgRegion"), "r");
    ModalDriver driver; // expects no message
    LogCatcher log;
    press(dialog, "saveButton");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(log.messages(), QStringList());
    QVERIFY(QFileInfo(orgDataPath).isDir());
    QCOMPARE(orgRegion, QString("r"));
}

void tst_ChangeOrgDataDlg::longLinesAreCutAtTheLimit()
{
    TempApplication app(TempApplication::Database::None);
    ChangeOrgDataDlg dialog;
    dialog.show();
    lineOf(dialog, "lineEditOrgRegion")->setText(QString(499, 'a'));
    QTest::keyClicks(lineOf(dialog, "lineEditOrgRegion"), "bcd");
    press(dialog, "saveButton");
    QCOMPARE(orgRegion, QString(499, 'a') + "b");
}

QTEST_MAIN(tst_ChangeOrgDataDlg)
#include "tst_ChangeOrgDataDlg.moc"
