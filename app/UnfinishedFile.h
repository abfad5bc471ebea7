#pragma once

#include <QString>

/// The name of a file that is not finished, while this object lives: a program that has to end
/// amid its work removes it.
class UnfinishedFile
{
public:
    explicit UnfinishedFile(const QString& path);
    ~UnfinishedFile();
    Q_DISABLE_COPY(UnfinishedFile)

    /// Removes all files that are unfinished at this moment, whatever the other threads do with
    /// them.
    static void removeAll();

private:
    const QString m_path;
};
