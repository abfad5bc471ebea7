#include "app/TargetFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <QUuid>

#include "app/WholeFile.h"

namespace {

bool isLeftover(const QString& name)
{
    // Of unfinishedPath(), of pages on their way into a file, and of a new database with its
    // journal.
    static const QRegularExpression ours("^(\\.zelvora-([0-9a-f]{32}\\.[a-z]+(\\.[A-Za-z]{6})?"
                                         "|[A-Za-z]{6}\\.pdf)"
                                         "|.+\\.[0-9a-f]{32}\\.new)(-journal|-wal|-shm)?$");
    return ours.match(name).hasMatch();
}

/// Nothing that a companion writes is one: whoever names a database as a target means another file.
bool isDatabase(const QString& path)
{
    const QByteArray mark("SQLite format 3", 16); // with its zero byte
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(mark.size()) == mark;
}

} // namespace

TargetFile::TargetFile(const QString& path, Links links)
    : m_path(path)
    , m_links(links)
{
}

bool TargetFile::isAllowed(const QString& path, Links links)
{
    const QFileInfo target(path);
    if (target.isSymLink() && links == Links::Replace) {
        return true;
    }
    return !target.exists() || (target.isFile() && !isDatabase(path));
}

bool TargetFile::open()
{
    m_isRefused = !isAllowed(m_path, m_links);
    if (m_isRefused) {
        return false;
    }
    const QFileInfo target(m_path);
    m_replacesLink = m_links == Links::Replace && target.isSymLink();
    m_file.setFileName(m_replacesLink ? unfinishedPath(target.path(), "part") : m_path);
    return m_file.open(QIODevice::WriteOnly);
}

bool TargetFile::commit()
{
    if (!commitWhole(m_file)) {
        return false;
    }
    if (!m_replacesLink) {
        return true;
    }
    if (QFile::remove(m_path) && QFile::rename(m_file.fileName(), m_path)) {
        return true;
    }
    QFile::remove(m_file.fileName());
    return false;
}

QString TargetFile::errorString() const
{
    return m_isRefused ? QString() : m_file.errorString();
}

bool canWriteInto(const QString& folder)
{
    QTemporaryFile probe(unfinishedPdf(folder));
    return probe.open();
}

void removeLeftovers(const QString& folder)
{
    const QDateTime yesterday = QDateTime::currentDateTimeUtc().addDays(-1);
    const QDir::Filters filters = QDir::Files | QDir::Hidden | QDir::NoSymLinks;
    const QFileInfoList files =
        QDir(folder).entryInfoList({".zelvora-*", "*.new", "*.new-journal"}, filters);
    for (const QFileInfo& file : files) {
        if (isLeftover(file.fileName()) && file.lastModified().toUTC() < yesterday) {
            QFile::remove(file.filePath());
        }
    }
}

QString unfinishedPdf(const QString& folder)
{
    return folder + "/.zelvora-XXXXXX.pdf";
}

QString unfinishedPath(const QString& folder, const QString& suffix)
{
    return folder + "/.zelvora-" + QUuid::createUuid().toString(QUuid::Id128) + "." + suffix;
}
