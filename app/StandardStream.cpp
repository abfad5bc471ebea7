#include "app/StandardStream.h"

#include <QTextCodec>

#ifdef Q_OS_WIN
#include "app/WindowsConsole.h"
#endif

namespace {

bool mustBeUtf8()
{
#ifdef Q_OS_WIN
    return true;
#else
    constexpr ushort cyrillicLetter = 0x0416;
    return !QTextCodec::codecForLocale()->canEncode(QChar(cyrillicLetter));
#endif
}

} // namespace

StandardStream::StandardStream(Channel channel)
    : QTextStream(channel == Channel::Output ? stdout : stderr, QIODevice::WriteOnly)
{
#ifdef Q_OS_WIN
    m_console = WindowsConsole::of(channel);
    if (m_console) {
        setDevice(m_console.get());
    }
#endif
    if (mustBeUtf8()) {
        setCodec("UTF-8");
    }
}

StandardStream::~StandardStream()
{
    flush();
    if (m_console) {
        setDevice(nullptr);
    }
}
