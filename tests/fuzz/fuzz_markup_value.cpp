// Bytes taken as the value of a document's field, with whatever markup they hold: the pane, the
// page with the value in a frame and in a table, and what the check finds of it.

#include <QGraphicsScene>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QTableWidget>

#include <memory>

#include "documents/MainWindow.h"
#include "fuzz/FuzzSupport.h"
#include "preflight/FindingWords.h"
#include "preflight/PageCheck.h"
#include "render/PrinPreviewDialog.h"

namespace {

constexpr int docId = 1;
constexpr int blankId = 1;
constexpr int checkedShare = 8;    // one value of so many is checked as well, which is slow
const QSize pictureSize(378, 264); // pixels; the page of 100 by 70 mm as it is

const char* const blankContent =
    R"({"fields": [{"type": 0, "value": "Имя: #TEXT.", "pos_x": 10, "pos_y": 10,)"
    R"( "size_w": 200, "size_h": 60}, {"type": 2, "value": "#TABLE", "pos_x": 10,)"
    R"( "pos_y": 90, "size_w": 300, "size_h": 120, "row_from": 1, "row_to": 3}]})";

/// The document that every input is stored in, the window and the page that show it.
struct Fixture
{
    Fixture()
    {
        openFreshDatabase();
        insertFormAndList();
        runSql("INSERT INTO docs (ID, FNAME, LNAME, DOC_TYPE, TEMPLATE, CONTENT) "
               "VALUES (1, 'Анна', 'Иванова', 1, 0, '')");
        runSql("INSERT INTO blanks (ID, NAME, FORM_ID, PAPER_FORMAT, PAPER_ORIENTATION, PAGES, "
               "FONT, FONT_SIZE, SIZE_WIDTH, SIZE_HEIGHT, OFFSET_X, OFFSET_Y, CONTENT) VALUES "
               "(1, 'Бланк', 1, 42, 0, 1, 'Liberation Serif', 12, 100, 70, 0, 0, ?)",
               {QString(blankContent)});
        window = std::make_unique<MainWindow>();
        preview = std::make_unique<PrinPreviewDialog>(docId);
    }

    std::unique_ptr<MainWindow> window;
    std::unique_ptr<PrinPreviewDialog> preview;
    PageCheck check;
};

/// The document's entries with the text as the value of each.
QByteArray contentWith(const QString& text)
{
    const QJsonObject column{{"name", "Графа"}, {"typeID", "0"}};
    return QJsonDocument(
               QJsonObject{{"#TEXT", QJsonObject{{"name", "Текст"}, {"type", 5}, {"value", text}}},
                           {"#TABLE", QJsonObject{{"name", text},
                                                  {"type", 4},
                                                  {"columns", QJsonArray{column}},
                                                  {"value", QJsonArray{QJsonArray{text}}}}}})
        .toJson(QJsonDocument::Compact);
}

} // namespace

void tryInput(const QByteArray& input)
{
    static auto* fixture = new Fixture;
    const QByteArray content = contentWith(QString::fromUtf8(input));
    runSql("UPDATE docs SET CONTENT = ? WHERE ID = 1", {content});
    fixture->window->selChange();
    QGraphicsScene* page = fixture->preview->pageScene();
    require(fixture->preview->buildScene(page, docId, blankId), "a document gives a page");
    QImage picture(pictureSize, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    page->render(&painter);
    painter.end();
    if (qHash(input, 0) % checkedShare == 0) {
        require(fixture->check.check(docId, blankId), "a page is checked");
        for (const Finding& finding : fixture->check.findings()) {
            require(!FindingWords().sentence(finding).isEmpty(), "what is found can be said");
        }
    }
    require(sqlValue("SELECT CONTENT FROM docs WHERE ID = 1").toByteArray() == content,
            "showing a document leaves it alone");
}
