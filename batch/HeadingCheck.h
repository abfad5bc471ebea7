#pragma once

#include <QCheckBox>

class QHeaderView;

/// A check box that fills the heading of a table's first column and says what of the rows is
/// ticked: all, none or some. A click asks for all, or for none if all are.
class HeadingCheck : public QCheckBox
{
    Q_OBJECT

public:
    explicit HeadingCheck(QHeaderView* header);

    void showState(int ticked, int rows);

protected:
    void nextCheckState() override;

private:
    void place();

    QHeaderView* m_header;
};
