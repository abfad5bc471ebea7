#include "batch/FindingsTree.h"

#include <QHeaderView>
#include <QPainter>

#include <algorithm>

#include "app/SharpIcon.h"
#include "app/widgets/CellTextDelegate.h"
#include "batch/SheetText.h"

namespace {

constexpr int sheetRole = Qt::UserRole;     // index of the sheet
constexpr int frameRole = Qt::UserRole + 1; // number of the frame of a finding; 0: none
constexpr int blankRole = Qt::UserRole + 2; // ID of the blank whose row it is

QIcon iconOf(Finding::Severity severity)
{
    static const QIcon error = sharpIcon(QIcon(":/res/error.png"));
    static const QIcon warning = sharpIcon(QIcon(":/res/warning.png"));
    return severity == Finding::Severity::Error ? error : warning;
}

/// Whether something was found that is not the blank's own.
bool hasOwnFindings(const SheetChecks::Result& result)
{
    return std::any_of(result.findings.cbegin(), result.findings.cend(),
                       [](const Finding& finding) { return !finding.isOfBlank(); });
}

QIcon iconOf(const SheetChecks::Result& result)
{
    static const QIcon done = sharpIcon(QIcon(":/res/done.png"));
    if (result.hasErrors()) {
        return iconOf(Finding::Severity::Error);
    }
    return hasOwnFindings(result) ? iconOf(Finding::Severity::Warning) : done;
}

QString captionOf(const PlannedSheet& planned)
{
    const QString person = personOf(planned.sheet.document);
    const QString name =
        person.isEmpty() ? "Документ " + planned.sheet.document.id.toString() : person;
    const QString group = planned.group.simplified();
    return group.isEmpty() ? name : name + ", " + group;
}

QString firstUpper(QString text)
{
    if (!text.isEmpty()) {
        text[0] = text[0].toUpper();
    }
    return text;
}

} // namespace

FindingsTree::FindingsTree(QWidget* parent)
    : QTreeWidget(parent)
    , m_words(QLocale(QLocale::Russian))
{
    setColumnCount(2);
    setHeaderLabels({"Документы и замечания", "Бланк"});
    constexpr int rowHeight = 24; // pixels
    setItemDelegate(new CellTextDelegate(rowHeight, this));
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    setAllColumnsShowFocus(true);
    constexpr int blankWidth = 150; // pixels
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->resizeSection(1, blankWidth);
    connect(this, &QTreeWidget::currentItemChanged, this, &FindingsTree::tellCurrent);
}

void FindingsTree::setChecks(const SheetChecks* checks)
{
    m_checks = checks;
    showAll();
}

void FindingsTree::clearSheets()
{
    clear();
    m_summary = CheckSummary();
    m_documents.clear();
    m_unreadable = 0;
    m_blankRows = 0;
    m_errorRows = 0;
    m_warningRows = 0;
}

void FindingsTree::addSheet(int sheet)
{
    const SheetChecks::Result& result = m_checks->result(sheet);
    const PlannedSheet& planned = m_checks->sheets()[sheet];
    QTreeWidgetItem* row = addRow(nullptr, placeOf(result), captionOf(planned), sheet, nullptr);
    row->setText(1, planned.blankName);
    row->setIcon(0, iconOf(result));
    const QVector<Finding> added = m_summary.add(result.findings);
    for (const Finding& finding : added) {
        addFinding(sheet, row, finding);
    }
    if (result.reason != SheetOutcome::Reason::None) {
        QTreeWidgetItem* problem =
            addRow(row, row->childCount(), problemText(result.reason), sheet, nullptr);
        problem->setIcon(0, iconOf(Finding::Severity::Error));
        ++m_unreadable;
    }
    if (row->childCount() > 0) {
        m_documents << planned.sheet.document.id.toString();
    }
    showRow(row);
    row->setExpanded(true);
}

void FindingsTree::showAll()
{
    const int sheet = currentSheet();
    setUpdatesEnabled(false);
    clearSheets();
    for (int i = 0; i < m_checks->sheets().size(); ++i) {
        if (m_checks->result(i).isChecked) {
            addSheet(i);
        }
    }
    setUpdatesEnabled(true);
    if (QTreeWidgetItem* row = sheetRow(sheet)) {
        setCurrentItem(row);
    }
}

void FindingsTree::setOnlyFindings(bool only)
{
    m_onlyFindings = only;
    for (int i = 0; i < topLevelItemCount(); ++i) {
        showRow(topLevelItem(i));
    }
    viewport()->update();
}

void FindingsTree::setNotice(const QString& notice)
{
    m_notice = notice;
    viewport()->update();
}

