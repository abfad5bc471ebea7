#include "batch/SheetPanel.h"

#include "app/widgets/ClickGuard.h"
#include "batch/RunWords.h"
#include "ui_SheetPanel.h"

SheetPanel::SheetPanel(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::SheetPanel>())
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground);
    // The second click of a double one would print the next document on this paper.
    for (QPushButton* button :
         {m_ui->nextSheetButton, m_ui->repeatSheetButton, m_ui->skipSheetButton}) {
        ClickGuard::install(button);
    }
    connect(m_ui->nextSheetButton, &QPushButton::clicked, this, &SheetPanel::nextClicked);
    connect(m_ui->repeatSheetButton, &QPushButton::clicked, this, &SheetPanel::repeatClicked);
    connect(m_ui->skipSheetButton, &QPushButton::clicked, this, &SheetPanel::skipClicked);
}

SheetPanel::~SheetPanel() = default;

void SheetPanel::askForSheet(const PlannedSheet& sheet, bool isRepeat)
{
    const QString paper = paperOf(sheet);
    tell(isRepeat ? "Лист отмечен испорченным. Положите в принтер новый бланк:"
                  : "Положите в принтер бланк:",
         paper.isEmpty() ? QString("номер не указан") : paper,
         personOf(sheet) + " — " + sheet.form + ", " + sheet.blankName);
    m_ui->hintLabel->setVisible(isRepeat);
    m_ui->nextSheetButton->setText("Напечатать лист");
    m_ui->repeatSheetButton->setVisible(true);
    m_ui->skipSheetButton->setVisible(true);
}

void SheetPanel::askForPaper(const QString& blankName, int sheets)
{
    tell("Положите в принтер бумагу для бланка:", blankName, QString("Листов: %1").arg(sheets));
    m_ui->hintLabel->hide();
    m_ui->nextSheetButton->setText("Бумага положена, печатать");
    m_ui->repeatSheetButton->setVisible(false);
    m_ui->skipSheetButton->setVisible(false);
}

void SheetPanel::askAtEnd()
{
    tell("Бланки больше не нужны:", "последний лист отправлен",
         "Если он испорчен, его ещё можно повторить.");
    m_ui->hintLabel->hide();
    m_ui->nextSheetButton->setText("Закончить");
    m_ui->repeatSheetButton->setVisible(true);
    m_ui->skipSheetButton->setVisible(false);
}

void SheetPanel::setButtons(bool canGoOn, bool canRepeat)
{
    m_ui->nextSheetButton->setEnabled(canGoOn);
    m_ui->skipSheetButton->setEnabled(canGoOn);
    m_ui->repeatSheetButton->setEnabled(canGoOn && canRepeat);
    if (canGoOn) {
        m_ui->nextSheetButton->setFocus();
    }
}

QString SheetPanel::paper() const
{
    return m_ui->paperLabel->wholeText();
}

void SheetPanel::tell(const QString& caption, const QString& paper, const QString& details)
{
    m_ui->captionLabel->setText(caption);
    m_ui->paperLabel->setWholeText(paper);
    m_ui->sheetLabel->setWholeText(details);
}
