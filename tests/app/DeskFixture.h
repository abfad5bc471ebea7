#pragma once

#include <QString>

#include "support/TempApplication.h"

class QComboBox;
class QDate;
class QDateEdit;
class QMainWindow;
class QTableWidget;

/// An application directory with the sample of zelvora-db in it, its database open.
class SampleApplication : public TempApplication
{
public:
    SampleApplication();

    /// The sample's database as the tool made it, for a comparison.
    QString pristine() const { return path("pristine.db"); }
};

/// Presses a button of the main window's toolbars by its text; a missing one fails the test.
void pressToolBar(const QMainWindow* window, const QString& text);

/// Row of a table whose first item carries this identifier; -1 if none does.
int rowOfRecord(const QTableWidget* table, int id);

/// Clicks the row of a record.
void clickRecord(QTableWidget* table, int id, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

/// Makes an item of a combo current by the arrow keys, from where the combo stands.
void chooseByKeys(QComboBox* combo, int index);

/// Types a date into a date edit, section by section.
void typeDate(QDateEdit* edit, const QDate& date);
