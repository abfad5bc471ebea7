#include "batch/BlanksTable.h"

#include <QHeaderView>
#include <QSignalBlocker>
#include <QSpinBox>

#include <algorithm>

#include "app/AppStyle.h"
#include "app/widgets/CellTextDelegate.h"
#include "app/widgets/WheelGuard.h"
#include "batch/SheetText.h"
#include "blanks/BlankRecord.h"

namespace {

/// What is set for a blank, as it was before if it is known.
BlanksTable::Choice choiceFor(const QString& name, const QVariant& id,
                              const QVector<BlanksTable::Choice>& known)
{
    BlanksTable::Choice choice;
    for (const BlanksTable::Choice& earlier : known) {
        if (earlier.id == id) {
            choice = earlier;
        }
    }
    choice.id = id;
    choice.name = shownBlankName(name.simplified(), id);
    return choice;
}

} // namespace

BlanksTable::BlanksTable(QWidget* parent)
    : QTableWidget(0, ColumnCount, parent)
{
    setHorizontalHeaderLabels(
        {"Бланк", "Тип документа", "Документов", "Экземпляров", "Печатать фон"});
    setItemDelegate(new CellTextDelegate(this));
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(plainRowHeight);
    QHeaderView* header = horizontalHeader();
    header->setHighlightSections(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setSectionResizeMode(BlankColumn, QHeaderView::Stretch);
    header->setSectionResizeMode(FormColumn, QHeaderView::Stretch);
    constexpr int numberWidth = 100; // pixels
    for (const int column : {DocumentsColumn, CopiesColumn, BackgroundColumn}) {
        setColumnWidth(column, numberWidth);
    }
    connect(this, &QTableWidget::itemChanged, this, &BlanksTable::takeTick);
}

void BlanksTable::setBlanks(const QHash<qint64, BlankList>& blanks)
{
    const QHash<qint64, QVector<Choice>> before = m_choices;
    m_choices.clear();
    for (auto form = blanks.cbegin(); form != blanks.cend(); ++form) {
        const QVector<Choice> known = before.value(form.key());
        QVector<Choice>& choices = m_choices[form.key()];
        for (const auto& [name, id] : form.value()) {
            choices << choiceFor(name, id, known);
        }
        if (known.isEmpty() && !choices.isEmpty()) {
            choices.first().isPrinted = true;
        }
    }
}

void BlanksTable::setForms(const QVector<Form>& forms)
{
    const int row = currentRow();
    const int column = currentColumn();
    const QSignalBlocker blocker(this);
    m_forms = forms;
    m_rows.clear();
    clearSpans();
    setRowCount(0);
    for (const Form& form : forms) {
        if (!hasBlanks(form.id)) {
            addFormWithoutBlanks(form);
        }
        for (int blank = 0; blank < m_choices[form.id].size(); ++blank) {
            addBlank(form, blank);
        }
    }
    setCurrentCell(qMin(row, rowCount() - 1), column);
}

QVector<BlanksTable::Choice> BlanksTable::printed(qint64 form) const
{
    QVector<Choice> choices = m_choices.value(form);
    choices.erase(std::remove_if(choices.begin(), choices.end(),
                                 [](const Choice& choice) { return !choice.isPrinted; }),
                  choices.end());
    return choices;
}

QStringList BlanksTable::formsLeftOut() const
{
    QStringList names;
    for (const Form& form : m_forms) {
        if (hasBlanks(form.id) && printed(form.id).isEmpty()) {
            names << form.name;
        }
    }
    return names;
}

void BlanksTable::addFormWithoutBlanks(const Form& form)
{
    const int row = rowCount();
    insertRow(row);
    m_rows << qMakePair(form.id, -1);
    const QString text =
        QString("У типа «%1» нет бланка: %2 %3 не на чем печатать. Создайте бланк в основной "
                "программе (кнопка «БЛАНКИ») и нажмите F5 или снимите отметки с этих документов.")
            .arg(form.name)
            .arg(form.documents)
            .arg(nounFor(form.documents, "документ", "документа", "документов"));
    auto* item = new QTableWidgetItem(text);
    item->setForeground(QColor("#B3261E"));
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    setItem(row, BlankColumn, item);
    setSpan(row, BlankColumn, 1, ColumnCount);
    constexpr int twoLines = 44; // pixels
    setRowHeight(row, twoLines);
}

void BlanksTable::addBlank(const Form& form, int blank)
{
    const Choice& choice = m_choices[form.id][blank];
    const int row = rowCount();
    insertRow(row);
    m_rows << qMakePair(form.id, blank);
    const Qt::ItemFlags plain = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    const auto addTick = [&](int column, const QString& text, bool isTicked) {
        auto* item = new QTableWidgetItem(text);
        item->setFlags(plain | Qt::ItemIsUserCheckable);
        item->setCheckState(isTicked ? Qt::Checked : Qt::Unchecked);
        setItem(row, column, item);
    };
    const auto addText = [&](int column, const QString& text) {
        auto* item = new QTableWidgetItem(text);
        item->setFlags(plain);
        setItem(row, column, item);
    };
    addTick(BlankColumn, choice.name, choice.isPrinted);
    addText(FormColumn, form.name);
    addText(DocumentsColumn, QString::number(form.documents));
    addText(CopiesColumn, QString());
    addTick(BackgroundColumn, QString(), choice.withBackground);
    item(row, BackgroundColumn)->setData(Qt::AccessibleTextRole, "Печатать фон");
    addCopies(row, form, blank);
}

void BlanksTable::addCopies(int row, const Form& form, int blank)
{
    constexpr int mostCopies = 99;
    auto* copies = new QSpinBox(this);
    copies->setRange(1, mostCopies);
    copies->setValue(m_choices[form.id][blank].copies);
    copies->setProperty("inTable", true);
    copies->setAccessibleName("Экземпляров, " + m_choices[form.id][blank].name);
    WheelGuard::install(copies);
    const qint64 formId = form.id;
    connect(copies, QOverload<int>::of(&QSpinBox::valueChanged), this,
            [this, formId, blank](int value) {
                m_choices[formId][blank].copies = value;
                emit choicesChanged();
            });
    setCellWidget(row, CopiesColumn, copies);
}

void BlanksTable::takeTick(const QTableWidgetItem* item)
{
    if (m_rows.value(item->row(), {0, -1}).second < 0) {
        return;
    }
    Choice& choice = choiceOf(item->row());
    const bool isTicked = item->checkState() == Qt::Checked;
    if (item->column() == BlankColumn) {
        choice.isPrinted = isTicked;
    } else if (item->column() == BackgroundColumn) {
        choice.withBackground = isTicked;
    }
    emit choicesChanged();
}

BlanksTable::Choice& BlanksTable::choiceOf(int row)
{
    return m_choices[m_rows[row].first][m_rows[row].second];
}
