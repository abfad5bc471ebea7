#include <QtTest>

#include <QImageReader>
#include <QTemporaryDir>

#include "render/page/PagePicture.h"

#ifdef Q_OS_LINUX
#include <sys/stat.h>
#endif

namespace {

/// A picture of one colour; a large one takes a small file and little memory to make.
void save(const QString& path, const QSize& size)
{
    QImage image(size, QImage::Format_Mono);
    image.setColorTable({qRgb(255, 255, 255), qRgb(255, 0, 0)});
    image.fill(1);
    if (!image.save(path)) {
        QTest::qFail("a picture of the test could not be written", __FILE__, __LINE__);
    }
}

} // namespace

/// Pictures from files: scans of paper forms, and what is none.
class tst_PagePicture : public QObject
{
    Q_OBJECT

private slots:
    void loadsWhatTheToolkitLoads_data();
    void loadsWhatTheToolkitLoads();
    void scalesIntoThePage();
    void seesAChangedFile();
    void refusesTooManyPixels();
    void refusesAPageBeyondAllPaper();
    void refusesWhatIsNoPicture();
    void opensNoPipe();

private:
    QString path(const QString& name) const { return m_directory.filePath(name); }

    QTemporaryDir m_directory;
};

void tst_PagePicture::loadsWhatTheToolkitLoads_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"a.png", "a.jpg", "a.bmp"}) {
        QTest::newRow(name) << name;
    }
}

void tst_PagePicture::loadsWhatTheToolkitLoads()
{
    QFETCH(QString, name);
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    QVERIFY(image.save(path(name)));
    QVERIFY(QFile::remove(path("named.scan")) || !QFile::exists(path("named.scan")));
    QVERIFY(QFile::copy(path(name), path("named.scan"))); // known by its content
    const QImage expected = QPixmap(path(name)).toImage();
    QVERIFY(!expected.isNull());
    QCOMPARE(loadPicture(path(name)).toImage(), expected);
    QCOMPARE(loadPicture(path("named.scan")).toImage(), expected);
}

void tst_PagePicture::scalesIntoThePage()
{
    save(path("wide.png"), QSize(400, 100));
    QCOMPARE(loadPagePicture(path("wide.png"), QSize(200, 200)).size(), QSize(200, 50));
    QCOMPARE(loadPagePicture(path("wide.png"), QSize(800, 800)).size(), QSize(800, 200));
}

void tst_PagePicture::seesAChangedFile()
{
    save(path("changed.png"), QSize(100, 100));
    QCOMPARE(loadPagePicture(path("changed.png"), QSize(50, 50)).size(), QSize(50, 50));
    save(path("changed.png"), QSize(100, 20));
    QCOMPARE(loadPagePicture(path("changed.png"), QSize(50, 50)).size(), QSize(50, 10));
    QVERIFY(QFile::remove(path("changed.png")));
    QVERIFY(loadPagePicture(path("changed.png"), QSize(50, 50)).isNull());
}

void tst_PagePicture::refusesTooManyPixels()
{
    save(path("large.png"), QSize(25000, 25000));
    QVERIFY(loadPicture(path("large.png")).isNull());
    QVERIFY(loadPagePicture(path("large.png"), QSize(793, 1122)).isNull());

    save(path("small.png"), QSize(100, 100));
    QImageReader tooLarge(path("small.png"));
    QVERIFY(readPicture(tooLarge, 9999).isNull());
    QImageReader largest(path("small.png"));
    QCOMPARE(readPicture(largest, 10000).size(), QSize(100, 100));
}

void tst_PagePicture::refusesAPageBeyondAllPaper()
{
    save(path("small.png"), QSize(100, 100));
    QCOMPARE(loadPagePicture(path("small.png"), QSize(16384, 1)).height(), 1);
    QVERIFY(loadPagePicture(path("small.png"), QSize(16385, 1)).isNull());
    QVERIFY(loadPagePicture(path("small.png"), QSize(1, 2000000000)).isNull());
}

void tst_PagePicture::refusesWhatIsNoPicture()
{
    QFile text(path("text.png"));
    QVERIFY(text.open(QIODevice::WriteOnly));
    text.write("no picture");
    text.close();
    for (const QString& name : {path("text.png"), path("nothing.png"), m_directory.path(),
                                QString("/dev/zero"), QString("/dev/stdin"), QString()})
    {
        QVERIFY2(loadPicture(name).isNull(), qPrintable(name));
        QVERIFY2(loadPagePicture(name, QSize(10, 10)).isNull(), qPrintable(name));
    }
}

void tst_PagePicture::opensNoPipe()
{
#ifdef Q_OS_LINUX
    // Nobody writes to it: whoever opens it waits until the test's time is over.
    QCOMPARE(mkfifo(QFile::encodeName(path("pipe.png")).constData(), S_IRUSR | S_IWUSR), 0);
    QVERIFY(loadPicture(path("pipe.png")).isNull());
    QVERIFY(QFile::link(path("pipe.png"), path("link.png")));
    QVERIFY(loadPagePicture(path("link.png"), QSize(10, 10)).isNull());
#else
    QSKIP("no pipes with names here");
#endif
}

QTEST_MAIN(tst_PagePicture)
#include "tst_PagePicture.moc"
