#pragma once

#include <QStyledItemDelegate>

/// Lays out no more of a text than a cell can show: laying out megabytes takes seconds, at each
/// repaint and each fit of a row to its text. The item, and so its editor, keeps the whole text. A
/// cell that cuts its text has it as a tool tip.
class CellTextDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// A delegate of rows that are at least so many pixels high.
    explicit CellTextDelegate(int lowest, QObject* parent = nullptr);

    QString displayText(const QVariant& value, const QLocale& locale) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

    /// Leaves some space above and below a text of several lines.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    int m_lowest = 0;
};
