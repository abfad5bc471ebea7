#pragma once

#include <QString>

/// The word by which a statement of an update would leave the update's transaction: one that ends
/// or begins a transaction, that attaches or detaches a file, or that cannot stand in a
/// transaction. Empty if there is none. Several statements in one text are all looked at; comments,
/// texts in quotes and the statements of a trigger are what they are to SQLite.
QString wordAgainstTransaction(const QString& sql);
