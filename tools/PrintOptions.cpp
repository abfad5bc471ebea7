#include "tools/PrintOptions.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QRegularExpression>

#include <cmath>

#include "printing/FileNamePattern.h"
#include "printing/calibration/PrintOffsets.h"
#include "store/StoredDate.h"

namespace {

using Action = PrintOptions::Action;

constexpr unsigned only(Action action)
{
    return 1U << static_cast<unsigned>(action);
}

constexpr unsigned everyAction = ~0U;
constexpr unsigned documentActions =
    only(Action::Print) | only(Action::Check) | only(Action::Proof);

struct OptionRule
{
    const char* name;
    bool hasValue;
    unsigned actions; // that it goes with, a bit each
};

// Help comes from helpText(), in the user's language, so that no descriptions stand here. Another
// action's option is an error: it would be passed over, and a sheet of paper may depend on it.
constexpr OptionRule optionRules[] = {
    {"help", false, everyAction},
    {"dir", true, everyAction},
    {"org-data", true, everyAction},
    {"quiet", false, everyAction},
    {"blank", true, everyAction},
    {"check", false, only(Action::Check)},
    {"proof", false, only(Action::Proof)},
    {"calibration", false, only(Action::Calibration)},
    {"id", true, documentActions},
    {"all", false, documentActions},
    {"surname", true, documentActions},
    {"group", true, documentActions},
    {"type", true, documentActions},
    {"from", true, documentActions},
    {"to", true, documentActions},
    {"where", true, documentActions},
    {"background", false, documentActions},
    {"margins", true, documentActions},
    {"output", true, only(Action::Print) | only(Action::Proof) | only(Action::Calibration)},
    {"printer", true, documentActions | only(Action::Calibration)},
    {"name", true, only(Action::Print)},
    {"copies", true, only(Action::Print)},
    {"strict", false, only(Action::Print)},
    {"json", false, only(Action::Check)},
    {"resolution", true, only(Action::Proof)}};

void addOptions(QCommandLineParser& parser)
{
    for (const OptionRule& rule : optionRules) {
        const QString valueName = rule.hasValue ? QLatin1String(rule.name) : QString();
        parser.addOption(
            QCommandLineOption(QString(QLatin1String(rule.name)), QString(), valueName));
    }
}

/// The first option that was given more than once, though only one of its values would count.
QString givenTwice(const QCommandLineParser& parser)
{
    for (const OptionRule& rule : optionRules) {
        QString name = QLatin1String(rule.name);
        if (rule.hasValue && parser.values(name).size() > 1) {
            return name;
        }
    }
    return QString();
}

/// A finite number of millimetres, with a decimal point.
bool readMillimetres(const QString& text, double& millimetres)
{
    bool isNumber = false;
    millimetres = text.toDouble(&isNumber);
    return isNumber && std::isfinite(millimetres);
}

constexpr const char* pdfSuffix = ".pdf";
constexpr const char* pngSuffix = ".png";

bool hasSuffix(const QString& path, const char* suffix)
{
    return path.endsWith(QLatin1String(suffix), Qt::CaseInsensitive);
}

} // namespace

bool PrintOptions::parse(const QStringList& arguments)
{
    // The parser expects the program's name first.
    QStringList rest = QStringList("zelvora-print") + arguments;
    m_helpWanted = arguments.contains("--help") || arguments.contains("-h");
    if (m_helpWanted) {
        return true;
    }
    if (!takeReadOffsets(rest)) {
        return false;
    }
    QCommandLineParser parser;
    addOptions(parser);
    const bool parsed = parser.parse(rest);
    if (!parser.unknownOptionNames().isEmpty()) {
        return fail(tr("unknown option: %1").arg(parser.unknownOptionNames().first()));
    }
    if (!parsed) {
        return fail(tr("wrong options: %1").arg(parser.errorText()));
    }
    if (!parser.positionalArguments().isEmpty()) {
        return fail(tr("unexpected argument: %1").arg(parser.positionalArguments().first()));
    }
    const QString twice = givenTwice(parser);
    if (!twice.isEmpty()) {
        return fail(tr("given twice: --%1").arg(twice));
    }
    for (const char* name : {"dir", "org-data"}) {
        // Not the usual place: a script's variable may be unset, and the pages another school's.
        if (parser.isSet(QLatin1String(name)) && parser.value(QLatin1String(name)).isEmpty()) {
            return fail(tr("no value is given to --%1").arg(QLatin1String(name)));
        }
    }
    m_directory = parser.value("dir");
    m_organisationFile = parser.value("org-data");
    m_isQuiet = parser.isSet("quiet");
    m_blank = parser.value("blank");
    if (parser.isSet("blank") && m_blank.isEmpty()) {
        // Not the first one of the form: a script's variable may be unset, and the paper another.
        return fail(tr("no blank is named"));
    }
    return parseAction(parser) && parseSelection(parser) && parseTarget(parser) &&
           parseManner(parser);
}

