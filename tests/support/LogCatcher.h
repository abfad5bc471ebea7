#pragma once

#include <QStringList>

/// Catches what is written to the debug log while it lives. One at a time; the messages still
/// reach the test's output.
class LogCatcher
{
public:
    LogCatcher();
    ~LogCatcher();
    LogCatcher(const LogCatcher&) = delete;
    LogCatcher& operator=(const LogCatcher&) = delete;

    /// Everything written so far, one entry a message, quotes of QDebug included.
    QStringList messages() const;

    /// True if some message holds the text.
    bool contains(const QString& text) const;

    /// How many messages hold the text.
    int count(const QString& text) const;

    void clear();
};
