#pragma once

#include <QVariant>

class DocDialog;
class DocumentFields;
class QString;

// The row of a document in `docs`, to and from the document dialogs. Values are pasted into the
// statements as they are: an apostrophe in one of them makes the statement fail as a whole. A
// failure goes to the log, and the stored row stays as it was.

/// Reads a document into the dialog; false if it can't be read.
bool loadDocument(DocDialog& dialog, const QVariant& id);

/// Inserts a document; its identifier, or an invalid value on failure.
QVariant insertDocument(const DocumentFields& fields);

/// Inserts a document template; its identifier, or an invalid value on failure.
QVariant insertDocumentTemplate(const DocumentFields& fields, const QString& name);

/// Replaces the values of a document.
void updateDocument(const DocumentFields& fields, const QVariant& id);

void deleteDocument(const QVariant& id);
