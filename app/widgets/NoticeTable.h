#pragma once

#include <QTableWidget>

/// A table that says in its empty area why it is empty.
class NoticeTable : public QTableWidget
{
    Q_OBJECT

public:
    using QTableWidget::QTableWidget;

    /// What stands in grey in the middle of the table as long as it has no row; empty for nothing.
    void setNotice(const QString& notice);
    QString notice() const { return m_notice; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_notice;
};
