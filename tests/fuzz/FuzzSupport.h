#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <cstddef>
#include <cstdint>

class QJsonObject;

/// What a fuzz target implements: tries one input and ends the process if something is wrong. There
/// is an application without a display; its log is silent and its message boxes close themselves.
void tryInput(const QByteArray& input);

/// What libFuzzer calls: tryInput() for all but very long inputs.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Ends the process, which is a finding, unless a property holds.
void require(bool holds, const char* property);

/// Makes a fresh database with the tables, in memory, that of the default connection.
void openFreshDatabase();

/// Inserts a form of `ID` 1 without fields and a list of `ID` 1 with two items.
void insertFormAndList();

/// Runs one statement on the default connection. It must not fail.
void runSql(const QString& statement, const QVariantList& values = QVariantList());

/// The first column of the first row of a statement that must not fail.
QVariant sqlValue(const QString& statement);

/// What becomes of an object that is written as JSON text and read back: characters that are no
/// Unicode do not survive.
QJsonObject throughJsonText(const QJsonObject& object);
