#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QVariantMap>
#include <QVector>
#include <QtTest>

#include <memory>
#include <utility>

#include "exchange/ExportDlg.h"
#include "support/TempApplication.h"
#include "support/Widgets.h"

/// An application directory with an empty database, and the exchange dialog over it.
class ExchangeFixture
{
public:
    using Mapping = QVector<std::pair<QString, QString>>; ///< column letters and tag

    ExchangeFixture();
    ~ExchangeFixture();

    /// Stores an exchange template; returns its `ID`.
    int addTemplate(const QString& name, const Mapping& mapping,
                    const QString& workbook = QString(), int fromRow = 2, int toRow = 99,
                    const QString& dateFormat = "dd.MM.yyyy");

    /// Stores a form with the field objects; returns its `ID`.
    int addForm(const QString& name, const QVector<QJsonObject>& fields = {});

    /// Stores a document with these columns; the others are empty, `DUPLICATE` and `TEMPLATE` 0.
    /// Returns its `ID`.
    int addDocument(const QVariantMap& columns);

    /// Makes the dialog anew, as the main window does.
    ExportDlg& open();
    void close() { m_dialog.reset(); }
    ExportDlg& dialog() { return *m_dialog; }

    /// A widget of the dialog; fails the test if it is missing.
    template <class T>
    T* child(const char* name)
    {
        return named<T>(m_dialog.get(), name);
    }

    void click(const char* button);

    /// Selects a row of the template list.
    void selectTemplate(int row);

    TempApplication app;

private:
    std::unique_ptr<ExportDlg> m_dialog;
};

/// Runs a command of workbooks.py with its arguments and returns its result.
QJsonValue workbooks(const QJsonArray& command);

/// Writes a workbook from a description, see workbooks.py.
void writeWorkbook(const QString& file, const QJsonObject& description);

/// Writes a workbook of one sheet that has these cells.
void writeCells(const QString& file, const QJsonObject& cells);

/// Everything in a workbook, as openpyxl reads it.
QJsonObject readWorkbook(const QString& file);

/// The cells of a sheet of a workbook by their names, as openpyxl reads them.
QJsonObject readCells(const QString& file, const QString& sheet);
