#pragma once

#include <QLabel>

/// A label of one line whose text never widens the window: what does not fit is left out in the
/// middle, with the whole text as a tool tip.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;

    void setWholeText(const QString& text);
    QString wholeText() const { return m_text; }

    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void elide();

    QString m_text;
};
