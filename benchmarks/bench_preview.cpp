#include <benchmark/benchmark.h>

#include <QApplication>
#include <QGraphicsScene>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QPrinter>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTextDocument>

#include "RatioReporter.h"
#include "app/AppHelpers.h"
#include "render/PrinPreviewDialog.h"
#include "store/DataBase.h"
#include "store/Schema.h"

/// A document on a blank of twenty text items, built and printed to PDF, against its floors: the
/// same texts, in the same font and frames, painted by a bare QPainter. A label's text is rich
/// text, so that the floor lays out rich text too; "plain" is QPainter::drawText.

namespace {

constexpr int itemCount = 20;
const QSize page(1122, 793);

struct Text
{
    QString tags;    // in the blank
    QString printed; // on the page
    QRectF frame;    // scene units
};

const QVector<Text>& texts()
{
    static const QVector<Text> all = [] {
        const QVector<QPair<QString, QString>> kinds = {
            {"#LNAME #FNAME #MNAME", "Константинопольский Александр Вячеславович"},
            {"Дата выдачи: #ISSUE_DATE г.", "Дата выдачи: 25 июня 2021 г"},
            {"#SPECIALTY", "Информационные системы и программирование"},
            {"Серия #BLANK_SER № #BLANK_NO", "Серия АБВ № 0012345"},
            {"Решение комиссии от #PROTOCOL, квалификация присвоена",
             "Решение комиссии от 15.06.2021, квалификация присвоена"}};
        QVector<Text> result;
        for (int i = 0; i < itemCount; ++i) {
            const auto& [tags, printed] = kinds[i % kinds.size()];
            result.append({tags, printed, QRectF(20 + i % 2 * 550, 20 + i / 2 * 75, 500, 70)});
        }
        return result;
    }();
    return all;
}

QString compact(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

void insertBlank()
{
    QJsonArray items;
    for (const Text& text : texts()) {
        items.append(QJsonObject{{"type", 0},
                                 {"value", text.tags},
                                 {"pos_x", text.frame.x()},
                                 {"pos_y", text.frame.y()},
                                 {"size_w", text.frame.width()},
                                 {"size_h", text.frame.height()}});
    }
    QSqlQuery blank;
    blank.prepare("INSERT INTO blanks (NAME, FORM_ID, PAPER_FORMAT, PAPER_ORIENTATION, FONT, "
                  "FONT_SIZE, SIZE_WIDTH, SIZE_HEIGHT, OFFSET_X, OFFSET_Y, CONTENT) "
                  "VALUES ('A4', 1, 0, 0, 'Liberation Serif', 12, 297, 210, 0, 0, ?)");
    blank.addBindValue(compact({{"fields", items}}).toUtf8());
    blank.exec();
}

void insertDocument()
{
    QSqlQuery document;
    document.prepare("INSERT INTO docs (LNAME, FNAME, MNAME, BLANK_SER, BLANK_NO, DOC_TYPE, "
                     "ISSUE_DATE, TEMPLATE, CONTENT) VALUES ('Константинопольский', 'Александр', "
                     "'Вячеславович', 'АБВ', '0012345', 1, '2021-06-25', 0, ?)");
    const QJsonObject specialty{{"type", 0},
                                {"value", "Информационные системы и программирование"}};
    const QJsonObject protocol{{"type", 3}, {"value", "15.06.2021"}};
    document.addBindValue(compact({{"#SPECIALTY", specialty}, {"#PROTOCOL", protocol}}));
    document.exec();
}

/// An application directory with the document and the blank, open while it lives.
class Directory
{
public:
    Directory()
    {
        setAppDirPath(m_dir.path());
        createDatabaseFile(m_dir.filePath("docs.db"));
        dataBase.open();
        insertBlank();
        insertDocument();
    }

    QString file(const QString& name) const { return m_dir.filePath(name); }

private:
    QTemporaryDir m_dir;
};

std::unique_ptr<QPrinter> pdfPrinter(const QString& file)
{
    auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setOutputFileName(file);
    printer->setPageOrientation(QPageLayout::Landscape);
    printer->setPageSize(QPageSize(QPageSize::A4));
    printer->setFullPage(true);
    return printer;
}

void paintRichTexts(QPainter& painter)
{
    const QFont font("Liberation Serif", 12);
    for (const Text& text : texts()) {
        QTextDocument document;
        document.setDefaultFont(font);
        document.setDefaultTextOption(QTextOption(Qt::AlignHCenter));
        document.setDocumentMargin(0);
        document.setHtml("<p style=\"line-height: 100%;\">" + text.printed + "</p>");
        document.setTextWidth(text.frame.width());
        painter.save();
        painter.translate(text.frame.topLeft());
        document.drawContents(&painter);
        painter.restore();
    }
}

void paintPlainTexts(QPainter& painter)
{
    QFont font("Liberation Serif");
    font.setPixelSize(16); // 12 points at 96 dots per inch, whatever the device
    painter.setFont(font);
    for (const Text& text : texts()) {
        painter.drawText(text.frame, Qt::AlignCenter | Qt::TextWordWrap, text.printed);
    }
}

using PaintTexts = void (*)(QPainter&);

void paintImage(benchmark::State& state, PaintTexts paint)
{
    QImage image(page, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        image.fill(Qt::white);
        QPainter painter(&image);
        paint(painter);
    }
}

void paintPdf(benchmark::State& state, const Directory& directory, PaintTexts paint)
{
    for (auto _ : state) {
        const auto printer = pdfPrinter(directory.file("floor.pdf"));
        QPainter painter(printer.get());
        painter.scale(painter.viewport().width() / double(page.width()),
                      painter.viewport().width() / double(page.width()));
        paint(painter);
    }
}

void build(benchmark::State& state)
{
    PrinPreviewDialog preview(1);
    for (auto _ : state) {
        if (!preview.buildScene(preview.pageScene(), 1, 1)) {
            state.SkipWithError("not built");
            break;
        }
    }
}

/// What a batch does for each document: labels lay out their texts when they are first painted.
void buildAndPrint(benchmark::State& state, const Directory& directory)
{
    PrinPreviewDialog preview(1);
    for (auto _ : state) {
        preview.buildScene(preview.pageScene(), 1, 1);
        const auto printer = pdfPrinter(directory.file("ours.pdf"));
        preview.printTo(*printer);
    }
}

void print(benchmark::State& state, const Directory& directory)
{
    PrinPreviewDialog preview(1);
    preview.buildScene(preview.pageScene(), 1, 1);
    for (auto _ : state) {
        const auto printer = pdfPrinter(directory.file("ours.pdf"));
        preview.printTo(*printer);
    }
}

template <class Run>
void add(const char* name, Run run)
{
    benchmark::RegisterBenchmark(name, run)->Unit(benchmark::kMicrosecond);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    const Directory directory;

    add("build/ours", build);
    add("build/rich", [](benchmark::State& state) { paintImage(state, paintRichTexts); });
    add("build/plain", [](benchmark::State& state) { paintImage(state, paintPlainTexts); });
    add("build and pdf/ours", [&](benchmark::State& state) { buildAndPrint(state, directory); });
    add("build and pdf/rich",
        [&](benchmark::State& state) { paintPdf(state, directory, paintRichTexts); });
    add("pdf/ours", [&](benchmark::State& state) { print(state, directory); });
    add("pdf/rich", [&](benchmark::State& state) { paintPdf(state, directory, paintRichTexts); });
    add("pdf/plain", [&](benchmark::State& state) { paintPdf(state, directory, paintPlainTexts); });

    benchmark::Initialize(&argc, argv);
    RatioReporter reporter(RatioReporter::Clock::Cpu, RatioReporter::Peers::Floors);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
