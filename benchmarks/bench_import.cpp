#include <benchmark/benchmark.h>

#include <QElapsedTimer>

#include <ctime>

#include <xlsxdocument.h>

#include "ExchangeBench.h"
#include "exchange/DocumentExport.h"
#include "exchange/DocumentImport.h"
#include "exchange/WorkbookFile.h"

/// Importing 2,000 rows of 20 columns into a database on disk, a commit for each row, beside
/// openpyxl with sqlite3 committing each row. Times are by the clock, since both wait for the disk;
/// the counter tells what the processor did of it.

namespace {

constexpr int rows = 2000;
constexpr int lastRow = rows + 1; // below a heading
constexpr double nsPerSecond = 1e9;

ExchangeBench& bench()
{
    static ExchangeBench shared;
    static const bool filled = [] {
        shared.addDocuments(rows);
        QXlsx::Document workbook;
        QSqlQuery query("SELECT * FROM docs;");
        DocumentExport(workbook, ExchangeBench::items(), "dd.MM.yyyy").writeDocuments(query, 2);
        return workbook.saveAs(shared.path("rows.xlsx"));
    }();
    if (!filled) {
        qFatal("no workbook");
    }
    return shared;
}

/// Everything that was imported, in the order of the rows.
QStringList imported()
{
    QStringList all;
    QSqlQuery query("SELECT BLANK_SER || BLANK_NO || FNAME || LNAME || MNAME || BIRTH_DATE || "
                    "DOC_GROUP || ISSUE_DATE || EDIT_DATE || DUPLICATE, CONTENT FROM docs "
                    "ORDER BY ID;");
    while (query.next()) {
        const QJsonObject content = parseJsonColumn(query.value(1));
        all << query.value(0).toString() + QJsonDocument(content).toJson(QJsonDocument::Compact);
    }
    return all;
}

QStringList ourResult;

void ours(benchmark::State& state)
{
    bench();
    for (auto _ : state) {
        QSqlQuery("DELETE FROM docs;");
        QElapsedTimer timer;
        timer.start();
        const std::clock_t begin = std::clock();
        QSqlQuery form("SELECT FIELDS, FORM_NAME FROM forms WHERE ID = 1;");
        form.next();
        const auto workbook = openWorkbook(bench().path("rows.xlsx"), nullptr);
        DocumentImport importer(*workbook, ExchangeBench::items(), parseJsonColumn(form.value(0)),
                                1, "dd.MM.yyyy");
        for (int row = 2; row <= lastRow; ++row) {
            importer.readRow(row);
            QSqlQuery insert;
            if (!insert.exec(importer.insertStatement())) {
                state.SkipWithError("an insert failed");
                return;
            }
        }
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) / nsPerSecond);
        state.counters["processor_ms"] =
            1e3 * static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    }
    ourResult = imported();
}

void peer(benchmark::State& state)
{
    for (auto _ : state) {
        QSqlQuery("DELETE FROM docs;");
        const ExchangeBench::PeerTime time =
            ExchangeBench::runPeer("import", {bench().path("docs.db"), bench().path("rows.xlsx")},
                                   QString::number(lastRow));
        if (time.clock < 0) {
            state.SkipWithError("the peer failed");
            return;
        }
        state.SetIterationTime(time.clock);
        state.counters["processor_ms"] = 1e3 * time.processor;
    }
    if (imported() != ourResult || ourResult.size() != rows) {
        state.SkipWithError("the peer imported something else");
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    addJob("import/ours", ours);
    addJob("import/openpyxl", peer);
    runJobs(argc, argv);
    return 0;
}
