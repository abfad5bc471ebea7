#include <QtTest>

#include <QFileDialog>
#include <QJsonDocument>
#include <QLineEdit>
#include <QTimer>

#include "ExchangeFixture.h"
#include "forms/FormDefinitions.h"
#include "store/OrgData.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"

/// Documents on their way into a workbook, read back by another program.
class tst_Export : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_fixture = std::make_unique<ExchangeFixture>(); }
    void cleanup() { m_fixture.reset(); }

    void withoutASelectionNothingHappens();
    void rowsFromTheFirstOneOn();
    void lastRowLimitsNothing();
    void valueOfEachTag();
    void expandedCellsReadTheDocumentAnew();
    void everythingIsText();
    void textsThatLookLikeFormulasAndLinks();
    void charactersThatXmlRefuses();
    void datesByTheStoredFormat();
    void columnsThatNameNoCell();
    void laterItemsOverwrite();
    void cellsFarOutside();

    void templateDocumentsStayOut();
    void lastFilterDecides();
    void orderOfTheQuery();
    void emptyResultEqualsTheTemplate();
    void emptyMappingEqualsTheTemplate();

    void templateKeepsItsLook();
    void templateOfALibraryKeepsAll();
    void templateFileIsNotChanged();
    void whatTheLibraryDrops();
    void anotherSheetActive();
    void withoutAWorkbook_data();
    void withoutAWorkbook();

    void saveDialogAndBox();
    void busyWhileItWorks();
    void cancelKeepsTheDialogOpen();
    void unwritablePathIsNotReported();
    void failedTemplateQuery();
    void failedDocumentQuery();
    void vanishedTemplate();

private:
    QString run(const QString& file = "out.xlsx");
    QString makeTemplate(const QString& kind = "template");

    std::unique_ptr<ExchangeFixture> m_fixture;
};

namespace {

const char* const freshSheet = "Sheet1"; // of a workbook that the library makes itself

QJsonObject sheet(const QJsonObject& book, const char* name)
{
    return book["content"].toObject()[QString(name)].toObject();
}

QByteArray fileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/// Exports by the first template as a user does; returns the path of the new workbook.
QString tst_Export::run(const QString& file)
{
    QString path = m_fixture->app.path(file);
    ModalDriver user;
    user.expectFileDialog(path);
    user.expectMessage("Экспорт данных", "Документ\n" + path + "\nУспешно экспортирован");
    m_fixture->selectTemplate(0);
    m_fixture->click("exportButton");
    if (!user.finished()) {
        qFatal("%s", user.failures().constData());
    }
    return path;
}

QString tst_Export::makeTemplate(const QString& kind)
{
    QString path = m_fixture->app.path("school.xlsx");
    workbooks({kind, path});
    return path;
}

void tst_Export::withoutASelectionNothingHappens()
{
    m_fixture->addDocument({{"LNAME", "Иванов"}});
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}});
    m_fixture->open();
    ModalDriver nothingExpected;
    m_fixture->click("exportButton");
    QVERIFY(m_fixture->dialog().isVisible());
    QVERIFY2(nothingExpected.finished(), nothingExpected.failures());
}

void tst_Export::rowsFromTheFirstOneOn()
{
    for (const char* name : {"Иванов", "Петров", "Сидоров"}) {
        m_fixture->addDocument({{"LNAME", name}, {"FNAME", "Пётр"}});
    }
    m_fixture->addTemplate("Шаблон", {{"B", "#LNAME"}, {"AA", "#FNAME"}}, "", 2);
    ExportDlg& dialog = m_fixture->open();
    const QString path = run();
    QCOMPARE(readCells(path, freshSheet), (QJsonObject{{"B2", "Иванов"},
                                                       {"B3", "Петров"},
                                                       {"B4", "Сидоров"},
                                                       {"AA2", "Пётр"},
                                                       {"AA3", "Пётр"},
                                                       {"AA4", "Пётр"}}));
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QVERIFY(!dialog.isVisible());
}

