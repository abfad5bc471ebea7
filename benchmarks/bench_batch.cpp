#include <benchmark/benchmark.h>

#include <QApplication>
#include <QPainter>
#include <QPrinter>
#include <QTextStream>

#include "benchmarks/PageBench.h"
#include "benchmarks/RatioReporter.h"
#include "tools/PrintJob.h"

/// A hundred documents printed into one PDF file, all that a batch does, against its floors: the
/// same texts painted on as many pages by a bare QPainter, laid out as rich text or by
/// QPainter::drawText. Items per second are pages per second.

namespace {

constexpr int pages = 100;

void printBatch(benchmark::State& state, const PageDirectory& directory)
{
    PrintOptions options;
    options.parse({"--all", "--quiet", "--output", directory.path("ours.pdf")});
    QString messages;
    QTextStream stream(&messages);
    for (auto _ : state) {
        if (PrintJob(options, stream, stream).run() != JobResult::Done) {
            state.SkipWithError("not printed");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * pages);
}

void paintPages(benchmark::State& state, const PageDirectory& directory, PaintTexts paint)
{
    for (auto _ : state) {
        const auto printer = pdfPrinter(directory.path("floor.pdf"));
        QPainter painter(printer.get());
        scaleToPage(painter);
        paint(painter);
        for (int i = 1; i < pages; ++i) {
            printer->newPage();
            paint(painter);
        }
    }
    state.SetItemsProcessed(state.iterations() * pages);
}

template <class Run>
void add(const char* name, Run run)
{
    benchmark::RegisterBenchmark(name, run)->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    const PageDirectory directory(pages);

    add("100 pages/ours", [&](benchmark::State& state) { printBatch(state, directory); });
    add("100 pages/rich",
        [&](benchmark::State& state) { paintPages(state, directory, paintRichTexts); });
    add("100 pages/plain",
        [&](benchmark::State& state) { paintPages(state, directory, paintPlainTexts); });

    benchmark::Initialize(&argc, argv);
    RatioReporter reporter(RatioReporter::Clock::Cpu, RatioReporter::Peers::Floors);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
