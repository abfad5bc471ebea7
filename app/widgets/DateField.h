#pragma once

#include <QDateEdit>

/// A date edit that is one stop for Tab, as every other field is. Left and Right go from section to
/// section; a plain date edit goes there with Tab and so costs three of them. A date can be typed
/// with its separators and without them.
class DateField : public QDateEdit
{
    Q_OBJECT

public:
    explicit DateField(QWidget* parent = nullptr);

protected:
    bool event(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool goToNextSection(bool next);

    bool m_hasAdvanced = false; // by the last figure of a section, which ends it
};
