#include "printing/calibration/CalibrationSheet.h"

#include <QFont>
#include <QFontMetricsF>
#include <QLocale>
#include <QMarginsF>
#include <QPageLayout>
#include <QPainter>
#include <QPolygonF>
#include <QPrinter>
#include <QStringList>
#include <QTransform>
#include <QVector>

#include <cmath>
#include <limits>

#include "preflight/LengthText.h"
#include "render/page/PageUnits.h"

namespace {

// All lengths are millimetres.
constexpr double millimetresPerPoint = millimetresPerInch / 72;

// The base lines of the scales stand at the first numbered mark. Printers leave about 5 mm at the
// edges of the paper white: no mark may come nearer.
constexpr double base = 10;
constexpr double cornerReach = 4.5;
constexpr double numberGap = 0.7;
constexpr double nearestNumbers = 5; // of the two scales that meet in the middle of an edge

constexpr double thin = 0.1;
constexpr double medium = 0.15;
constexpr double thick = 0.2;

constexpr double smallText = 7; // points
constexpr double plainText = 8;
constexpr double largeText = 9;

constexpr double widestText = 150;
constexpr double smallSheet = 100; // a side that leaves no room to spare

/// A font for text() and textSize(): at a pixel size of hundredths of a millimetre the shapes and
/// the widths are those of the paper, not of a screen's dots.
constexpr double fontUnit = 0.01;

QFont sheetFont(double points, bool bold = false)
{
    QFont font("Arial");
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(qRound(points * millimetresPerPoint / fontUnit));
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setBold(bold);
    return font;
}

double lineHeight(const QFont& font)
{
    return QFontMetricsF(font).lineSpacing() * fontUnit;
}

double textWidth(const QFont& font, const QString& text)
{
    return QFontMetricsF(font).horizontalAdvance(text) * fontUnit;
}

/// Height of the digits, which have no descent.
double digitHeight(const QFont& font)
{
    return QFontMetricsF(font).tightBoundingRect("0").height() * fontUnit;
}

/// A length for the eye: without decimals that say nothing, with a decimal comma.
QString length(double millimetres)
{
    const double tenths = std::round(millimetres * 10);
    const bool isWhole = std::fmod(tenths, 10) == 0;
    QLocale locale(QLocale::Russian, QLocale::Russia);
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return lengthText(tenths / 10, isWhole ? 0 : 1, locale);
}

/// What to do with the sheet, as paragraphs: first in full, then shorter for small paper.
QVector<QStringList> instructions(const QSizeF& sheet)
{
    const QString scale =
        QString("1. Масштаб: между угловыми метками «10» должно быть %1 мм по ширине и %2 мм по "
                "высоте. Если иначе, выключите в драйвере принтера «По размеру страницы» и "
                "напечатайте лист заново.")
            .arg(length(sheet.width() - 2 * base), length(sheet.height() - 2 * base));
    const QString x =
        "2. X: приложите линейку к левому краю листа, вдоль верхней шкалы. На сколько миллиметров "
        "метка «10» правее десяти миллиметров, столько — X; левее — со знаком минус.";
    const QString y =
        "3. Y: приложите линейку к верхнему краю листа, вдоль левой шкалы. На сколько миллиметров "
        "метка «10» ниже десяти миллиметров, столько — Y; выше — со знаком минус.";
    const QString trouble =
        "4. Метка «10» не напечаталась — возьмите «20» и сравнивайте с двадцатью. У нижней шкалы X "
        "другой или у правой другой Y — бумага идёт косо: поправьте направляющие лотка.";
    const QString own = "Смещение печати самого бланка на этом листе не действует: лист показывает "
                        "сдвиг принтера.";
    // A line of its own: on narrow paper it would be broken behind the command's hyphens.
    const QString command =
        "Что ввести в настройки бланка, скажет zelvora-print --offsets\u00A0X\u00A0Y.";
    const QString shortX = "X: приложите линейку к левому краю листа. На сколько миллиметров метка "
                           "«10» правее десяти, столько — X; левее — с минусом.";
    const QString shortY = "Y: так же от верхнего края. Ниже десяти — столько Y, выше — с минусом.";
    return {{scale, x, y, trouble, own, command},
            {shortX, shortY, own},
            {"X: «10» правее 10 мм от края; левее — минус.",
             "Y: «10» ниже 10 мм от края; выше — минус.", "Смещение бланка не действует."},
            {"X: «10» правее 10 мм (+)", "Y: «10» ниже 10 мм (+)"}};
}

/// Paragraphs set in a font, broken to a width.
struct SetText
{
    QStringList paragraphs;
    QFont font;
    double width = 0;
    double paragraphGap = 0;

