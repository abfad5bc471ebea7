#pragma once

#include <QCoreApplication>
#include <QMarginsF>
#include <QPointF>
#include <QString>
#include <QStringList>

#include <optional>

#include "printing/DocumentFilter.h"
#include "printing/PrintTarget.h"

class QCommandLineParser;

/// What the printing program is asked to do: its command line, read and checked.
class PrintOptions
{
    Q_DECLARE_TR_FUNCTIONS(PrintOptions)

public:
    enum class Action
    {
        Print,
        Check,       ///< look for what would spoil the paper, print nothing
        Proof,       ///< a picture of each page with its frames and findings
        Calibration, ///< a sheet of scales for a blank's paper
        Offsets      ///< the print offsets that two readings from that sheet ask for
    };

    using Target = PrintTarget::Kind;

    /// Reads the arguments, without the program's name. If they make no sense, returns false, and
    /// error() says why.
    bool parse(const QStringList& arguments);

    QString error() const { return m_error; }
    bool helpWanted() const { return m_helpWanted; }
    Action action() const { return m_action; }

    QString directory() const { return m_directory; }               ///< empty: the program's own
    QString organisationFile() const { return m_organisationFile; } ///< empty: the user's own
    bool isQuiet() const { return m_isQuiet; }                      ///< no progress is shown

    const DocumentFilter& selection() const { return m_selection; } ///< which documents
    QString blank() const { return m_blank; } ///< ID or name; empty: the first of the form

    Target target() const { return m_target; }
    PrintTarget printTarget() const;                      ///< where the pages go, for a batch
    QString output() const { return m_output; }           ///< file or folder
    QString namePattern() const { return m_namePattern; } ///< of the files in a folder
    QString printer() const { return m_printer; } ///< the target, or whose margins a check minds
    int copies() const { return m_copies; }
    bool withBackground() const { return m_withBackground; }
    bool isStrict() const { return m_isStrict; } ///< what has findings is not printed

    /// The margins that a printer cannot print on, in millimetres; none if they were not told.
    std::optional<QMarginsF> margins() const { return m_margins; }
    bool asJson() const { return m_asJson; }
    int resolution() const { return m_resolution; }       ///< of a proof, dots per inch
    QPointF readOffsets() const { return m_readOffsets; } ///< from the test sheet, millimetres

    static QString helpText();

private:
    bool fail(const QString& message);
    bool takeReadOffsets(QStringList& arguments);
    bool parseAction(const QCommandLineParser& parser);
    bool parseSelection(const QCommandLineParser& parser);
    bool parseIds(const QString& list);
    bool parseDate(const QString& text, QDate& date);
    bool parseTarget(const QCommandLineParser& parser);
    bool parseFileTarget(const QCommandLineParser& parser);
    bool parseManner(const QCommandLineParser& parser);
    bool parseMargins(const QString& text);
    bool parseNumber(const QCommandLineParser& parser, const char* option, int least, int most,
                     int& number);

    QString m_error;
    bool m_helpWanted = false;
    Action m_action = Action::Print;
    QString m_directory;
    QString m_organisationFile;
    bool m_isQuiet = false;
    DocumentFilter m_selection;
    QString m_blank;
    Target m_target = Target::OneFile;
    QString m_output;
    QString m_namePattern;
    QString m_printer;
    int m_copies = 1;
    bool m_withBackground = false;
    bool m_isStrict = false;
    std::optional<QMarginsF> m_margins;
    bool m_asJson = false;
    int m_resolution = 150;
    QPointF m_readOffsets;
};
