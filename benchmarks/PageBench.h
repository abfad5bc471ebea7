#pragma once

#include <QFont>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QPrinter>
#include <QRectF>
#include <QSize>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QTextDocument>
#include <QVector>

#include <iterator>
#include <memory>

#include "benchmarks/BenchDirectory.h"

// Documents on a blank of twenty text items, each with texts of its own, and the same texts, in the
// same font and frames, for a bare QPainter.

inline constexpr int itemCount = 20;
inline const QSize page(1122, 793); // scene units

/// What is stored of a document and printed on its page.
struct BenchDocument
{
    QString lastName;
    QString firstName;
    QString number;
    QString issued; // as it is stored
    QString issuedInWords;
    QString specialty;
    QString protocol;
};

inline BenchDocument benchDocument(int index)
{
    static const QStringList lastNames = {
        "Константинопольский", "Иванова", "Ким", "Петров-Водкин", "Щербатюк", "Орлова", "Ян"};
    static const QStringList firstNames = {"Александр", "Мария", "Ефим", "Анастасия", "Пётр"};
    static const QStringList specialties = {"Информационные системы и программирование",
                                            "Сварочное производство", "Поварское дело"};
    const int day = 1 + index % 28;
    return {lastNames[index % lastNames.size()],
            firstNames[index % firstNames.size()],
            QString("%1").arg(index + 1, 7, 10, QChar('0')),
            QString("2021-06-%1").arg(day, 2, 10, QChar('0')),
            QString("%1 июня 2021").arg(day),
            specialties[index % specialties.size()],
            QString("%1.05.2021").arg(day, 2, 10, QChar('0'))};
}

/// Tags of an item of the blank, and what it prints.
inline QString tagsOf(int item)
{
    static const QStringList kinds = {"#LNAME #FNAME #MNAME", "Дата выдачи: #ISSUE_DATE г.",
                                      "#SPECIALTY", "Серия #BLANK_SER № #BLANK_NO",
                                      "Решение комиссии от #PROTOCOL, квалификация присвоена"};
    return kinds[item % kinds.size()];
}

inline QString printedText(const BenchDocument& document, int item)
{
    const QString kinds[] = {document.lastName + ' ' + document.firstName + " Вячеславович",
                             "Дата выдачи: " + document.issuedInWords + " г.", document.specialty,
                             "Серия АБВ № " + document.number,
                             "Решение комиссии от " + document.protocol +
                                 ", квалификация присвоена"};
    return kinds[item % std::size(kinds)];
}

inline QRectF frameOf(int item)
{
    const int column = item % 2;
    const int row = item / 2;
    return QRectF(20 + column * 550, 20 + row * 75, 500, 70);
}

using PageTexts = QVector<QString>;

inline PageTexts pageTexts(int index)
{
    PageTexts texts;
    for (int item = 0; item < itemCount; ++item) {
        texts.append(printedText(benchDocument(index), item));
    }
    return texts;
}

/// The texts of the first pages.
inline QVector<PageTexts> textsOfPages(int count)
{
    QVector<PageTexts> pages;
    for (int i = 0; i < count; ++i) {
        pages.append(pageTexts(i));
    }
    return pages;
}

