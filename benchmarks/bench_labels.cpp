#include <benchmark/benchmark.h>

#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QXmlStreamWriter>

#include <cstdio>

#include "benchmarks/PageBench.h"
#include "benchmarks/RatioReporter.h"

/// A thousand documents of twenty texts printed into one PDF file by zelvora-print, check included,
/// against glabels-3-batch, which merges the same texts into a label of the same size, in the same
/// font and at the same places. Times are those of the processor for the whole process. The counter
/// "MB" is the most memory that it had.

namespace {

constexpr int repetitions = 5;
constexpr int manyPages = 1000;
constexpr int fewPages = 100;

const QStringList namesOfFields = {"LNAME",     "FNAME",     "MNAME",    "ISSUED",
                                   "SPECIALTY", "BLANK_SER", "BLANK_NO", "PROTOCOL"};

QStringList fieldsOf(const BenchDocument& document)
{
    return {document.lastName,      document.firstName, "Вячеславович",
            document.issuedInWords, document.specialty, "АБВ",
            document.number,        document.protocol};
}

QString points(double units)
{
    constexpr double paperWidth = 297 * 72 / 25.4; // of the blank
    return QString::number(units * paperWidth / page.width(), 'f', 3) + "pt";
}

/// What an item of the page prints, as a text of a label: the tags become fields.
void writeText(QXmlStreamWriter& xml, int item)
{
    QString rest = tagsOf(item);
    rest.replace("#ISSUE_DATE", "#ISSUED");
    for (int tag = rest.indexOf('#'); tag >= 0; tag = rest.indexOf('#')) {
        int end = tag + 1;
        while (end < rest.size() && (rest[end] == '_' || rest[end].isUpper())) {
            ++end;
        }
        const int field = namesOfFields.indexOf(rest.mid(tag + 1, end - tag - 1));
        xml.writeCharacters(rest.left(tag));
        xml.writeEmptyElement("Field");
        xml.writeAttribute("name", QString::number(field + 1));
        rest = rest.mid(end);
    }
    xml.writeCharacters(rest);
}

void writeItem(QXmlStreamWriter& xml, int item)
{
    const QRectF frame = frameOf(item);
    const auto write = [&xml](const QVector<QPair<QString, QString>>& attributes) {
        for (const auto& attribute : attributes) {
            xml.writeAttribute(attribute.first, attribute.second);
        }
    };
    xml.writeStartElement("Object-text");
    write({{"x", points(frame.x())},
           {"y", points(frame.y())},
           {"w", points(frame.width())},
           {"h", points(frame.height())},
           {"justify", "Center"},
           {"valign", "Center"},
           {"auto_shrink", "False"}});
    write({{"a0", "1"}, {"a1", "0"}, {"a2", "0"}, {"a3", "1"}, {"a4", "0"}, {"a5", "0"}});
    xml.writeStartElement("Span");
    write({{"font_family", "Liberation Serif"},
           {"font_size", "12"},
           {"font_weight", "Regular"},
           {"font_italic", "False"},
           {"color", "0x000000ff"},
           {"line_spacing", "1"}});
    writeText(xml, item);
    xml.writeEndElement();
    xml.writeEndElement();
}

void writeTemplate(QXmlStreamWriter& xml)
{
    xml.writeStartElement("Template");
    xml.writeAttribute("brand", "Bench");
    xml.writeAttribute("part", "Page");
    xml.writeAttribute("size", "Other");
    xml.writeAttribute("width", points(page.width()));
    xml.writeAttribute("height", points(page.height()));
    xml.writeStartElement("Label-rectangle");
    xml.writeAttribute("id", "0");
    xml.writeAttribute("width", points(page.width()));
    xml.writeAttribute("height", points(page.height()));
    for (const char* none : {"round", "x_waste", "y_waste"}) {
        xml.writeAttribute(none, "0pt");
    }
    xml.writeEmptyElement("Layout");
    xml.writeAttribute("nx", "1");
    xml.writeAttribute("ny", "1");
    for (const char* none : {"x0", "y0", "dx", "dy"}) {
        xml.writeAttribute(none, "0pt");
    }
    xml.writeEndElement();
    xml.writeEndElement();
}

/// The page as a label, and its texts as a table beside it.
void writeLabel(const QString& path, int documents)
{
    QFile rows(path + ".csv");
    QFile file(path);
    if (!rows.open(QIODevice::WriteOnly) || !file.open(QIODevice::WriteOnly)) {
        qFatal("no label");
    }
    for (int i = 0; i < documents; ++i) {
        rows.write(fieldsOf(benchDocument(i)).join(',').toUtf8() + '\n');
    }
    QXmlStreamWriter xml(&file);
    xml.writeStartDocument();
    xml.writeDefaultNamespace("http://glabels.org/xmlns/3.0/");
    xml.writeStartElement("http://glabels.org/xmlns/3.0/", "Glabels-document");
    writeTemplate(xml);
    xml.writeStartElement("Objects");
    xml.writeAttribute("id", "0");
    xml.writeAttribute("rotate", "False");
    for (int item = 0; item < itemCount; ++item) {
        writeItem(xml, item);
    }
    xml.writeEndElement();
    xml.writeEmptyElement("Merge");
    xml.writeAttribute("type", "Text/Comma");
    xml.writeAttribute("src", rows.fileName());
    xml.writeEndDocument();
}

QByteArray output(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0) {
        qFatal("%s failed", qPrintable(program));
    }
    return process.readAllStandardOutput();
}

