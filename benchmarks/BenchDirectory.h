#pragma once

#include <QString>
#include <QTemporaryDir>

#include "app/AppHelpers.h"
#include "store/DataBase.h"
#include "store/Schema.h"

/// A temporary application directory with an empty database, open while it lives.
class BenchDirectory
{
public:
    BenchDirectory()
    {
        setAppDirPath(m_dir.path());
        if (!createDatabaseFile(path("docs.db")) || !dataBase.open()) {
            qFatal("no database can be made in %s", qPrintable(m_dir.path()));
        }
    }
    ~BenchDirectory() { dataBase.close(); }
    BenchDirectory(const BenchDirectory&) = delete;
    BenchDirectory& operator=(const BenchDirectory&) = delete;

    QString path(const QString& file) const { return m_dir.filePath(file); }

private:
    QTemporaryDir m_dir;
};