void tst_Export::lastRowLimitsNothing()
{
    for (int i = 0; i < 5; ++i) {
        m_fixture->addDocument({{"LNAME", QString::number(i)}});
    }
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}}, "", 7, 8);
    m_fixture->open();
    // The first row is the stored one, whatever the widget shows.
    m_fixture->selectTemplate(0);
    m_fixture->child<QLineEdit>("fromRow")->setText("3");
    m_fixture->app.exec("UPDATE export SET FROM_ROW = 6");
    ModalDriver user;
    const QString path = m_fixture->app.path("out.xlsx");
    user.expectFileDialog(path);
    user.expectMessageStarting("Экспорт данных", "Документ\n");
    m_fixture->click("exportButton");
    const QJsonObject cells = readCells(path, freshSheet);
    QCOMPARE(cells.keys(), (QStringList{"A10", "A6", "A7", "A8", "A9"}));
}

void tst_Export::valueOfEachTag()
{
    const QVector<std::pair<QString, QString>> valueOfTag = {
        {"#LNAME", "Иванова"},
        {"#FNAME", "Анна"},
        {"#MNAME", ""},
        {"#BLANK_SER", "0077"},
        {"#BLANK_NO", "0012345"},
        {"#DOC_GROUP", "11 \"А\""},
        {"#ID", "1"},
        {"#DOC_TYPE", "1"},
        {"#BIRTH_DATE", "09.03.2001"},
        {"#ISSUE_DATE", "25.06.2019"},
        {"#EDIT_DATE", ""},
        {"#DUPLICATE", "Дубликат"},
        {"#DOC_NAME", "Аттестат"},
        {"#SPECIALTY", "Сварщик"},
        {"#HOURS", "120"},
        {"#PROTOCOL_DATE", "15.06.2024"},
        {"#GRADES", "#GRADES"}, // a table
        {"#UNKNOWN", "#UNKNOWN"},
        {"#lname", "#lname"},
        {"#LNAME#FNAME", "#LNAME#FNAME"},
        {"#LNAME^-#FNAME", "Иванова-Анна"},
        {"#BIRTH_DATE ", "9 марта 2001"}, // no fixed tag: in words, the one blank is dropped
        {"#DUPLICATE, #LNAME", "ДУБЛИКАТ, Иванова"},
        {"#ORG_DIRECTOR", "Петров Пётр Петрович"},
        {"просто текст", "просто текст"},
        {"x", ""},
        {"", ""}};
    docTypeNames[1] = "Аттестат";
    orgDirector = "Петров Пётр Петрович";
    const QByteArray content =
        QJsonDocument(
            QJsonObject{{"#SPECIALTY", QJsonObject{{"type", 0}, {"value", "Сварщик"}}},
                        {"#HOURS", QJsonObject{{"type", 2}, {"value", 120}}},
                        {"#PROTOCOL_DATE", QJsonObject{{"type", 3}, {"value", "15.06.2024"}}},
                        {"#GRADES", QJsonObject{{"type", 4}, {"value", QJsonArray()}}}})
            .toJson();
    m_fixture->addDocument({{"LNAME", "Иванова"},
                            {"FNAME", "Анна"},
                            {"BLANK_SER", "0077"},
                            {"BLANK_NO", "0012345"},
                            {"DOC_GROUP", "11 \"А\""},
                            {"BIRTH_DATE", "2001-03-09"},
                            {"ISSUE_DATE", "2019-06-25"},
                            {"EDIT_DATE", "25.06.2019"},
                            {"DUPLICATE", 1},
                            {"CONTENT", QString(content)}});
    ExchangeFixture::Mapping mapping;
    QJsonObject expected;
    for (int i = 0; i < valueOfTag.size(); ++i) {
        const QString column = "A" + QString(QChar('A' + i % 26)) + (i < 26 ? "" : "A");
        mapping.append({column, valueOfTag[i].first});
        expected[column + "2"] = valueOfTag[i].second;
    }
    m_fixture->addTemplate("Шаблон", mapping);
    m_fixture->open();
    const QJsonObject cells = readCells(run(), freshSheet);
    for (const auto& item : mapping) {
        const QString cell = item.first + "2";
        // An empty value is an empty text and no empty cell.
        QVERIFY2(cells.contains(cell), qPrintable(item.second));
        QVERIFY2(cells[cell] == expected[cell],
                 qPrintable(item.second + ": " + cells[cell].toString()));
    }
    QCOMPARE(cells.size(), mapping.size());
}

