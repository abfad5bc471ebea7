#include <QtTest>

#include <QAction>
#include <QComboBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QToolButton>

#include <memory>

#include "DeskFixture.h"
#include "Visitor.h"
#include "app/AppStyle.h"
#include "documents/DocDialog.h"
#include "documents/DocumentFixture.h"
#include "documents/MainWindow.h"
#include "forms/FormDefinitions.h"
#include "store/DataBase.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"
#include "support/PdfMeasure.h"
#include "support/PrintFixture.h"
#include "support/Process.h"

namespace {

const QString noBlank = "Ошибка: Для документа нет доступных бланков";

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no such file)");
}

void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QStringList rowTexts(const QTableWidget* table, int row)
{
    QStringList texts;
    for (int column = 0; column < table->columnCount(); ++column) {
        texts << table->item(row, column)->text();
    }
    return texts;
}

/// A text entry of five megabytes and a string of as much: ten in all.
QJsonObject hugeContent()
{
    const QString line = QString("слово ").repeated(40) + "\n";
    return {{"#LONG", valueEntry(FieldType::text, line.repeated(13000))},
            {"#STR", valueEntry(FieldType::string, QString("x").repeated(5 << 20))}};
}

} // namespace

/// Rows and files that no dialog would write: the application starts on them, shows what there is
/// to show, and whoever looks around loses nothing.
class tst_BadInput : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void noUsableDatabase_data();
    void noUsableDatabase();
    void rowsOfNulls();
    void savingARowOfNullsWritesNothing();
    void badContent_data();
    void badContent();
    void hugeContentStaysUsable();
    void backgroundThatIsNoPicture();
    void blankOfNoWidth();
    void documentOfADeletedForm();
    void programStartsOnBadRows();

private:
    void open();
    QTableWidget* list() const { return named<QTableWidget>(m_window.get(), "docsWidget"); }
    QTableWidget* pane() const { return named<QTableWidget>(m_window.get(), "contentWidget"); }
    QStringList seenAfter(const QString& action);
    void pressAll();
    void lookAround();
    ProcessResult print(int document) const;

    std::unique_ptr<PrintFixture> m_app;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<Visitor> m_visitor; // answers every dialog; gone where a test does so
};

void tst_BadInput::initTestCase()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    loadBaseStyle();
}

void tst_BadInput::init()
{
    m_visitor = std::make_unique<Visitor>();
}

void tst_BadInput::cleanup()
{
    m_visitor.reset();
    m_window.reset();
    m_app.reset();
}

void tst_BadInput::open()
{
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    m_visitor->takeSeen();
}

// Presses one action of the toolbars and looks at all that comes.
QStringList tst_BadInput::seenAfter(const QString& action)
{
    pressToolBar(m_window.get(), action);
    return m_visitor->takeSeen();
}

void tst_BadInput::pressAll()
{
    for (const char* action :
         {"СОЗДАТЬ ДОКУМЕНТ", "СОЗДАТЬ КОПИЮ\nДОКУМЕНТА", "РЕДАКТИРОВАТЬ\nДОКУМЕНТ", "ПЕЧАТЬ",
          "УДАЛИТЬ ДОКУМЕНТ", "ФОРМЫ", "БЛАНКИ", "ЭКСПОРТ\nИМПОРТ", "СОХРАНИТЬ\nВ АРХИВ",
          "ЗАГРУЗИТЬ\nИЗ АРХИВА"})
    {
        pressToolBar(m_window.get(), action);
    }
    named<QAction>(m_window.get(), "menuAction_LocalChangeOrgData")->trigger();
    for (const char* button : {"filterApplyBtn", "filterResetBtn"}) {
        QTest::mouseClick(named<QToolButton>(m_window.get(), button), Qt::LeftButton);
    }
    m_window->grab();
}

// Presses everything on every row and compares the database with what it was.
void tst_BadInput::lookAround()
{
    const QByteArray before = m_app->dump();
    const int rows = list()->rowCount();
    for (int row = 0; row < rows; ++row) {
        list()->setCurrentCell(row, 0);
        pressAll();
        openValues(pane());
        QCOMPARE(list()->rowCount(), rows);
    }
    QVERIFY(m_app->dump() == before);
    m_visitor->takeSeen();
}

ProcessResult tst_BadInput::print(int document) const
{
    return runProcess(QString(ZELVORA_BIN_DIR) + "/tools/zelvora-print",
                      {"--dir", m_app->path(), "--id", QString::number(document), "--background",
                       "--output", m_app->path("page.pdf")});
}

