#include <QtTest>

#include <QGraphicsScene>
#include <QLabel>
#include <QPainter>
#include <QTemporaryDir>
#include <QTextDocument>

#include "app/AppHelpers.h"
#include "render/page/FrameLabel.h"
#include "render/page/MarkupDocument.h"
#include "render/page/MarkupPictures.h"
#include "support/TempApplication.h"

#ifdef Q_OS_LINUX
#include <sys/stat.h>
#endif

namespace {

const QColor red(255, 0, 0);

QByteArray pngOf(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        QTest::qFail("a file of the test could not be written", __FILE__, __LINE__);
    }
}

/// A page's label with the markup, as it is painted: on a white sheet.
QImage painted(QLabel& label)
{
    label.setWordWrap(true);
    label.setFont(QFont("Liberation Serif", 12));
    label.setStyleSheet("background: transparent; border: 0;");
    label.resize(200, 80);
    QImage sheet(label.size(), QImage::Format_RGB32);
    sheet.fill(Qt::white);
    label.render(&sheet, QPoint(), QRegion(), QWidget::DrawChildren);
    return sheet;
}

int redDots(const QImage& image)
{
    int dots = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            dots += image.pixelColor(x, y) == red ? 1 : 0;
        }
    }
    return dots;
}

QString paragraph(const QString& markup)
{
    return "<p style=\"line-height: 100%;\">" + markup + "</p>";
}

/// What each way into a text makes of the name of a file; the red of a picture or of the text shows
/// whether it was loaded.
const QVector<QPair<const char*, QString>>& waysIn()
{
    static const QVector<QPair<const char*, QString>> ways = {
        {"img", "<img src=\"%1\">"},
        {"sized img", "<img src=\"%1\" width=\"30\" height=\"20\">"},
        {"floating img", "<img src=\"%1\" align=\"left\">"},
        {"table", "<table background=\"%1\"><tr><td>text</td></tr></table>"},
        {"cell", "<table><tr><td background=\"%1\">text</td></tr></table>"},
        {"body", "<body background=\"%1\">text</body>"},
        {"style", "<span style=\"background-image: url(%1)\">text</span>"},
        {"escaped style", "<span style=\"background-image: u\\72l(%1)\">text</span>"},
        {"short style", "<span style=\"background: url('%1')\">text</span>"},
        {"cell's style", "<table><tr><td style=\"background-image: url(%1)\">x</td></tr></table>"},
        {"style sheet", "<style>b { background-image: url(%1) }</style><b>text</b>"},
        {"frame's tag", "<p style=\"line-height: 1; background-image: url(%1)\">text</p>"},
    };
    return ways;
}

const QVector<QPair<const char*, QString>>& waysInOfStyleSheets()
{
    static const QVector<QPair<const char*, QString>> ways = {
        {"link", "<link rel=\"stylesheet\" type=\"text/css\" href=\"%1\"/><b>text</b>"},
        {"import", "<style>@import url(%1);</style><b>text</b>"},
        {"import of a name", "<style>@import '%1';</style><b>text</b>"},
    };
    return ways;
}

} // namespace

/// Markup of a text on a page, through the label that shows it: what it loads and what it does not.
class tst_MarkupDocument : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void loadsPicturesOfTheDirectory();
    void loadsStyleSheetsOfTheDirectory();
    void loadsNothingElse_data();
    void loadsNothingElse();
    void loadsNoLinkThatLeadsOut();
    void opensNoPipe();
    void loadsNoPictureWithTooManyPixels();
    void loadsNoPictureThroughAStyleSheet();
    void loadsOnlySoManyPixels();
    void readsOnlySoManyBytes();
    void paintsAsTheToolkitDoes_data();
    void paintsAsTheToolkitDoes();
    void nothingTakesNoRoom();

private:
    QString outside(const QString& name) const { return m_outside->filePath(name); }
    static bool shows(const QString& markup, const QString& name);

    std::unique_ptr<TempApplication> m_application;
    std::unique_ptr<QTemporaryDir> m_outside;
};

void tst_MarkupDocument::init()
{
    m_application = std::make_unique<TempApplication>(TempApplication::Database::None);
    m_outside = std::make_unique<QTemporaryDir>();
    QDir().mkpath(m_application->path("blanks"));
    for (const QString& path : {m_application->path("blanks/red.png"), outside("red.png")}) {
        write(path, pngOf(QSize(16, 16)));
    }
    for (const QString& path : {m_application->path("red.css"), outside("red.css")}) {
        write(path, "b { color: #ff0000; background-color: #ff0000 }");
    }
}

void tst_MarkupDocument::cleanup()
{
    m_application.reset();
    m_outside.reset();
}

/// Both as a text item has it first and as it stands in the end.
bool tst_MarkupDocument::shows(const QString& markup, const QString& name)
{
    bool isShown = false;
    for (const QString& text : {markup.arg(name), paragraph(markup.arg(name))}) {
        FrameLabel label(text);
        label.minimumSizeHint();
        isShown = redDots(painted(label)) > 0 || isShown;
    }
    return isShown;
}

