#include <QtTest>

#include <QFile>

#include "support/PdfMeasure.h"
#include "support/PrintProgram.h"
#include "support/PrintQueue.h"

namespace {

constexpr int success = 0;
constexpr int failure = 2;
const QString russian = "ru_RU.UTF-8";

QString text(const QByteArray& output)
{
    return QString::fromUtf8(output);
}

} // namespace

/// The test sheet and the offsets, by the command line of zelvora-print.
class tst_Calibration : public QObject
{
    Q_OBJECT

private slots:
    void sheetOfABlank_data();
    void sheetOfABlank();
    void sheetIgnoresTheBlanksOffsets();
    void nameOfSeveralBlanks();
    void idComesBeforeAName();
    void unknownBlank();
    void onAPrinter();
    void unknownPrinter();
    void fileThatCannotBeWritten();
    void tooSmallForAPrinter();
    void databaseWithoutBlanks();
    void paperTooSmall();
    void noDatabase();
    void offsets_data();
    void offsets();
    void offsetsOfABlank();
    void offsetsOfABlankWithoutOffsets();
    void offsetsOfAShrunkPage();
    void impossibleSizes_data();
    void impossibleSizes();
    void unreadableNumber();
    void databaseStaysAsItWas();
};

void tst_Calibration::sheetOfABlank_data()
{
    QTest::addColumn<QString>("blank");
    QTest::newRow("by name") << "Книга";
    QTest::newRow("by ID") << "2";
}

void tst_Calibration::sheetOfABlank()
{
    QFETCH(QString, blank);
    const PrintDirectory directory;
    const QString file = directory.path("sheet.pdf");
    const ProcessResult result =
        directory.print({"--calibration", "--blank", blank, "--output", file});
    QVERIFY2(result.err.isEmpty(), result.err);
    QCOMPARE(result.exitCode, success);
    QCOMPARE(text(result.out), file + "\n");
    const PdfMeasure pdf(file);
    QCOMPARE(pdf.pageCount(), 1);
    QVERIFY(qAbs(pdf.pageSize().width() - 148) < 0.2);
    QVERIFY(qAbs(pdf.pageSize().height() - 210) < 0.2);
    QVERIFY(pdf.text().contains("Проверочный лист"));
    QVERIFY(pdf.text().contains("Лист 148 × 210 мм"));
    QVERIFY(!pdf.word("Книга").box.isEmpty());
}

void tst_Calibration::sheetIgnoresTheBlanksOffsets()
{
    PrintDirectory directory; // "Альбом" has the offsets 2 and -3
    const QStringList print = {"--calibration", "--blank", "Альбом", "--output",
                               directory.path("a.pdf")};
    QCOMPARE(directory.print(print).exitCode, success);
    const PdfMeasure moved(directory.path("a.pdf"));
    // The base line of the left scale, below its corner and beside its ticks.
    const QRectF line = moved.ink(QRectF(9.6, 15.2, 1, 0.5));
    QVERIFY(qAbs(line.center().x() - 10) < 0.1);
    directory.exec("UPDATE blanks SET OFFSET_X = 0, OFFSET_Y = 0");
    QCOMPARE(directory.print(QStringList(print).replaceInStrings("a.pdf", "b.pdf")).exitCode,
             success);
    QCOMPARE(moved.image(), PdfMeasure(directory.path("b.pdf")).image());
}

void tst_Calibration::nameOfSeveralBlanks()
{
    PrintDirectory directory;
    directory.addBlank({}, {{"NAME", "Книга"}});
    const QStringList print = {"--calibration", "--blank", "Книга", "--output",
                               directory.path("x.pdf")};
    const ProcessResult result = directory.print(print);
    QCOMPARE(result.exitCode, failure);
    QCOMPARE(text(result.err),
             QString("zelvora-print: several blanks have this name, give an ID: 2, 4\n"));
    QCOMPARE(text(directory.print(print, russian).err),
             QString("zelvora-print: бланков с таким названием несколько, укажите номер: 2, 4\n"));
    QVERIFY(!QFile::exists(directory.path("x.pdf")));
}

void tst_Calibration::idComesBeforeAName()
{
    PrintDirectory directory;
    directory.exec("UPDATE blanks SET NAME = '2' WHERE ID = 1");
    const QString file = directory.path("x.pdf");
    QCOMPARE(directory.print({"--calibration", "--blank", "2", "--output", file}).exitCode,
             success);
    QVERIFY(!PdfMeasure(file).word("Книга").box.isEmpty());
}

