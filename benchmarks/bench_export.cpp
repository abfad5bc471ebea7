#include <benchmark/benchmark.h>

#include <ctime>

#include <xlsxdocument.h>

#include "benchmarks/ExchangeBench.h"
#include "exchange/DocumentExport.h"
#include "exchange/WorkbookFile.h"

/// Exporting 5,000 documents by 20 columns through a template, beside openpyxl with sqlite3: once
/// by the same steps and statements, a query for each expanded cell, and once with one query for
/// all. Times are of the processor, since the job hardly waits for anything.

namespace {

constexpr int documents = 5000;

/// Exports all; returns the seconds of the processor that it took.
double exportOurs(const ExchangeBench& directory)
{
    const std::clock_t begin = std::clock();
    QSqlQuery query;
    query.setForwardOnly(true);
    query.exec("SELECT * FROM docs WHERE docs.TEMPLATE = 0;");
    const auto workbook = openWorkbook(directory.path("template.xlsx"), nullptr);
    DocumentExport(*workbook, ExchangeBench::items(), "dd.MM.yyyy").writeDocuments(query, 2);
    workbook->saveAs(directory.path("ours.xlsx"));
    return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

ExchangeBench& bench()
{
    static ExchangeBench shared;
    static const bool filled = [] {
        shared.addDocuments(documents);
        QXlsx::Document workbook;
        for (const ExchangeItem& item : ExchangeBench::items()) {
            workbook.write(QXlsx::CellReference(item.cellName(1)), item.tag);
        }
        const bool isSaved = workbook.saveAs(shared.path("template.xlsx"));
        exportOurs(shared); // what the peer's workbook is compared with, whoever comes first
        return isSaved;
    }();
    if (!filled) {
        qFatal("no template");
    }
    return shared;
}

void ours(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        state.SetIterationTime(exportOurs(bench()));
    }
}

void peer(benchmark::State& state, const char* job)
{
    const QString out = bench().path(QString(job) + ".xlsx");
    for ([[maybe_unused]] auto _ : state) {
        const double seconds =
            ExchangeBench::runPeer(job, {bench().path("docs.db"), bench().path("template.xlsx")},
                                   out)
                .processor;
        if (seconds < 0) {
            state.SkipWithError("the peer failed");
            return;
        }
        state.SetIterationTime(seconds);
    }
    if (ExchangeBench::texts(out) != ExchangeBench::texts(bench().path("ours.xlsx"))) {
        state.SkipWithError("the peer's workbook holds other texts");
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    addJob("export/ours", ours);
    addJob("export/openpyxl", [](benchmark::State& state) { peer(state, "export"); });
    addJob("export/openpyxl, lean", [](benchmark::State& state) { peer(state, "lean"); });
    runJobs(argc, argv);
    return 0;
}
