#include <benchmark/benchmark.h>

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPushButton>
#include <QSqlQuery>
#include <QTableWidget>

#include "benchmarks/BenchDirectory.h"
#include "benchmarks/RatioReporter.h"
#include "forms/FormDefinitions.h"
#include "forms/FormsDlg.h"

// Editing one of many items of a value list, and deleting one of many fields of a form, in the
// manager's dialog. The floor does the same reading, writing and filling with a bare table.

namespace {

constexpr int listId = 1;
constexpr int formId = 1;

QJsonArray makeItems(int count)
{
    QJsonArray items;
    for (int i = 0; i < count; ++i) {
        items.append(QString("Элемент списка %1").arg(i));
    }
    return items;
}

void storeList(int count)
{
    writeListItems(listId, {{"items", makeItems(count)}});
}

void fillBare(QTableWidget& table, const QJsonArray& items)
{
    table.setRowCount(0);
    table.setRowCount(items.size());
    for (int row = 0; row < items.size(); ++row) {
        auto* item = new QTableWidgetItem(items[row].toString());
        item->setData(Qt::UserRole, row);
        table.setItem(row, 0, item);
    }
}

void editItem(benchmark::State& state)
{
    storeList(static_cast<int>(state.range(0)));
    FormsDlg dialog;
    dialog.show();
    dialog.findChild<QTableWidget*>("listsWidget")->setCurrentCell(0, 0);
    auto* items = dialog.findChild<QTableWidget*>("itemsWidget");
    int turn = 0;
    for ([[maybe_unused]] auto _ : state) {
        items->setCurrentCell(items->rowCount() / 2, 0);
        items->currentItem()->setText(QString("изменено %1").arg(++turn));
    }
}

void editItemFloor(benchmark::State& state)
{
    storeList(static_cast<int>(state.range(0)));
    QTableWidget table(0, 1);
    table.show();
    int turn = 0;
    for ([[maybe_unused]] auto _ : state) {
        JsonColumn list = readListItems(listId);
        QJsonArray items = list.object.value("items").toArray();
        items.replace(items.size() / 2, QString("изменено %1").arg(++turn));
        list.object["items"] = items;
        writeListItems(listId, list.object);
        fillBare(table, items);
    }
}

void storeForm(int count)
{
    QJsonArray fields;
    for (int i = 0; i < count; ++i) {
        fields.append(QJsonObject{{"tag", QString("#FIELD_%1").arg(i)},
                                  {"name", QString("Поле %1").arg(i)},
                                  {"type", 0}});
    }
    writeFormFields(formId, {{"fields", fields}});
}

void selectForm(benchmark::State& state)
{
    storeForm(static_cast<int>(state.range(0)));
    FormsDlg dialog;
    dialog.show();
    dialog.findChild<QTableWidget*>("formsWidget")->setCurrentCell(0, 0);
    for ([[maybe_unused]] auto _ : state) {
        dialog.selChange();
    }
}

void selectFormFloor(benchmark::State& state)
{
    storeForm(static_cast<int>(state.range(0)));
    QTableWidget table(0, 3);
    table.show();
    for ([[maybe_unused]] auto _ : state) {
        const QJsonArray fields = readFormFields(formId).object.value("fields").toArray();
        table.setRowCount(0);
        table.setRowCount(fields.size());
        for (int row = 0; row < fields.size(); ++row) {
            const QJsonObject field = fields[row].toObject();
            table.setItem(row, 0, new QTableWidgetItem(field["tag"].toString()));
            table.setItem(row, 1, new QTableWidgetItem(field["name"].toString()));
            table.setItem(row, 2, new QTableWidgetItem(fieldTypeNames.value(0)));
        }
    }
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const BenchDirectory directory;
    QSqlQuery query;
    query.exec("PRAGMA synchronous = OFF");
    query.exec("INSERT INTO lists (ID, LIST_NAME, LIST_ITEMS) VALUES (1, 'Список', '')");
    query.exec(
        "INSERT INTO forms (ID, FORM_NAME, FORM_FULLNAME, FIELDS) VALUES (1, 'Форма', '', '')");
    const auto add = [](const char* name, void (*run)(benchmark::State&), int count) {
        benchmark::RegisterBenchmark(name, run)->Arg(count)->Unit(benchmark::kMillisecond);
    };
    add("edit item of 100/ours", editItem, 100);
    add("edit item of 100/bare table", editItemFloor, 100);
    add("edit item of 5000/ours", editItem, 5000);
    add("edit item of 5000/bare table", editItemFloor, 5000);
    add("show 300 fields/ours", selectForm, 300);
    add("show 300 fields/bare table", selectFormFloor, 300);

    benchmark::Initialize(&argc, argv);
    RatioReporter reporter(RatioReporter::Clock::Cpu, RatioReporter::Peers::Floors);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
