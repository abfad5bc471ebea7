#include <benchmark/benchmark.h>

#include <QApplication>
#include <QGraphicsScene>
#include <QImage>
#include <QPainter>
#include <QPrinter>

#include "benchmarks/PageBench.h"
#include "benchmarks/RatioReporter.h"
#include "render/PrinPreviewDialog.h"

/// A document on a blank of twenty text items, built and printed to PDF, against its floors: the
/// same texts, in the same font and frames, painted by a bare QPainter. A label's text is rich
/// text, so that the floor lays out rich text too; "plain" is QPainter::drawText.

namespace {

void paintImage(benchmark::State& state, PaintTexts paint)
{
    QImage image(page, QImage::Format_ARGB32_Premultiplied);
    for ([[maybe_unused]] auto _ : state) {
        image.fill(Qt::white);
        QPainter painter(&image);
        paint(painter);
    }
}

void paintPdf(benchmark::State& state, const PageDirectory& directory, PaintTexts paint)
{
    for ([[maybe_unused]] auto _ : state) {
        const auto printer = pdfPrinter(directory.path("floor.pdf"));
        QPainter painter(printer.get());
        scaleToPage(painter);
        paint(painter);
    }
}

void build(benchmark::State& state)
{
    PrinPreviewDialog preview(1);
    for ([[maybe_unused]] auto _ : state) {
        if (!preview.buildScene(preview.pageScene(), 1, 1)) {
            state.SkipWithError("not built");
            break;
        }
    }
}

/// What a batch does for each document: labels lay out their texts when they are first painted.
void buildAndPrint(benchmark::State& state, const PageDirectory& directory)
{
    PrinPreviewDialog preview(1);
    for ([[maybe_unused]] auto _ : state) {
        preview.buildScene(preview.pageScene(), 1, 1);
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
    const PageDirectory directory;

    add("build/ours", build);
    add("build/rich", [](benchmark::State& state) { paintImage(state, paintRichTexts); });
    add("build/plain", [](benchmark::State& state) { paintImage(state, paintPlainTexts); });
    add("build and pdf/ours", [&](benchmark::State& state) { buildAndPrint(state, directory); });
    add("build and pdf/rich",
        [&](benchmark::State& state) { paintPdf(state, directory, paintRichTexts); });
    add("pdf/ours", [&](benchmark::State& state) { print(state, directory); });
    add("pdf/rich", [&](benchmark::State& state) { paintPdf(state, directory, paintRichTexts); });
    add("pdf/plain", [&](benchmark::State& state) { paintPdf(state, directory, paintPlainTexts); });

    benchmark::Initialize(&argc, argv);
    RatioReporter reporter(RatioReporter::Clock::Cpu, RatioReporter::Peers::Floors);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
