#include <benchmark/benchmark.h>

#include <QApplication>
#include <QPainter>
#include <QPrinter>
#include <QTextStream>

#include "benchmarks/PageBench.h"
#include "benchmarks/RatioReporter.h"
#include "preflight/PageCheck.h"
#include "tools/PrintJob.h"

/// Documents printed into one PDF file against their floors: the same texts painted on as many
/// pages by a bare QPainter, laid out as rich text or by QPainter::drawText. A batch of documents
/// is checked too, copies of a single one are printed alone. The check alone has the layout of the
/// same texts as its floor. Items per second are pages per second.

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

void check(benchmark::State& state)
{
    PageCheck pageCheck;
    for ([[maybe_unused]] auto _ : state) {
        for (int document = 1; document <= pages; ++document) {
            if (!pageCheck.check(document, 1) || !pageCheck.findings().isEmpty()) {
                state.SkipWithError("not checked, or not well");
                return;
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * pages);
}

void layOut(benchmark::State& state)
{
    const QVector<PageTexts> texts = textsOfPages(pages);
    for ([[maybe_unused]] auto _ : state) {
        for (const PageTexts& page : texts) {
            benchmark::DoNotOptimize(layOutRichTexts(page));
        }
    }
    state.SetItemsProcessed(state.iterations() * pages);
}

/// As many pages as there are texts.
void paintPages(benchmark::State& state, const PageDirectory& directory, PaintTexts paint,
                const QVector<PageTexts>& texts)
{
    for ([[maybe_unused]] auto _ : state) {
        const auto printer = pdfPrinter(directory.path("floor.pdf"));
        QPainter painter(printer.get());
        scaleToPage(painter);
        paint(painter, texts[0]);
        for (int i = 1; i < texts.size(); ++i) {
            printer->newPage();
            paint(painter, texts[i]);
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

    const QVector<PageTexts> documents = textsOfPages(pages);
    const QVector<PageTexts> copies(pages, pageTexts(0));
    const auto paints = [&directory](PaintTexts paint, const QVector<PageTexts>& texts) {
        return [&directory, paint, texts](benchmark::State& state) {
            paintPages(state, directory, paint, texts);
        };
    };
    add("99 documents/ours", [&](benchmark::State& state) { print(state, directory, {"--all"}); });
    add("99 documents/rich", paints(paintRichTexts, documents));
    add("99 documents/plain", paints(paintPlainTexts, documents));
    add("99 copies/ours", [&](benchmark::State& state) {
        print(state, directory, {"--id", "1", "--copies", QString::number(pages)});
    });
    add("99 copies/rich", paints(paintRichTexts, copies));
    add("99 copies/plain", paints(paintPlainTexts, copies));
    add("check of 99/ours", check);
    add("check of 99/layout", layOut);

    benchmark::Initialize(&argc, argv);
    RatioReporter reporter(RatioReporter::Clock::Cpu, RatioReporter::Peers::Floors);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