void tst_Calibration::unknownBlank()
{
    const PrintDirectory directory;
    for (const QString blank : {"77", "Нет такого", "%", "2 "}) {
        for (const QStringList& action : {QStringList{"--calibration", "--output", "x.pdf"},
                                          QStringList{"--offsets", "1", "2"}})
        {
            const QStringList arguments = QStringList{"--blank", blank} + action;
            const ProcessResult result = directory.print(arguments);
            QCOMPARE(result.exitCode, failure);
            QVERIFY(result.out.isEmpty());
            QCOMPARE(text(result.err), "zelvora-print: there is no blank " + blank + "\n");
            QCOMPARE(text(directory.print(arguments, russian).err),
                     "zelvora-print: нет бланка " + blank + "\n");
        }
    }
}

void tst_Calibration::onAPrinter()
{
    const PrintDirectory directory;
    const PrintQueue queue;
    const ProcessResult result = runPrint({"--dir", directory.path(), "--calibration", "--blank",
                                           "Книга", "--printer", PrintQueue::printer},
                                          queue.environment(noDisplay("C.UTF-8")));
    QCOMPARE(result.exitCode, success);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(queue.jobCount(), 1);
    QVERIFY(!PdfMeasure(queue.file(1)).word("Книга").box.isEmpty());
}

void tst_Calibration::unknownPrinter()
{
    const PrintDirectory directory;
    const QStringList print = {"--calibration", "--blank", "1", "--printer", "Нет такого"};
    const ProcessResult result = directory.print(print);
    QCOMPARE(result.exitCode, failure);
    QCOMPARE(text(result.err), QString("zelvora-print: there is no printer Нет такого\n"));
    QCOMPARE(text(directory.print(print, russian).err),
             QString("zelvora-print: нет принтера Нет такого\n"));
}

void tst_Calibration::fileThatCannotBeWritten()
{
    const PrintDirectory directory;
    const QString file = directory.path("no/such/x.pdf");
    const QStringList print = {"--calibration", "--blank", "1", "--output", file};
    const ProcessResult result = directory.print(print);
    QCOMPARE(result.exitCode, failure);
    QCOMPARE(text(result.err), "zelvora-print: can't write the file " + file + "\n");
    QVERIFY(result.out.isEmpty());
    QCOMPARE(text(directory.print(print, russian).err),
             "zelvora-print: не удалось записать файл " + file + "\n");
}

void tst_Calibration::paperTooSmall()
{
    PrintDirectory directory;
    directory.addBlank({}, {{"NAME", "Марка"}, {"SIZE_WIDTH", 59}});
    const QStringList print = {"--calibration", "--blank", "Марка", "--output",
                               directory.path("x.pdf")};
    const ProcessResult result = directory.print(print);
    QCOMPARE(result.exitCode, failure);
    QCOMPARE(text(result.err), QString("zelvora-print: the blank's sheet is smaller than 60 mm, "
                                       "too small for scales\n"));
    QCOMPARE(text(directory.print(print, russian).err),
             QString("zelvora-print: лист бланка меньше 60 мм, шкалы на нём не поместятся\n"));
    QVERIFY(!QFile::exists(directory.path("x.pdf")));
}

void tst_Calibration::tooSmallForAPrinter()
{
    PrintDirectory directory;
    directory.addBlank({}, {{"NAME", "Марка"}, {"SIZE_WIDTH", 59}});
    const PrintQueue queue;
    const ProcessResult result = runPrint({"--dir", directory.path(), "--calibration", "--blank",
                                           "Марка", "--printer", PrintQueue::printer},
                                          queue.environment(noDisplay("C.UTF-8")));
    QCOMPARE(result.exitCode, failure);
    QCOMPARE(text(result.err), QString("zelvora-print: the blank's sheet is smaller than 60 mm, "
                                       "too small for scales\n"));
    QCOMPARE(queue.jobCount(), 0);
}

void tst_Calibration::databaseWithoutBlanks()
{
    PrintDirectory directory;
    directory.exec("DROP TABLE blanks");
    const QStringList print = {"--calibration", "--blank", "1", "--output",
                               directory.path("x.pdf")};
    const ProcessResult result = directory.print(print);
    QCOMPARE(result.exitCode, failure);
    QVERIFY2(
        text(result.err).startsWith("zelvora-print: can't read the blanks: no such table: blanks"),
        result.err);
    QVERIFY(text(directory.print(print, russian).err)
                .startsWith("zelvora-print: не удалось прочитать бланки: "));
    QVERIFY(!QFile::exists(directory.path("x.pdf")));
}

