// Bytes taken as the content of a blank: the page of the preview, and the editor's round trip from
// the database and back.

#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>

#include <memory>

#include "blanks/BlankWindow.h"
#include "blanks/ZelvoraView.h"
#include "fuzz/FuzzSupport.h"
#include "render/PrinPreviewDialog.h"

namespace {

constexpr int blankId = 1;
constexpr int docId = 1;
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
    checkEditor(*fixture->editor, QJsonDocument::fromJson(input).object()["fields"].toArray());
}
