#include "documents/MainWindow.h"

#include <QCalendarWidget>
#include <QCoreApplication>
#include <QDate>
#include <QDebug>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QMessageBox>
#include <QShortcut>
#include <QSqlQuery>
#include <QToolBar>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "app/SharpIcon.h"
#include "app/widgets/CalendarPopupStyle.h"
#include "app/widgets/CellTextDelegate.h"
#include "app/widgets/CurrentRowGuard.h"
#include "app/widgets/LongItems.h"
#include "app/widgets/RowFitPause.h"
#include "app/widgets/TableItems.h"
#include "blanks/BlankDlg.h"
#include "documents/Archive.h"
#include "documents/ContentPane.h"
#include "documents/DocDialog.h"
#include "documents/DocumentContent.h"
#include "documents/DocumentFields.h"
#include "documents/DocumentList.h"
#include "documents/DocumentRecord.h"
#include "documents/NewDocDlg.h"
#include "documents/ZelvoraTableButton.h"
#include "exchange/ExportDlg.h"
#include "forms/FormDefinitions.h"
#include "forms/FormsDlg.h"
#include "render/PrinPreviewDialog.h"
#include "store/ChangeOrgDataDlg.h"
#include "store/DataBase.h"
#include "store/SqlLog.h"
#include "store/StoredDate.h"
#include "ui_MainWindow.h"

namespace {

const char* const toolBarStyle = "QToolButton {"
                                 "                  background: #FFFFFF;"
                                 "                  color: #333333;"
                                 "                  font-family: Roboto;"
                                 "                  font-style: normal;"
                                 "                  font-weight: normal;"
                                 "                  font-size: 12px;"
                                 "                  line-height: 12px;"
                                 "              }";

/// Keeps sorting off while a slot works on rows by index; the list is sorted once at its end,
/// whatever way out the slot takes, and then scrolled to the current row if that is wanted.
class SortingPause
{
public:
    explicit SortingPause(QTableWidget* table)
        : m_table(table)
    {
        m_table->setSortingEnabled(false);
    }
    ~SortingPause()
    {
        m_table->setSortingEnabled(true);
        if (m_showsCurrent) {
            m_table->scrollTo(m_table->currentIndex());
        }
    }
    SortingPause(const SortingPause&) = delete;
    SortingPause& operator=(const SortingPause&) = delete;

    void showCurrentAtEnd() { m_showsCurrent = true; }

private:
    QTableWidget* m_table;
    bool m_showsCurrent = false;
};

/// Shows a document in the dialog; true if the user left something to be stored.
bool editDocument(DocDialog& dialog, const QVariant& id)
{
    return loadDocument(dialog, id) && dialog.exec() == QDialog::Accepted && dialog.docType() >= 1;
}

void setTableColours(QTableWidget* table)
{
    QPalette palette;
    palette.setColor(QPalette::Text, QColor("#404040"));
    palette.setColor(QPalette::Base, QColor("#F7F8F9"));
    palette.setColor(QPalette::Window, QColor("#F7F8F9"));
    palette.setColor(QPalette::AlternateBase, QColor("#FFFFFF"));
    palette.setColor(QPalette::Highlight, QColor(124, 153, 255, 170));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(31, 117, 204, 170));
    // White on the pale selection colour could hardly be read.
    palette.setColor(QPalette::HighlightedText, QColor("#404040"));
    table->setPalette(palette);
}

