#pragma once

#include <QByteArray>

#include "FaultRun.h"

/// The files of an application directory on which each of the DeskOperations can be done: a form
/// with a number and a text, two documents and a document template of it, a list, a blank with a
/// frame, an exchange template, the workbook "in.xlsx" with two documents, an archive
/// "storage/archive.zlv" with another database, the backup of an earlier restore, and the
/// organisation's data.
Files deskFiles();

/// A package that changes the form, the list and the documents of the directory.
QByteArray deskUpdate();