void tst_BadInput::noUsableDatabase_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("no docs.db") << QByteArray();
    QTest::newRow("a text file") << QByteArray("это не база данных\n").repeated(200);
}

void tst_BadInput::noUsableDatabase()
{
    QFETCH(QByteArray, file);
    TempApplication app(TempApplication::Database::None);
    const QString path = app.path("docs.db");
    if (!file.isEmpty()) {
        write(path, file);
    }
    QCOMPARE(dataBase.open(), !file.isEmpty()); // the driver reads a file with the first statement
    open();
    QCOMPARE(list()->rowCount(), 0);
    QCOMPARE(pane()->rowCount(), 0);
    QCOMPARE(named<QComboBox>(m_window.get(), "filterTypeCmb")->count(), 0);

    QCOMPARE(seenAfter("СОЗДАТЬ ДОКУМЕНТ"), QStringList{"NewDocDlg"});
    QCOMPARE(seenAfter("ФОРМЫ"), QStringList{"FormsDlg"});
    QCOMPARE(seenAfter("ЭКСПОРТ\nИМПОРТ"), QStringList{"ExportDlg"});
    for (const char* idle :
         {"СОЗДАТЬ КОПИЮ\nДОКУМЕНТА", "РЕДАКТИРОВАТЬ\nДОКУМЕНТ", "ПЕЧАТЬ", "УДАЛИТЬ ДОКУМЕНТ"})
    {
        QCOMPARE(seenAfter(idle), QStringList());
    }
    pressAll();
    QCOMPARE(QFile::exists(path), !file.isEmpty());
    if (!file.isEmpty()) {
        QCOMPARE(contentOf(path), file);
    }
    QVERIFY(!QFile::exists(path + "-journal"));
    m_window.reset();
}

void tst_BadInput::rowsOfNulls()
{
    m_app = std::make_unique<PrintFixture>();
    for (const char* table : {"forms", "lists", "blanks", "export"}) {
        m_app->exec(QString("INSERT INTO %1 (ID) VALUES (NULL)").arg(table));
    }
    m_app->exec("INSERT INTO docs (TEMPLATE) VALUES (0)");
    m_app->exec("INSERT INTO docs (TEMPLATE) VALUES (1)");
    m_app->exec("INSERT INTO docs (TEMPLATE) VALUES (NULL)"); // neither document nor template
    m_app->exec("INSERT INTO docs (TEMPLATE, DOC_TYPE) VALUES (0, 1)");
    m_app->exec("UPDATE blanks SET FORM_ID = 1");
    open();
    QCOMPARE(list()->rowCount(), 2);
    const QStringList empty = {"  ", "", "", ""};
    QCOMPARE(rowTexts(list(), 0), empty);
    QCOMPARE(rowTexts(list(), 1), empty);
    QCOMPARE(pane()->rowCount(), 4);

    // Without a type no blank can be looked for; with one, its blank of no size and no font opens.
    list()->setCurrentCell(rowOfRecord(list(), 1), 0);
    QCOMPARE(seenAfter("ПЕЧАТЬ"), QStringList{noBlank});
    list()->setCurrentCell(rowOfRecord(list(), 4), 0);
    QCOMPARE(seenAfter("ПЕЧАТЬ"), QStringList{"PrinPreviewDialog"});
    QCOMPARE(seenAfter("РЕДАКТИРОВАТЬ\nДОКУМЕНТ"), QStringList{"DocDialog"});
    QCOMPARE(seenAfter("БЛАНКИ"), QStringList({"BlankDlg", "BlankFormatDialog", "BlankWindow"}));
    QCOMPARE(seenAfter("ФОРМЫ"), QStringList({"FormsDlg", "FormEditDlg"}));
    lookAround();
    QCOMPARE(print(1).exitCode, 2);
    QCOMPARE(print(4).exitCode, 0);
}

void tst_BadInput::savingARowOfNullsWritesNothing()
{
    m_app = std::make_unique<PrintFixture>();
    m_app->exec("INSERT INTO docs (TEMPLATE) VALUES (0)");
    open();
    m_visitor.reset();
    ModalDriver driver;
    const QByteArray before = m_app->dump();
    for (const char* action : {"РЕДАКТИРОВАТЬ\nДОКУМЕНТ", "СОЗДАТЬ КОПИЮ\nДОКУМЕНТА"}) {
        driver.expect<DocDialog>([](DocDialog* dialog) { clickButton(dialog, "saveButton"); });
        pressToolBar(m_window.get(), action);
        QVERIFY2(driver.finished(), driver.failures());
    }
    QCOMPARE(m_app->dump(), before);
}