void setDocumentColumns(QTableWidget* table)
{
    constexpr int usualDefault = 100; // pixels; the toolkit's grows with the fonts of the desktop
    QHeaderView* header = table->horizontalHeader();
    table->ensurePolished();
    const int margins =
        2 * (table->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, table) + 1);
    constexpr int grid = 1;
    // The last column takes what the others leave, but never less than a date.
    const int date = table->fontMetrics().horizontalAdvance("0000-00-00") + margins + grid;
    header->setMinimumSectionSize(date);
    header->setDefaultSectionSize(usualDefault);
    table->setColumnWidth(0, 400);
    table->setColumnWidth(2, 128);
    table->setColumnWidth(3, date);
}

} // namespace

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent)
    , ui(std::make_unique<Ui::MainWindow>())
{
    ui->setupUi(this);
    applyBaseStyle(this);
    LongItems::install(ui->filterTypeCmb);
    ui->logo->setPixmap(sharpPixmap(":/logo.png"));
    ui->separator->setPixmap(sharpPixmap(":/separator.png"));
    setStyledFixedHeight(ui->filterApplyBtn, 32);
    setStyledFixedHeight(ui->filterResetBtn, 32);
    setWindowTitle(windowTitle() + " v" + appVersion + " [" + appBuildLabel + "]");
    createToolBars();
    setupTables();
    ui->splitter->setSizes({300, 224});
    connectSignals();
    setupDates();
    loadDocTypes();
    ui->filterTypeCmb->setCurrentIndex(-1);
    updateDocsTable(QString());
}

MainWindow::~MainWindow() = default;

void MainWindow::updateDocsTable(const QString& query)
{
    ui->docsWidget->setRowCount(0);
    ui->docsWidget->setNotice(QString());
    ui->contentWidget->setRowCount(0); // also if no selection goes with the rows
    QSqlQuery documents;
    documents.setForwardOnly(true);
    if (!documents.exec("PRAGMA case_sensitive_like = false;") ||
        !documents.exec(query.isEmpty() ? "SELECT * FROM docs WHERE docs.TEMPLATE = 0;" : query))
    {
        logSqlFailureWithQuery("Unable to select from docs query", documents);
        return;
    }
    fillDocumentList(ui->docsWidget, documents);
    ui->docsWidget->setCurrentCell(0, 0);
    if (!query.isEmpty()) {
        ui->docsWidget->setNotice("Ничего не найдено"); // as long as there is no row
    }
}

void MainWindow::loadDocTypes()
{
    QSqlQuery forms;
    forms.setForwardOnly(true);
    if (!forms.exec("SELECT ID, FORM_NAME FROM forms;")) {
        qDebug() << "Unable to select from forms query";
        return;
    }
    docTypeNames.clear();
    ui->filterTypeCmb->clear();
    while (forms.next()) {
        const int id = forms.value(0).toInt();
        const QString name = forms.value(1).toString();
        docTypeNames[id] = name;
        ui->filterTypeCmb->addItem(name, id);
    }
}

QVariant MainWindow::currentDocId() const
{
    return m_currentDocId;
}

QString MainWindow::filterQuery() const
{
    return m_filterQuery;
}

void MainWindow::showForms()
{
    FormsDlg dialog(this);
    if (dialog.exec() == QDialog::Accepted) {
        loadDocTypes();
    }
}

void MainWindow::showBlanks()
{
    BlankDlg dialog(this);
    dialog.exec();
}

void MainWindow::showExport()
{
    const SortingPause pause(ui->docsWidget);
    ExportDlg dialog(this);
    dialog.setDocsQuery(m_filterQuery);
    dialog.exec();
    updateDocsTable(QString());
}

void MainWindow::loadData()
{
    const QString archive = QFileDialog::getOpenFileName(this, "Укажите файл архива",
                                                         archiveFolder(), archiveFileFilter);
    if (archive.isEmpty()) {
        return;
    }
    if (!QFileInfo(archive).isFile()) {
        QMessageBox::critical(this, "Ошибка", "Не верно указан файл\n" + archive);
        return;
    }
    if (!replaceDatabase(archive)) {
        QMessageBox::critical(this, "Ошибка", "Не удалось скопировать\n" + archive);
    }
    // kept: not looked at. What can't be opened shows as an empty list.
    dataBase.open();
    updateDocsTable(QString());
}

void MainWindow::saveData()
{
    const QString archive =
        QFileDialog::getSaveFileName(this, "Сохранить как", newArchivePath(), archiveFileFilter);
    if (archive.isEmpty()) {
        return;
    }
    if (!saveArchive(archive)) {
        QMessageBox::critical(this, "Ошибка", "Не удалось сохранить\n" + archive);
    }
}

