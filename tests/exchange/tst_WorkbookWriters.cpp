#include <QtTest>

#include <QComboBox>
#include <QDir>
#include <QJsonDocument>
#include <QProcess>
#include <QStandardPaths>

#include "ExchangeFixture.h"
#include "forms/FormDefinitions.h"
#include "support/ModalDriver.h"

/// Workbooks of the programs and libraries that registrars' files come from: each gives the same
/// documents, and each can be filled without a loss of its heading. What is exported can be read.
class tst_WorkbookWriters : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_fixture.reset(); }

    void imported_data() { addFiles(); }
    void imported();
    void filled_data() { addFiles(); }
    void filled();
    void exportOpensElsewhere();

private:
    static void addFiles();
    static QString file() { return QDir(m_folder).filePath(QTest::currentDataTag()); }
    QString runExport();

    static constexpr const char* m_folder = ZELVORA_EXCHANGE_SCRIPTS "/writers";
    std::unique_ptr<ExchangeFixture> m_fixture;
};

namespace {

const QStringList headings = {"Дубликат", "Фамилия", "Имя", "Дата рождения", "Часы"};

ExchangeFixture::Mapping mapping()
{
    return {{"A", "#DUPLICATE"},
            {"B", "#LNAME"},
            {"C", "#FNAME"},
            {"D", "#BIRTH_DATE"},
            {"E", "#HOURS"}};
}

QJsonObject hoursField()
{
    return {{"tag", "#HOURS"}, {"name", "Часы"}, {"type", FieldType::counter}};
}

} // namespace

void tst_WorkbookWriters::init()
{
    m_fixture = std::make_unique<ExchangeFixture>();
    m_fixture->addForm("Удостоверение", {hoursField()});
}

void tst_WorkbookWriters::addFiles()
{
    QTest::addColumn<int>("unused");
    const QStringList files = QDir(m_folder).entryList({"*.xlsx"});
    QVERIFY(files.size() >= 20);
    for (const QString& name : files) {
        QTest::newRow(qPrintable(name)) << 0;
    }
}

void tst_WorkbookWriters::imported()
{
    m_fixture->addTemplate("Шаблон", mapping(), "", 3, 4, "yyyy-MM-dd");
    m_fixture->open();
    m_fixture->selectTemplate(0);
    m_fixture->child<QComboBox>("formCombo")->setCurrentIndex(0);
    ModalDriver user;
    user.expectFileDialog(file());
    m_fixture->click("importButton");
    QVERIFY2(user.finished(), user.failures());

    const auto column = [this](const char* name) {
        return m_fixture->app
            .value(QString("SELECT group_concat(%1, '|') FROM docs ORDER BY ID").arg(name))
            .toString();
    };
    QCOMPARE(column("DUPLICATE"), QString("0|1"));
    QCOMPARE(column("LNAME"), QString("Иванов|Петрова-Водкина"));
    QCOMPARE(column("FNAME"), QString("Анна|Ян & <Ко>"));
    QCOMPARE(column("BIRTH_DATE"), QString("2001-03-09|1999-12-31"));
    const QVector<int> hours = {144, 72};
    for (int i = 0; i < hours.size(); ++i) {
        const QByteArray content =
            m_fixture->app.value(QString("SELECT CONTENT FROM docs WHERE ID = %1").arg(i + 1))
                .toByteArray();
        QCOMPARE(QJsonDocument::fromJson(content)["#HOURS"]["value"].toInt(), hours[i]);
    }
}

/// Exports by the first template as a user does; returns the path of the new workbook.
QString tst_WorkbookWriters::runExport()
{
    m_fixture->open();
    m_fixture->selectTemplate(0);
    QString path = m_fixture->app.path("out.xlsx");
    ModalDriver user;
    user.expectFileDialog(path);
    user.expectMessageStarting("Экспорт данных", "Документ\n");
    m_fixture->click("exportButton");
    if (!user.finished()) {
        qFatal("%s", user.failures().constData());
    }
    return path;
}

