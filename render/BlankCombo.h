#pragma once

#include <QComboBox>

/// The choice of a blank: item text its name, item data its ID. A blank without a name is shown as
/// the list of blanks names it; the item keeps its empty text.
class BlankCombo : public QComboBox
{
    Q_OBJECT

public:
    explicit BlankCombo(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};