// The parser knows no option with two values, and would take a negative one for an option.
bool PrintOptions::takeReadOffsets(QStringList& arguments)
{
    const int place = arguments.indexOf("--offsets");
    if (place < 0) {
        return true;
    }
    constexpr int taken = 3;
    QVector<double> values;
    for (int i = place + 1; i < place + taken; ++i) {
        const QString text = arguments.value(i);
        const std::optional<double> value = PrintOffsets::millimetres(text);
        if (!value) {
            return fail(text.isEmpty()
                            ? tr("--offsets needs two numbers, in millimetres")
                            : tr("--offsets needs two numbers, in millimetres: %1").arg(text));
        }
        values.append(*value);
    }
    m_readOffsets = QPointF(values[0], values[1]);
    arguments.erase(arguments.begin() + place, arguments.begin() + place + taken);
    if (arguments.contains("--offsets")) {
        return fail(tr("--offsets is given twice"));
    }
    m_action = Action::Offsets;
    return true;
}

bool PrintOptions::parseAction(const QCommandLineParser& parser)
{
    int actions = m_action == Action::Offsets ? 1 : 0;
    const auto take = [&](const char* option, Action action) {
        if (parser.isSet(QLatin1String(option))) {
            m_action = action;
            ++actions;
        }
    };
    take("check", Action::Check);
    take("proof", Action::Proof);
    take("calibration", Action::Calibration);
    if (actions > 1) {
        return fail(tr("only one of --check, --proof, --calibration and --offsets is possible"));
    }
    for (const OptionRule& rule : optionRules) {
        const QString name = QLatin1String(rule.name);
        if (parser.isSet(name) && (rule.actions & only(m_action)) == 0) {
            return fail(tr("out of place here: --%1").arg(name));
        }
    }
    return true;
}

bool PrintOptions::parseSelection(const QCommandLineParser& parser)
{
    if ((documentActions & only(m_action)) == 0) {
        return true;
    }
    QString filter; // the first that narrows the choice
    for (const char* name : {"surname", "group", "type", "from", "to", "where"}) {
        // An empty value narrows nothing. That must not print all: a script's variable may be
        // unset.
        if (filter.isEmpty() && !parser.value(QLatin1String(name)).isEmpty()) {
            filter = QLatin1String("--") + name;
        }
    }
    const bool isAll = parser.isSet("all");
    if (parser.isSet("id")) {
        if (isAll || !filter.isEmpty()) {
            return fail(tr("--id does not go with %1").arg(isAll ? QString("--all") : filter));
        }
        return parseIds(parser.value("id"));
    }
    if (!isAll && filter.isEmpty()) {
        return fail(tr("which documents? --id, a filter or --all is needed"));
    }
    m_selection.surname = parser.value("surname");
    m_selection.group = parser.value("group");
    m_selection.type = parser.value("type");
    m_selection.condition = parser.value("where");
    return parseDate(parser.value("from"), m_selection.from) &&
           parseDate(parser.value("to"), m_selection.to);
}

