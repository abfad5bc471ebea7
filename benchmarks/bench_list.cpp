#include <benchmark/benchmark.h>

#include <QApplication>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTableWidget>

#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "app/Startup.h"
#include "benchmarks/BenchDirectory.h"
#include "benchmarks/RatioReporter.h"
#include "documents/MainWindow.h"
#include "forms/FormDefinitions.h"
#include "store/DataBase.h"
#include "store/OrgData.h"

/// The document list against its floor: stepping the same statement and putting the same cells into
/// a bare table without sorting, in place of the rows of the fill before. The list stands in the
/// header's order afterwards. And all that the program does from its start to a window with the
/// list, but for the time that the splash stands, against opening the database and filling and
/// showing a bare table.

namespace {

constexpr int types = 12;

void insertDocuments(int count)
{
    const QStringList surnames = {"Иванова", "Петров",  "Сидоренко", "Кузнецова", "Смирнов",
                                  "Фролова", "Яковлев", "Антонова",  "Ефимов",    "Мельник"};
    const QString content = R"({"#QUALIFICATION":{"list":7,"name":"Квалификация","type":1,)"
                            R"("value":"оператор"},"#SPECIALTY":{"name":"Специальность",)"
                            R"("type":0,"value":"Информационные системы и программирование"}})";
    QSqlDatabase::database().transaction();
    QSqlQuery insert;
    insert.prepare("INSERT INTO docs (FNAME, LNAME, MNAME, DOC_TYPE, DOC_GROUP, ISSUE_DATE, "
                   "TEMPLATE, CONTENT) VALUES (?, ?, ?, ?, ?, ?, 0, ?)");
    for (int i = 0; i < count; ++i) {
        // A fixed scatter, so that the rows come in no order of any column.
        const int scattered = static_cast<int>(i * 7919LL % count);
        insert.addBindValue("Анна");
        insert.addBindValue(surnames.at(scattered % surnames.size()) + QString::number(scattered));
        insert.addBindValue("Сергеевна");
        insert.addBindValue(1 + scattered % types);
        insert.addBindValue(QString("11-%1").arg(scattered % 5));
        insert.addBindValue(QDate(2000, 1, 1).addDays(scattered % 9000).toString("yyyy-MM-dd"));
        insert.addBindValue(content);
        insert.exec();
    }
    QSqlDatabase::database().commit();
}

/// An application directory whose database holds `count` documents.
class Directory : public BenchDirectory
{
public:
    explicit Directory(int count)
    {
        QSqlQuery form;
        for (int id = 1; id <= types; ++id) {
            form.exec(QString("INSERT INTO forms (FORM_NAME) VALUES ('Диплом %1')").arg(id));
        }
        insertDocuments(count);
    }
};

void fillBareTable(QTableWidget& table)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    query.exec("SELECT * FROM docs WHERE docs.TEMPLATE = 0;");
    std::vector<std::array<QTableWidgetItem*, 4>> rows;
    while (query.next()) {
        auto* person =
            new QTableWidgetItem(query.value(4).toString() + " " + query.value(3).toString() + " " +
                                 query.value(5).toString());
        person->setData(Qt::UserRole, query.value(0));
        rows.push_back({person, new QTableWidgetItem(query.value(8).toString()),
                        new QTableWidgetItem(docTypeNames[query.value(7).toInt()]),
                        new QTableWidgetItem(query.value(9).toString())});
    }
    table.setRowCount(0);
    table.setRowCount(static_cast<int>(rows.size()));
    for (int row = 0; row < table.rowCount(); ++row) {
        for (int column = 0; column < 4; ++column) {
            table.setItem(row, column, rows[row][column]);
        }
    }
}

using Directories = std::map<int, std::unique_ptr<Directory>>;

/// Opens the directory with that many documents; each is made once.
void openDirectory(Directories& directories, int count)
{
    std::unique_ptr<Directory>& directory = directories[count];
    if (!directory) {
        directory = std::make_unique<Directory>(count);
    }
    setAppDirPath(directory->path(QString()));
    dataBase.open();
}

void fillList(benchmark::State& state)
{
    MainWindow window;
    window.findChild<QTableWidget*>("docsWidget")->sortByColumn(0, Qt::AscendingOrder);
    for ([[maybe_unused]] auto _ : state) {
        window.updateDocsTable(QString());
    }
}

void fillFloor(benchmark::State& state)
{
    const MainWindow window; // reads the document types
    QTableWidget bare(0, 4);
    fillBareTable(bare); // as the window has been filled
    for ([[maybe_unused]] auto _ : state) {
        fillBareTable(bare);
    }
}

void start(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        dataBase.close();
        state.ResumeTiming();
        loadBaseStyle();
        dataBase.open();
        QFile package(appFilePath("dbUpdate.bin"));
        applyPendingUpdate(package);
        loadOrgData();
        auto window = std::make_unique<MainWindow>();
        window->show();
        QApplication::processEvents();
        state.PauseTiming();
        window.reset();
        state.ResumeTiming();
    }
}

void startFloor(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        dataBase.close();
        state.ResumeTiming();
        dataBase.open();
        auto bare = std::make_unique<QTableWidget>(0, 4);
        fillBareTable(*bare);
        bare->show();
        QApplication::processEvents();
        state.PauseTiming();
        bare.reset();
        state.ResumeTiming();
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    Directories directories;
    for (int count : {1000, 10000, 100000}) {
        const auto add = [&](const std::string& job, const char* subject,
                             void (*run)(benchmark::State&)) {
            const std::string name = job + " " + std::to_string(count) + "/" + subject;
            benchmark::RegisterBenchmark(name.c_str(), [&directories, count,
                                                        run](benchmark::State& state) {
                openDirectory(directories, count);
                run(state);
            })->Unit(benchmark::kMillisecond);
        };
        add("list", "ours", fillList);
        add("list", "bare table", fillFloor);
        add("start", "ours", start);
        add("start", "bare table", startFloor);
    }
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter(RatioReporter::Clock::Cpu, RatioReporter::Peers::Floors);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
