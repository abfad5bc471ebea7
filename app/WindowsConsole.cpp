#include "app/WindowsConsole.h"

#include <QString>

#include <windows.h>

namespace {

bool isConsole(HANDLE handle)
{
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0;
}

/// The console of the program that started this one; an invalid handle if it has none.
HANDLE openConsoleOfStarter()
{
    AttachConsole(ATTACH_PARENT_PROCESS); // fails if this program is attached already
    return CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                       nullptr, OPEN_EXISTING, 0, nullptr);
}

} // namespace

std::unique_ptr<WindowsConsole> WindowsConsole::of(StandardStream::Channel channel)
{
    HANDLE handle = GetStdHandle(channel == StandardStream::Channel::Output ? STD_OUTPUT_HANDLE
                                                                            : STD_ERROR_HANDLE);
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE) {
        handle = openConsoleOfStarter();
    }
    if (!isConsole(handle)) {
        return nullptr;
    }
    return std::unique_ptr<WindowsConsole>(new WindowsConsole(handle));
}

WindowsConsole::WindowsConsole(void* handle)
    : m_handle(handle)
{
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

qint64 WindowsConsole::readData(char*, qint64)
{
    return -1;
}

qint64 WindowsConsole::writeData(const char* data, qint64 size)
{
    constexpr int longestPiece = 8192; // a console takes no more than some ten thousand at once
    const QString text = QString::fromUtf8(data, static_cast<int>(size));
    for (int from = 0; from < text.size();) {
        const QString piece = text.mid(from, longestPiece);
        DWORD written = 0;
        if (!WriteConsoleW(m_handle, piece.utf16(), static_cast<DWORD>(piece.size()), &written,
                           nullptr) ||
            written == 0)
        {
            return -1;
        }
        from += static_cast<int>(written);
    }
    return size;
}
