#include "blanks/BlankDlg.h"

#include <QDebug>
#include <QEventLoop>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QHash>
#include <QMessageBox>
#include <QScreen>
#include <QSqlError>
#include <QSqlQuery>
#include <QStyle>
#include <QWindow>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "app/StoredPath.h"
#include "app/widgets/RowFitPause.h"
#include "app/widgets/TableItems.h"
#include "blanks/BlankFormatDialog.h"
#include "blanks/BlankRecord.h"
#include "blanks/BlankWindow.h"
#include "render/page/PagePicture.h"
#include "store/SqlLog.h"
#include "ui_BlankDlg.h"

namespace {

// The columns that the format dialog edits, in the order of the statements.
const QStringList& formatColumns()
{
    static const QStringList columns = {
        "NAME",      "FORM_ID",        "PAPER_FORMAT", "PAPER_ORIENTATION", "PAGES",    "FONT",
        "FONT_SIZE", "BACKGROUND_IMG", "SIZE_WIDTH",   "SIZE_HEIGHT",       "OFFSET_X", "OFFSET_Y"};
    return columns;
}

// The list's failure is shown once per run.
bool showListError = true;

QString quoted(const QString& text)
{
    return "'" + text + "'";
}

QString millimetres(const QVariant& value)
{
    return value.toString() + " мм";
}

// The row that the last INSERT made.
QVariant newestId()
{
    QSqlQuery query("SELECT last_insert_rowid()");
    return query.next() ? query.value(0) : QVariant();
}

// Where a window of that size stands in the middle of another one and on its screen. A dialog finds
// the place itself, a main window does not.
QPoint placeOver(const QWidget* parent, const QSize& size)
{
    const QRect screen = parent->screen()->availableGeometry();
    const QRect centred =
        QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size, parent->frameGeometry());
    return {qMax(screen.left(), qMin(centred.left(), screen.right() + 1 - size.width())),
            qMax(screen.top(), qMin(centred.top(), screen.bottom() + 1 - size.height()))};
}

} // namespace

BlankDlg::BlankDlg(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::BlankDlg>())
    , previewScene(new QGraphicsScene(this))
    , previewItem(previewScene->addPixmap(QPixmap()))
{
    ui->setupUi(this);
    applyBaseStyle(this);
    ui->buttonReject->hide();
    fitRows(ui->blanksWidget);
    ui->splitter->setSizes({320, 640});
    ui->backgroundView->setScene(previewScene);
    connect(ui->blankEditBtn, &QToolButton::clicked, this, &BlankDlg::blankDetails);
    ui->portraitButton->setChecked(true);
    refreshList();
}

BlankDlg::~BlankDlg() = default;

bool BlankDlg::refreshList()
{
    ui->blanksWidget->clearContents();
    ui->blanksWidget->setRowCount(0);
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT ID, NAME FROM blanks;")) {
        logSqlError(query);
        if (showListError) {
            showListError = false;
            showError("Ошибка удаления бланка: SQL Error");
        }
        return false;
    }
    const RowFitPause pause(ui->blanksWidget);
    while (query.next()) {
        const QVariant id = query.value("ID");
        const QString name = shownBlankName(query.value("NAME").toString(), id);
        const int row = ui->blanksWidget->rowCount();
        ui->blanksWidget->insertRow(row);
        ui->blanksWidget->setItem(row, 0, makeTableItem(name, id));
    }
    return true;
}

bool BlankDlg::loadForms(BlankFormatDialog* dialog)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT ID, FORM_NAME FROM forms")) {
        qDebug().noquote() << "Не удалось получить список форм: " + query.lastError().text();
        return false;
    }
    QStringList names;
    QVariantList ids;
    while (query.next()) {
        ids << query.value("ID");
        names << query.value("FORM_NAME").toString();
    }
    dialog->setForms(names, ids);
    return true;
}