// A view that never gives a value twice shows how often a document is read: once for each cell of
// an expanded tag, and the fixed tags live on the row that the selection of the documents gave.
void tst_Export::expandedCellsReadTheDocumentAnew()
{
    m_fixture->addDocument({});
    m_fixture->addDocument({});
    m_fixture->app.exec("ALTER TABLE docs RENAME TO stored");
    m_fixture->app.exec("CREATE VIEW docs AS SELECT ID, TEMPLATE, DOC_TYPE, CONTENT, "
                        "hex(randomblob(16)) AS LNAME, "
                        "date(abs(random() % 2000000), 'unixepoch', '+' || "
                        "abs(random() % 1000000) || ' days') AS ISSUE_DATE FROM stored");
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"},
                                      {"B", "#LNAME"},
                                      {"C", "#LNAME"},
                                      {"D", "#ISSUE_DATE"},
                                      {"E", "#ISSUE_DATE"}});
    m_fixture->open();
    const QJsonObject cells = readCells(run(), freshSheet);
    QSet<QString> names;
    for (const char* cell : {"A2", "B2", "C2", "A3", "B3", "C3"}) {
        QCOMPARE(cells[cell].toString().size(), 32);
        names << cells[cell].toString();
    }
    QCOMPARE(names.size(), 6);
    QCOMPARE(cells["D2"].toString().size(), 10);
    QCOMPARE(cells["D2"], cells["E2"]);
    QCOMPARE(cells["D3"], cells["E3"]);
    QVERIFY(cells["D2"] != cells["D3"]);
}

void tst_Export::everythingIsText()
{
    m_fixture->addDocument({{"BLANK_NO", "12345"}, {"BIRTH_DATE", "2001-03-09"}});
    m_fixture->addTemplate("Шаблон", {{"A", "#BLANK_NO"},
                                      {"B", "#BIRTH_DATE"},
                                      {"C", "#DUPLICATE"},
                                      {"D", "#MNAME"},
                                      {"E", "#DOC_NAME"}});
    m_fixture->open();
    const QJsonObject book = readWorkbook(run());
    QCOMPARE(sheet(book, freshSheet)["types"].toObject(),
             (QJsonObject{{"A2", "s"}, {"B2", "s"}, {"C2", "s"}, {"D2", "s"}, {"E2", "s"}}));
    QCOMPARE(sheet(book, freshSheet)["cells"].toObject()["C2"], QJsonValue("Оригинал"));
    // The document's form is unknown.
    QCOMPARE(sheet(book, freshSheet)["cells"].toObject()["E2"], QJsonValue(""));
}

void tst_Export::textsThatLookLikeFormulasAndLinks()
{
    m_fixture->addDocument({{"LNAME", "=1+1"}, {"FNAME", "http://school.example/"}});
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}, {"B", "#FNAME"}});
    m_fixture->open();
    const QJsonObject book = readWorkbook(run());
    QCOMPARE(sheet(book, freshSheet)["cells"].toObject(),
             (QJsonObject{{"A2", "=1+1"}, {"B2", "http://school.example/"}}));
    QCOMPARE(sheet(book, freshSheet)["types"].toObject(), (QJsonObject{{"A2", "s"}, {"B2", "s"}}));
    QCOMPARE(sheet(book, freshSheet)["links"].toObject(), QJsonObject());
}

void tst_Export::charactersThatXmlRefuses()
{
    const QString value = QString("до\x0bпосле\x01 <b>&amp;</b> \"'\n строка ");
    m_fixture->addDocument({{"LNAME", value}});
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}});
    m_fixture->open();
    QCOMPARE(readCells(run(), freshSheet)["A2"], QJsonValue("допосле <b>&amp;</b> \"'\n строка "));
}

