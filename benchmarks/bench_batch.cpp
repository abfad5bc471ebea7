#include <benchmark/benchmark.h>

#include <QApplication>
#include <QPainter>
#include <QPrinter>
#include <QTextStream>

#include "benchmarks/PageBench.h"
#include "benchmarks/RatioReporter.h"
#include "tools/PrintJob.h"

/// Documents printed into one PDF file against their floors: the same texts painted on as many
/// pages by a bare QPainter, laid out as rich text or by QPainter::drawText. A batch of documents
/// is checked before it is printed, copies of a single one are printed alone. Items per second are
/// pages per second.

namespace {

constexpr int pages = 99; // as many as copies are possible

void print(benchmark::State& state, const PageDirectory& directory, const QStringList& documents)
{
    PrintOptions options;
    options.parse(QStringList{"--quiet", "--output", directory.path("ours.pdf")} + documents);
    QString messages;
    QTextStream stream(&messages);
    for ([[maybe_unused]] auto _ : state) {
        if (PrintJob(options, stream, stream).run() != JobResult::Done) {
            state.SkipWithError("not printed");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * pages);
}

void paintPages(benchmark::State& state, const PageDirectory& directory, PaintTexts paint)
{
    for ([[maybe_unused]] auto _ : state) {
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

    const auto paintRich = [&](benchmark::State& state) {
        paintPages(state, directory, paintRichTexts);
    };
    const auto paintPlain = [&](benchmark::State& state) {
        paintPages(state, directory, paintPlainTexts);
    };
    add("99 documents/ours", [&](benchmark::State& state) { print(state, directory, {"--all"}); });
    add("99 documents/rich", paintRich);
    add("99 documents/plain", paintPlain);
    add("99 copies/ours", [&](benchmark::State& state) {
        print(state, directory, {"--id", "1", "--copies", QString::number(pages)});
    });
    add("99 copies/rich", paintRich);
    add("99 copies/plain", paintPlain);

    benchmark::Initialize(&argc, argv);
    RatioReporter reporter(RatioReporter::Clock::Cpu, RatioReporter::Peers::Floors);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
