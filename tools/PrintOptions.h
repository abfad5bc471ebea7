#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

/// What the printing program is asked to do: its command line, read and checked.
class PrintOptions
{
public:
    /// Which documents to print.
    struct Selection
    {
        QVariant id;     ///< one document; null: all that match the rest
        QString surname; ///< part of the surname
        QString group;   ///< part of the class
        std::optional<int> type;
        QDate from; ///< first date of issue; null: no bound
        QDate to;   ///< last date of issue; null: no bound
    };

    /// Where the pages go.
    enum class Target
    {
        OneFile,         ///< one PDF file, a page a document
        FilePerDocument, ///< a PDF file a document, in a folder
        Printer
    };

    /// Reads the arguments, without the program's name. If they make no sense, returns false, and
    /// error() says why.
    bool parse(const QStringList& arguments);

    QString error() const { return m_error; }
    bool helpWanted() const { return m_helpWanted; }

    QString directory() const { return m_directory; }               ///< empty: the program's own
    QString organisationFile() const { return m_organisationFile; } ///< empty: the user's own
    const Selection& selection() const { return m_selection; }
    QString blank() const { return m_blank; } ///< ID or name; empty: the first of the form
    bool withBackground() const { return m_withBackground; }
    Target target() const { return m_target; }
    QString output() const { return m_output; } ///< file, folder or name of the printer

    static QString helpText();

private:
    bool fail(const QString& russian, const QString& english, const QString& detail = QString());
    bool parseSelection(const class QCommandLineParser& parser);
    bool parseTarget(const class QCommandLineParser& parser);
    bool parseDate(const QString& text, QDate& date);

    QString m_error;
    bool m_helpWanted = false;
    QString m_directory;
    QString m_organisationFile;
    Selection m_selection;
    QString m_blank;
    bool m_withBackground = false;
    Target m_target = Target::OneFile;
    QString m_output;
};