void tst_Export::datesByTheStoredFormat()
{
    m_fixture->addDocument({{"BIRTH_DATE", "2001-03-09"}, {"ISSUE_DATE", "2001-02-30"}});
    m_fixture->addTemplate("Шаблон",
                           {{"A", "#BIRTH_DATE"}, {"B", "#ISSUE_DATE"}, {"C", "#EDIT_DATE"}}, "", 2,
                           99, "dd.MM.yyyy");
    m_fixture->open();
    m_fixture->selectTemplate(0);
    m_fixture->child<QLineEdit>("dateFormat")->setText("yyyy");
    ModalDriver user;
    const QString path = m_fixture->app.path("out.xlsx");
    user.expectFileDialog(path);
    user.expectMessageStarting("Экспорт данных", "Документ\n");
    m_fixture->click("exportButton");
    QCOMPARE(readCells(path, freshSheet),
             (QJsonObject{{"A2", "09.03.2001"}, {"B2", ""}, {"C2", ""}}));
}

void tst_Export::columnsThatNameNoCell()
{
    m_fixture->addDocument({{"LNAME", "Иванов"}, {"FNAME", "Иван"}});
    m_fixture->addTemplate("Шаблон", {{"B", "#LNAME"},
                                      {"колонка excel", "#FNAME"},
                                      {"", "#FNAME"},
                                      {"c", "#FNAME"},
                                      {"С", "#FNAME"}, // Cyrillic
                                      {"ABCD", "#FNAME"},
                                      {"ZZZ", "#FNAME"}, // a name, but beyond every sheet
                                      {"C-", "#FNAME"}});
    m_fixture->open();
    QCOMPARE(readCells(run(), freshSheet), (QJsonObject{{"B2", "Иванов"}}));
}

void tst_Export::laterItemsOverwrite()
{
    m_fixture->addDocument({{"LNAME", "Иванов"}, {"FNAME", "Иван"}});
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}, {"$A", "#FNAME"}});
    m_fixture->open();
    QCOMPARE(readCells(run(), freshSheet), (QJsonObject{{"A2", "Иван"}}));
}

void tst_Export::cellsFarOutside()
{
    m_fixture->addDocument({{"LNAME", "Иванов"}});
    m_fixture->addDocument({{"LNAME", "Петров"}});
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}, {"XFD", "#LNAME"}}, "", 1048576);
    m_fixture->open();
    // The second document has no row left in the sheet.
    const QByteArray dump = m_fixture->app.dump();
    const QString path = run();
    QVERIFY(QFile::exists(path));
    QCOMPARE(m_fixture->app.dump(), dump);
}

void tst_Export::templateDocumentsStayOut()
{
    m_fixture->addDocument({{"LNAME", "Шаблонов"}, {"TEMPLATE", 1}});
    m_fixture->addDocument({{"LNAME", "Иванов"}});
    m_fixture->addDocument({{"LNAME", "Шаблонов"}, {"TEMPLATE", 2}});
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}});
    m_fixture->open();
    QCOMPARE(readCells(run(), freshSheet), (QJsonObject{{"A2", "Иванов"}}));
}

void tst_Export::lastFilterDecides()
{
    m_fixture->addDocument({{"LNAME", "Иванов"}});
    m_fixture->addDocument({{"LNAME", "Петров"}});
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}});
    m_fixture->open().setDocsQuery(
        "SELECT * FROM docs WHERE docs.TEMPLATE = 0  AND LNAME LIKE 'Пет%'");
    QCOMPARE(readCells(run(), freshSheet), (QJsonObject{{"A2", "Петров"}}));
}

void tst_Export::orderOfTheQuery()
{
    m_fixture->addDocument({{"LNAME", "А"}});
    m_fixture->addDocument({{"LNAME", "Б"}});
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}});
    m_fixture->open().setDocsQuery("SELECT * FROM docs ORDER BY LNAME DESC");
    QCOMPARE(readCells(run(), freshSheet), (QJsonObject{{"A2", "Б"}, {"A3", "А"}}));
}

void tst_Export::emptyResultEqualsTheTemplate()
{
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}}, makeTemplate(), 3);
    m_fixture->open();
    QCOMPARE(readWorkbook(run()), readWorkbook(m_fixture->app.path("school.xlsx")));
}

void tst_Export::emptyMappingEqualsTheTemplate()
{
    m_fixture->addDocument({{"LNAME", "Иванов"}});
    m_fixture->addTemplate("Шаблон", {}, makeTemplate(), 3);
    m_fixture->open();
    QCOMPARE(readWorkbook(run()), readWorkbook(m_fixture->app.path("school.xlsx")));
}

