#pragma once

#include <QObject>

class QComboBox;

/// Lets a combo that is filled from the database hold names of any length: the window keeps its
/// size, the list that pops up is as wide as its items (as far as the screen goes), each item's
/// text is its tool tip, and so is the current one's where the combo cuts it off.
class LongItems : public QObject
{
    Q_OBJECT

public:
    /// Prepares a combo, filled or still empty. What is made belongs to the combo.
    static void install(QComboBox* combo);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit LongItems(QComboBox* combo);

    void setToolTips(int first, int last);
    void widenPopUp();
    bool showsWholeText() const;

    QComboBox* m_combo;
    QWidget* m_popUp;
};
