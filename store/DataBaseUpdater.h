#pragma once

class QFile;

/// Applies the update package to the open database. Always returns true: start-up goes on whatever
/// becomes of the update.
bool runDatabaseUpdate(QFile& package);
