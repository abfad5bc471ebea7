#include "support/PrintProgram.h"

#include <QDir>
#include <QImage>
#include <QProcess>

QString printProgram()
{
    return QString(ZELVORA_BIN_DIR) + "/tools/zelvora-print";
}

QProcessEnvironment noDisplay(const QString& locale)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name :
         {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "LANGUAGE", "XDG_RUNTIME_DIR"})
    {
        environment.remove(name);
    }
    environment.insert("LC_ALL", locale);
    // A build with the leak sanitizer would add its own words to the errors.
    environment.insert("LSAN_OPTIONS", environment.value("LSAN_OPTIONS") + ":print_suppressions=0");
    return environment;
}

ProcessResult runPrint(const QStringList& arguments, const QString& locale)
{
    return runPrint(arguments, noDisplay(locale));
}

ProcessResult runPrint(const QStringList& arguments, const QProcessEnvironment& environment)
{
    constexpr int timeoutMs = 60000; // as of any other program
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(printProgram(), arguments);
    ProcessResult result;
    if (process.waitForFinished(timeoutMs) && process.exitStatus() == QProcess::NormalExit) {
        result.exitCode = process.exitCode();
    }
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

ProcessResult makeSample(const QString& directory)
{
    return runProcess(QString(ZELVORA_BIN_DIR) + "/tools/zelvora-db", {"sample", directory});
}

PrintDirectory::PrintDirectory()
{
    landscape = addBlank({blankItem(0, "Бланк^: #LNAME", QRectF(100, 100, 400, 60)),
                          blankItem(1, "#BLANK_NO", QRectF(600, 100, 98, 98))},
                         {{"NAME", "Альбом"}, {"OFFSET_X", 2}, {"OFFSET_Y", -3}});
    portrait = addBlank({blankItem(0, "Книга: #LNAME #ORG_REGION", QRectF(50, 50, 400, 60))},
                        {{"NAME", "Книга"},
                         {"PAPER_FORMAT", 1},
                         {"PAPER_ORIENTATION", 1},
                         {"SIZE_WIDTH", 148},
                         {"SIZE_HEIGHT", 210},
                         {"BACKGROUND_IMG", "back.png"}});
    addBlank({blankItem(0, "Чужой", QRectF(50, 50, 400, 60))}, {{"NAME", "Чужой"}, {"FORM_ID", 2}});
    person("Иванов", "9А", "2021-06-25");
    person("Петрова", "9Б", "2022-06-25");
    person("Иваненко", "9А", "2023-06-25");
    person("О'Нил", "11", "2023-06-26", 2);
    addDocument({}, {{"LNAME", "Шаблонов"}, {"TEMPLATE", 1}});
    QImage picture(148, 210, QImage::Format_RGB32);
    picture.fill(Qt::black);
    picture.save(path("back.png"));
}

QVariant PrintDirectory::person(const QString& surname, const QString& group, const QString& issued,
                                int type)
{
    return addDocument(
        {}, {{"LNAME", surname}, {"DOC_GROUP", group}, {"ISSUE_DATE", issued}, {"DOC_TYPE", type}});
}

QStringList PrintDirectory::filesIn(const QString& folder) const
{
    return QDir(path(folder)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

ProcessResult PrintDirectory::print(const QStringList& arguments, const QString& locale) const
{
    return runPrint(QStringList{"--dir", path()} + arguments, locale);
}

QVariant PrintDirectory::addFullPage()
{
    addBlank({blankItem(0, "Очень длинный текст #LNAME", QRectF(50, 50, 150, 60)),
              blankItem(0, "Росчерк", QRectF(300, 50, 300, 160), {{"f_cut", 1}}),
              blankItem(2, "#T", QRectF(50, 300, 300, 90)),
              blankItem(2, "#T", QRectF(500, 300, 300, 300), {{"f_cut", 1}})},
             {{"NAME", "Полный"}});
    return addDocument(
        {{"#T", tableEntry({{"Алгебра и начала анализа", "5"}, {"Физика", "4"}, {"Химия", "3"}})}});
}