QString BlankDlg::fieldValueLiteral(const QString& column, const BlankFormatDialog* dialog) const
{
    const QHash<QString, QString> literals = {
        {"NAME", quoted(dialog->name())},
        {"FORM_ID", dialog->form().toString()},
        {"PAPER_FORMAT", QString::number(dialog->paperFormat())},
        {"PAPER_ORIENTATION", QString::number(dialog->orientation())},
        {"PAGES", QString::number(dialog->pages())},
        {"FONT", quoted(dialog->fontFamily())},
        {"FONT_SIZE", QString::number(dialog->fontSize())},
        {"BACKGROUND_IMG", quoted(dialog->background())},
        {"SIZE_WIDTH", QString::number(dialog->pageWidth())},
        {"SIZE_HEIGHT", QString::number(dialog->pageHeight())},
        {"OFFSET_X", QString::number(dialog->offsetX())},
        {"OFFSET_Y", QString::number(dialog->offsetY())}};
    return literals.value(column, "NULL");
}

bool BlankDlg::saveBlankFormat(const BlankFormatDialog* dialog, const QVariant* blankId)
{
    QStringList literals;
    QStringList assignments;
    for (const QString& column : formatColumns()) {
        literals << fieldValueLiteral(column, dialog);
        assignments << column + " = " + literals.last();
    }
    const QString statement = blankId ? "UPDATE blanks SET " + assignments.join(", ") +
                                            " WHERE ID = " + blankId->toString()
                                      : "INSERT INTO blanks (" + formatColumns().join(", ") +
                                            ") VALUES (" + literals.join(", ") + ")";
    QSqlQuery query;
    // kept: names are pasted in as they are; one with an apostrophe fails and is reported.
    if (query.exec(statement)) {
        return true;
    }
    logSqlError(query);
    // kept: the "c" of the second word is Latin here, and Cyrillic in BlankWindow.
    showError("Ошибка cохранения бланка: SQL Error");
    return false;
}

void BlankDlg::editFormat(const QVariant& blankId)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT * FROM blanks WHERE ID = " + blankId.toString() + ";")) {
        logSqlError(query);
        showError("Ошибка редактирования бланка: SQL Error");
        return;
    }
    if (!query.next()) {
        showError("Ошибка редактирования бланка: не найден бланк");
        return;
    }
    BlankFormatDialog dialog;
    dialog.setName(query.value("NAME").toString());
    loadForms(&dialog);
    dialog.setForm(query.value("FORM_ID"));
    dialog.setPaperFormat(query.value("PAPER_FORMAT").toInt());
    dialog.setOrientation(query.value("PAPER_ORIENTATION").toInt());
    dialog.setPages(query.value("PAGES").toInt());
    dialog.setFontFamily(query.value("FONT").toString());
    dialog.setFontSize(query.value("FONT_SIZE").toInt());
    dialog.setBackground(query.value("BACKGROUND_IMG").toString());
    dialog.setPageSize(query.value("SIZE_WIDTH").toInt(), query.value("SIZE_HEIGHT").toInt());
    dialog.setOffsets(query.value("OFFSET_X").toInt(), query.value("OFFSET_Y").toInt());
    // An open result would keep the database locked for as long as the dialog stands.
    query.finish();
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    saveBlankFormat(&dialog, &blankId);
    on_blanksWidget_itemSelectionChanged();
}

void BlankDlg::blankDetails()
{
    const QVariant id = selectedId();
    if (!id.isValid()) {
        return;
    }
    BlankWindow window(this);
    window.setBlankId(id.toInt());
    window.loadBlank();
    window.loadBlankTree();
    window.setWindowModality(Qt::ApplicationModal);
    window.move(placeOver(this, window.size()));
    window.show();
    QEventLoop loop;
    connect(window.windowHandle(), &QWindow::visibleChanged, &loop, [&loop](bool isVisible) {
        if (!isVisible) {
            loop.quit();
        }
    });
    loop.exec();
}

