#pragma once

#include <QComboBox>

/// Editor of a table cell that offers the items of a list and takes any text. What it was given and
/// what was typed stays as it is, to the letter: items are offered in a pop-up, found whatever
/// their letter case, and nothing but a choice of the user puts one in the place of the text.
class CellListEdit : public QComboBox
{
    Q_OBJECT

public:
    explicit CellListEdit(QWidget* parent = nullptr);

    /// Lets the user type, in place of setEditable(). Until then only an item can become current.
    void allowTyping();

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void followText();
    void setUpOffers();

    bool m_offersReady = false;
};