void MainWindow::onNewDoc()
{
    SortingPause pause(ui->docsWidget);
    NewDocDlg dialog(this);
    if (dialog.exec() != QDialog::Accepted || dialog.docType() < 1) {
        return;
    }
    const QVariant id = insertDocument(dialog);
    if (id.isValid()) {
        insertRow(ui->docsWidget->rowCount(), id, dialog);
        pause.showCurrentAtEnd();
    }
}

void MainWindow::onEditDoc()
{
    SortingPause pause(ui->docsWidget);
    const int row = ui->docsWidget->currentRow();
    const QVariant id = currentRowId();
    if (!id.isValid()) {
        return;
    }
    DocDialog dialog(this);
    if (!editDocument(dialog, id)) {
        return;
    }
    updateDocument(dialog, id);
    // Also after a refused update: the row then shows what was entered, and the database keeps
    // what it had.
    setDocumentListRow(ui->docsWidget, row, documentListRow(id, dialog));
    pause.showCurrentAtEnd();
    selChange();
}

void MainWindow::onDeleteDoc()
{
    const SortingPause pause(ui->docsWidget);
    const QList<QTableWidgetItem*> selected = ui->docsWidget->selectedItems();
    if (selected.isEmpty()) {
        return;
    }
    const int row = ui->docsWidget->currentRow();
    if (!askYesNo("Удалить выбранные документы?", this)) {
        return;
    }
    setCursor(Qt::BusyCursor);
    // Clicks made meanwhile wait until the rows are whole again.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    for (const QTableWidgetItem* item : selected) {
        const QVariant id = item->data(Qt::UserRole);
        if (id.isValid()) {
            deleteDocument(id);
        }
    }
    updateDocsTable(QString());
    setCursor(Qt::ArrowCursor);
    if (row < ui->docsWidget->rowCount()) {
        ui->docsWidget->setCurrentCell(row, 0);
    }
}

void MainWindow::onPrintDoc()
{
    const QVariant id = currentRowId();
    if (!id.isValid()) {
        return;
    }
    PrinPreviewDialog preview(id, this);
    preview.exec();
}

void MainWindow::onCopyDoc()
{
    SortingPause pause(ui->docsWidget);
    const int row = ui->docsWidget->currentRow();
    const QVariant sourceId = currentRowId();
    if (!sourceId.isValid()) {
        return;
    }
    DocDialog dialog(this);
    if (!editDocument(dialog, sourceId)) {
        return;
    }
    const QVariant id = insertDocument(dialog);
    if (id.isValid()) {
        insertRow(row, id, dialog); // directly above its source
        pause.showCurrentAtEnd();
    }
}

void MainWindow::selChange()
{
    const RowFitPause pause(ui->contentWidget);
    ui->contentWidget->setRowCount(0);
    const QVariant id = currentRowId();
    if (!id.isValid()) {
        return;
    }
    m_currentDocId = id;
    QSqlQuery document;
    if (!document.exec("SELECT BLANK_SER, BLANK_NO, BIRTH_DATE, EDIT_DATE, DUPLICATE, CONTENT FROM "
                       "docs WHERE ID = " +
                       id.toString() + ";"))
    {
        logSqlFailure("Unable to execute select query", document);
        return;
    }
    if (!document.first()) {
        return;
    }
    showContentPane(ui->contentWidget, document,
                    valueButtonSlots(this, &MainWindow::onTextView, &MainWindow::onTalbeView));
}

