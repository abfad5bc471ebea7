#pragma once

#include <QTextStream>

#include <cstdio>
#include <memory>

/// The standard output or the standard error as a stream of texts in any letters. On a console of
/// Windows they are written as they are, whatever code page it has; a file or a pipe gets UTF-8
/// there, so that no letter of a path is lost. Elsewhere the locale's encoding is used, or UTF-8 if
/// it has no Cyrillic letters (the "C" locale).
class StandardStream : public QTextStream
{
public:
    enum class Channel
    {
        Output,
        Error
    };

    explicit StandardStream(Channel channel);

    /// Writes what is left.
    ~StandardStream() override;

    StandardStream(const StandardStream&) = delete;
    StandardStream& operator=(const StandardStream&) = delete;

private:
    std::unique_ptr<QIODevice> m_console; ///< null where the stream is a plain file
};