void tst_Export::templateKeepsItsLook()
{
    for (const char* name : {"Иванов", "Петров"}) {
        m_fixture->addDocument({{"LNAME", name}, {"FNAME", "Пётр"}, {"BIRTH_DATE", "2001-03-09"}});
    }
    m_fixture->addTemplate(
        "Шаблон", {{"A", "#LNAME"}, {"B", "#FNAME"}, {"C", "#BIRTH_DATE"}, {"D", "#DUPLICATE"}},
        makeTemplate(), 3);
    m_fixture->open();
    QJsonObject expected = readWorkbook(m_fixture->app.path("school.xlsx"));
    const QJsonObject book = readWorkbook(run());

    // All but the cells that were filled is what the school made.
    QJsonObject content = expected["content"].toObject();
    QJsonObject filled = content["Выдача"].toObject();
    QJsonObject cells = filled["cells"].toObject();
    QJsonObject types = filled["types"].toObject();
    int row = 3;
    for (const char* name : {"Иванов", "Петров"}) {
        const QStringList values = {name, "Пётр", "09.03.2001", "Оригинал"};
        for (int column = 0; column < values.size(); ++column) {
            const QString cell = QChar('A' + column) + QString::number(row);
            cells[cell] = values[column];
            types[cell] = "s";
        }
        ++row;
    }
    filled["cells"] = cells;
    filled["types"] = types;
    content["Выдача"] = filled;
    expected["content"] = content;
    QCOMPARE(book, expected);

    // What that is, lest an empty reading should equal an empty one.
    QCOMPARE(sheet(book, "Выдача")["widths"].toObject(),
             (QJsonObject{{"A", 31.5}, {"B", 22}, {"C", 14}, {"D", 9.25}}));
    QVERIFY(sheet(book, "Выдача")["italic"].toArray().contains("A3"));
    QVERIFY(sheet(book, "Выдача")["borders"].toArray().contains("D4"));
    QCOMPARE(sheet(book, "Выдача")["merged"].toArray(), QJsonArray{"A1:D1"});
    QCOMPARE(sheet(book, "Выдача")["heights"].toObject(), (QJsonObject{{"1", 40}}));
    QCOMPARE(sheet(book, "Выдача")["conditional"].toArray(), QJsonArray{"D3:D99"});
    QCOMPARE(sheet(book, "Выдача")["cells"].toObject()["F1"], QJsonValue("=COUNTA(A3:A999)"));
    QCOMPARE(sheet(book, "Справка")["cells"].toObject(),
             (QJsonObject{{"B2", "Не менять"}, {"B3", 1234.5}}));
    QCOMPARE(sheet(book, "Справка")["formats"].toObject(), (QJsonObject{{"B3", "#,##0.00"}}));
    QCOMPARE(book["hidden"].toArray(), QJsonArray{"Служебный"});
}

void tst_Export::templateOfALibraryKeepsAll()
{
    m_fixture->addTemplate("Шаблон", {}, makeTemplate("rich"), 3);
    m_fixture->open();
    const QJsonObject before = readWorkbook(m_fixture->app.path("school.xlsx"));
    const QJsonObject after = readWorkbook(run());
    for (const QString& key : before.keys()) {
        if (key != "content") {
            QVERIFY2(after[key] == before[key], qPrintable(key));
        }
    }
    for (const char* name : {"Выдача", "Скрытый"}) {
        const QJsonObject expected = sheet(before, name);
        const QJsonObject found = sheet(after, name);
        for (const QString& key : expected.keys()) {
            QVERIFY2(found[key] == expected[key],
                     QJsonDocument(QJsonArray{name, key, expected[key], found[key]}).toJson());
        }
    }
    // What that is, lest an empty reading should equal an empty one.
    QCOMPARE(after["names"].toArray().size(), 2);
    const QJsonObject shown = sheet(after, "Выдача");
    QCOMPARE(shown["images"].toArray().size(), 1);
    QCOMPARE(shown["charts"].toArray()[0].toArray()[1].toArray(), QJsonArray{"'Выдача'!$D$1:$D$6"});
    QCOMPARE(shown["links"].toObject()["C5"], QJsonValue("https://school.example/?a=1&b=2"));
    QCOMPARE(shown["cells"].toObject()["C4"], QJsonValue("=SUM(D1:D6)"));
    QCOMPARE(shown["heights"].toObject()["9"], QJsonValue(12.5));
    QCOMPARE(shown["fonts"].toObject()["B4"].toArray()[1], QJsonValue(13));
}