    double heightOf(const QString& paragraph) const
    {
        const QRectF room(0, 0, width / fontUnit, std::numeric_limits<short>::max());
        return QFontMetricsF(font).boundingRect(room, Qt::TextWordWrap, paragraph).height() *
               fontUnit;
    }

    double height() const
    {
        double sum = paragraphGap * (paragraphs.size() - 1);
        for (const QString& paragraph : paragraphs) {
            sum += heightOf(paragraph);
        }
        return sum;
    }
};

/// The fullest text that fits the room, at the largest size; the shortest one if none does.
SetText fittingInstructions(const QSizeF& sheet, const QSizeF& room, double paragraphGap)
{
    SetText text;
    const QVector<QStringList> lengths = instructions(sheet);
    for (const QStringList& paragraphs : lengths) {
        for (const double points : {largeText, plainText, smallText}) {
            for (const double width : {qMin(room.width(), widestText), room.width()}) {
                text = {paragraphs, sheetFont(points), width, paragraphGap};
                if (text.height() <= room.height()) {
                    return text;
                }
            }
        }
    }
    return text;
}

class SheetPainter
{
public:
    SheetPainter(QPainter& painter, const QSizeF& sheet)
        : m_painter(painter)
        , m_sheet(sheet)
        , m_isSmall(qMin(sheet.width(), sheet.height()) < smallSheet)
    {
    }

    void paint(const QString& blankName)
    {
        for (const Edge edge : {Edge::Top, Edge::Bottom, Edge::Left, Edge::Right}) {
            drawScale(edge);
        }
        drawCorners();
        drawCross();
        drawHead(blankName);
        drawFoot();
    }

private:
    enum class Edge
    {
        Top,
        Bottom,
        Left,
        Right
    };

    void drawScale(Edge edge);
    void drawTick(Edge edge, double place, int mark);
    void drawNumber(Edge edge, double place, int mark);
    void drawCorners();
    void drawCross();
    void drawHead(const QString& blankName);
    void drawArrows(const QRectF& line, double captionWidth);
    void drawFoot();
    void drawFields(const QRectF& room);

    bool isHorizontal(Edge edge) const { return edge == Edge::Top || edge == Edge::Bottom; }
    double lengthOf(Edge edge) const;
    QPointF pointAt(Edge edge, double place, double depth) const;
    QRectF inside() const;
    double crossArm() const { return m_isSmall ? 3 : 5; }
    double gap() const { return m_isSmall ? 1 : 4; }

    void drawLine(const QPointF& from, const QPointF& to, double width);
    void drawText(const QRectF& room, int flags, const QFont& font, const QString& text);

