#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <cstddef>
#include <cstdint>

class QJsonObject;

/// What a fuzz target implements: tries one input and ends the process if something is wrong.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Starts an application without a display whose log is silent and whose message boxes close
/// themselves. Every target calls it first; the calls after the first do nothing.
void startFuzzing();

/// Ends the process, which is a finding, unless a property holds.
void require(bool holds, const char* property);

/// Makes a fresh database with the tables, in memory, that of the default connection.
void openFreshDatabase();

/// Runs one statement on the default connection. It must not fail.
void runSql(const QString& statement, const QVariantList& values = QVariantList());

/// The first column of the first row of a statement that must not fail.
QVariant sqlValue(const QString& statement);

/// The input as bytes of its own.
QByteArray bytesOf(const std::uint8_t* data, std::size_t size);

/// What becomes of an object that is written as JSON text and read back: characters that are no
/// Unicode do not survive.
QJsonObject throughJsonText(const QJsonObject& object);
