#include "batch/BatchJournal.h"

#include <QDir>
#include <QFileInfo>

#include "app/WholeFile.h"
#include "batch/CsvText.h"
#include "batch/DiskSync.h"
#include "store/OrgData.h"

namespace {

QByteArray heading()
{
    return csvStart() + csvRow({"Время", "Документ", "Фамилия и имя", "Форма", "Бланк",
                                "Серия и номер", "Принтер или файл", "Итог"});
}

QByteArray rowOf(const JournalEntry& entry)
{
    return csvRow({entry.time.toString("yyyy-MM-dd HH:mm:ss"), entry.document, entry.person,
                   entry.form, entry.blank, entry.paper, entry.place, entry.event});
}

/// A folder, and whatever is missing above it, that its user alone can enter.
bool makeOwnFolder(const QString& path)
{
    return QDir().mkpath(path) &&
           QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/// What has the name of the journal, if anything has, must be a file of this folder: neither a
/// device nor a file elsewhere gets the journal's permissions.
bool mayBeWritten(const QString& path)
{
    const QFileInfo file(path);
    return !file.isSymLink() && (!file.exists() || file.isFile());
}

} // namespace

BatchJournal::BatchJournal(const QString& folder)
    : m_folder(folder)
{
}

QString BatchJournal::defaultFolder()
{
    return QFileInfo(orgDataPath).path() + "/journal";
}

bool BatchJournal::open(QString* error)
{
    return openDay(QDate::currentDate(), error);
}

bool BatchJournal::openDay(const QDate& day, QString* error)
{
    m_file.close();
    m_file.setFileName(m_folder + "/" + day.toString("yyyy-MM-dd") + ".csv");
    m_day = day;
    // Nothing is written before the permissions are set. A line goes out in one piece, so that two
    // windows may write the file of the day.
    const bool isReady =
        makeOwnFolder(m_folder) && mayBeWritten(m_file.fileName()) &&
        m_file.open(QIODevice::ReadWrite | QIODevice::Append | QIODevice::Unbuffered) &&
        m_file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) && begin();
    if (isReady) {
        return true;
    }
    if (error) {
        *error = m_file.error() == QFileDevice::NoError ? "нет доступа к файлу или папке"
                                                        : m_file.errorString();
    }
    m_file.close();
    return false;
}

/// Writes the heading of a new file, or ends the line that a power cut has left.
bool BatchJournal::begin()
{
    if (m_file.size() == 0) {
        return write(heading());
    }
    char last = '\n';
    const bool isRead = m_file.seek(m_file.size() - 1) && m_file.getChar(&last);
    return isRead && (last == '\n' || write("\r\n"));
}

bool BatchJournal::add(const JournalEntry& entry, QString* error)
{
    m_entries.append(entry);
    if (!isOpen()) {
        return true;
    }
    if (entry.time.date() != m_day && !openDay(entry.time.date(), error)) {
        return false;
    }
    if (write(rowOf(entry))) {
        return true;
    }
    if (error) {
        *error = m_file.errorString();
    }
    return false;
}

bool BatchJournal::saveAs(const QString& path, QString* error) const
{
    QByteArray text = heading();
    for (const JournalEntry& entry : m_entries) {
        text += rowOf(entry);
    }
    return writeWholeFile(path, text, error);
}

bool BatchJournal::write(const QByteArray& line)
{
    return m_file.write(line) == line.size() && syncToDisk(m_file);
}
