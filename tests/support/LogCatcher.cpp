#include "support/LogCatcher.h"

#include <QMutex>
#include <QMutexLocker>
#include <QtGlobal>

#include <algorithm>

namespace {

QMutex mutex;
QStringList caught;
QtMessageHandler previous = nullptr;

void catchMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    {
        QMutexLocker lock(&mutex);
        caught << message;
    }
    if (previous) {
        previous(type, context, message);
    }
}

} // namespace

LogCatcher::LogCatcher()
{
    clear();
    previous = qInstallMessageHandler(catchMessage);
}

LogCatcher::~LogCatcher()
{
    qInstallMessageHandler(previous);
}

QStringList LogCatcher::messages() const
{
    QMutexLocker lock(&mutex);
    return caught;
}

bool LogCatcher::contains(const QString& text) const
{
    return count(text) > 0;
}

int LogCatcher::count(const QString& text) const
{
    const QStringList all = messages();
    return static_cast<int>(std::count_if(
        all.begin(), all.end(), [&](const QString& message) { return message.contains(text); }));
}

void LogCatcher::clear()
{
    QMutexLocker lock(&mutex);
    caught.clear();
}
