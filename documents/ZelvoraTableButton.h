#pragma once

#include <QJsonArray>
#include <QPushButton>

/// A button in a table cell that holds a table; a click on it opens the table's editor.
class ZelvoraTableButton : public QPushButton
{
    Q_OBJECT

public:
    explicit ZelvoraTableButton(QWidget* parent = nullptr);

    QJsonArray columns; ///< the column objects, as a form's table field defines them
    QJsonArray value;   ///< the rows, each an array of strings in the order of the columns
};
