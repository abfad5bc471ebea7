#include "app/UnfinishedFile.h"

#include <QFile>
#include <QMutex>
#include <QMutexLocker>
#include <QStringList>

namespace {

struct Register
{
    QMutex mutex;
    QStringList paths;
};

Register& unfinished()
{
    // Never destroyed: a thread may ask for it while the program ends.
    static auto* const instance = new Register;
    return *instance;
}

} // namespace

UnfinishedFile::UnfinishedFile(const QString& path)
    : m_path(path)
{
    const QMutexLocker lock(&unfinished().mutex);
    unfinished().paths << m_path;
}

UnfinishedFile::~UnfinishedFile()
{
    const QMutexLocker lock(&unfinished().mutex);
    unfinished().paths.removeOne(m_path);
}

void UnfinishedFile::removeAll()
{
    const QMutexLocker lock(&unfinished().mutex);
    for (const QString& path : qAsConst(unfinished().paths)) {
        QFile::remove(path);
    }
}
