#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>
#include <QVariantMap>

#include <optional>

/// A print server of a test, with one printer for A4 and A5 that cannot print on 12 points (4.2 mm)
/// of each side. It keeps what it is sent and prints nothing.
class PrintQueue
{
public:
    static const QString printer; ///< its name

    /// Starts the server; a failure fails the test. With `jobs` it ends as soon as more of them
    /// come.
    explicit PrintQueue(std::optional<int> jobs = std::nullopt);
    ~PrintQueue();
    PrintQueue(const PrintQueue&) = delete;
    PrintQueue& operator=(const PrintQueue&) = delete;

    /// The environment of a program that is to see this printer and no other.
    QProcessEnvironment environment(QProcessEnvironment base) const;

    /// Makes the program that runs see this printer and no other. To be called before it asks for
    /// its first one.
    void takeOver() const;

    /// Ends the server: the printer is gone.
    void stop();

    /// How many jobs have come.
    int jobCount() const;

    /// The attributes of a job, which count from 1: "job-name", "copies", ...
    QVariantMap job(int number) const;

    /// The PDF file that a job brought.
    QString file(int number) const;

private:
    QTemporaryDir m_dir;
    QProcess m_server;
    QByteArray m_port;
};