void tst_WorkbookWriters::filled()
{
    m_fixture->addDocument({{"LNAME", "Сидоров"}, {"FNAME", "Пётр"}, {"BIRTH_DATE", "2004-02-29"}});
    m_fixture->addTemplate("Шаблон", mapping(), file(), 5);
    const QJsonObject sheet =
        readWorkbook(runExport())["content"].toObject()["Документы"].toObject();

    const QJsonObject cells = sheet["cells"].toObject();
    QCOMPARE(cells["A1"], QJsonValue("Книга выдачи"));
    for (int i = 0; i < headings.size(); ++i) {
        QCOMPARE(cells[QChar('A' + i) + QString("2")], QJsonValue(headings[i]));
    }
    QCOMPARE(cells["C4"], QJsonValue("Ян & <Ко>"));
    QCOMPARE(cells["D3"], QJsonValue("2001-03-09 00:00:00")); // still a date
    QCOMPARE(cells["E4"], QJsonValue(72));
    QCOMPARE(cells["B5"], QJsonValue("Сидоров"));
    QCOMPARE(cells["D5"], QJsonValue("29.02.2004"));

    if (!QByteArray(QTest::currentDataTag()).contains("constant_memory")) {
        QCOMPARE(sheet["merged"].toArray(), QJsonArray{"A1:E1"});
    }
    const double width = sheet["widths"].toObject()["B"].toDouble();
    QVERIFY2(width >= 30 && width < 31, qPrintable(QString::number(width)));
    QCOMPARE(sheet["heights"].toObject()["1"], QJsonValue(30));
    QCOMPARE(sheet["formats"].toObject()["D3"].toString().toLower().remove('\\'),
             QString("dd.mm.yyyy"));
    if (!QByteArray(QTest::currentDataTag()).startsWith("sheetjs")) {
        QVERIFY(sheet["bold"].toArray().contains("A1"));
        QVERIFY(!sheet["bold"].toArray().contains("B3"));
        QCOMPARE(sheet["fonts"].toObject()["A1"].toArray()[0], QJsonValue("Arial"));
        QCOMPARE(sheet["fonts"].toObject()["A1"].toArray()[1], QJsonValue(14));
        QCOMPARE(sheet["fills"].toObject()["B2"], QJsonValue("FFDDDDDD"));
    }
}

void tst_WorkbookWriters::exportOpensElsewhere()
{
    const QString office = QStandardPaths::findExecutable("soffice");
    if (office.isEmpty()) {
        QSKIP("LibreOffice is not installed");
    }
    m_fixture->addDocument(
        {{"LNAME", "=1+1"}, {"FNAME", "Ян & <Ко>"}, {"BIRTH_DATE", "2004-02-29"}});
    m_fixture->addTemplate("Шаблон", mapping(), QDir(m_folder).filePath("libreoffice.xlsx"), 5);
    const QString path = runExport();
    const QJsonObject ours =
        readWorkbook(path)["content"].toObject()["Документы"].toObject()["cells"].toObject();
    QCOMPARE(ours["B5"], QJsonValue("=1+1"));

    const QString target = m_fixture->app.path("converted");
    QProcess process;
    process.start(office,
                  {"--headless", "-env:UserInstallation=file://" + m_fixture->app.path("profile"),
                   "--convert-to", "csv:Text - txt - csv (StarCalc):9,34,76", "--outdir", target,
                   path});
    QVERIFY2(process.waitForFinished(100000), "LibreOffice does not end");
    QFile csv(target + "/out.csv");
    QVERIFY2(csv.open(QIODevice::ReadOnly), process.readAllStandardError().constData());
    const QStringList lines = QString::fromUtf8(csv.readAll()).split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 5);
    QCOMPARE(lines[0].split('\t').first(), QString("Книга выдачи"));
    QCOMPARE(lines[1].split('\t'), headings);
    QCOMPARE(lines[3].split('\t'),
             (QStringList{"Дубликат", "Петрова-Водкина", "Ян & <Ко>", "31.12.1999", "72"}));
    QCOMPARE(lines[4].split('\t'),
             (QStringList{"Оригинал", "=1+1", "Ян & <Ко>", "29.02.2004", "#HOURS"}));
}

QTEST_MAIN(tst_WorkbookWriters)
#include "tst_WorkbookWriters.moc"