/// The words of a PDF file without their order: both print the same.
QList<QByteArray> wordsOf(const QString& pdf)
{
    QList<QByteArray> words = output("pdftotext", {pdf, "-"}).simplified().split(' ');
    std::sort(words.begin(), words.end());
    return words;
}

/// A way to print, and the file that it makes.
struct Job
{
    QStringList command;
    QString pdf;

    void run(benchmark::State& state) const
    {
        for ([[maybe_unused]] auto _ : state) {
            const QList<QByteArray> took =
                output(ZELVORA_PYTHON, QStringList{ZELVORA_PROCESS_TIMES} + command)
                    .simplified()
                    .split(' ');
            state.SetIterationTime(took.value(0).toDouble());
            state.counters["MB"] = took.value(1).toDouble();
        }
    }
};

/// Both ways to print as many documents.
struct Jobs
{
    PageDirectory directory;
    Job ours;
    Job peer;

    explicit Jobs(int documents)
        : directory(documents)
    {
        ours.pdf = directory.path("ours.pdf");
        ours.command = QStringList{ZELVORA_PRINT, "--dir", directory.path(""), "--all", "--quiet",
                                   "--output",    ours.pdf};
        peer.pdf = directory.path("peer.pdf");
        peer.command =
            QStringList{"glabels-3-batch", "-o", peer.pdf, directory.path("page.glabels")};
        writeLabel(directory.path("page.glabels"), documents);
    }
};

void add(const std::string& name, const Job& job)
{
    benchmark::RegisterBenchmark(name.c_str(), [job](benchmark::State& state) { job.run(state); })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1)
        ->Repetitions(repetitions);
}

} // namespace

int main(int argc, char** argv)
{
    if (QStandardPaths::findExecutable("glabels-3-batch").isEmpty()) {
        std::fprintf(stderr,
                     "bench_labels: glabels-3-batch is not installed, nothing is compared\n");
        return 0;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const Jobs few(fewPages);
    output(ZELVORA_PYTHON, QStringList{ZELVORA_PROCESS_TIMES} + few.ours.command);
    output(ZELVORA_PYTHON, QStringList{ZELVORA_PROCESS_TIMES} + few.peer.command);
    if (wordsOf(few.ours.pdf) != wordsOf(few.peer.pdf)) {
        qFatal("the two do not print the same texts");
    }
    const Jobs many(manyPages);
    add("100 documents/ours", few.ours);
    add("100 documents/glabels", few.peer);
    add("1000 documents/ours", many.ours);
    add("1000 documents/glabels", many.peer);

    benchmark::Initialize(&argc, argv);
    RatioReporter reporter(RatioReporter::Clock::Real);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
