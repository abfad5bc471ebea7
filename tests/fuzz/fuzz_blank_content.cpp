// Bytes taken as the content of a blank: the page of the preview, what the check finds on it, its
// print, and the editor's round trip from the database and back. The bytes vary the paper too.

#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QPrinter>
#include <QTemporaryDir>

#include <memory>

#include "blanks/BlankWindow.h"
#include "blanks/ZelvoraView.h"
#include "fuzz/FuzzSupport.h"
#include "preflight/FindingWords.h"
#include "preflight/PageCheck.h"
#include "render/PrinPreviewDialog.h"

namespace {

constexpr int blankId = 1;
constexpr int docId = 1;
constexpr int printedShare = 8;    // one page of so many is printed and checked: both are slow
const QSize pictureSize(378, 264); // pixels; the page of 100 by 70 mm as it is

const char* const documentContent =
    R"({"#TEXT": {"name": "Текст", "type": 5, "value": "<b>Иванова</b> Анна\\nСергеевна"},)"
    R"("#COUNT": {"name": "Часы", "type": 2, "value": 144},)"
    R"("#TABLE": {"name": "Оценки", "type": 4, "columns": [{"name": "Предмет", "typeID": "0"},)"
    R"({"name": "Оценка", "typeID": "0"}], "value": [["Алгебра", "5"], ["Физика", "4"],)"
    R"(["Литература"], [], 7]}})";

/// The blank that every input is stored in, the preview and the editor of it.
struct Fixture
{
    Fixture()
    {
        openFreshDatabase();
        runSql("INSERT INTO docs (ID, FNAME, LNAME, DOC_TYPE, TEMPLATE, ISSUE_DATE, CONTENT) "
               "VALUES (1, 'Анна', 'Иванова', 1, 0, '2024-06-15', ?)",
               {QString(documentContent)});
        runSql("INSERT INTO blanks (ID, NAME, FORM_ID, PAPER_FORMAT, PAPER_ORIENTATION, PAGES, "
               "FONT, FONT_SIZE, SIZE_WIDTH, SIZE_HEIGHT, OFFSET_X, OFFSET_Y) VALUES "
               "(1, 'Свидетельство', 1, 42, 0, 1, 'Liberation Serif', 12, 100, 70, 0, 0)");
        preview = std::make_unique<PrinPreviewDialog>(docId);
        editor = std::make_unique<BlankWindow>();
        editor->setBlankId(blankId);
    }

    std::unique_ptr<PrinPreviewDialog> preview;
    std::unique_ptr<BlankWindow> editor;
    PageCheck check;
    QTemporaryDir folder; // in TMPDIR
};

QByteArray storedContent()
{
    return sqlValue("SELECT CONTENT FROM blanks WHERE ID = 1").toByteArray();
}

void checkPreview(PrinPreviewDialog& preview, const QByteArray& content)
{
    QGraphicsScene* page = preview.pageScene();
    require(preview.buildScene(page, docId, blankId), "a blank that is there gives a page");
    QImage picture(pictureSize, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    page->render(&painter);
    require(storedContent() == content, "the preview leaves the blank alone");
}

/// A number from the bytes, so that an input always has the same paper.
uint numberOf(const QByteArray& content)
{
    return qHash(content, 0);
}

/// Paper of every format and orientation, of sizes and offsets that are none among them.
void varyPaper(uint number)
{
    static const QVector<int> formats = {0, 1, 42, 42, 42, 7, -1};
    static const QVector<int> sizes = {100, 70, 210, 297, 1, 0, -5, 1000, 40};
    static const QVector<int> offsets = {0, 3, -3, 500, -500};
    runSql("UPDATE blanks SET PAPER_FORMAT = ?, PAPER_ORIENTATION = ?, SIZE_WIDTH = ?, "
           "SIZE_HEIGHT = ?, OFFSET_X = ?, OFFSET_Y = ?, FONT_SIZE = ? WHERE ID = 1",
           {formats[int(number % 7)], int(number / 7 % 3), sizes[int(number / 21 % 9)],
            sizes[int(number / 189 % 9)], offsets[int(number / 1701 % 5)],
            offsets[int(number / 8505 % 5)], int(number / 42525 % 80) - 4});
}

/// Leaves the page as it is for the others: the paper is put back.
void checkPrint(Fixture& fixture, const QByteArray& content, uint number)
{
    varyPaper(number);
    require(fixture.check.check(docId, blankId), "a page that can be read is checked");
    for (const Finding& finding : fixture.check.findings()) {
        require(!FindingWords().sentence(finding).isEmpty(), "what is found can be said");
    }
    PrinPreviewDialog& preview = *fixture.preview;
    if (preview.buildScene(preview.pageScene(), docId, blankId)) {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(fixture.folder.filePath("page.pdf"));
        QPainter painter;
        preview.printPage(printer, painter);
    }
    require(storedContent() == content, "the print leaves the blank alone");
    runSql("UPDATE blanks SET PAPER_FORMAT = 42, PAPER_ORIENTATION = 0, SIZE_WIDTH = 100, "
           "SIZE_HEIGHT = 70, "
           "OFFSET_X = 0, OFFSET_Y = 0, FONT_SIZE = 12 WHERE ID = 1");
}

/// What the editor makes of the items: topmost first, with position and size as numbers.
QJsonArray expectedItems(const QJsonArray& items)
{
    QJsonArray expected;
    for (int i = items.size() - 1; i >= 0; --i) {
        QJsonObject item = items[i].toObject();
        for (const char* key : {"pos_x", "pos_y", "size_w", "size_h"}) {
            item[key] = item[key].toDouble();
        }
        expected.append(item);
    }
    return throughJsonText({{"fields", expected}})["fields"].toArray();
}

void selectTopmost(const BlankWindow& editor)
{
    const auto* view = editor.findChild<ZelvoraView*>();
    const QList<QGraphicsItem*> items = view->scene()->items(Qt::DescendingOrder);
    for (QGraphicsItem* item : items) {
        if (!item->childItems().isEmpty()) {
            item->setSelected(true);
            return;
        }
    }
}

void checkEditor(BlankWindow& editor, const QJsonArray& items)
{
    const QJsonArray expected = expectedItems(items);
    editor.loadBlank();
    selectTopmost(editor);
    require(editor.saveBlank(), "a blank can be saved");
    const QJsonObject stored = QJsonDocument::fromJson(storedContent()).object();
    require(stored.keys() == QStringList{"fields"}, "a saved blank is an object of items");
    require(stored["fields"].toArray() == expected, "a blank opened and saved keeps its items");
}

} // namespace

void tryInput(const QByteArray& input)
{
    static auto* fixture = new Fixture;
    runSql("UPDATE blanks SET CONTENT = ? WHERE ID = 1", {input});
    checkPreview(*fixture->preview, input);
    if (numberOf(input) % printedShare == 0) {
        checkPrint(*fixture, input, numberOf(input) / printedShare);
    }
    checkEditor(*fixture->editor, QJsonDocument::fromJson(input).object()["fields"].toArray());
}
