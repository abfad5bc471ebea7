#pragma once

#include <QIODevice>

#include <memory>

#include "app/StandardStream.h"

/// A console of Windows that UTF-8 is written to. It shows the letters as they are, independent of
/// its code page, which other programs in the same console go on using.
class WindowsConsole : public QIODevice
{
public:
    /// The console behind a standard stream; null if it is a file or a pipe. A program with windows
    /// has no console of its own: then it is that of the program which started it, if any.
    static std::unique_ptr<WindowsConsole> of(StandardStream::Channel channel);

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    explicit WindowsConsole(void* handle);

    void* m_handle; ///< owned by the system
};