void MainWindow::applyFilters()
{
    const SortingPause pause(ui->docsWidget);
    // kept: pasted in as they were typed. An apostrophe makes the statement fail.
    QString query = "SELECT * FROM docs WHERE docs.TEMPLATE = 0 ";
    if (!ui->filterNameEdit->text().isEmpty()) {
        query += " AND docs.LNAME LIKE '%" + ui->filterNameEdit->text() + "%'";
    }
    if (!ui->filterGroupEdit->text().isEmpty()) {
        query += " AND docs.DOC_GROUP LIKE '%" + ui->filterGroupEdit->text() + "%'";
    }
    if (ui->filterTypeCmb->currentIndex() >= 0) {
        query += " AND docs.DOC_TYPE = " + ui->filterTypeCmb->currentData().toString();
    }
    if (ui->dateCheck->isChecked()) {
        query += " AND docs.ISSUE_DATE >= '" + ui->fromDate->date().toString(storedDateFormat) +
                 "' AND docs.ISSUE_DATE <= '" + ui->toDate->date().toString(storedDateFormat) + "'";
    }
    query += ";";
    m_filterQuery = query;
    updateDocsTable(query);
}

void MainWindow::resetFilters()
{
    const SortingPause pause(ui->docsWidget);
    ui->filterNameEdit->clear();
    ui->filterGroupEdit->clear();
    ui->filterTypeCmb->setCurrentIndex(-1);
    ui->dateCheck->setChecked(false);
    updateDocsTable(QString());
}

void MainWindow::onTextView()
{
    runTextEditor(sender(), this, true);
}

void MainWindow::onTalbeView()
{
    runTableEditor(qobject_cast<ZelvoraTableButton*>(sender()), this, true);
}

void MainWindow::on_menuAction_LocalChangeOrgData_triggered()
{
    ChangeOrgDataDlg dialog(this);
    dialog.exec();
}

// kept: saving has the icon "load" and loading the icon "save", as users have learnt them.
void MainWindow::createToolBars()
{
    QToolBar* bottom = addEmptyToolBar("toolBar", Qt::BottomToolBarArea);
    addToolBarAction(bottom, ":res/plus.png", "СОЗДАТЬ ДОКУМЕНТ", "Создать документ",
                     &MainWindow::onNewDoc, QKeySequence::New);
    addToolBarAction(bottom, ":res/forms2.png", "СОЗДАТЬ КОПИЮ\nДОКУМЕНТА",
                     "Создать копию документа", &MainWindow::onCopyDoc,
                     Qt::CTRL + Qt::SHIFT + Qt::Key_N);
    addToolBarAction(bottom, ":res/edit1.png", "РЕДАКТИРОВАТЬ\nДОКУМЕНТ", "Редактировать документ",
                     &MainWindow::onEditDoc, Qt::Key_F2);
    addToolBarAction(bottom, ":res/printer.png", "ПЕЧАТЬ", "Печать", &MainWindow::onPrintDoc,
                     QKeySequence::Print);
    addToolBarAction(bottom, ":res/trash.png", "УДАЛИТЬ ДОКУМЕНТ", "Удалить выбранные документы",
                     &MainWindow::onDeleteDoc, Qt::CTRL + Qt::Key_Delete);
    alignToolBarIcons(bottom);

    QToolBar* top = addEmptyToolBar("toolBarTop", Qt::TopToolBarArea);
    addToolBarAction(top, ":/res/forms1.png", "ФОРМЫ", "Формы и списки", &MainWindow::showForms,
                     Qt::CTRL + Qt::Key_1);
    addToolBarAction(top, ":/res/blanks.png", "БЛАНКИ", "Бланки", &MainWindow::showBlanks,
                     Qt::CTRL + Qt::Key_2);
    addToolBarAction(top, ":/res/export.png", "ЭКСПОРТ\nИМПОРТ", "Экспорт и импорт",
                     &MainWindow::showExport, Qt::CTRL + Qt::Key_3);
    top->addSeparator();
    addToolBarAction(top, ":/res/load.png", "СОХРАНИТЬ\nВ АРХИВ", "Сохранить в архив",
                     &MainWindow::saveData, QKeySequence::Save);
    addToolBarAction(top, ":/res/save.png", "ЗАГРУЗИТЬ\nИЗ АРХИВА", "Загрузить из архива",
                     &MainWindow::loadData, QKeySequence::Open);
    alignToolBarIcons(top);
}