void tst_MarkupDocument::loadsPicturesOfTheDirectory()
{
    const QString data = "data:image/png;base64," + pngOf(QSize(16, 16)).toBase64();
    const QString file = QUrl::fromLocalFile(m_application->path("blanks/red.png")).toString();
    for (const QString& name : {QString("blanks/red.png"), QString("./blanks/../blanks/red.png"),
                                m_application->path("blanks/red.png"), file, data})
    {
        for (const auto& [way, markup] : waysIn()) {
            if (QByteArray(way) == "body") {
                continue; // the toolkit loads it and shows nothing of it
            }
            const bool isQuoted = name == data && QByteArray(way) == "style sheet";
            const QString text = isQuoted ? QString(markup).replace("%1", "'%1'") : markup;
            QVERIFY2(shows(text, name), qPrintable(QString("%1 of %2").arg(way, name)));
        }
    }
    QVERIFY(!shows(waysIn()[0].second, ":/no such resource.png"));
    QVERIFY(!MarkupResources().picture(QString(":/splash.png")).isNull());
    QVERIFY(!MarkupResources().picture(QUrl("qrc:/splash.png")).isNull());
}

void tst_MarkupDocument::loadsStyleSheetsOfTheDirectory()
{
    write(m_application->path("outer.css"), "@import url(red.css);");
    for (const auto& [way, markup] : waysInOfStyleSheets()) {
        for (const char* name : {"red.css", "outer.css"}) {
            QVERIFY2(shows(markup, name), qPrintable(QString("%1 of %2").arg(way, name)));
        }
    }
    const QString data = "data:text/css,b%7bbackground:%23ff0000%7d";
    QVERIFY(shows(waysInOfStyleSheets().first().second, data));
    QVERIFY(shows(waysInOfStyleSheets().last().second, data));
}

void tst_MarkupDocument::loadsNothingElse_data()
{
    QTest::addColumn<QString>("picture");
    QTest::addColumn<QString>("styleSheet");
    const auto add = [](const char* row, const QString& name) {
        QTest::newRow(row) << name.arg("png") << name.arg("css");
    };
    add("path", "%OUT/red.%1");
    add("URL", "file://%OUT/red.%1");
    add("way up", "%UP/red.%1");
    add("way up from a folder", "blanks/../%UP/red.%1");
    add("encoded way up", "%ENC/red.%1");
    add("another computer", "//server/share/red.%1");
    add("another computer, Windows", "\\\\server\\share\\red.%1");
    add("another computer's file", "file://server/share/red.%1");
    add("http", "http://127.0.0.1:9/red.%1");
    add("ftp", "ftp://127.0.0.1:9/red.%1");
    for (const char* name : {"/dev/zero", "file:///dev/zero", "/dev/stdin", "blanks", ".", ""}) {
        QTest::newRow(qPrintable(QString("name '%1'").arg(name))) << name << name;
    }
}

void tst_MarkupDocument::loadsNothingElse()
{
    const QString up = QDir(m_application->path()).relativeFilePath(m_outside->path());
    const auto resolved = [&](QString name) {
        return name.replace("%OUT", m_outside->path())
            .replace("%UP", up)
            .replace("%ENC", QString(up).replace("..", "%2e%2e"));
    };
    QFETCH(QString, picture);
    QFETCH(QString, styleSheet);
    for (const auto& [way, markup] : waysIn()) {
        QVERIFY2(!shows(markup, resolved(picture)), way);
    }
    for (const auto& [way, markup] : waysInOfStyleSheets()) {
        QVERIFY2(!shows(markup, resolved(styleSheet)), way);
    }
}

void tst_MarkupDocument::loadsNoLinkThatLeadsOut()
{
#ifdef Q_OS_WIN
    QSKIP("the toolkit's links are files of the desktop there");
#endif
    const QString link = m_application->path("link.png");
    const QString folder = m_application->path("folder");
    if (!QFile::link(outside("red.png"), link) || !QFile::link(m_outside->path(), folder)) {
        QSKIP("no links here");
    }
    for (const auto& [way, markup] : waysIn()) {
        QVERIFY2(!shows(markup, "link.png"), way);
        QVERIFY2(!shows(markup, "folder/red.png"), way);
    }
    for (const auto& [way, markup] : waysInOfStyleSheets()) {
        QVERIFY2(!shows(markup, "folder/red.css"), way);
    }
    QVERIFY(QFile::link(m_application->path("blanks/red.png"), m_application->path("within.png")));
    QVERIFY(shows(waysIn()[0].second, "within.png"));
}

void tst_MarkupDocument::opensNoPipe()
{
#ifdef Q_OS_LINUX
    // Whoever opens a pipe that nobody writes to waits for ever: the test would not end.
    for (const QString& path : {m_application->path("pipe"), outside("pipe")}) {
        QCOMPARE(mkfifo(QFile::encodeName(path).constData(), S_IRUSR | S_IWUSR), 0);
        for (const auto& ways : {waysIn(), waysInOfStyleSheets()}) {
            for (const auto& [way, markup] : ways) {
                QVERIFY2(!shows(markup, path), way);
                QVERIFY2(!shows(markup, QFileInfo(path).fileName()), way);
            }
        }
    }
#else
    QSKIP("no pipes with names here");
#endif
}

