#include "tools/PrintOptions.h"

#include <QCommandLineParser>
#include <QFileInfo>

#include "tools/UserLanguage.h"

namespace {

void addOptions(QCommandLineParser& parser)
{
    // Help comes from helpText(), in the user's language, so that no descriptions stand here.
    for (const char* flag : {"all", "background", "help"}) {
        parser.addOption(QCommandLineOption(QLatin1String(flag)));
    }
    for (const char* name : {"dir", "org-data", "id", "surname", "group", "type", "from", "to",
                             "blank", "output", "printer"})
    {
        parser.addOption(QCommandLineOption(QLatin1String(name), QString(), QLatin1String(name)));
    }
}

} // namespace

bool PrintOptions::parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    // The parser expects the program's name first.
    const bool parsed = parser.parse(QStringList("zelvora-print") + arguments);
    m_helpWanted = parser.isSet("help") || arguments.contains("-h");
    if (m_helpWanted) {
        return true;
    }
    if (!parser.unknownOptionNames().isEmpty()) {
        return fail("неизвестный ключ: ", "unknown option: ", parser.unknownOptionNames().first());
    }
    if (!parsed) {
        return fail("ошибка в ключах: ", "wrong options: ", parser.errorText());
    }
    if (!parser.positionalArguments().isEmpty()) {
        return fail(
            "лишний аргумент: ", "unexpected argument: ", parser.positionalArguments().first());
    }
    m_directory = parser.value("dir");
    m_organisationFile = parser.value("org-data");
    m_blank = parser.value("blank");
    m_withBackground = parser.isSet("background");
    return parseSelection(parser) && parseTarget(parser);
}

bool PrintOptions::parseSelection(const QCommandLineParser& parser)
{
    if (parser.isSet("id") == parser.isSet("all")) {
        return fail("нужен один из ключей --id и --all", "one of --id and --all is needed");
    }
    if (parser.isSet("id")) {
        for (const char* filter : {"surname", "group", "type", "from", "to"}) {
            if (parser.isSet(QLatin1String(filter))) {
                return fail("ключ --id не сочетается с отбором: ", "--id goes with no filter: ",
                            QLatin1String("--") + filter);
            }
        }
        bool isNumber = false;
        m_selection.id = parser.value("id").toLongLong(&isNumber);
        return isNumber || fail("номер документа — не число: ", "the document's ID is no number: ",
                                parser.value("id"));
    }
    m_selection.surname = parser.value("surname");
    m_selection.group = parser.value("group");
    if (parser.isSet("type")) {
        bool isNumber = false;
        m_selection.type = parser.value("type").toInt(&isNumber);
        if (!isNumber) {
            return fail(
                "номер формы — не число: ", "the form's ID is no number: ", parser.value("type"));
        }
    }
    return parseDate(parser.value("from"), m_selection.from) &&
           parseDate(parser.value("to"), m_selection.to);
}

bool PrintOptions::parseTarget(const QCommandLineParser& parser)
{
    if (parser.isSet("output") == parser.isSet("printer")) {
        return fail("нужен один из ключей --output и --printer",
                    "one of --output and --printer is needed");
    }
    if (parser.isSet("printer")) {
        m_target = Target::Printer;
        m_output = parser.value("printer");
        return true;
    }
    m_output = parser.value("output");
    if (m_output.isEmpty()) {
        return fail("не указан файл или каталог", "no file or folder is named");
    }
    const bool isFile = m_output.endsWith(".pdf", Qt::CaseInsensitive);
    m_target = isFile && !QFileInfo(m_output).isDir() ? Target::OneFile : Target::FilePerDocument;
    return true;
}

bool PrintOptions::parseDate(const QString& text, QDate& date)
{
    if (text.isEmpty()) {
        return true;
    }
    date = QDate::fromString(text, "yyyy-MM-dd");
    return date.isValid() ||
           fail("дата не в виде ГГГГ-ММ-ДД: ", "no date of the form yyyy-MM-dd: ", text);
}

bool PrintOptions::fail(const QString& russian, const QString& english, const QString& detail)
{
    m_error = inUserLanguage(russian, english) + detail;
    return false;
}

QString PrintOptions::helpText()
{
    return inUserLanguage(
        "Использование: zelvora-print [КЛЮЧИ] --id НОМЕР --output ПУТЬ\n"
        "               zelvora-print [КЛЮЧИ] --all [ОТБОР] --output ПУТЬ\n"
        "\n"
        "Печатает документы без окна, так же, как их печатает приложение.\n"
        "\n"
        "Что печатать:\n"
        "  --id НОМЕР        один документ\n"
        "  --all             все документы, которые проходят отбор:\n"
        "    --surname ТЕКСТ   часть фамилии\n"
        "    --group ТЕКСТ     часть названия класса\n"
        "    --type НОМЕР      номер формы\n"
        "    --from ГГГГ-ММ-ДД, --to ГГГГ-ММ-ДД\n"
        "                      дата выдачи, включая оба дня\n"
        "\n"
        "Куда:\n"
        "  --output ПУТЬ     файл .pdf (по странице на документ) или каталог (по файлу на\n"
        "                    документ; создаётся, если его нет)\n"
        "  --printer ИМЯ     принтер вместо файла\n"
        "\n"
        "Как:\n"
        "  --blank БЛАНК     номер или название бланка; без ключа — первый бланк формы\n"
        "  --background      печатать и фон бланка\n"
        "  --dir КАТАЛОГ     каталог приложения с docs.db; без ключа — каталог программы\n"
        "  --org-data ФАЙЛ   данные организации; без ключа — данные пользователя\n"
        "  --help            показать эту справку\n"
        "\n"
        "Код завершения: 0 — всё напечатано, 1 — часть документов не напечатана,\n"
        "2 — задание не выполнено.\n",
        "Usage: zelvora-print [OPTIONS] --id ID --output PATH\n"
        "       zelvora-print [OPTIONS] --all [FILTER] --output PATH\n"
        "\n"
        "Prints documents without a window, just as the application prints them.\n"
        "\n"
        "What to print:\n"
        "  --id ID           one document\n"
        "  --all             all documents that pass the filter:\n"
        "    --surname TEXT    part of the surname\n"
        "    --group TEXT      part of the class\n"
        "    --type ID         the form\n"
        "    --from yyyy-MM-dd, --to yyyy-MM-dd\n"
        "                      date of issue, both days included\n"
        "\n"
        "Where to:\n"
        "  --output PATH     a .pdf file (a page a document) or a folder (a file a document;\n"
        "                    made if there is none)\n"
        "  --printer NAME    a printer instead of a file\n"
        "\n"
        "How:\n"
        "  --blank BLANK     ID or name of the blank; by default the first one of the form\n"
        "  --background      print the blank's background too\n"
        "  --dir DIR         application directory with docs.db; by default the program's own\n"
        "  --org-data FILE   the organisation's data; by default the user's own\n"
        "  --help            show this help\n"
        "\n"
        "Exit status: 0 if all was printed, 1 if some documents were not, 2 if the job could\n"
        "not be done.\n");
}
