#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include "support/TempApplication.h"

/// One part as a test states it: its JSON as text, and its payload.
struct TestPart
{
    QByteArray json;
    QString payload;
    QString unused = QString();
};

/// A part with a statement.
TestPart sqlPart(const QString& version, const QString& statement, bool ignoreErrors = false);

/// A part that calls the built-in function.
TestPart functionPart(const QString& version, const QString& argument, bool ignoreErrors = false);

/// The bytes of a package, packed by a script that knows nothing of the program.
QByteArray packPackage(const QByteArray& header, const QList<TestPart>& parts);

/// The same for many packages in one run.
QList<QByteArray> packPackages(const QByteArray& header, const QList<QList<TestPart>>& packages);

/// A header that brings this version.
QByteArray headerFor(const QString& version);

/// Puts a package beside the executable.
void placePackage(const TempApplication& app, const QByteArray& package);

/// Makes form 28 with one field, the eight lists of the migration (ID 101 to 108, in the order in
/// which the migration looks them up), and documents of the form: every tenth has broken content.
void makeForm28(TempApplication& app, int documents);

/// The argument of the migration that adds a list field, a text field and one that is there.
QString migrationArgument();