/// A picture of many pixels in a small file.
void tst_MarkupDocument::loadsNoPictureWithTooManyPixels()
{
    QImage image(8000, 8000, QImage::Format_Mono); // 64 million
    image.setColorTable({red.rgb(), red.rgb()});
    image.fill(0);
    QVERIFY(image.save(m_application->path("large.png")));
    for (const auto& [way, markup] : waysIn()) {
        QVERIFY2(!shows(markup, "large.png"), way);
    }
}

void tst_MarkupDocument::loadsNoPictureThroughAStyleSheet()
{
    QImage image(8000, 8000, QImage::Format_Mono);
    image.setColorTable({red.rgb(), red.rgb()});
    image.fill(0);
    QVERIFY(image.save(m_application->path("large.png"), nullptr, 0));
    for (const auto& [way, markup] : waysInOfStyleSheets()) {
        const QString both =
            markup.arg("large.png") + "<b style=\"background: url(large.png)\">x</b>";
        QVERIFY2(!shows(both, QString()), way);
    }
}

void tst_MarkupDocument::loadsOnlySoManyPixels()
{
    constexpr int side = 3000; // nine million pixels, of which three fit
    MarkupResources resources;
    int loaded = 0;
    for (int i = 0; i < 5; ++i) {
        const QString name = QString("%1.png").arg(i);
        QVERIFY(QImage(side, side, QImage::Format_Mono).save(m_application->path(name)));
        loaded += resources.picture(name).isNull() ? 0 : 1;
    }
    QCOMPARE(loaded, 3);
}

void tst_MarkupDocument::readsOnlySoManyBytes()
{
    constexpr int megabyte = 1 << 20;
    // A picture may end before its file does.
    const QByteArray picture = pngOf(QSize(16, 16));
    write(m_application->path("17.png"), picture + QByteArray(17 * megabyte, ' '));
    write(m_application->path("12.png"), picture + QByteArray(12 * megabyte, ' '));
    QVERIFY(MarkupResources().picture(QUrl("17.png")).isNull());
    MarkupResources resources;
    for (const bool isLoaded : {true, true, false}) {
        QCOMPARE(resources.picture(QUrl("12.png")).isNull(), !isLoaded);
    }
    QVERIFY(!resources.picture(QUrl("blanks/red.png")).isNull());
}

void tst_MarkupDocument::paintsAsTheToolkitDoes_data()
{
    QTest::addColumn<QString>("markup");
    QTest::newRow("bold") << "Иванов <b>Иван</b> <i>Иванович</i>";
    QTest::newRow("entities") << "А&nbsp;Б &lt;В&gt; &amp; <br> Г";
    QTest::newRow("table") << "<table border=1 width=\"100%\"><tr><td>а<td>б<tr><td colspan=2>в";
    QTest::newRow("picture") << "слово <img src=\"blanks/red.png\"> слово";
    QTest::newRow("wide picture") << "<img src=\"blanks/red.png\" width=\"60\">";
    QTest::newRow("high picture") << "<img src=\"blanks/red.png\" height=\"40\">";
    QTest::newRow("picture of a size") << "<img src=\"blanks/red.png\" width=\"60\" height=\"9\">";
    QTest::newRow("floating picture") << "<img src=\"blanks/red.png\" align=\"right\">слово слово";
    QTest::newRow("background")
        << "<table background=\"blanks/red.png\"><tr><td>а</td></tr></table>";
    QTest::newRow("style sheet") << "<style>b { color: blue }</style><b>слово</b>";
    QTest::newRow("file of styles") << "<style>@import url(red.css);</style><b>слово</b>";
    QTest::newRow("broken") << "<b>А<table><i>Б</table></p></td><ul><li>В";
}

void tst_MarkupDocument::paintsAsTheToolkitDoes()
{
    QFETCH(QString, markup);
    PageWidget<QLabel> expected(paragraph(markup));
    FrameLabel label(paragraph(markup));
    QCOMPARE(label.text(), paragraph(markup));
    QCOMPARE(painted(label), painted(expected));
    QCOMPARE(label.minimumSizeHint(), expected.minimumSizeHint());
    QCOMPARE(label.sizeHint(), expected.sizeHint());
    QVERIFY(label.isWhole());
}

void tst_MarkupDocument::nothingTakesNoRoom()
{
    FrameLabel without(paragraph("слово"));
    FrameLabel label(paragraph("<img src=\"/dev/zero\">слово<img src=\"http://127.0.0.1:9/a\">"));
    QCOMPARE(painted(label), painted(without));
}

QTEST_MAIN(tst_MarkupDocument)
#include "tst_MarkupDocument.moc"