void tst_Export::templateFileIsNotChanged()
{
    m_fixture->addDocument({{"LNAME", "Иванов"}});
    const QString path = makeTemplate();
    const QByteArray before = fileBytes(path);
    QVERIFY(!before.isEmpty());
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}}, path, 3);
    m_fixture->open();
    run();
    QCOMPARE(fileBytes(path), before);
}

void tst_Export::whatTheLibraryDrops()
{
    // Not wanted, but known: a user is told of it, and a library that learns it is noticed here.
    m_fixture->addTemplate("Шаблон", {}, makeTemplate("extras"), 3);
    m_fixture->open();
    const QJsonObject before = sheet(readWorkbook(m_fixture->app.path("school.xlsx")), "Выдача");
    QCOMPARE(before["freeze"], QJsonValue("A3"));
    const QJsonObject after = sheet(readWorkbook(run()), "Выдача");
    QJsonObject expected = before;
    expected["freeze"] = QJsonValue::Null;
    expected["filter"] = QJsonValue::Null;
    expected["orientation"] = QJsonValue::Null;
    expected["comments"] = QJsonArray();
    QCOMPARE(after, expected);
}

void tst_Export::anotherSheetActive()
{
    m_fixture->addDocument({{"LNAME", "Иванов"}});
    const QString path = m_fixture->app.path("school.xlsx");
    writeWorkbook(
        path, {{"active", 1},
               {"sheets", QJsonArray{QJsonObject{{"name", "Первый"}, {"cells", QJsonObject()}},
                                     QJsonObject{{"name", "Второй"}, {"cells", QJsonObject()}}}}});
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}}, path);
    m_fixture->open();
    const QJsonObject book = readWorkbook(run());
    // The library takes the first sheet, and no second one may stay selected beside it.
    QCOMPARE(sheet(book, "Первый")["cells"].toObject(), (QJsonObject{{"A2", "Иванов"}}));
    QCOMPARE(sheet(book, "Второй")["cells"].toObject(), QJsonObject());
    QCOMPARE(book["active"], QJsonValue("Первый"));
    QCOMPARE(book["selected"].toArray(), QJsonArray{"Первый"});
}

void tst_Export::withoutAWorkbook_data()
{
    QTest::addColumn<QString>("workbook");
    QTest::newRow("none") << "";
    QTest::newRow("missing") << "/nowhere/book.xlsx";
    QTest::newRow("folder") << "/";
}

void tst_Export::withoutAWorkbook()
{
    QFETCH(QString, workbook);
    m_fixture->addDocument({{"LNAME", "Иванов"}});
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}}, workbook);
    m_fixture->open();
    QCOMPARE(readCells(run(), freshSheet), (QJsonObject{{"A2", "Иванов"}}));
}

void tst_Export::saveDialogAndBox()
{
    m_fixture->addTemplate("Книга выдачи", {});
    QDir(m_fixture->app.path()).mkdir("exports");
    m_fixture->open();
    m_fixture->selectTemplate(0);
    const QString path = m_fixture->app.path("exports/out.xlsx");
    ModalDriver user;
    user.expect<QFileDialog>([&](QFileDialog* dialog) {
        QCOMPARE(dialog->windowTitle(), QString("Сохранить как"));
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
        QCOMPARE(dialog->nameFilters(), QStringList{"Excel Files (*.xlsx *.xls)"});
        QCOMPARE(dialog->directory().path(), m_fixture->app.path("exports"));
        auto* name = dialog->findChild<QLineEdit*>("fileNameEdit");
        QVERIFY2(QRegularExpression("^Книга выдачи_\\d\\d-\\d\\d-\\d\\d \\d\\d-\\d\\d\\.xlsx$")
                     .match(name->text())
                     .hasMatch(),
                 qPrintable(name->text()));
        const QString stamp = name->text().mid(13, 14);
        const QDateTime proposed = QDateTime::fromString(stamp, "dd-MM-yy hh-mm").addYears(100);
        QVERIFY(qAbs(proposed.secsTo(QDateTime::currentDateTime())) < 120);
        name->setText(path);
        static_cast<QDialog*>(dialog)->accept();
    });
    user.expectMessage("Экспорт данных", "Документ\n" + path + "\nУспешно экспортирован", "OK");
    m_fixture->click("exportButton");
    QVERIFY2(user.finished(), user.failures());
    QVERIFY(QFile::exists(path));
}