bool PrintOptions::parseIds(const QString& list)
{
    static const QRegularExpression form(R"(^\s*(\d+)\s*(?:-\s*(\d+)\s*)?$)");
    const QStringList parts = list.split(',');
    for (const QString& part : parts) {
        const QRegularExpressionMatch match = form.match(part);
        bool isFirst = false;
        bool isLast = false;
        const qint64 first = match.captured(1).toLongLong(&isFirst);
        const bool isRange = !match.captured(2).isNull();
        const qint64 last = match.captured(isRange ? 2 : 1).toLongLong(&isLast);
        if (!isFirst || !isLast || first > last) {
            return fail(tr("neither an ID nor a range of IDs: %1").arg(part));
        }
        m_selection.ids.append({first, last});
    }
    return true;
}

bool PrintOptions::parseDate(const QString& text, QDate& date)
{
    if (text.isEmpty()) {
        return true;
    }
    date = QDate::fromString(text, storedDateFormat);
    return date.isValid() || fail(tr("no date of the form yyyy-MM-dd: %1").arg(text));
}

bool PrintOptions::parseTarget(const QCommandLineParser& parser)
{
    m_printer = parser.value("printer");
    if (parser.isSet("printer") && m_printer.isEmpty()) {
        return fail(tr("no printer is named"));
    }
    const bool isFile = parser.isSet("output");
    switch (m_action) {
    case Action::Check:
    case Action::Offsets:
        return true;
    case Action::Proof:
        return isFile ? parseFileTarget(parser) : fail(tr("--output is needed"));
    case Action::Print:
    case Action::Calibration:
        break;
    }
    if (m_action == Action::Calibration && m_blank.isEmpty()) {
        return fail(tr("--blank is needed"));
    }
    if (isFile == parser.isSet("printer")) {
        return fail(tr("one of --output and --printer is needed"));
    }
    if (isFile) {
        return parseFileTarget(parser);
    }
    m_target = Target::Printer;
    return true;
}

bool PrintOptions::parseFileTarget(const QCommandLineParser& parser)
{
    m_output = parser.value("output");
    if (m_output.isEmpty()) {
        return fail(tr("no file or folder is named"));
    }
    const char* const suffix = m_action == Action::Proof ? pngSuffix : pdfSuffix;
    const bool isFolder = QFileInfo(m_output).isDir();
    m_target = hasSuffix(m_output, suffix) && !isFolder ? Target::OneFile : Target::FilePerDocument;
    // A new folder is not named like a file: the name was meant for another kind of file.
    const bool isOtherFile =
        !isFolder && (hasSuffix(m_output, pdfSuffix) || hasSuffix(m_output, pngSuffix));
    if (m_target != Target::OneFile && (isOtherFile || m_action == Action::Calibration)) {
        return fail(tr("this is no %1 file: %2").arg(suffix, m_output));
    }
    return true;
}

bool PrintOptions::parseManner(const QCommandLineParser& parser)
{
    constexpr int mostCopies = 99;
    constexpr int leastResolution = 36;
    constexpr int mostResolution = 1200;
    m_withBackground = parser.isSet("background");
    m_isStrict = parser.isSet("strict");
    m_asJson = parser.isSet("json");
    m_namePattern = parser.value("name");
    if (parser.isSet("name") && m_target != Target::FilePerDocument) {
        return fail(tr("--name goes with a folder only"));
    }
    if (!FileNamePattern(m_namePattern).isValid()) {
        return fail(tr("the braces of the name pattern do not match: %1").arg(m_namePattern));
    }
    return parseNumber(parser, "copies", 1, mostCopies, m_copies) &&
           parseNumber(parser, "resolution", leastResolution, mostResolution, m_resolution) &&
           (!parser.isSet("margins") || parseMargins(parser.value("margins")));
}

bool PrintOptions::parseNumber(const QCommandLineParser& parser, const char* option, int least,
                               int most, int& number)
{
    if (!parser.isSet(QLatin1String(option))) {
        return true;
    }
    bool isNumber = false;
    const QString text = parser.value(QLatin1String(option));
    number = text.toInt(&isNumber);
    return (isNumber && number >= least && number <= most) ||
           fail(tr("--%1 is no number from %2 to %3: %4")
                    .arg(option, QString::number(least), QString::number(most), text));
}