void tst_Calibration::noDatabase()
{
    const QTemporaryDir empty;
    const ProcessResult result = runPrint({"--dir", empty.path(), "--calibration", "--blank", "1",
                                           "--output", empty.filePath("x.pdf")});
    QCOMPARE(result.exitCode, failure);
    QVERIFY(result.err.contains("can't open the database "));
    // Without a blank, offsets are but a sum.
    const ProcessResult offsets = runPrint({"--dir", empty.path(), "--offsets", "0", "0"});
    QCOMPARE(offsets.exitCode, success);
    QVERIFY(offsets.err.isEmpty());
    QVERIFY(QDir(empty.path()).isEmpty());
}

void tst_Calibration::offsets_data()
{
    QTest::addColumn<QStringList>("readings");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("answer");
    // One unit is 297 / 1122 mm; 1, 2 and 3 mm are 3, 7 and 11 units.
    const QStringList readings = {"2", "-1.5"};
    QTest::newRow("English") << readings << "C.UTF-8"
                             << "Смещение печати X: 2 mm: moves the print 1.85 mm left, "
                                "0.15 mm right remains\n"
                                "Смещение печати Y: -2 mm: moves the print 1.85 mm down, "
                                "0.35 mm down remains\n";
    QTest::newRow("Russian") << readings << russian
                             << "Смещение печати X: 2 мм — сдвинет печать на 1,85 мм влево, "
                                "остаток 0,15 мм вправо\n"
                                "Смещение печати Y: -2 мм — сдвинет печать на 1,85 мм вниз, "
                                "остаток 0,35 мм вниз\n";
    const QStringList others = {"-3,1", "0,4"};
    QTest::newRow("other way, English") << others << "C.UTF-8"
                                        << "Смещение печати X: -3 mm: moves the print 2.91 mm "
                                           "right, 0.19 mm left remains\n"
                                           "Смещение печати Y: 1 mm: moves the print 0.79 mm up, "
                                           "0.39 mm up remains\n";
    QTest::newRow("other way, Russian") << others << russian
                                        << "Смещение печати X: -3 мм — сдвинет печать на 2,91 мм "
                                           "вправо, остаток 0,19 мм влево\n"
                                           "Смещение печати Y: 1 мм — сдвинет печать на 0,79 мм "
                                           "вверх, остаток 0,39 мм вверх\n";
    QTest::newRow("nothing, English") << QStringList{"0", "0.3"} << "C.UTF-8"
                                      << "Смещение печати X: 0 mm: moves nothing, nothing remains\n"
                                         "Смещение печати Y: 0 mm: moves nothing, 0.30 mm down "
                                         "remains\n";
    QTest::newRow("nothing, Russian")
        << QStringList{"0", "−0,3"} << russian
        << "Смещение печати X: 0 мм — печать не сдвинется, остатка нет\n"
           "Смещение печати Y: 0 мм — печать не сдвинется, остаток 0,30 мм вверх\n";
}

void tst_Calibration::offsets()
{
    QFETCH(QStringList, readings);
    QFETCH(QString, locale);
    const ProcessResult result = runPrint(QStringList("--offsets") + readings, locale);
    QVERIFY2(result.err.isEmpty(), result.err);
    QCOMPARE(result.exitCode, success);
    QTEST(text(result.out), "answer");
}

void tst_Calibration::offsetsOfABlank()
{
    // A5 portrait with the offsets of "Альбом" and a name that holds a marker of arguments.
    PrintDirectory directory;
    directory.exec("UPDATE blanks SET NAME = 'Книга %2', OFFSET_X = 2, OFFSET_Y = -3 WHERE ID = 2");
    const QStringList ask = {"--offsets", "-1,5", "2", "--blank", "2"};
    const ProcessResult result = directory.print(ask);
    QCOMPARE(result.exitCode, success);
    // 7 units of 210 / 793 mm are 1.854 mm.
    QCOMPARE(text(result.out),
             QString("Смещение печати X: -2 mm: moves the print 1.85 mm right, 0.35 mm right "
                     "remains\n"
                     "Смещение печати Y: 2 mm: moves the print 1.85 mm up, 0.15 mm down remains\n"
                     "The blank \"Книга %2\" has X 2 mm, Y -3 mm now: the new values replace "
                     "them.\n"));
    QVERIFY(text(directory.print(ask, russian).out)
                .endsWith("\nСейчас у бланка «Книга %2» X 2 мм, Y -3 мм: новые числа заменяют "
                          "их.\n"));
}