void tst_Export::busyWhileItWorks()
{
    m_fixture->addTemplate("Шаблон", {});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    QVector<Qt::CursorShape> shapes;
    // The pending events are handled once before the work begins.
    QTimer::singleShot(0, [&] { shapes << m_fixture->dialog().cursor().shape(); });
    ModalDriver user;
    user.expect<QFileDialog>([&](QFileDialog* dialog) {
        shapes << m_fixture->dialog().cursor().shape();
        static_cast<QDialog*>(dialog)->reject();
    });
    m_fixture->dialog().exportClicked();
    QCOMPARE(shapes, (QVector<Qt::CursorShape>{Qt::BusyCursor, Qt::ArrowCursor}));
}

void tst_Export::cancelKeepsTheDialogOpen()
{
    m_fixture->addDocument({{"LNAME", "Иванов"}});
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}}, makeTemplate(), 3);
    m_fixture->open();
    m_fixture->selectTemplate(0);
    ModalDriver user;
    user.expectFileDialogCancelled();
    m_fixture->click("exportButton");
    QVERIFY2(user.finished(), user.failures());
    QVERIFY(m_fixture->dialog().isVisible());
    QCOMPARE(QDir(m_fixture->app.path()).entryList({"*.xlsx"}), QStringList{"school.xlsx"});
    // The next attempt knows nothing of the first.
    m_fixture->app.exec("UPDATE export SET FROM_ROW = 4");
    const QJsonObject cells = readCells(run(), "Выдача");
    QVERIFY(!cells.contains("A3"));
    QCOMPARE(cells["A4"], QJsonValue("Иванов"));
}

void tst_Export::unwritablePathIsNotReported()
{
    m_fixture->addDocument({{"LNAME", "Иванов"}});
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}});
    m_fixture->open();
    const QString path = run("no/such/folder/out.xlsx");
    QVERIFY(!QFile::exists(path));
    QCOMPARE(m_fixture->dialog().result(), int(QDialog::Accepted));
}

void tst_Export::failedTemplateQuery()
{
    m_fixture->addTemplate("Шаблон", {});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    m_fixture->app.exec("ALTER TABLE export RENAME TO elsewhere");
    LogCatcher log;
    ModalDriver nothingExpected;
    m_fixture->click("exportButton");
    QVERIFY(log.contains("Unable to select export query"));
    QVERIFY(log.contains("no such table"));
    QVERIFY(m_fixture->dialog().isVisible());
}

void tst_Export::failedDocumentQuery()
{
    m_fixture->addTemplate("Шаблон", {});
    m_fixture->open().setDocsQuery("SELECT * FROM docs WHERE LNAME LIKE 'О'Нил'");
    m_fixture->selectTemplate(0);
    LogCatcher log;
    ModalDriver nothingExpected;
    m_fixture->click("exportButton");
    QVERIFY(log.contains("Unable to select from docs query"));
    QVERIFY(log.contains("syntax error"));
    QVERIFY(log.contains("WHERE LNAME LIKE 'О'Нил'"));
    QVERIFY(m_fixture->dialog().isVisible());
}

void tst_Export::vanishedTemplate()
{
    m_fixture->addDocument({{"LNAME", "Иванов"}});
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    m_fixture->app.exec("DELETE FROM export");
    ModalDriver user;
    user.expectFileDialogCancelled();
    m_fixture->click("exportButton");
    QVERIFY2(user.finished(), user.failures());
}

QTEST_MAIN(tst_Export)
#include "tst_Export.moc"
