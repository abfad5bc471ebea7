#pragma once

#include <QJsonObject>
#include <QRectF>
#include <QString>
#include <QVariant>
#include <QVector>

/// Side of a module of a QR symbol on paper from which on scanners read it surely, millimetres.
constexpr double smallestQrModule = 0.25;

/// Ink that nobody misses, millimetres: what lies beyond an edge by no more is no finding.
constexpr double smallestInk = 0.1;

/// Something that the check of a page found: what would not come onto the paper as it was meant.
/// FindingWords tells it to the user.
struct Finding
{
    enum class Kind
    {
        TextTooHigh,       ///< cut at the bottom or top of its frame, or printed beyond it
        TextTooWide,       ///< the same at the sides
        TableRowsCut,      ///< rows that do not fit into the frame
        TableRowsLeftOut,  ///< rows that no frame of the blank prints
        TableCellCut,      ///< a text that does not fit into its cell
        TableColumnCut,    ///< a column that lies outside the frame
        TableOutsideFrame, ///< a table that is printed beyond its frame
        OutsidePage,       ///< cut at the edge of the page
        OutsidePrintable,  ///< in the margin on which the printer cannot print
        TagNotExpanded,    ///< printed as it was written
        DateMissing,       ///< a date tag that prints zeros
        TagEmpty,          ///< a tag that prints nothing
        TailDropped,       ///< a single character behind the last tag
        ValueReadAsMarkup, ///< a value that prints otherwise than it stands
        TextNotWhole,      ///< so long, or with so much markup, that not all of it is laid out
        FontReplaced,      ///< a font that the system does not have
        QrModuleTooSmall,  ///< too small on paper to be read surely
        QrRefused,         ///< a text that makes no symbol, so that nothing is printed
        QrTextCut,         ///< a text that ends in the symbol at a zero character
        BackgroundMissing, ///< a picture that cannot be loaded
        BackgroundOutside, ///< a picture that is not below the application directory
        PaperUnknown,      ///< a format that names no paper: the printer's own is taken
        PageTooLarge,      ///< larger than any paper: its background is not loaded
        PageWithoutArea,   ///< width or height 0 or no size: nothing is printed
        PageWithoutFrames  ///< nothing stands on the blank, or its frames cannot be read
    };

    /// An error loses or spoils ink; a warning is worth a look.
    enum class Severity
    {
        Warning,
        Error
    };

    enum class Side
    {
        None,
        Left,
        Top,
        Right,
        Bottom
    };

    /// Whose page it is. No ID: the finding is of the blank, whatever document it prints.
    struct Document
    {
        QVariant id;
        QString surname;
        QString name;
        QString blankSeries;
        QString blankNumber;
    };

    struct Blank
    {
        QVariant id;
        QString name;
    };

    Kind kind = Kind::TextTooHigh;
    Severity severity = Severity::Error;
    Document document;
    Blank blank;
    int item = 0;     ///< number in the blank's order, from 1; 0: the blank as a whole
    QString itemText; ///< as it stands in the blank
    QRectF place;     ///< of the item's frame from the top left corner of the sheet, millimetres
    Side side = Side::None;
    double amount = 0;     ///< millimetres on paper, see `kind`; 0: none
    double lostInk = 0;    ///< of it printed ink that is lost, millimetres
    QVector<int> rows;     ///< of the document's table, from 1: wholly lost, or that of a cell
    QVector<int> partRows; ///< partly lost
    int column = 0;        ///< of the table, from 1
    QString tag;           ///< tag, dropped tail or family of the font
    QString text;          ///< value, text of the cell, path of the picture, font used instead,
                           ///< or code of the paper or size of the page as they are stored
    QString printed;       ///< of the text of a cell, if the toolkit shortens it

    bool isOfBlank() const { return document.id.isNull(); }

    /// All that is known, under English keys; lengths are in millimetres.
    QJsonObject toJson() const;

    /// The kind's name in JSON, e.g. "text-too-high".
    static QString kindName(Kind kind);
};
