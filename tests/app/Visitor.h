#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QWidget>

class QTableWidget;

/// Presses the value buttons of a table that shows a document's content, one after another.
void openValues(const QTableWidget* table);

/// A user who only looks: steps through what every modal dialog shows, opens what it leads to, and
/// leaves without taking or asking for anything.
class Visitor : public QObject
{
    Q_OBJECT

public:
    explicit Visitor(QObject* parent = nullptr);

    /// The dialogs that came since the last call, in order: their classes; of message boxes
    /// "title: text".
    QStringList takeSeen();

private:
    void schedule();
    void poll();
    void visit(QWidget* modal);

    QStringList m_seen;
    QList<QPointer<QWidget>> m_visited;
};
