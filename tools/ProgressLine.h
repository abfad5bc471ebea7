#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QString>

class QTextStream;

/// Tells on a terminal how far a job has come, in one line that is written over and over: "12 of
/// 120". Other output to the terminal comes between clear() and the next show().
class ProgressLine
{
    Q_DECLARE_TR_FUNCTIONS(ProgressLine)

public:
    /// With `isShown` false nothing is ever written.
    ProgressLine(QTextStream& stream, bool isShown);

    /// Clears the line.
    ~ProgressLine();

    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Whether what the program writes to standard error can be seen on a terminal.
    static bool hasTerminal();

    /// May be called as often as is handy; a line that has just been written stays for a moment.
    void show(int done, int total);

    void clear();

private:
    QTextStream& m_stream;
    bool m_isShown;
    QString m_line;
    QElapsedTimer m_sinceShown;
};