void tst_BadInput::badContent_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<int>("shown"); // rows of the pane behind the four fixed ones
    QTest::newRow("no JSON") << "это не JSON {" << 0;
    QTest::newRow("cut off") << R"({"#A": {"name": "А", "type": 4, "value": [[")" << 0;
    QTest::newRow("array") << R"([{"name": "А", "type": 0}])" << 0;
    QTest::newRow("entries are no objects")
        << R"({"#A": 1, "#B": "text", "#C": [1], "#D": null})" << 4;
    QTest::newRow("values of wrong types")
        << R"({"#A": {"name": 1, "type": 2, "value": {}}, "#B": {"type": 3, "format": 7,
             "value": []}, "#C": {"type": 5, "value": 1.5}, "#D": {"type": 1, "list": "x",
             "value": null}, "#E": {"type": 4, "columns": {"a": 1}, "value": "text"}})"
        << 5;
    QTest::newRow("table of ragged rows")
        << R"({"#A": {"name": "Т", "type": 4, "columns": [{"name": "a", "typeID": "0"}, 5,
             {"typeID": 2}], "value": [["1"], 7, ["1", "2", "3", "4"], [[], {}, null]]}})"
        << 1;
    QTest::newRow("deep") << QString("[").repeated(100000) << 0;
    QTest::newRow("counter beyond an integer")
        << R"({"#A": {"name": "А", "type": 2, "value": 1e300}})" << 1;
}

void tst_BadInput::badContent()
{
    QFETCH(QString, content);
    QFETCH(int, shown);
    m_app = std::make_unique<PrintFixture>();
    addForm(*m_app, "Диплом", {formField("#A", "А", 4)});
    m_app->addDocument({}, {{"CONTENT", content}});
    m_app->addBlank({blankItem(0, "Для #LNAME", QRectF(10, 10, 300, 60)),
                     blankItem(2, "#A", QRectF(10, 100, 300, 200))});
    open();
    QCOMPARE(pane()->rowCount(), 4 + shown);
    lookAround();
    QCOMPARE(print(1).exitCode, 0);
    QVERIFY(PdfMeasure(m_app->path("page.pdf")).text(1).contains("Для Иванов"));
}

void tst_BadInput::hugeContentStaysUsable()
{
    m_app = std::make_unique<PrintFixture>();
    addForm(*m_app, "Диплом", {formField("#LONG", "Длинное", 5), formField("#STR", "Строка", 0)});
    const QJsonObject content = hugeContent();
    QVERIFY(QJsonDocument(content).toJson().size() > 10 << 20);
    m_app->addDocument(content);
    m_app->addBlank({blankItem(0, "Для #LNAME", QRectF(10, 10, 300, 60))});
    open();
    QCOMPARE(seenAfter("РЕДАКТИРОВАТЬ\nДОКУМЕНТ"), QStringList({"DocDialog", "TextMemoDialog"}));
    QCOMPARE(seenAfter("ПЕЧАТЬ"), QStringList{"PrinPreviewDialog"});

    m_visitor.reset();
    ModalDriver driver;
    driver.expect<DocDialog>([](DocDialog* dialog) {
        // What is laid out at each repaint and each fit of a row has a bound; the value has none.
        auto* table = named<QTableWidget>(dialog, "contentTable");
        const QString whole = table->item(rowOfTag(table, "#STR"), 1)->text();
        QCOMPARE(whole.size(), 5 << 20);
        const auto* delegate = qobject_cast<QStyledItemDelegate*>(table->itemDelegate());
        QVERIFY(delegate);
        QVERIFY(delegate->displayText(whole, QLocale()).size() < 10000);
        clickButton(dialog, "saveButton");
    });
    pressToolBar(m_window.get(), "РЕДАКТИРОВАТЬ\nДОКУМЕНТ");
    QVERIFY2(driver.finished(), driver.failures());
    // Saved without a change, it is what it was.
    const QByteArray stored = m_app->value("SELECT CONTENT FROM docs").toByteArray();
    QVERIFY(QJsonDocument::fromJson(stored).object() == content);
    QCOMPARE(print(1).exitCode, 0);
}

