#include <benchmark/benchmark.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFontComboBox>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QGraphicsView>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMouseEvent>
#include <QSpinBox>
#include <QSqlQuery>
#include <QTableWidget>

#include <memory>

#include "app/AppStyle.h"
#include "benchmarks/BenchDirectory.h"
#include "benchmarks/RatioReporter.h"
#include "blanks/BlankWindow.h"

// Loading and saving a blank of text items in the editor, beside the floor of adding the same bare
// items to a scene; one step of dragging a frame on that page, beside the floor of moving a bare
// item by a step; and a click on a frame, beside the floor of filling a bare table with the same
// editors. The figures of loading and saving are for the whole page.

namespace {

constexpr int itemCount = 500;
constexpr int blankId = 1;

QJsonArray pageItems()
{
    QJsonArray items;
    for (int i = 0; i < itemCount; ++i) {
        items.append(QJsonObject{{"type", 0},
                                 {"value", QString("#FIELD_%1").arg(i)},
                                 {"pos_x", 10 + (i % 25) * 40},
                                 {"pos_y", 10 + (i / 25) * 36},
                                 {"size_w", 38},
                                 {"size_h", 34},
                                 {"font", "Liberation Serif"},
                                 {"font_size", 8},
                                 {"h_align", 2},
                                 {"v_align", 2},
                                 {"line_spacing", "1"}});
    }
    return items;
}

bool storeBlank()
{
    QSqlQuery query;
    query.prepare("INSERT INTO blanks (ID, NAME, FORM_ID, PAPER_FORMAT, PAPER_ORIENTATION, PAGES, "
                  "FONT, FONT_SIZE, SIZE_WIDTH, SIZE_HEIGHT, OFFSET_X, OFFSET_Y, CONTENT) VALUES "
                  "(1, 'Бланк', 1, 42, 0, 1, 'Liberation Serif', 11, 297, 210, 0, 0, ?)");
    query.addBindValue(QJsonDocument(QJsonObject{{"fields", pageItems()}}).toJson());
    return query.exec();
}

std::unique_ptr<BlankWindow> openEditor()
{
    auto editor = std::make_unique<BlankWindow>();
    editor->setBlankId(blankId);
    editor->loadBlank();
    editor->show();
    return editor;
}

// What is left of an item without JSON, rules of the frame and alignment.
void addBareItems(QGraphicsScene& scene)
{
    const QFont font("Liberation Serif", 8);
    for (int i = 0; i < itemCount; ++i) {
        auto* frame = scene.addRect(0.0, 0.0, 38.0, 34.0);
        const int column = i % 25;
        const int row = i / 25;
        frame->setPos(10 + column * 40, 10 + row * 36);
        frame->setFlag(QGraphicsItem::ItemIsMovable);
        auto* text = new QGraphicsTextItem(QString("#FIELD_%1").arg(i), frame);
        text->setFont(font);
        const QRectF bounds = text->boundingRect();
        text->setPos((38.0 - bounds.width()) / 2.0, (34.0 - bounds.height()) / 2.0);
    }
}

void sendMouse(QGraphicsView* view, QEvent::Type type, const QPoint& at)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held =
        type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, view->viewport()->mapToGlobal(at), button, held, Qt::NoModifier);
    QApplication::sendEvent(view->viewport(), &event);
}

// Moves the pressed mouse to and fro, with the repaint after each step.
void dragSteps(benchmark::State& state, QGraphicsView* view)
{
    QApplication::processEvents();
    view->ensureVisible(0, 0, 10, 10);
    const QPoint start = view->mapFromScene(QPointF(29, 27));
    sendMouse(view, QEvent::MouseButtonPress, start);
    int step = 0;
    for ([[maybe_unused]] auto _ : state) {
        step = (step + 1) % 100;
        sendMouse(view, QEvent::MouseMove, start + QPoint(step, step));
        QApplication::processEvents();
    }
    sendMouse(view, QEvent::MouseButtonRelease, start);
}

void load(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        auto editor = std::make_unique<BlankWindow>();
        editor->setBlankId(blankId);
        state.ResumeTiming();
        editor->loadBlank();
        state.PauseTiming();
        editor.reset();
        state.ResumeTiming();
    }
}

void save(benchmark::State& state)
{
    const auto editor = openEditor();
    for ([[maybe_unused]] auto _ : state) {
        editor->saveBlank();
    }
}

void addItems(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        auto scene = std::make_unique<QGraphicsScene>(0, 0, 1122, 793);
        QGraphicsView view(scene.get());
        state.ResumeTiming();
        addBareItems(*scene);
        state.PauseTiming();
        scene.reset();
        state.ResumeTiming();
    }
}

void drag(benchmark::State& state)
{
    const auto editor = openEditor();
    dragSteps(state, editor->findChild<QGraphicsView*>());
}

void dragBareItem(benchmark::State& state)
{
    QGraphicsScene scene(0, 0, 1122, 793);
    addBareItems(scene);
    QGraphicsView view(&scene);
    view.resize(400, 450);
    view.show();
    dragSteps(state, &view);
}

// Clicks two frames in turn, so that the properties table is built anew each time.
void select(benchmark::State& state)
{
    const auto editor = openEditor();
    auto* view = editor->findChild<QGraphicsView*>();
    QApplication::processEvents();
    view->ensureVisible(0, 0, 10, 10);
    const QPoint places[] = {view->mapFromScene(QPointF(29, 27)),
                             view->mapFromScene(QPointF(69, 27))};
    int turn = 0;
    for ([[maybe_unused]] auto _ : state) {
        const QPoint at = places[turn++ % 2];
        sendMouse(view, QEvent::MouseButtonPress, at);
        sendMouse(view, QEvent::MouseButtonRelease, at);
        QApplication::processEvents();
    }
}

// Fills a bare table with the same kinds of editors.
void fillBareTable(benchmark::State& state)
{
    QTableWidget table(0, 2);
    table.resize(320, 450);
    table.show();
    for ([[maybe_unused]] auto _ : state) {
        table.setRowCount(0);
        table.setRowCount(11);
        for (int row = 0; row < 11; ++row) {
            table.setItem(row, 0, new QTableWidgetItem(QString::number(row)));
        }
        for (const int row : {5, 6, 9}) {
            table.setCellWidget(row, 1, new QComboBox);
        }
        table.setCellWidget(7, 1, new QFontComboBox);
        table.setCellWidget(8, 1, new QSpinBox);
        table.setCellWidget(10, 1, new QCheckBox);
        QApplication::processEvents();
    }
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const BenchDirectory directory;
    loadBaseStyle();
    if (!storeBlank()) {
        return 1;
    }
    benchmark::Initialize(&argc, argv);
    const auto add = [](const char* name, void (*run)(benchmark::State&)) {
        benchmark::RegisterBenchmark(name, run)->Unit(benchmark::kMillisecond);
    };
    add("load 500/ours", load);
    add("load 500/adding bare", addItems);
    add("save 500/ours", save);
    add("save 500/adding bare", addItems);
    add("drag step/ours", drag);
    add("drag step/bare item", dragBareItem);
    add("select/ours", select);
    add("select/bare table", fillBareTable);
    RatioReporter reporter(RatioReporter::Clock::Cpu, RatioReporter::Peers::Floors);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
