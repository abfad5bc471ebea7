#include "render/PrinPreviewDialog.h"

#include <QDebug>
#include <QGraphicsScene>
#include <QMessageBox>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>

#include "app/AppStyle.h"
#include "app/widgets/LongItems.h"
#include "render/page/PageBuilder.h"
#include "render/page/PagePrinter.h"
#include "render/page/TableFrame.h"
#include "render/page/TextFrame.h"
#include "ui_PrinPreviewDialog.h"

PrinPreviewDialog::PrinPreviewDialog(const QVariant& document, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::PrinPreviewDialog>())
    , docId(document)
    , m_builder(std::make_unique<PageBuilder>())
{
    ui->setupUi(this);
    applyBaseStyle(this);
    LongItems::install(ui->comboBoxBlank);
}

PrinPreviewDialog::~PrinPreviewDialog()
{
    if (scene) {
        scene->deleteLater();
    }
}

PrinPreviewDialog::BlankList PrinPreviewDialog::loadBlanksForDoc(const QVariant& document)
{
    lastError.clear();
    return blanksOfDocument(document, &lastError);
}

PrinPreviewDialog::BlankList PrinPreviewDialog::loadBlanksForForm(const QVariant& formId)
{
    lastError.clear();
    return blanksOfForm(formId, &lastError);
}

QGraphicsScene* PrinPreviewDialog::pageScene()
{
    if (!scene) {
        scene = new QGraphicsScene;
        ui->documentView->setScene(scene);
        ui->documentView->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    }
    return scene;
}

bool PrinPreviewDialog::buildScene(QGraphicsScene* page, const QVariant& document,
                                   const QVariant& blankId)
{
    lastError.clear();
    backgroundItem = nullptr;
    if (!m_builder->build(page, document, blankId, &lastError)) {
        return false;
    }
    ui->documentView->resetTransform();
    // kept: shown whatever the box says that prints it.
    backgroundItem = page == scene ? m_builder->background() : nullptr;
    docValues = m_builder->document().values;
    docContent = m_builder->document().content;
    paperOrientation = m_builder->blank().orientation;
    paperFormat = m_builder->blank().format;
    blankFont = m_builder->blank().font;
    blankPageSize = m_builder->blank().size;
    offsetX = m_builder->blank().offset.x();
    offsetY = m_builder->blank().offset.y();
    return true;
}

void PrinPreviewDialog::createBlankFieldItem(const QJsonObject& item)
{
    m_builder->addItem(item);
}

QGraphicsProxyWidget* PrinPreviewDialog::createBlankFieldTableItem(const QJsonObject& docField,
                                                                   const QJsonObject& item,
                                                                   const QFont& font)
{
    const BlankItem blankItem(item);
    const PageFrame frame = TableFrame::make(blankItem, font, docField);
    TableFrame::fill(frame, blankItem, font, docField);
    return frame.container;
}

QGraphicsProxyWidget* PrinPreviewDialog::createBlankFieldTextItem(const QString& text,
                                                                  const QJsonObject& item,
                                                                  const QFont& font)
{
    const BlankItem blankItem(item);
    const PageFrame frame = TextFrame::make(blankItem, font);
    TextFrame::fill(frame, blankItem, text);
    return frame.container;
}

QGraphicsLayoutItem* PrinPreviewDialog::createZItem()
{
    return PageFrame::makeStroke();
}

void PrinPreviewDialog::setBackgroundPrinted(bool printed)
{
    ui->checkPrintBG->setChecked(printed);
}

bool PrinPreviewDialog::printTo(QPrinter& printer)
{
    if (!scene) {
        return false;
    }
    QPainter painter;
    printPage(printer, painter);
    accept();
    return true;
}

bool PrinPreviewDialog::printPage(QPrinter& printer, QPainter& painter)
{
    if (!scene) {
        return false;
    }
    PagePrinter page(scene, backgroundItem,
                     BlankPaper(paperOrientation, paperFormat, blankPageSize),
                     QPoint(offsetX, offsetY));
    page.setBackgroundPrinted(ui->checkPrintBG->isChecked());
    return page.print(printer, painter);
}

int PrinPreviewDialog::exec()
{
    const BlankList blanks = loadBlanksForDoc(docId);
    if (blanks.isEmpty()) {
        // This dialog is not shown, and a box over it would stand anywhere.
        QMessageBox::about(parentWidget(), "Ошибка", "Для документа нет доступных бланков");
        return 0;
    }
    for (const auto& [name, id] : blanks) {
        ui->comboBoxBlank->addItem(name, id);
    }
    QGraphicsScene* page = pageScene();
    setModal(true);
    show();
    buildScene(page, docId, ui->comboBoxBlank->currentData());
    return QDialog::exec();
}

void PrinPreviewDialog::on_buttonPrint_clicked()
{
    ui->buttonPrint->setEnabled(false);
    QPrinter printer(QPrinter::HighResolution);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() == QDialog::Accepted) {
        printTo(printer);
    }
    ui->buttonPrint->setEnabled(true);
}

void PrinPreviewDialog::on_buttonReject_clicked()
{
    reject();
}

void PrinPreviewDialog::on_comboBoxBlank_currentIndexChanged(int)
{
    if (scene) {
        buildScene(scene, docId, ui->comboBoxBlank->currentData());
    }
}
