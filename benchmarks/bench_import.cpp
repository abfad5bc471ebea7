#include <benchmark/benchmark.h>

#include <QElapsedTimer>

#include <ctime>
#include <functional>
#include <limits>

#include <xlsxdocument.h>

#include "benchmarks/ExchangeBench.h"
#include "exchange/DocumentExport.h"
#include "exchange/DocumentImport.h"
#include "exchange/WorkbookFile.h"

/// Importing 2,000 rows of 20 columns into a database on disk, a commit for each row, beside
/// openpyxl with sqlite3 committing each row, and beside the bare commits: the same statements, all
/// made before the clock starts. Times are by the clock, since all three wait for the disk; a case
/// of its own compares what the processor did of it.

namespace {

constexpr int rows = 2000;
constexpr int lastRow = rows + 1; // below a heading
constexpr double nsPerSecond = 1e9;

/// What an import takes over, in the order of the rows. The date of the last change is left out: it
/// keeps the sheet's notation.
QStringList stored()
{
    QStringList all;
    QSqlQuery query("SELECT BLANK_SER || BLANK_NO || FNAME || LNAME || MNAME || BIRTH_DATE || "
                    "DOC_GROUP || ISSUE_DATE || DUPLICATE, CONTENT FROM docs ORDER BY ID;");
    while (query.next()) {
        const QJsonObject content = parseJsonColumn(query.value(1));
        all << query.value(0).toString() + QJsonDocument(content).toJson(QJsonDocument::Compact);
    }
    return all;
}

/// The application directory, the workbook in it and what the workbook holds.
struct Job
{
    ExchangeBench directory;
    QString workbook = directory.path("rows.xlsx");
    QStringList expected;

    Job()
    {
        directory.addDocuments(rows);
        expected = stored();
        QXlsx::Document document;
        QSqlQuery query("SELECT * FROM docs;");
        DocumentExport(document, ExchangeBench::items(), "dd.MM.yyyy").writeDocuments(query, 2);
        if (!document.saveAs(workbook)) {
            qFatal("no workbook");
        }
    }
};

Job& job()
{
    static Job shared;
    return shared;
}

struct Times
{
    double clock = std::numeric_limits<double>::max();     ///< seconds
    double processor = std::numeric_limits<double>::max(); ///< seconds
};

using UseStatement = std::function<void(const QString&)>;

void insertRow(const QString& statement)
{
    QSqlQuery insert;
    if (!insert.exec(statement)) {
        qFatal("an insert failed");
    }
}

/// Reads the workbook row by row and hands over what inserts each.
void readRows(const UseStatement& use)
{
    QSqlQuery form("SELECT FIELDS, FORM_NAME FROM forms WHERE ID = 1;");
    form.next();
    const auto workbook = openWorkbook(job().workbook, nullptr);
    DocumentImport importer(*workbook, ExchangeBench::items(), parseJsonColumn(form.value(0)), 1,
                            "dd.MM.yyyy");
    for (int row = 2; row <= lastRow; ++row) {
        importer.readRow(row);
        use(importer.insertStatement());
    }
}

Times timesOf(const std::function<void()>& work)
{
    QElapsedTimer timer;
    timer.start();
    const std::clock_t begin = std::clock();
    work();
    return {static_cast<double>(timer.nsecsElapsed()) / nsPerSecond,
            static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC};
}

Times importOurs()
{
    return timesOf([] { readRows(insertRow); });
}

Times commitBare()
{
    QStringList statements;
    readRows([&statements](const QString& statement) { statements << statement; });
    return timesOf([&statements] {
        for (const QString& statement : qAsConst(statements)) {
            insertRow(statement);
        }
    });
}

Times importByPeer()
{
    const ExchangeBench::PeerTime time = ExchangeBench::runPeer(
        "import", {job().directory.path("docs.db"), job().workbook}, QString::number(lastRow));
    return {time.clock, time.processor};
}

/// Runs one of the two into an empty table and looks at what it stored.
Times measure(Times (*run)())
{
    const QStringList& expected = job().expected; // opens the database
    QSqlQuery emptying;
    if (!emptying.exec("DELETE FROM docs;")) {
        qFatal("the table cannot be emptied");
    }
    const Times times = run();
    if (stored() != expected) {
        qFatal("something else was imported");
    }
    return times;
}

/// All three, measured in turns. Of each the best time counts: what else uses the disk meanwhile
/// can make a commit twenty times slower, and nothing makes it faster. On a disk that is slow by
/// itself there are fewer rounds.
struct Rounds
{
    Times ours;
    Times peer;
    Times bare;

    Rounds()
    {
        constexpr qint64 patience = 60'000; // milliseconds
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < repetitions && timer.elapsed() < patience; ++i) {
            takeBetter(ours, measure(importOurs));
            takeBetter(peer, measure(importByPeer));
            takeBetter(bare, measure(commitBare));
        }
    }

private:
    static void takeBetter(Times& best, const Times& times)
    {
        best.clock = qMin(best.clock, times.clock);
        best.processor = qMin(best.processor, times.processor);
    }
};

std::function<void(benchmark::State&)> teller(double seconds)
{
    return [seconds](benchmark::State& state) {
        for ([[maybe_unused]] auto _ : state) {
            state.SetIterationTime(seconds);
        }
    };
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const Rounds rounds;
    addJob("import/ours", teller(rounds.ours.clock), 1);
    addJob("import/openpyxl", teller(rounds.peer.clock), 1);
    addJob("import/bare commits", teller(rounds.bare.clock), 1);
    addJob("import, processor/ours", teller(rounds.ours.processor), 1);
    addJob("import, processor/openpyxl", teller(rounds.peer.processor), 1);
    addJob("import, processor/bare commits", teller(rounds.bare.processor), 1);
    runJobs(argc, argv);
    return 0;
}
