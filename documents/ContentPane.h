#pragma once

class QSqlQuery;
class QTableWidget;
struct ValueButtonSlots;

/// Shows a document in the content pane, a table of captions and values: first what every document
/// has, then the entries of its `CONTENT`, up to and with the first table. The query stands on the
/// document's row of `docs`. The buttons of long texts and tables lead to the slots.
void showContentPane(QTableWidget* pane, const QSqlQuery& document,
                     const ValueButtonSlots& buttonSlots);