void BlankDlg::on_blankAddBtn_clicked()
{
    BlankFormatDialog dialog;
    loadForms(&dialog);
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    const bool isSaved = saveBlankFormat(&dialog, nullptr);
    const QVariant id = isSaved ? newestId() : selectedId();
    refreshList();
    selectRow(rowOf(id));
}

void BlankDlg::on_blankDeleteBtn_clicked()
{
    const QVariant id = selectedId();
    if (!id.isValid() || !askYesNo("Удалить бланк?", this)) {
        return;
    }
    const int row = rowOf(id);
    QSqlQuery query;
    const bool isPrepared = query.prepare("DELETE FROM blanks WHERE ID = :Id");
    query.bindValue(":Id", id);
    if (!isPrepared || !query.exec()) {
        logSqlError(query);
        showError("Ошибка удаления бланка: SQL Error");
    }
    refreshList();
    selectRow(qMin(row, ui->blanksWidget->rowCount() - 1));
}

void BlankDlg::on_blanksWidget_itemDoubleClicked(QTableWidgetItem* item)
{
    editFormat(item->data(Qt::UserRole));
}

void BlankDlg::on_blanksWidget_itemSelectionChanged()
{
    const QVariant id = selectedId();
    if (!id.isValid()) {
        return;
    }
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT FONT, FONT_SIZE, PAPER_FORMAT, PAPER_ORIENTATION, PAGES, "
                    "BACKGROUND_IMG, FORM_ID, SIZE_WIDTH, SIZE_HEIGHT FROM blanks WHERE ID = " +
                    id.toString() + ";"))
    {
        logSqlError(query);
        return;
    }
    if (!query.next()) {
        return;
    }
    ui->formEdit->setText(formName(query.value("FORM_ID")));
    ui->fontEdit->setText(query.value("FONT").toString() + " (" +
                          query.value("FONT_SIZE").toString() + " sp)");
    ui->formatEdit->setText(paperFormatName(query.value("PAPER_FORMAT").toInt()));
    ui->pagesEdit->setText(query.value("PAGES").toString());
    ui->backgroundEdit->setText(query.value("BACKGROUND_IMG").toString());
    ui->widthEdit->setText(millimetres(query.value("SIZE_WIDTH")));
    ui->heightEdit->setText(millimetres(query.value("SIZE_HEIGHT")));
    const bool isLandscape =
        query.value("PAPER_ORIENTATION").toInt() == PaperOrientation::landscape;
    (isLandscape ? ui->landscapeButton : ui->portraitButton)->setChecked(true);
    showBackground(query.value("BACKGROUND_IMG").toString());
}

QVariant BlankDlg::selectedId() const
{
    const QList<QTableWidgetItem*> selected = ui->blanksWidget->selectedItems();
    return selected.isEmpty() ? QVariant() : selected.first()->data(Qt::UserRole);
}

int BlankDlg::rowOf(const QVariant& id) const
{
    for (int row = 0; row < ui->blanksWidget->rowCount(); ++row) {
        if (ui->blanksWidget->item(row, 0)->data(Qt::UserRole) == id) {
            return row;
        }
    }
    return -1;
}

void BlankDlg::selectRow(int row)
{
    if (row >= 0) {
        ui->blanksWidget->setCurrentCell(row, 0);
    }
}

QString BlankDlg::formName(const QVariant& formId) const
{
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT FORM_NAME FROM forms WHERE ID = " + formId.toString()) || !query.next())
    {
        return "Unknown";
    }
    return query.value("FORM_NAME").toString();
}

void BlankDlg::showBackground(const QString& path)
{
    QPixmap picture = loadPicture(storedFilePath(appDirPath(), path));
    if (!picture.isNull()) {
        picture = picture.scaled(ui->backgroundView->size(), Qt::KeepAspectRatio,
                                 Qt::SmoothTransformation);
    }
    previewItem->setPixmap(picture);
    // The scene's own rectangle only grows, and the next picture would stand off the centre.
    previewScene->setSceneRect(previewItem->boundingRect());
}

void BlankDlg::showError(const QString& text)
{
    QMessageBox::about(this, "Ошибка", text);
}
