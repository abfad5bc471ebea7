#pragma once

#include <QByteArray>
#include <QString>

#include "store/UpdatePackage.h"

/// Makes an update package from a readable manifest. The manifest is a JSON object:
///
///     {
///         "update_version": "1.2.0.0",
///         "parts": [
///             { "version": "1.1.0.0", "sql": "DELETE FROM lists WHERE LIST_NAME = ''" },
///             { "version": "1.2.0.0", "ignore_errors": true,
///               "sql": ["ALTER TABLE docs", "ADD COLUMN NOTE TEXT"] },
///             { "version": "1.2.0.0", "type": "cppFunction", "function_name": "crutchFrdoA",
///               "argument": "[{\"tag\":\"#SEX\",\"name\":\"Пол\",\"type\":1,\"list\":IDL_SEX}]" }
///         ]
///     }
///
/// "type" may be left out for a statement. A statement or an argument may be an array of lines.
/// On failure returns false and puts a message with the place of the error into `error`.
bool packageFromManifest(const QByteArray& manifest, UpdatePackage& package, QString& error);

/// The manifest that makes this package, as indented text.
QByteArray manifestFromPackage(const UpdatePackage& package);