int FindingsTree::currentSheet() const
{
    return currentItem() ? currentItem()->data(0, sheetRole).toInt() : -1;
}

void FindingsTree::step(int direction)
{
    const QVector<int> sheets = shownSheets();
    if (sheets.isEmpty()) {
        return;
    }
    const int here = sheets.indexOf(currentSheet());
    const int next = here < 0 ? 0 : qBound(0, here + direction, sheets.size() - 1);
    setCurrentItem(sheetRow(sheets[next]));
}

QString FindingsTree::currentText() const
{
    const QTreeWidgetItem* row = currentItem();
    return row && row->parent() ? row->text(0) : QString();
}

bool FindingsTree::selectFrame(int frame)
{
    const int sheet = currentSheet();
    QTreeWidgetItem* own = sheetRow(sheet);
    for (int i = 0; own && i < own->childCount(); ++i) {
        if (own->child(i)->data(0, frameRole).toInt() == frame) {
            setCurrentItem(own->child(i));
            return true;
        }
    }
    return false;
}

QVector<int> FindingsTree::shownSheets() const
{
    QVector<int> sheets;
    for (int i = m_blankRows; i < topLevelItemCount(); ++i) {
        if (!topLevelItem(i)->isHidden()) {
            sheets << topLevelItem(i)->data(0, sheetRole).toInt();
        }
    }
    return sheets;
}

void FindingsTree::paintEvent(QPaintEvent* event)
{
    QTreeWidget::paintEvent(event);
    const bool isEmpty = shownSheets().isEmpty() && m_blankRows == 0;
    if (!isEmpty || m_notice.isEmpty()) {
        return;
    }
    QPainter painter(viewport());
    painter.setPen(QColor("#5A6070"));
    painter.drawText(viewport()->rect().adjusted(24, 0, -24, 0), Qt::AlignCenter | Qt::TextWordWrap,
                     m_notice);
}

QTreeWidgetItem* FindingsTree::addRow(QTreeWidgetItem* parent, int place, const QString& text,
                                      int sheet, const Finding* finding)
{
    auto* row = new QTreeWidgetItem;
    row->setText(0, text);
    row->setData(0, sheetRole, sheet);
    if (finding) {
        row->setIcon(0, iconOf(finding->severity));
        row->setData(0, frameRole, finding->item);
    }
    if (parent) {
        parent->insertChild(place, row);
        row->setFirstColumnSpanned(true);
    } else {
        insertTopLevelItem(place, row);
    }
    return row;
}

QTreeWidgetItem* FindingsTree::blankRow(const Finding::Blank& blank, int sheet)
{
    for (int i = 0; i < m_blankRows; ++i) {
        if (topLevelItem(i)->data(0, blankRole) == blank.id) {
            return topLevelItem(i);
        }
    }
    const QString name = m_checks->sheets()[sheet].blankName;
    QTreeWidgetItem* row =
        addRow(nullptr, m_blankRows, "Бланк «" + name + "» — для всех документов", sheet, nullptr);
    row->setData(0, blankRole, blank.id);
    row->setFirstColumnSpanned(true);
    ++m_blankRows;
    row->setExpanded(true);
    return row;
}

int FindingsTree::placeOf(const SheetChecks::Result& result)
{
    if (result.hasErrors()) {
        return m_blankRows + m_errorRows++;
    }
    if (hasOwnFindings(result)) {
        return m_blankRows + m_errorRows + m_warningRows++;
    }
    return topLevelItemCount();
}

void FindingsTree::addFinding(int sheet, QTreeWidgetItem* row, const Finding& finding)
{
    QTreeWidgetItem* parent = finding.isOfBlank() ? blankRow(finding.blank, sheet) : row;
    const QString item = m_words.item(finding);
    const QString text =
        item.isEmpty() ? m_words.what(finding) : item + ": " + m_words.what(finding);
    addRow(parent, parent->childCount(), firstUpper(text), sheet, &finding);
}

void FindingsTree::showRow(QTreeWidgetItem* row) const
{
    const bool isOfBlank = row->data(0, blankRole).isValid();
    row->setHidden(m_onlyFindings && !isOfBlank && row->childCount() == 0);
}

QTreeWidgetItem* FindingsTree::sheetRow(int sheet) const
{
    for (int i = m_blankRows; i < topLevelItemCount(); ++i) {
        if (topLevelItem(i)->data(0, sheetRole).toInt() == sheet) {
            return topLevelItem(i);
        }
    }
    return nullptr;
}

void FindingsTree::tellCurrent()
{
    const QTreeWidgetItem* row = currentItem();
    if (row) {
        emit chosen(row->data(0, sheetRole).toInt(), row->data(0, frameRole).toInt());
    }
}
