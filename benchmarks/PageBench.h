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
#include <QTextDocument>
#include <QVector>

#include <memory>

#include "benchmarks/BenchDirectory.h"

// A document on a blank of twenty text items, and the same texts, in the same font and frames, for
// a bare QPainter.

inline constexpr int itemCount = 20;
inline const QSize page(1122, 793); // scene units

struct Text
{
    QString tags;    // in the blank
    QString printed; // on the page
    QRectF frame;    // scene units
};

inline const QVector<Text>& texts()
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
            const int column = i % 2;
            const int row = i / 2;
            result.append({tags, printed, QRectF(20 + column * 550, 20 + row * 75, 500, 70)});
        }
        return result;
    }();
    return all;
}

inline QString compact(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

inline void insertBlank()
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

inline void insertDocuments(int count)
{
    QSqlQuery document;
    document.prepare("INSERT INTO docs (LNAME, FNAME, MNAME, BLANK_SER, BLANK_NO, DOC_TYPE, "
                     "ISSUE_DATE, TEMPLATE, CONTENT) VALUES ('Константинопольский', 'Александр', "
                     "'Вячеславович', 'АБВ', '0012345', 1, '2021-06-25', 0, ?)");
    const QJsonObject specialty{{"type", 0},
                                {"value", "Информационные системы и программирование"}};
    const QJsonObject protocol{{"type", 3}, {"value", "15.06.2021"}};
    document.addBindValue(compact({{"#SPECIALTY", specialty}, {"#PROTOCOL", protocol}}));
    for (int i = 0; i < count; ++i) {
        document.exec();
    }
}

/// An application directory with documents, all alike, and the blank, open while it lives.
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

/// The texts laid out and painted as rich text, which is what a label's text is.
inline void paintRichTexts(QPainter& painter)
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

/// The texts by QPainter::drawText.
inline void paintPlainTexts(QPainter& painter)
{
    QFont font("Liberation Serif");
    font.setPixelSize(16); // 12 points at 96 dots per inch, whatever the device
    painter.setFont(font);
    for (const Text& text : texts()) {
        painter.drawText(text.frame, Qt::AlignCenter | Qt::TextWordWrap, text.printed);
    }
}

/// Scales a printer's page to scene units.
inline void scaleToPage(QPainter& painter)
{
    const double scale = painter.viewport().width() / double(page.width());
    painter.scale(scale, scale);
}

using PaintTexts = void (*)(QPainter&);