bool PrintOptions::parseMargins(const QString& text)
{
    const QStringList parts = text.split(',');
    QVector<double> values;
    for (const QString& part : parts) {
        double value = 0;
        if (!readMillimetres(part, value) || value < 0) {
            values.clear();
            break;
        }
        values.append(value);
    }
    if (values.size() == 1) {
        m_margins = QMarginsF(values[0], values[0], values[0], values[0]);
    } else if (values.size() == 4) {
        m_margins = QMarginsF(values[0], values[1], values[2], values[3]);
    }
    return m_margins.has_value() ||
           fail(tr("the margins are neither one nor four numbers of millimetres: %1").arg(text));
}

PrintTarget PrintOptions::printTarget() const
{
    PrintTarget target;
    target.kind = m_target;
    target.place = m_target == Target::Printer ? m_printer : m_output;
    target.namePattern = m_namePattern;
    return target;
}

bool PrintOptions::fail(const QString& message)
{
    m_error = message;
    return false;
}

QString PrintOptions::helpText()
{
    return tr(
        "Usage:\n"
        "  zelvora-print [OPTIONS] DOCUMENTS TARGET         print\n"
        "  zelvora-print [OPTIONS] --check DOCUMENTS        look for faults before printing\n"
        "  zelvora-print [OPTIONS] --proof DOCUMENTS TARGET draw with frames and findings\n"
        "  zelvora-print [OPTIONS] --calibration --blank BLANK TARGET\n"
        "                                                   print a sheet of scales\n"
        "  zelvora-print [OPTIONS] --offsets X Y            work out the print offsets\n"
        "\n"
        "Prints documents without a window, just as the application prints them.\n"
        "\n"
        "Documents:\n"
        "  --id LIST           IDs and ranges of IDs: 5 or 3,7,10-20\n"
        "  --all               all documents\n"
        "  --surname TEXT      part of the surname; filters go together\n"
        "  --group TEXT        part of the class\n"
        "  --type FORM         ID or name of the form\n"
        "  --from yyyy-MM-dd   date of issue: this day or later\n"
        "  --to yyyy-MM-dd     date of issue: this day or earlier\n"
        "  --where CONDITION   an SQL condition on the columns of the table docs\n"
        "  --blank BLANK       ID or name of the blank; by default the first one of the form\n"
        "\n"
        "Target:\n"
        "  --output PATH       a .pdf file (a page a document) or a folder (a file a document;\n"
        "                      made if there is none)\n"
        "  --name PATTERN      names of the files in a folder, with tags in braces:\n"
        "                      {#LNAME}_{#BLANK_NO}.pdf; by default ID, surname and first name\n"
        "  --printer NAME      a printer instead of a file\n"
        "\n"
        "Printing:\n"
        "  --background        print the blank's background too\n"
        "  --copies NUMBER     copies of each document, 1 to 99\n"
        "  --strict            do not print documents with findings; warnings about the\n"
        "                      blank hold nothing back\n"
        "\n"
        "Check (--check) and proof (--proof):\n"
        "  --margins MARGINS   margins that the printer leaves blank, in mm: one number or\n"
        "                      LEFT,TOP,RIGHT,BOTTOM; with --printer those of the printer\n"
        "  --json              findings as JSON\n"
        "  --output PATH       a .png file or a folder for the pictures\n"
        "  --resolution NUMBER dots per inch of a picture, 36 to 1200; by default 150\n"
        "\n"
        "Calibration:\n"
        "  --calibration       a sheet of scales for the blank's paper\n"
        "  --offsets X Y       from two numbers read off that sheet, in mm, work out the print\n"
        "                      offsets to enter in the blank's format\n"
        "\n"
        "Other:\n"
        "  --dir DIR           application directory with docs.db; by default the program's "
        "own\n"
        "  --org-data FILE     the organisation's data; by default the user's own\n"
        "  --quiet             show no progress\n"
        "  --help              show this help\n"
        "\n"
        "Exit status: 0 if all was done and nothing found, 1 if some documents were not printed "
        "or\n"
        "there are findings, 2 if the job could not be done.\n");
}
