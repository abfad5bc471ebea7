#pragma once

#include <QPushButton>
#include <QString>

/// A button in a table cell that holds a long text; a click on it opens the text's editor.
///
/// The property `text` is the held text and not the caption: it hides the property of the same
/// name that a push button has. The caption is set with setText().
class ZelvoraTextButton : public QPushButton
{
    Q_OBJECT
    Q_PROPERTY(QString text READ value WRITE setValue)

public:
    explicit ZelvoraTextButton(QWidget* parent = nullptr);

    /// The held text; may hold line breaks.
    QString value() const;
    void setValue(const QString& value);

private:
    QString m_value;
};