inline QString compact(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

inline void insertBlank()
{
    QJsonArray items;
    for (int item = 0; item < itemCount; ++item) {
        const QRectF frame = frameOf(item);
        items.append(QJsonObject{{"type", 0},
                                 {"value", tagsOf(item)},
                                 {"pos_x", frame.x()},
                                 {"pos_y", frame.y()},
                                 {"size_w", frame.width()},
                                 {"size_h", frame.height()}});
    }
    QSqlQuery blank;
    blank.prepare("INSERT INTO blanks (NAME, FORM_ID, PAPER_FORMAT, PAPER_ORIENTATION, FONT, "
                  "FONT_SIZE, SIZE_WIDTH, SIZE_HEIGHT, OFFSET_X, OFFSET_Y, CONTENT) "
                  "VALUES ('A4', 1, 0, 0, 'Liberation Serif', 12, 297, 210, 0, 0, ?)");
    blank.addBindValue(compact({{"fields", items}}).toUtf8());
    blank.exec();
}

inline void insertDocuments(int count)
{
    QSqlQuery insert;
    insert.prepare("INSERT INTO docs (LNAME, FNAME, MNAME, BLANK_SER, BLANK_NO, DOC_TYPE, "
                   "ISSUE_DATE, TEMPLATE, CONTENT) VALUES (?, ?, 'Вячеславович', 'АБВ', ?, 1, ?, "
                   "0, ?)");
    QSqlDatabase::database().transaction();
    for (int i = 0; i < count; ++i) {
        const BenchDocument document = benchDocument(i);
        const QJsonObject specialty{{"type", 0}, {"value", document.specialty}};
        const QJsonObject protocol{{"type", 3}, {"value", document.protocol}};
        insert.addBindValue(document.lastName);
        insert.addBindValue(document.firstName);
        insert.addBindValue(document.number);
        insert.addBindValue(document.issued);
        insert.addBindValue(compact({{"#SPECIALTY", specialty}, {"#PROTOCOL", protocol}}));
        insert.exec();
    }
    QSqlDatabase::database().commit();
}

/// An application directory with documents and the blank, open while it lives.
class PageDirectory : public BenchDirectory
{
public:
    explicit PageDirectory(int documents = 1)
    {
        insertBlank();
        insertDocuments(documents);
    }
};

/// A printer on the blank's paper.
inline std::unique_ptr<QPrinter> pdfPrinter(const QString& file)
{
    auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setOutputFileName(file);
    printer->setPageOrientation(QPageLayout::Landscape);
    printer->setPageSize(QPageSize(QPageSize::A4));
    printer->setFullPage(true);
    return printer;
}

/// A text as a page's label gets it.
inline QString paragraph(const QString& text)
{
    return "<p style=\"line-height: 100%;\">" + text + "</p>";
}

/// A text of a page laid out as rich text, which is what a label's text is.
inline void layOutRichText(QTextDocument& document, const QString& text, double width)
{
    static const QFont font("Liberation Serif", 12);
    document.setDefaultFont(font);
    document.setDefaultTextOption(QTextOption(Qt::AlignHCenter));
    document.setDocumentMargin(0);
    document.setHtml(paragraph(text));
    document.setTextWidth(width);
}

/// The texts laid out as rich text and not painted; their height, so that nothing is left out.
inline double layOutRichTexts(const PageTexts& texts)
{
    double height = 0;
    for (int item = 0; item < itemCount; ++item) {
        QTextDocument document;
        layOutRichText(document, texts[item], frameOf(item).width());
        height += document.size().height();
    }
    return height;
}

/// The texts laid out and painted as rich text.
inline void paintRichTexts(QPainter& painter, const PageTexts& texts)
{
    for (int item = 0; item < itemCount; ++item) {
        QTextDocument document;
        layOutRichText(document, texts[item], frameOf(item).width());
        painter.save();
        painter.translate(frameOf(item).topLeft());
        document.drawContents(&painter);
        painter.restore();
    }
}

/// The texts by QPainter::drawText.
inline void paintPlainTexts(QPainter& painter, const PageTexts& texts)
{
    QFont font("Liberation Serif");
    font.setPixelSize(16); // 12 points at 96 dots per inch, whatever the device
    painter.setFont(font);
    for (int item = 0; item < itemCount; ++item) {
        painter.drawText(frameOf(item), Qt::AlignCenter | Qt::TextWordWrap, texts[item]);
    }
}

/// Scales a printer's page to scene units.
inline void scaleToPage(QPainter& painter)
{
    const double scale = painter.viewport().width() / double(page.width());
    painter.scale(scale, scale);
}

using PaintTexts = void (*)(QPainter&, const PageTexts&);
