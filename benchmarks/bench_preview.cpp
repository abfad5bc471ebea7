#include <benchmark/benchmark.h>

#include <QApplication>
#include <QGraphicsLinearLayout>
#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPrinter>

#include "app/AppStyle.h"
#include "benchmarks/PageBench.h"
#include "benchmarks/RatioReporter.h"
#include "render/PrinPreviewDialog.h"
#include "render/page/PageBuilder.h"

/// A document on a blank of twenty text items, laid out, shown and printed to PDF, against its
/// floors: the same texts, in the same font and frames, laid out and painted by a bare QPainter. A
/// label's text is rich text, so that the floor lays out rich text too; "plain" is
/// QPainter::drawText, and "widgets" the bare widgets of a page. Each round takes another document.

namespace {

constexpr int documents = 50;

/// ID of the document of a round.
int documentOf(int round)
{
    return 1 + round % documents;
}

QImage screen()
{
    QImage image(page, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    return image;
}

void layOut(benchmark::State& state)
{
    const QVector<PageTexts> texts = textsOfPages(documents);
    int round = 0;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(layOutRichTexts(texts[round++ % documents]));
    }
}

/// The widgets that a page is told to be made of, bare, and the former page's taken down.
void makeWidgets(benchmark::State& state)
{
    const QVector<PageTexts> texts = textsOfPages(documents);
    const QFont font("Liberation Serif", 12);
    QGraphicsScene scene;
    int round = 0;
    for ([[maybe_unused]] auto _ : state) {
        scene.clear();
        for (int item = 0; item < itemCount; ++item) {
            auto* label = new QLabel;
            auto* content = new QGraphicsProxyWidget;
            content->setWidget(label);
            auto* layout = new QGraphicsLinearLayout(Qt::Vertical);
            layout->insertItem(-1, content);
            label->setFont(font);
            label->setText(paragraph(texts[round % documents][item]));
            label->setWordWrap(true);
            label->setStyleSheet("background: transparent; border: 0;");
            label->setAlignment(Qt::AlignCenter);
            auto* frame = new QGraphicsProxyWidget;
            frame->setLayout(layout);
            frame->setGeometry(frameOf(item));
            scene.addItem(frame);
        }
        ++round;
    }
}

void paintImage(benchmark::State& state, PaintTexts paint)
{
    const QVector<PageTexts> texts = textsOfPages(documents);
    QImage image = screen();
    int round = 0;
    for ([[maybe_unused]] auto _ : state) {
        QPainter painter(&image);
        paint(painter, texts[round++ % documents]);
    }
}

void paintPdf(benchmark::State& state, const PageDirectory& directory, PaintTexts paint)
{
    const QVector<PageTexts> texts = textsOfPages(documents);
    int round = 0;
    for ([[maybe_unused]] auto _ : state) {
        const auto printer = pdfPrinter(directory.path("floor.pdf"));
        QPainter painter(printer.get());
        scaleToPage(painter);
        paint(painter, texts[round++ % documents]);
    }
}

void build(benchmark::State& state)
{
    PrinPreviewDialog preview(1);
    int round = 0;
    for ([[maybe_unused]] auto _ : state) {
        preview.buildScene(preview.pageScene(), documentOf(round++), 1);
    }
}

void refill(benchmark::State& state)
{
    QGraphicsScene scene;
    PageBuilder builder;
    builder.build(&scene, documents, 1, nullptr);
    int round = 0;
    for ([[maybe_unused]] auto _ : state) {
        builder.refill(documentOf(round++), 1, nullptr);
    }
}

/// With what the user sees of it: labels lay out their texts when they are first painted.
void buildAndShow(benchmark::State& state)
{
    PrinPreviewDialog preview(1);
    QImage image = screen();
    int round = 0;
    for ([[maybe_unused]] auto _ : state) {
        preview.buildScene(preview.pageScene(), documentOf(round++), 1);
        QPainter painter(&image);
        preview.pageScene()->render(&painter);
    }
}

void refillAndShow(benchmark::State& state)
{
    QGraphicsScene scene;
    PageBuilder builder;
    builder.build(&scene, documents, 1, nullptr);
    QImage image = screen();
    int round = 0;
    for ([[maybe_unused]] auto _ : state) {
        builder.refill(documentOf(round++), 1, nullptr);
        QPainter painter(&image);
        scene.render(&painter);
    }
}

void buildAndPrint(benchmark::State& state, const PageDirectory& directory)
{
    PrinPreviewDialog preview(1);
    int round = 0;
    for ([[maybe_unused]] auto _ : state) {
        preview.buildScene(preview.pageScene(), documentOf(round++), 1);
        const auto printer = pdfPrinter(directory.path("ours.pdf"));
        preview.printTo(*printer);
    }
}

void print(benchmark::State& state, const PageDirectory& directory)
{
    PrinPreviewDialog preview(1);
    preview.buildScene(preview.pageScene(), 1, 1);
    for ([[maybe_unused]] auto _ : state) {
        const auto printer = pdfPrinter(directory.path("ours.pdf"));
        preview.printTo(*printer);
    }
}

template <class Run>
void add(const char* name, Run run)
{
    benchmark::RegisterBenchmark(name, run)->Unit(benchmark::kMicrosecond);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    const PageDirectory directory(documents);
    loadBaseStyle();

    const auto showRich = [](benchmark::State& state) { paintImage(state, paintRichTexts); };
    const auto showPlain = [](benchmark::State& state) { paintImage(state, paintPlainTexts); };
    const auto printRich = [&](benchmark::State& state) {
        paintPdf(state, directory, paintRichTexts);
    };
    const auto printPlain = [&](benchmark::State& state) {
        paintPdf(state, directory, paintPlainTexts);
    };
    add("build/ours", build);
    add("build/layout", layOut);
    add("build/widgets", makeWidgets);
    add("build and show/ours", buildAndShow);
    add("build and show/rich", showRich);
    add("build and show/plain", showPlain);
    add("another/ours", refill);
    add("another/layout", layOut);
    add("another and show/ours", refillAndShow);
    add("another and show/rich", showRich);
    add("build and pdf/ours", [&](benchmark::State& state) { buildAndPrint(state, directory); });
    add("build and pdf/rich", printRich);
    add("pdf/ours", [&](benchmark::State& state) { print(state, directory); });
    add("pdf/rich", printRich);
    add("pdf/plain", printPlain);

    benchmark::Initialize(&argc, argv);
    RatioReporter reporter(RatioReporter::Clock::Cpu, RatioReporter::Peers::Floors);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
