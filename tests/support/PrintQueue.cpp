#include "support/PrintQueue.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

const QString PrintQueue::printer = "Проверочный";

PrintQueue::PrintQueue(std::optional<int> jobs)
{
    QStringList arguments = {ZELVORA_PRINT_QUEUE, m_dir.path(), printer};
    if (jobs) {
        arguments << QString::number(*jobs);
    }
    m_server.start(ZELVORA_PYTHON, arguments);
    constexpr int timeoutMs = 20000;
    while (!m_port.endsWith('\n') && m_server.waitForReadyRead(timeoutMs)) {
        m_port += m_server.readAllStandardOutput();
    }
    if (!m_port.endsWith('\n')) {
        QTest::qFail(m_server.readAllStandardError(), __FILE__, __LINE__);
    }
    m_port = m_port.trimmed();
}

PrintQueue::~PrintQueue()
{
    stop();
}

void PrintQueue::stop()
{
    m_server.kill();
    m_server.waitForFinished();
}

QProcessEnvironment PrintQueue::environment(QProcessEnvironment base) const
{
    base.insert("CUPS_SERVER", "127.0.0.1:" + m_port);
    base.insert("HOME", m_dir.path()); // no settings of the user's own printers
    return base;
}

void PrintQueue::takeOver() const
{
    qputenv("CUPS_SERVER", "127.0.0.1:" + m_port);
    qputenv("HOME", m_dir.path().toUtf8());
}

int PrintQueue::jobCount() const
{
    return QDir(m_dir.path()).entryList({"*.json"}).size();
}

QVariantMap PrintQueue::job(int number) const
{
    QFile file(m_dir.filePath(QString::number(number) + ".json"));
    return file.open(QIODevice::ReadOnly)
               ? QJsonDocument::fromJson(file.readAll()).object().toVariantMap()
               : QVariantMap();
}

QString PrintQueue::file(int number) const
{
    return m_dir.filePath(QString::number(number) + ".pdf");
}