QToolBar* MainWindow::addEmptyToolBar(const QString& objectName, Qt::ToolBarArea area)
{
    auto* bar = new QToolBar(this);
    bar->setObjectName(objectName);
    bar->setMovable(false);
    bar->setOrientation(Qt::Horizontal);
    // kept: of the top bar too, which stays where it is.
    bar->setAllowedAreas(Qt::BottomToolBarArea);
    bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    bar->setIconSize(QSize(40, 40));
    bar->setStyleSheet(toolBarStyle);
    addToolBar(area, bar);
    return bar;
}

void MainWindow::addToolBarAction(QToolBar* bar, const QString& icon, const QString& text,
                                  const QString& toolTip, Slot slot, const QKeySequence& shortcut)
{
    QAction* action = bar->addAction(sharpIcon(QIcon(icon)), text, this, slot);
    action->setShortcut(shortcut);
    action->setToolTip(toolTip + " (" + shortcut.toString(QKeySequence::NativeText) + ")");
}

void MainWindow::setupTables()
{
    setTableColours(ui->docsWidget);
    setTableColours(ui->contentWidget);
    CurrentRowGuard::install(ui->docsWidget);
    // The list may be long: its rows have one line each.
    ui->docsWidget->setItemDelegate(new CellTextDelegate(ui->docsWidget));
    ui->docsWidget->verticalHeader()->setDefaultSectionSize(plainRowHeight);
    fitRows(ui->contentWidget);
    setDocumentColumns(ui->docsWidget);
    ui->contentWidget->setColumnWidth(0, 224);
}

void MainWindow::connectSignals()
{
    connect(ui->actionForms, &QAction::triggered, this, &MainWindow::showForms);
    connect(ui->actionBlanks, &QAction::triggered, this, &MainWindow::showBlanks);
    connect(ui->docsWidget, &QTableWidget::itemDoubleClicked, this, &MainWindow::onEditDoc);
    connect(ui->docsWidget, &QTableWidget::itemSelectionChanged, this, &MainWindow::selChange);
    // Comes when the rows have been sorted.
    connect(ui->docsWidget->horizontalHeader(), &QHeaderView::sectionClicked, this,
            [this](int column) {
                const QModelIndex current = ui->docsWidget->currentIndex();
                ui->docsWidget->scrollTo(current.sibling(current.row(), column));
            });
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        new QShortcut(key, ui->docsWidget, this, &MainWindow::onEditDoc, Qt::WidgetShortcut);
    }
    new QShortcut(Qt::Key_Delete, ui->docsWidget, this, &MainWindow::onDeleteDoc,
                  Qt::WidgetShortcut);
    for (const QLineEdit* edit : {ui->filterNameEdit, ui->filterGroupEdit}) {
        connect(edit, &QLineEdit::returnPressed, ui->filterApplyBtn, &QToolButton::click);
    }
    connect(ui->filterApplyBtn, &QToolButton::clicked, this, &MainWindow::applyFilters);
    connect(ui->filterResetBtn, &QToolButton::clicked, this, &MainWindow::resetFilters);
}

void MainWindow::setupDates()
{
    const QDate today = QDate::currentDate();
    ui->fromDate->setDate(QDate(today.year(), 1, 1));
    ui->toDate->setDate(today);
    CalendarPopupStyle::install(ui->fromDate);
    CalendarPopupStyle::install(ui->toDate);
}

QVariant MainWindow::currentRowId() const
{
    const QTableWidgetItem* item = currentRowItem(ui->docsWidget);
    return item ? item->data(Qt::UserRole) : QVariant();
}

void MainWindow::insertRow(int row, const QVariant& id, const DocumentFields& fields)
{
    ui->docsWidget->insertRow(row);
    setDocumentListRow(ui->docsWidget, row, documentListRow(id, fields));
    ui->docsWidget->setCurrentCell(row, 0);
}
