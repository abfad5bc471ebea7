#include <QtTest>

#include <QFile>
#include <QPushButton>

#include <memory>

#include "blanks/BlankRows.h"
#include "blanks/BlankWindow.h"
#include "blanks/Canvas.h"
#include "blanks/ZelvoraView.h"
#include "support/Process.h"
#include "support/TempApplication.h"

/// The items of a blank on their way through the editor, read back by another program.
class tst_BlankContent : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_app = std::make_unique<TempApplication>(); }
    void cleanup() { m_app.reset(); }

    void everyKeySurvives();
    void twoSavesGiveTheFirstOrder();
    void lookingAtItemsChangesNothing();
    void fiveHundredItems();

private:
    // Opens the editor on the blank, lets `work` happen in it, and accepts.
    void edit(int blankId, const std::function<void(ZelvoraView*)>& work = nullptr);
    QByteArray compare(const QJsonArray& expected, int blankId);

    std::unique_ptr<TempApplication> m_app;
};

namespace {

// Compares the fields of a blank with those of a JSON file, key by key, and prints "same".
const char* const compareScript = R"(
import json, sqlite3, sys
expected = json.load(open(sys.argv[1], encoding='utf-8'))['fields']
row = sqlite3.connect(sys.argv[2]).execute(
    'SELECT CONTENT FROM blanks WHERE ID = ?', (int(sys.argv[3]),)).fetchone()
assert isinstance(row[0], bytes), type(row[0])
content = json.loads(row[0].decode('utf-8'))
assert list(content) == ['fields'], list(content)
assert len(content['fields']) == len(expected), len(content['fields'])
for index, (want, got) in enumerate(zip(expected, content['fields'])):
    for key in sorted(set(want) | set(got)):
        assert key in want and key in got, (index, key)
        assert want[key] == got[key], (index, key, want[key], got[key])
        assert type(want[key]) is type(got[key]) or key in (
            'pos_x', 'pos_y', 'size_w', 'size_h'), (index, key)
print('same')
)";

QJsonArray reversed(const QJsonArray& array)
{
    QJsonArray result;
    for (const QJsonValue& value : array) {
        result.prepend(value);
    }
    return result;
}

QJsonArray itemsOfEveryKind()
{
    const QJsonObject text{{"type", 0},
                           {"value", "№ #BLANK_NO\\n«#LNAME» <b>'\"</b>"},
                           {"pos_x", 12.345678901},
                           {"pos_y", -7.25},
                           {"size_w", 321.5},
                           {"size_h", 40},
                           {"font", "Nonesuch Serif"},
                           {"font_size", 120},
                           {"h_align", 5},
                           {"v_align", 1},
                           {"line_spacing", "1.15"},
                           {"f_cut", 1},
                           {"x_note", "вручную"},
                           {"x_object", QJsonObject{{"a", QJsonArray{1, "2", QJsonValue()}}}},
                           {"x_true", true}};
    const QJsonObject qr{
        {"type", 1},         {"value", "#LNAME"},     {"pos_x", 500}, {"pos_y", 20},
        {"size_w", 98},      {"size_h", 120.75},      {"font", ""},   {"font_size", 0},
        {"h_align", 2},      {"v_align", 2},          {"f_cut", 0},   {"line_spacing", "1"},
        {"x_number", 0.125}, {"x_null", QJsonValue()}};
    const QJsonObject table{{"type", 2},
                            {"value", "#GRADES"},
                            {"pos_x", 30},
                            {"pos_y", 200},
                            {"size_w", 400},
                            {"size_h", 300},
                            {"font", "Liberation Serif"},
                            {"font_size", 11},
                            {"h_align", 0},
                            {"v_align", 0},
                            {"line_spacing", "2,0"},
                            {"f_cut", 1},
                            {"row_from", 3},
                            {"row_to", 0},
                            {"columns_width", QJsonArray{200, 0, 60}},
                            {"columns_align", QJsonArray{2}},
                            {"x_list", QJsonArray{}}};
    return {text, qr, table};
}

} // namespace

void tst_BlankContent::edit(int blankId, const std::function<void(ZelvoraView*)>& work)
{
    BlankWindow editor;
    editor.setBlankId(blankId);
    editor.loadBlank();
    editor.loadBlankTree();
    editor.show();
    if (work) {
        work(editor.findChild<ZelvoraView*>());
    }
    QTest::mouseClick(editor.findChild<QPushButton*>("buttonAccept"), Qt::LeftButton);
}

QByteArray tst_BlankContent::compare(const QJsonArray& expected, int blankId)
{
    QFile file(m_app->path("expected.json"));
    if (!file.open(QIODevice::WriteOnly) || file.write(contentOf(expected)) < 0) {
        return "no file";
    }
    file.close();
    const ProcessResult result = runPython(
        compareScript, {file.fileName(), m_app->path("docs.db"), QString::number(blankId)});
    return (result.out + result.err).trimmed();
}

void tst_BlankContent::everyKeySurvives()
{
    BlankRow row;
    row.content = contentOf(itemsOfEveryKind());
    const int id = insertBlank(*m_app, row);
    edit(id);
    const QByteArray result = compare(reversed(itemsOfEveryKind()), id);
    QVERIFY2(result == "same", result);
}

void tst_BlankContent::twoSavesGiveTheFirstOrder()
{
    BlankRow row;
    row.content = QString::fromUtf8(contentOf(itemsOfEveryKind())); // stored as text
    const int id = insertBlank(*m_app, row);
    edit(id);
    edit(id);
    const QByteArray result = compare(itemsOfEveryKind(), id);
    QVERIFY2(result == "same", result);
}

void tst_BlankContent::lookingAtItemsChangesNothing()
{
    BlankRow row;
    row.content = contentOf(itemsOfEveryKind());
    const int id = insertBlank(*m_app, row);
    edit(id, [](ZelvoraView* view) {
        for (int i = 0; i < 4; ++i) {
            Canvas::key(view, Qt::Key_Right);
        }
        const QPoint inside = view->mapFromScene(QPointF(230, 350));
        Canvas::press(view, inside);
        Canvas::release(view, inside);
    });
    const QByteArray result = compare(reversed(itemsOfEveryKind()), id);
    QVERIFY2(result == "same", result);
}

void tst_BlankContent::fiveHundredItems()
{
    QJsonArray items;
    for (int i = 0; i < 500; ++i) {
        items.append(QJsonObject{{"type", i % 10 == 9 ? 1 : 0},
                                 {"value", QString("#FIELD_%1").arg(i)},
                                 {"pos_x", 10 + (i % 25) * 40},
                                 {"pos_y", 10 + (i / 25) * 36},
                                 {"size_w", 38},
                                 {"size_h", 34},
                                 {"font_size", 8}});
    }
    BlankRow row;
    row.content = contentOf(items);
    const int id = insertBlank(*m_app, row);
    edit(id, [](ZelvoraView* view) {
        const QPoint first = view->mapFromScene(QPointF(29, 27));
        Canvas::press(view, first);
        for (int step = 1; step <= 50; ++step) {
            Canvas::move(view, first + QPoint(step, step));
        }
        Canvas::release(view, first + QPoint(50, 50));
    });
    QJsonObject dragged = items[0].toObject();
    dragged["pos_x"] = 60;
    dragged["pos_y"] = 60;
    items[0] = dragged;
    const QByteArray result = compare(reversed(items), id);
    QVERIFY2(result == "same", result);
}

QTEST_MAIN(tst_BlankContent)
#include "tst_BlankContent.moc"