    QPainter& m_painter;
    const QSizeF m_sheet;
    const bool m_isSmall;
};

/// Length of the paper's edge.
double SheetPainter::lengthOf(Edge edge) const
{
    return isHorizontal(edge) ? m_sheet.width() : m_sheet.height();
}

/// The point `place` from the left or upper end of an edge and `depth` from the edge.
QPointF SheetPainter::pointAt(Edge edge, double place, double depth) const
{
    switch (edge) {
    case Edge::Top:
        return {place, depth};
    case Edge::Bottom:
        return {place, m_sheet.height() - depth};
    case Edge::Left:
        return {depth, place};
    case Edge::Right:
        return {m_sheet.width() - depth, place};
    }
    return {};
}

/// What the scales and their numbers leave free.
QRectF SheetPainter::inside() const
{
    const QFont font = sheetFont(smallText);
    const int largest = static_cast<int>(m_sheet.height() / 2) / 10 * 10;
    const double sides = base + 2 * numberGap + textWidth(font, QString::number(largest));
    const double ends = base + 2 * numberGap + digitHeight(font);
    return QRectF(QPointF(), m_sheet).marginsRemoved(QMarginsF(sides, ends, sides, ends));
}

void SheetPainter::drawScale(Edge edge)
{
    const double end = lengthOf(edge);
    drawLine(pointAt(edge, base, base), pointAt(edge, end - base, base), medium);
    for (int mark = qRound(base); mark <= end / 2; ++mark) {
        const bool isNumbered = mark % 10 == 0;
        const double toOther = end - 2 * mark; // the same mark of the other half
        drawTick(edge, mark, mark);
        if (toOther > 0) {
            drawTick(edge, end - mark, mark);
        }
        if (isNumbered) {
            drawNumber(edge, mark, mark);
        }
        if (isNumbered && toOther >= nearestNumbers) {
            drawNumber(edge, end - mark, mark);
        }
    }
}

void SheetPainter::drawTick(Edge edge, double place, int mark)
{
    double reach = 1.5;
    double width = thin;
    if (mark % 10 == 0) {
        reach = 4;
        width = thick;
    } else if (mark % 5 == 0) {
        reach = 2.5;
        width = medium;
    }
    drawLine(pointAt(edge, place, base), pointAt(edge, place, base - reach), width);
}

void SheetPainter::drawNumber(Edge edge, double place, int mark)
{
    const QFont font = sheetFont(smallText);
    const QString text = QString::number(mark);
    const QSizeF size(textWidth(font, text), digitHeight(font));
    const double depth = base + numberGap;
    QPointF centre = isHorizontal(edge) ? pointAt(edge, place, depth + size.height() / 2)
                                        : pointAt(edge, place, depth + size.width() / 2);
    if (mark == qRound(base)) { // the corner's number serves both of its scales
        if (!isHorizontal(edge)) {
            return;
        }
        const double aside = numberGap + size.width() / 2;
        centre.rx() += place < lengthOf(edge) / 2 ? aside : -aside;
    }
    m_painter.save();
    m_painter.translate(centre + QPointF(-size.width(), size.height()) / 2);
    m_painter.scale(fontUnit, fontUnit);
    m_painter.setFont(font);
    m_painter.drawText(QPointF(), text);
    m_painter.restore();
}

void SheetPainter::drawCorners()
{
    const double right = m_sheet.width() - base;
    const double bottom = m_sheet.height() - base;
    for (const QPointF& corner :
         {QPointF(base, base), QPointF(right, base), QPointF(base, bottom), QPointF(right, bottom)})
    {
        const QPointF across(cornerReach, 0);
        const QPointF down(0, cornerReach);
        drawLine(corner - across, corner + across, thick);
        drawLine(corner - down, corner + down, thick);
    }
}

void SheetPainter::drawCross()
{
    const QPointF centre(m_sheet.width() / 2, m_sheet.height() / 2);
    const QPointF across(crossArm(), 0);
    const QPointF down(0, crossArm());
    drawLine(centre - across, centre + across, medium);
    drawLine(centre - down, centre + down, medium);
    if (!m_isSmall) {
        m_painter.setPen(QPen(Qt::black, medium));
        m_painter.drawEllipse(centre, crossArm() / 2, crossArm() / 2);
    }
}

/// Between the upper scale and the cross: which side is up, and what the sheet is for.
void SheetPainter::drawHead(const QString& blankName)
{
    const QFont plain = sheetFont(m_isSmall ? smallText : plainText);
    const QFont title = sheetFont(m_isSmall ? smallText : largeText, true);
    QRectF room = inside();
    room.setBottom(m_sheet.height() / 2 - crossArm() - gap());

    const QString caption = "верх листа";
    const QRectF top(room.left(), room.top() + gap() / 2, room.width(),
                     lineHeight(plain) * (m_isSmall ? 1 : 2));
    drawText(top, Qt::AlignCenter, plain, caption);
    drawArrows(top, textWidth(plain, caption));

    const QString size =
        QString("Лист %1 × %2 мм").arg(length(m_sheet.width()), length(m_sheet.height()));
    const QString name =
        QFontMetricsF(plain).elidedText(blankName, Qt::ElideMiddle, room.width() / fontUnit);
    double y = room.bottom() - lineHeight(title) - 2 * lineHeight(plain);
    for (const auto& [font, text] : {qMakePair(title, QString("Проверочный лист")),
                                     qMakePair(plain, name), qMakePair(plain, size)})
    {
        drawText(QRectF(room.left(), y, room.width(), lineHeight(font)), Qt::AlignHCenter, font,
                 text);
        y += lineHeight(font);
    }
}

/// Arrows up on both sides of a caption that stands in the middle of the line.
void SheetPainter::drawArrows(const QRectF& line, double captionWidth)
{
    const double head = m_isSmall ? 0.7 : 1.2;
    const double aside = captionWidth / 2 + 2 * head;
    for (const double x : {line.center().x() - aside, line.center().x() + aside}) {
        const QPointF tip(x, line.top());
        drawLine(tip + QPointF(0, head), QPointF(x, line.bottom()), thick);
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(Qt::black);
        m_painter.drawPolygon(
            QPolygonF({tip, tip + QPointF(head, 2 * head), tip + QPointF(-head, 2 * head)}));
        m_painter.setBrush(Qt::NoBrush);
    }
}

/// Between the cross and the lower scale: what to read off, and the room to write it down.
void SheetPainter::drawFoot()
{
    const double fieldHeight = m_isSmall ? 5 : 12;
    QRectF room = inside();
    room.setTop(m_sheet.height() / 2 + crossArm() + gap());
    const SetText text = fittingInstructions(
        m_sheet, QSizeF(room.width(), room.height() - fieldHeight), m_isSmall ? 0 : 1);
    room.setLeft(room.center().x() - text.width / 2);
    room.setWidth(text.width);
    for (const QString& paragraph : text.paragraphs) {
        const double height = text.heightOf(paragraph);
        drawText(QRectF(room.topLeft(), QSizeF(text.width, height)), Qt::TextWordWrap, text.font,
                 paragraph);
        room.setTop(room.top() + height + text.paragraphGap);
    }
    room.setHeight(fieldHeight - text.paragraphGap);
    drawFields(room);
}

/// "X = ____ мм" and the same for Y, side by side, on the lower edge of the room.
void SheetPainter::drawFields(const QRectF& room)
{
    constexpr double widest = 45;
    constexpr double leastForUnit = 20;
    constexpr double beside = 1;
    const QFont font = sheetFont(m_isSmall ? smallText : largeText, !m_isSmall);
    const double between = gap() * 2;
    const double width = qMin((room.width() - between) / 2, widest);
    const QString unit = width < leastForUnit ? QString() : QString("мм");
    double left = room.left();
    for (const QString caption : {"X =", "Y ="}) {
        const QRectF field(left, room.bottom() - lineHeight(font), width, lineHeight(font));
        drawText(field, Qt::AlignLeft, font, caption);
        drawText(field, Qt::AlignRight, font, unit);
        drawLine(field.bottomLeft() + QPointF(textWidth(font, caption) + beside, 0),
                 field.bottomRight() - QPointF(textWidth(font, unit) + beside, 0), thin);
        left += width + between;
    }
}

void SheetPainter::drawLine(const QPointF& from, const QPointF& to, double width)
{
    m_painter.setPen(QPen(Qt::black, width, Qt::SolidLine, Qt::FlatCap));
    m_painter.drawLine(from, to);
}

void SheetPainter::drawText(const QRectF& room, int flags, const QFont& font, const QString& text)
{
    m_painter.save();
    m_painter.translate(room.topLeft());
    m_painter.scale(fontUnit, fontUnit);
    m_painter.setPen(Qt::black);
    m_painter.setFont(font);
    m_painter.drawText(QRectF(QPointF(), room.size() / fontUnit), flags | Qt::TextDontClip, text);
    m_painter.restore();
}

} // namespace

CalibrationSheet::CalibrationSheet(const BlankPaper& paper, const QString& blankName)
    : m_paper(paper)
    , m_blankName(blankName)
{
}

CalibrationSheet::Result CalibrationSheet::print(QPrinter& printer, QPainter& painter) const
{
    m_paper.setOn(printer);
    printer.setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Millimeter);
    printer.setFullPage(true);
    const QSizeF sheet = printer.pageLayout().fullRect(QPageLayout::Millimeter).size();
    if (qMin(sheet.width(), sheet.height()) < smallestSide) {
        return Result::PaperTooSmall;
    }
    printer.setDocName("Zelvora " + m_blankName);
    if (!painter.begin(&printer)) {
        return Result::PrinterRefused;
    }
    painter.scale(printer.logicalDpiX() / millimetresPerInch,
                  printer.logicalDpiY() / millimetresPerInch);
    paint(painter, sheet);
    return Result::Printed;
}

void CalibrationSheet::paint(QPainter& painter, const QSizeF& sheet) const
{
    SheetPainter(painter, sheet).paint(m_blankName);
}
