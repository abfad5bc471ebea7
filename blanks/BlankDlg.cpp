#include "blanks/BlankDlg.h"

#include <QDebug>
#include <QEventLoop>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QHash>
#include <QMessageBox>
#include <QSqlError>
#include <QSqlQuery>
#include <QWindow>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
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

} // namespace

BlankDlg::BlankDlg(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::BlankDlg>())
    , previewScene(new QGraphicsScene(this))
    , previewItem(previewScene->addPixmap(QPixmap()))
{
    ui->setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
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
        const QString name = query.value("NAME").toString();
        const int row = ui->blanksWidget->rowCount();
        ui->blanksWidget->insertRow(row);
        ui->blanksWidget->setItem(
            row, 0, makeTableItem(name.isEmpty() ? "Бланк " + id.toString() : name, id));
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
    if (query.exec(statement)) {
        return true;
    }
    logSqlError(query);
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
    const QTableWidgetItem* item = currentRowItem(ui->blanksWidget);
    if (!item) {
        return;
    }
    BlankWindow window(this);
    window.setBlankId(item->data(Qt::UserRole).toInt());
    window.loadBlank();
    window.loadBlankTree();
    window.setWindowModality(Qt::ApplicationModal);
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
    saveBlankFormat(&dialog, nullptr);
    refreshList();
}

void BlankDlg::on_blankDeleteBtn_clicked()
{
    const QVariant id = selectedId();
    if (!id.isValid() || !askYesNo("Удалить бланк?", this)) {
        return;
    }
    QSqlQuery query;
    const bool isPrepared = query.prepare("DELETE FROM blanks WHERE ID = :Id");
    query.bindValue(":Id", id);
    if (!isPrepared || !query.exec()) {
        logSqlError(query);
        showError("Ошибка удаления бланка: SQL Error");
    }
    refreshList();
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
    QPixmap picture = loadPicture(appFilePath(path));
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
