#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QVariant>

/// Names and IDs of blanks, in the database's order.
using BlankList = QList<QPair<QString, QVariant>>;

/// The blanks that can print a document: those of its form. Empty, with the driver's text in
/// `error` (may be null), if the database refuses.
BlankList blanksOfDocument(const QVariant& document, QString* error);

/// The blanks of a form.
BlankList blanksOfForm(const QVariant& formId, QString* error);