void tst_BadInput::backgroundThatIsNoPicture()
{
    m_app = std::make_unique<PrintFixture>();
    write(m_app->path("text.png"), QByteArray("this is no picture\n").repeated(50));
    write(m_app->path("cut.png"), QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16));
    QVERIFY(QDir(m_app->path()).mkdir("folder.png"));
    addForm(*m_app, "Диплом", {});
    m_app->addDocument();
    for (const char* file : {"text.png", "cut.png", "folder.png", "../../none.png", ""}) {
        m_app->addBlank({blankItem(0, "Для #LNAME", QRectF(10, 10, 300, 60))},
                        {{"BACKGROUND_IMG", file}});
    }
    open();
    QCOMPARE(seenAfter("ПЕЧАТЬ"), QStringList{"PrinPreviewDialog"});
    lookAround();
    QCOMPARE(print(1).exitCode, 0);
    QCOMPARE(PdfMeasure(m_app->path("page.pdf")).text(1), QString("Для Иванов"));
}

void tst_BadInput::blankOfNoWidth()
{
    m_app = std::make_unique<PrintFixture>();
    addForm(*m_app, "Диплом", {});
    m_app->addDocument();
    QImage picture(20, 20, QImage::Format_RGB32);
    picture.fill(Qt::black);
    QVERIFY(picture.save(m_app->path("back.png")));
    for (const QSize& size : {QSize(0, 210), QSize(297, 0), QSize(0, 0), QSize(-3, -3)}) {
        m_app->addBlank({blankItem(0, "Для #LNAME", QRectF(10, 10, 300, 60)),
                         blankItem(1, "#LNAME", QRectF(10, 100, 98, 98))},
                        {{"SIZE_WIDTH", size.width()},
                         {"SIZE_HEIGHT", size.height()},
                         {"BACKGROUND_IMG", "back.png"}});
    }
    open();
    QCOMPARE(seenAfter("ПЕЧАТЬ"), QStringList{"PrinPreviewDialog"});
    lookAround();
    QCOMPARE(print(1).exitCode, 0);
}

void tst_BadInput::documentOfADeletedForm()
{
    m_app = std::make_unique<PrintFixture>();
    addForm(*m_app, "Диплом", {});
    m_app->addDocument({{"#CITY", valueEntry(FieldType::string, "Псков")}}, {{"DOC_TYPE", 77}});
    open();
    QCOMPARE(rowTexts(list(), 0), QStringList({"Иванов Иван Петрович", "9А", "", "2021-06-25"}));
    QCOMPARE(rowTexts(pane(), 4), QStringList({"Поле", "Псков"}));
    QCOMPARE(seenAfter("ПЕЧАТЬ"), QStringList{noBlank});
    QCOMPARE(print(1).exitCode, 2);
    QCOMPARE(seenAfter("РЕДАКТИРОВАТЬ\nДОКУМЕНТ"), QStringList{"DocDialog"});
    lookAround();

    // A blank of the form that is gone still prints its documents.
    m_app->addBlank({blankItem(0, "Из города #CITY", QRectF(10, 10, 300, 60))}, {{"FORM_ID", 77}});
    QCOMPARE(seenAfter("ПЕЧАТЬ"), QStringList{"PrinPreviewDialog"});
    lookAround();
    QCOMPARE(print(1).exitCode, 0);
    QCOMPARE(PdfMeasure(m_app->path("page.pdf")).text(1), QString("Из города Псков"));
}

void tst_BadInput::programStartsOnBadRows()
{
    m_app = std::make_unique<PrintFixture>();
    for (const char* table : {"forms", "lists", "blanks", "export"}) {
        m_app->exec(QString("INSERT INTO %1 (ID) VALUES (NULL)").arg(table));
    }
    m_app->addDocument({}, {{"CONTENT", "не JSON"}, {"DOC_TYPE", 77}});
    m_app->addDocument(hugeContent());
    m_app->exec("INSERT INTO docs (TEMPLATE) VALUES (0)");
    QVERIFY(QFile::copy(ZELVORA_PROGRAM, m_app->path("zelvora")));
    const QByteArray before = contentOf(m_app->path("docs.db"));
    QProcess program;
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(m_app->path("zelvora"), QStringList());
    constexpr int splashAndMoreMs = 4000;
    const bool ended = program.waitForFinished(splashAndMoreMs);
    const QByteArray log = program.readAll();
    program.kill();
    program.waitForFinished();
    QVERIFY2(!ended, log);
    QVERIFY2(!log.contains("Unable to"), log);
    QVERIFY(contentOf(m_app->path("docs.db")) == before);
}

QTEST_MAIN(tst_BadInput)
#include "tst_BadInput.moc"