void tst_Calibration::offsetsOfABlankWithoutOffsets()
{
    const PrintDirectory directory;
    const ProcessResult result = directory.print({"--offsets", "2", "2", "--blank", "Книга"});
    QCOMPARE(result.exitCode, success);
    QCOMPARE(result.out.count('\n'), 2);
}

void tst_Calibration::offsetsOfAShrunkPage()
{
    // An upright page of 1122 units in height on a sheet 210 mm high: 11 units are 2.059 mm.
    PrintDirectory directory;
    directory.addBlank(
        {}, {{"NAME", "Сжатый"}, {"PAPER_FORMAT", 0}, {"SIZE_WIDTH", 210}, {"SIZE_HEIGHT", 297}});
    const ProcessResult result = directory.print({"--offsets", "2", "-5", "--blank", "Сжатый"});
    QCOMPARE(result.exitCode, success);
    QCOMPARE(text(result.out),
             QString("Смещение печати X: 3 mm: moves the print 2.06 mm left, 0.06 mm left "
                     "remains\n"
                     "Смещение печати Y: -7 mm: moves the print 4.87 mm down, 0.13 mm up "
                     "remains\n"));
}

void tst_Calibration::impossibleSizes_data()
{
    QTest::addColumn<QVariantMap>("columns");
    QTest::addColumn<QString>("size");
    QTest::newRow("no width") << QVariantMap{{"SIZE_WIDTH", 0}} << "0 × 210";
    QTest::newRow("no size") << QVariantMap{{"SIZE_WIDTH", QVariant()}, {"SIZE_HEIGHT", QVariant()}}
                             << "0 × 0";
    QTest::newRow("negative") << QVariantMap{{"SIZE_HEIGHT", -210}} << "297 × -210";
    QTest::newRow("negative, A4") << QVariantMap{{"SIZE_WIDTH", -5}, {"PAPER_FORMAT", 0}}
                                  << "-5 × 210";
    QTest::newRow("a hundred metres") << QVariantMap{{"SIZE_WIDTH", 100000}} << "100000 × 210";
    QTest::newRow("beyond any number")
        << QVariantMap{{"SIZE_WIDTH", Q_INT64_C(99999999999)}} << "99999999999 × 210";
    QTest::newRow("no number") << QVariantMap{{"SIZE_WIDTH", "широкий"}} << "широкий × 210";
}

void tst_Calibration::impossibleSizes()
{
    QFETCH(QVariantMap, columns);
    QFETCH(QString, size);
    PrintDirectory directory;
    columns["NAME"] = "Пустой";
    directory.addBlank({}, columns);
    for (const QStringList& action :
         {QStringList{"--offsets", "2", "2"},
          QStringList{"--calibration", "--output", directory.path("x.pdf")}})
    {
        const QStringList ask = action + QStringList{"--blank", "Пустой"};
        const ProcessResult result = directory.print(ask);
        QCOMPARE(result.exitCode, failure);
        QCOMPARE(
            text(result.err),
            QString("zelvora-print: no sheet has such a size: %1 mm, blank Пустой\n").arg(size));
        QCOMPARE(text(directory.print(ask, russian).err),
                 QString("zelvora-print: таких размеров у листа не бывает: %1 мм, бланк Пустой\n")
                     .arg(size));
    }
    QVERIFY(!QFile::exists(directory.path("x.pdf")));
}

void tst_Calibration::unreadableNumber()
{
    const ProcessResult result = runPrint({"--offsets", "2", "1.5mm"});
    QCOMPARE(result.exitCode, failure);
    QVERIFY(result.out.isEmpty());
    QCOMPARE(text(result.err),
             QString("zelvora-print: --offsets needs two numbers, in millimetres: 1.5mm\n"
                     "Help: zelvora-print --help\n"));
    QCOMPARE(text(runPrint({"--offsets", "два"}, russian).err),
             QString("zelvora-print: ключу --offsets нужны два числа, в миллиметрах: два\n"
                     "Справка: zelvora-print --help\n"));
}

void tst_Calibration::databaseStaysAsItWas()
{
    const PrintDirectory directory;
    const QByteArray before = directory.dump();
    QCOMPARE(
        directory.print({"--calibration", "--blank", "1", "--output", directory.path("sheet.pdf")})
            .exitCode,
        success);
    QCOMPARE(directory.print({"--offsets", "1", "2", "--blank", "1"}).exitCode, success);
    QCOMPARE(directory.dump(), before);
}

QTEST_MAIN(tst_Calibration)
#include "tst_Calibration.moc"
