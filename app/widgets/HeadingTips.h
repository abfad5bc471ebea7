#pragma once

#include <QObject>

class QHeaderView;

/// Elides column headings that don't fit at their right, and shows the whole text of one as a tool
/// tip; the toolkit cuts headings in the middle of a letter and leaves them so.
class HeadingTips : public QObject
{
    Q_OBJECT

public:
    /// Works on one horizontal header, which owns it.
    static void install(QHeaderView* header);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit HeadingTips(QHeaderView* header);
    bool isElided(int section) const;
    QString textOf(int section) const;

    QHeaderView* m_header;
};
