#include <benchmark/benchmark.h>

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPushButton>
#include <QSqlQuery>
#include <QTableWidget>
#include <QTemporaryDir>

#include "app/AppHelpers.h"
#include "forms/FormDefinitions.h"
#include "forms/FormsDlg.h"
#include "store/DataBase.h"
#include "store/Schema.h"

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
    for (auto _ : state) {
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
    for (auto _ : state) {
        JsonColumn list = readListItems(listId);
        QJsonArray items = list.object.value("items").toArray();
        items.replace(items.size() / 2, QString("изменено %1").arg(++turn));
        list.object["items"] = items;
        writeListItems(listId, list.object);
        fillBare(table, items);
    }
}

void selectForm(benchmark::State& state)
{
    QJsonArray fields;
    for (int i = 0; i < state.range(0); ++i) {
        fields.append(QJsonObject{{"tag", QString("#FIELD_%1").arg(i)},
                                  {"name", QString("Поле %1").arg(i)},
                                  {"type", 0}});
    }
    writeFormFields(formId, {{"fields", fields}});
    FormsDlg dialog;
    dialog.show();
    dialog.findChild<QTableWidget*>("formsWidget")->setCurrentCell(0, 0);
    for (auto _ : state) {
        dialog.selChange();
    }
}

} // namespace

BENCHMARK(editItem)->Arg(100)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(editItemFloor)->Arg(100)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(selectForm)->Arg(300)->Unit(benchmark::kMillisecond);

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir dir;
    setAppDirPath(dir.path());
    if (!createDatabaseFile(dir.filePath("docs.db")) || !dataBase.open()) {
        return 1;
    }
    QSqlQuery query;
    query.exec("PRAGMA synchronous = OFF");
    query.exec("INSERT INTO lists (ID, LIST_NAME, LIST_ITEMS) VALUES (1, 'Список', '')");
    query.exec(
        "INSERT INTO forms (ID, FORM_NAME, FORM_FULLNAME, FIELDS) VALUES (1, 'Форма', '', '')");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
