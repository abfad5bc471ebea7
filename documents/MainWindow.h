#pragma once

#include <QMainWindow>
#include <QString>
#include <QVariant>

#include <memory>

class DocumentFields;
class QToolBar;

namespace Ui {
class MainWindow;
}

/// The registrar's desk: the filtered list of issued documents, the content of the selected one,
/// and the toolbars that lead to every other dialog. It keeps no model: `docsWidget` is filled from
/// SQL, and its rows are patched by hand after each edit. A row's document is the identifier in
/// Qt::UserRole of its first item, and nothing else.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    /// Fills the list with the result of a query over all columns of `docs`; an empty text means
    /// all documents. One row is one document, in the result's order, or in the header's while
    /// sorting is on. The first row becomes current. A failed statement is logged and leaves the
    /// list empty.
    void updateDocsTable(const QString& query);

    /// Reads `docTypeNames` and the items of the type filter anew. A failed statement is logged and
    /// leaves both as they were.
    void loadDocTypes();

    /// `ID` of the document that the content pane shows, -1 before the first.
    QVariant currentDocId() const;

    /// The statement that applyFilters() composed last, empty before the first. It outlives a reset
    /// of the filters, and the export goes by it.
    QString filterQuery() const;

public slots:
    void showForms();
    void showBlanks();
    void showExport();
    void loadData();
    void saveData();
    void onNewDoc();
    void onEditDoc();
    void onDeleteDoc();
    void onPrintDoc();
    void onCopyDoc();
    void selChange();
    void applyFilters();
    void resetFilters();
    void onTextView();
    void onTalbeView(); // kept: so written, as its callers are
    void on_menuAction_LocalChangeOrgData_triggered();

private:
    using Slot = void (MainWindow::*)();

    void createToolBars();
    QToolBar* addEmptyToolBar(const QString& objectName, Qt::ToolBarArea area);
    void addToolBarAction(QToolBar* bar, const QString& icon, const QString& text,
                          const QString& toolTip, Slot slot, const QKeySequence& shortcut);
    void setupTables();
    void connectSignals();
    void setupDates();
    QVariant currentRowId() const;
    void insertRow(int row, const QVariant& id, const DocumentFields& fields);

    std::unique_ptr<Ui::MainWindow> ui;
    QVariant m_currentDocId = -1;
    QString m_filterQuery;
};
