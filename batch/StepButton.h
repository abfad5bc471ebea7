#pragma once

#include <QAbstractButton>

/// A step on the bar at the left: its number, its name and what it knows, in a line.
class StepButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit StepButton(QWidget* parent = nullptr);

    /// Counts from 1; the step is gone to with Ctrl and this figure.
    void setNumber(int number);

    void setStatus(const QString& status);
    QString status() const { return m_status; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_number = 1;
    QString m_status;
};
