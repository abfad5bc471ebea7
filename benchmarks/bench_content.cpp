#include <benchmark/benchmark.h>

#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QJsonArray>
#include <QPushButton>
#include <QSpinBox>
#include <QSqlQuery>
#include <QTableWidget>

#include <functional>

#include "app/AppStyle.h"
#include "benchmarks/BenchDirectory.h"
#include "benchmarks/RatioReporter.h"
#include "documents/DocDialog.h"
#include "documents/TableMemoDialog.h"
#include "forms/FormDefinitions.h"

// Opening, showing and reading back the content table of a document with many fields, and a table
// value of many rows. The floor creates and shows the same widgets in a bare table under the same
// style and reads nothing.

namespace {

constexpr int listId = 1;
constexpr int fieldCount = 200;
constexpr int rowCount = 500;

const QStringList listItems = {"отлично", "хорошо", "удовлетворительно", "зачтено"};

void makeList()
{
    QSqlQuery query;
    query.exec("INSERT INTO lists (ID, LIST_NAME, LIST_ITEMS) VALUES (1, 'Оценки', '')");
    writeListItems(listId, {{"items", QJsonArray::fromStringList(listItems)}});
}

QJsonObject entryOfType(int type, int number)
{
    QJsonObject entry = {{"name", QString("Поле %1").arg(number)}, {"type", type}};
    switch (type) {
    case FieldType::list:
        entry["list"] = listId;
        entry["value"] = "хорошо";
        break;
    case FieldType::counter:
        entry["value"] = number;
        break;
    case FieldType::date:
        entry["format"] = "dd.MM.yyyy";
        entry["value"] = "15.06.2024";
        break;
    case FieldType::table:
        entry["columns"] = QJsonArray{QJsonObject{{"name", "Предмет"}, {"typeID", "0"}}};
        entry["value"] = QJsonArray();
        break;
    default:
        entry["value"] = "Информационные системы";
        break;
    }
    return entry;
}

/// As many entries of each type as of the others.
QJsonObject makeContent()
{
    QJsonObject content;
    for (int i = 0; i < fieldCount; ++i) {
        content[QString("#FIELD_%1").arg(i, 3, 10, QChar('0'))] = entryOfType(i % 6, i);
    }
    return content;
}

QJsonArray makeColumns()
{
    return {QJsonObject{{"name", "Предмет"}, {"typeID", "0"}, {"edtColumnW", "150"}},
            QJsonObject{{"name", "Часы"}, {"typeID", "2"}},
            QJsonObject{{"name", "Дата"}, {"typeID", "3"}, {"edtColumnW", "100"}},
            QJsonObject{{"name", "Оценка"}, {"typeID", "1"}, {"listID", "1"}}};
}

QJsonArray makeRows()
{
    QJsonArray rows;
    for (int i = 0; i < rowCount; ++i) {
        rows.append(QJsonArray{QString("Предмет %1").arg(i), QString::number(i), "15.06.2024",
                               listItems.at(i % listItems.size())});
    }
    return rows;
}

void addCombo(QTableWidget* table, int row, int column)
{
    auto* combo = new QComboBox;
    combo->addItems(listItems);
    combo->setEditable(true);
    table->setCellWidget(row, column, combo);
}

void addSpinBox(QTableWidget* table, int row, int column)
{
    auto* spin = new QSpinBox;
    spin->setValue(row);
    table->setCellWidget(row, column, spin);
}

void addDateEdit(QTableWidget* table, int row, int column)
{
    auto* edit = new QDateEdit(QDate(2024, 6, 15));
    edit->setButtonSymbols(QAbstractSpinBox::NoButtons);
    edit->setCalendarPopup(true); // the calendar itself comes when it is opened
    table->setCellWidget(row, column, edit);
}

void addItem(QTableWidget* table, int row, int column)
{
    table->setItem(row, column, new QTableWidgetItem("Информационные системы"));
}

void addWidget(QTableWidget* table, int row, int column, int type)
{
    switch (type) {
    case FieldType::list:
        addCombo(table, row, column);
        break;
    case FieldType::counter:
        addSpinBox(table, row, column);
        break;
    case FieldType::date:
        addDateEdit(table, row, column);
        break;
    case FieldType::table:
    case FieldType::text:
        table->setCellWidget(row, column, new QPushButton("Изменить"));
        break;
    default:
        addItem(table, row, column);
        break;
    }
}

void showBare(int rows, const QVector<std::function<int(int)>>& typesOfColumns)
{
    QTableWidget table(rows, typesOfColumns.size());
    applyBaseStyle(&table);
    table.resize(740, 400);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < typesOfColumns.size(); ++column) {
            addWidget(&table, row, column, typesOfColumns.at(column)(row));
        }
    }
    table.show();
    QApplication::processEvents();
}

std::function<int(int)> always(int type)
{
    return [type](int) { return type; };
}

void content(benchmark::State& state)
{
    const QJsonObject stored = makeContent();
    for ([[maybe_unused]] auto _ : state) {
        DocDialog dialog;
        dialog.setContent(stored);
        dialog.show();
        QApplication::processEvents();
        dialog.onDone();
        benchmark::DoNotOptimize(dialog.content());
    }
}

void contentFloor(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        showBare(fieldCount, {always(FieldType::string), [](int row) { return row % 6; }});
    }
}

void tableValue(benchmark::State& state)
{
    const QJsonArray columns = makeColumns();
    const QJsonArray rows = makeRows();
    for ([[maybe_unused]] auto _ : state) {
        TableMemoDialog dialog;
        dialog.setData(columns, rows);
        dialog.show();
        QApplication::processEvents();
        benchmark::DoNotOptimize(dialog.tableValue());
    }
}

void tableValueFloor(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        showBare(rowCount, {always(FieldType::string), always(FieldType::counter),
                            always(FieldType::date), always(FieldType::list)});
    }
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const BenchDirectory directory;
    loadBaseStyle();
    makeList();
    const auto add = [](const char* name, void (*function)(benchmark::State&)) {
        benchmark::RegisterBenchmark(name, function)->Unit(benchmark::kMillisecond);
    };
    add("fields-200/ours", content);
    add("fields-200/same widgets", contentFloor);
    add("rows-500/ours", tableValue);
    add("rows-500/same widgets", tableValueFloor);

    benchmark::Initialize(&argc, argv);
    RatioReporter reporter(RatioReporter::Clock::Cpu, RatioReporter::Peers::Floors);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
