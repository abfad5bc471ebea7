#include "tools/ProgressLine.h"

#include <QTextStream>

#include <cstdio>
#include <filesystem>
#include <system_error>

#ifdef Q_OS_WIN
#include <io.h>
#endif

ProgressLine::ProgressLine(QTextStream& stream, bool isShown)
    : m_stream(stream)
    , m_isShown(isShown)
{
}

ProgressLine::~ProgressLine()
{
    clear();
}

bool ProgressLine::hasTerminal()
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stderr)) != 0;
#else
    // A pipe and a file are no character devices. The null device is one, and harmless.
    std::error_code error;
    return std::filesystem::is_character_file("/dev/stderr", error);
#endif
}

void ProgressLine::show(int done, int total)
{
    constexpr qint64 shortestMs = 100;
    if (!m_isShown || (!m_line.isEmpty() && m_sinceShown.elapsed() < shortestMs)) {
        return;
    }
    m_line = tr("%1 of %2").arg(done).arg(total);
    m_stream << '\r' << m_line;
    m_stream.flush();
    m_sinceShown.start();
}

void ProgressLine::clear()
{
    if (m_line.isEmpty()) {
        return;
    }
    m_stream << '\r' << QString(m_line.size(), ' ') << '\r';
    m_stream.flush();
    m_line.clear();
}
