#include <QtTest>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "app/StoredPath.h"

/// Files that a database names, on a system that tells letter cases and separators apart.
class tst_StoredPath : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void found_data();
    void found();
    void notFound_data();
    void notFound();
    void whatIsToldIsTaken();

private:
    bool makeFile(const QString& name) const;
    QString path(const QString& name) const { return m_dir->path() + "/" + name; }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void tst_StoredPath::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_dir->path()).mkpath("blanks/Титул"));
}

bool tst_StoredPath::makeFile(const QString& name) const
{
    QFile file(path(name));
    return file.open(QIODevice::WriteOnly);
}

void tst_StoredPath::found_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("stored");
    QTest::newRow("as told") << "blanks/a.png"
                             << "blanks/a.png";
    QTest::newRow("separator") << "blanks/a.png"
                               << "blanks\\a.png";
    QTest::newRow("leading separator") << "blanks/a.png"
                                       << "\\blanks\\a.png";
    QTest::newRow("case of the file") << "blanks/a.png"
                                      << "blanks/A.PNG";
    QTest::newRow("case of the folder") << "blanks/a.png"
                                        << "BLANKS/a.png";
    QTest::newRow("file in capitals") << "blanks/SCAN.JPG"
                                      << "Blanks\\scan.jpg";
    QTest::newRow("Cyrillic letters") << "blanks/Титул/Фон.png"
                                      << "blanks\\ТИТУЛ\\фон.png";
    QTest::newRow("with blanks") << "blanks/Титул/мой фон.png"
                                 << "blanks\\титул\\Мой фон.PNG";
}

void tst_StoredPath::found()
{
    QFETCH(QString, file);
    QFETCH(QString, stored);
    QVERIFY(makeFile(file));
    const QString found = storedFilePath(m_dir->path(), stored);
    QVERIFY2(QFile::exists(found), qPrintable(found));
    QVERIFY2(QFileInfo(found) == QFileInfo(path(file)), qPrintable(found));
}

void tst_StoredPath::notFound_data()
{
    QTest::addColumn<QString>("stored");
    QTest::newRow("no such file") << "blanks/b.png";
    QTest::newRow("no such file, other separator") << "blanks\\b.png";
    QTest::newRow("no such folder") << "scans\\a.png";
    QTest::newRow("part of a name") << "blanks\\a.pn";
}

void tst_StoredPath::notFound()
{
    QFETCH(QString, stored);
    QVERIFY(makeFile("blanks/a.png"));
    QCOMPARE(storedFilePath(m_dir->path(), stored), path(stored));
}

void tst_StoredPath::whatIsToldIsTaken()
{
#ifdef Q_OS_WIN
    QSKIP("the system takes all of these names for one");
#endif
    for (const char* name : {"blanks/A.png", "blanks/a.png", "blanks\\a.png"}) {
        QVERIFY(makeFile(name));
        QCOMPARE(storedFilePath(m_dir->path(), name), path(name));
    }
}

QTEST_GUILESS_MAIN(tst_StoredPath)
#include "tst_StoredPath.moc"
