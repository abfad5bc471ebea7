#include <QtTest>

#include <QRandomGenerator>

#include "store/StoredDate.h"

/// What a stored text is read as is what the toolkit reads in the same form.
class tst_StoredDate : public QObject
{
    Q_OBJECT

private slots:
    void everyDayIsRead()
    {
        const QDate first(1896, 1, 1); // over a century without a leap day
        const QDate last(2105, 12, 31);
        for (QDate day = first; day <= last; day = day.addDays(1)) {
            const QString text = QString("%1-%2-%3")
                                     .arg(day.year(), 4, 10, QChar('0'))
                                     .arg(day.month(), 2, 10, QChar('0'))
                                     .arg(day.day(), 2, 10, QChar('0'));
            QCOMPARE(dateFromStored(text), day);
        }
    }

    void readsAsTheToolkit_data()
    {
        QTest::addColumn<QString>("text");
        for (const char* text :
             {"",           "2021",       "2021-6-1",    "2021-06-1",   "2021-6-01",   "21-06-01",
              "2021-06-31", "2021-02-29", "2020-02-29",  "1900-02-29",  "2021-00-10",  "2021-13-10",
              "2021-10-00", "0000-01-01", "0001-01-01",  "9999-12-31",  "-021-01-01",  "+021-01-01",
              "2021-+1-01", "2021- 1-01", " 021-01-01",  "2021-01-01 ", " 2021-01-01", "2021/01/01",
              "2021.01.01", "01.01.2021", "2021-01-011", "20210-1-01",  "2021-1--01",  "٢٠٢١-٠١-٠١",
              "yyyy-MM-dd", "2021-0x-01", "2021-01-1e"})
        {
            QTest::newRow(text) << QString(text);
        }
    }

    void readsAsTheToolkit()
    {
        QFETCH(QString, text);
        QCOMPARE(dateFromStored(text), QDate::fromString(text, "yyyy-MM-dd"));
    }

    void readsAnyTextAsTheToolkit()
    {
        const QString characters = "0000111223456789--- ";
        QRandomGenerator random(20261122);
        for (int i = 0; i < 20000; ++i) {
            QString text = "2021-06-15";
            for (int change = random.bounded(1, 4); change > 0; --change) {
                text[random.bounded(text.size())] = characters[random.bounded(characters.size())];
            }
            if (dateFromStored(text) != QDate::fromString(text, "yyyy-MM-dd")) {
                QFAIL(qPrintable(text));
            }
        }
    }
};

QTEST_APPLESS_MAIN(tst_StoredDate)
#include "tst_StoredDate.moc"
