#pragma once

#include <QDateTime>
#include <QFile>
#include <QString>
#include <QVector>

/// What happened to a sheet, or to the file of a batch.
struct JournalEntry
{
    QDateTime time;
    QString document; ///< ID; empty in a line on a whole file
    QString person;
    QString form;
    QString blank;
    QString paper; ///< series and number of the numbered paper
    QString place; ///< printer or file
    QString event; ///< "печатается", or the outcome
};

/// The list of what was printed. It is kept beside the user's data, a file a day, that this user
/// alone can read, since it names people. Each line is on the disk when add() returns.
///
/// A sheet has two lines: "печатается" stands there before anything of it is sent, its outcome
/// follows. So every sheet that was sent is named, whatever happens. Of one that has no outcome
/// (the last, before a power cut) nobody but the paper can tell whether it was printed: look at it.
class BatchJournal
{
public:
    explicit BatchJournal(const QString& folder = defaultFolder());

    /// Beside the organisation's data.
    static QString defaultFolder();

    /// Begins or goes on with the file of today. False, with the reason in `error`, if it can't be
    /// written; what happens is then remembered only.
    bool open(QString* error = nullptr);
    bool isOpen() const { return m_file.isOpen(); }

    /// Remembers what happened, and writes it if the journal is open. False, with the reason in
    /// `error`, if it is not on the disk.
    bool add(const JournalEntry& entry, QString* error = nullptr);

    /// What was added since clear().
    const QVector<JournalEntry>& entries() const { return m_entries; }
    void clear() { m_entries.clear(); }

    /// Writes what was added since clear() to a file of the user's choice, whole or not at all.
    bool saveAs(const QString& path, QString* error = nullptr) const;

    /// The file that is written.
    QString path() const { return m_file.fileName(); }

private:
    bool openDay(const QDate& day, QString* error);
    bool begin();
    bool write(const QByteArray& line);

    QString m_folder;
    QFile m_file;
    QDate m_day; // of the file
    QVector<JournalEntry> m_entries;
};
