#include "exchange/package/CellRebuild.h"

#include <QDateTime>

#include <cmath>

#include "exchange/CellName.h"
#include "exchange/package/PackageLimits.h"
#include "exchange/package/PartReader.h"
#include "exchange/package/SharedTexts.h"

namespace {

constexpr int outlineMost = 7;
constexpr double msPerDay = 24.0 * 60 * 60 * 1000;

/// What a cell's start tag says. A sheet has millions of them.
struct CellAttributes
{
    explicit CellAttributes(const PartReader& reader)
    {
        const QXmlStreamAttributes all = reader.attributes();
        for (const QXmlStreamAttribute& attribute : all) {
            const QStringRef key = attribute.qualifiedName();
            const ushort letter = key.size() == 1 ? key.at(0).unicode() : 0;
            if (letter == 'r') {
                isPlaced = true;
                cell = cellFromName(attribute.value());
            } else if (letter == 's') {
                bool isNumber = false;
                format = attribute.value().toInt(&isNumber);
                format = isNumber ? format : -1;
            } else if (letter == 't') {
                type = attribute.value().toLatin1();
            }
        }
    }

    bool isPlaced = false;
    QXlsx::CellReference cell;
    int format = -1;
    QByteArray type;
};

/// Name of a cell, ended by a zero.
struct CellText
{
    explicit CellText(int row, int column)
    {
        for (; row > 0; row /= 10) {
            *--begin = char('0' + row % 10);
        }
        for (; column > 0; column = (column - 1) / 26) {
            *--begin = char('A' + (column - 1) % 26);
        }
    }

    char text[16] = {};
    char* begin = text + sizeof(text) - 1;
};

bool isNumber(const QString& text)
{
    bool isOne = false;
    return std::isfinite(text.toDouble(&isOne)) && isOne;
}

} // namespace

CellRebuild::CellRebuild(SharedTexts& texts, CellBudget& budget, int formats, bool isFrom1904)
    : m_texts(texts)
    , m_budget(budget)
    , m_formats(formats)
    , m_isFrom1904(isFrom1904)
{
}

bool CellRebuild::copyRows(PartReader& reader, XmlOutput& out, QString* error)
{
    bool isDone = true;
    while (isDone && reader.nextChild()) {
        if (reader.is("row")) {
            isDone = copyRow(reader, out);
        } else {
            reader.skip();
        }
    }
    const qint64 width = m_firstColumn ? m_lastColumn - m_firstColumn + 1 : 0;
    m_budget.places -= m_filledRows * width + (m_lastRow - m_firstRow);
    if (isDone && m_budget.places < 0) {
        isDone = fail("too many rows for their width");
    }
    if (!isDone && error) {
        *error = m_error;
    }
    return isDone;
}

QString CellRebuild::dimension() const
{
    if (m_firstRow == 0) {
        return QString();
    }
    return QXlsx::CellReference(m_firstRow, qMax(m_firstColumn, 1)).toString() + ':' +
           QXlsx::CellReference(m_lastRow, qMax(m_lastColumn, 1)).toString();
}

/// A row or cell that does not say where it stands follows the one before.
bool CellRebuild::copyRow(PartReader& reader, XmlOutput& out)
{
    const bool isPlaced = !reader.attribute("r").isNull();
    m_row = isPlaced ? reader.whole("r", 1, PackageLimits::rows, 0) : m_row + 1;
    m_column = 0;
    if (m_row < 1 || m_row > PackageLimits::rows) {
        return fail("a row that no sheet has");
    }
    const int row = m_row;
    out.start("row");
    out.attribute("r", row);
    writeRowAttributes(reader, out);
    bool isDone = true;
    while (isDone && reader.nextChild()) {
        if (reader.is("c")) {
            isDone = copyCell(reader, out);
        } else {
            reader.skip();
        }
    }
    out.end("row");
    m_row = row;
    ++m_filledRows;
    return isDone;
}

void CellRebuild::writeRowAttributes(const PartReader& reader, XmlOutput& out)
{
    const int format = reader.whole("s", 0, m_formats - 1, -1);
    const QString height = reader.attribute("ht").toString();
    const int level = reader.whole("outlineLevel", 1, outlineMost, 0);
    bool isFormed = false;
    if (reader.flag("customFormat") && format >= 0) {
        out.attribute("s", format);
        out.attribute("customFormat", "1");
        isFormed = true;
    }
    if (reader.flag("customHeight") && isNumber(height)) {
        out.attribute("ht", height);
        out.attribute("customHeight", "1");
        isFormed = true;
    }
    for (const char* name : {"hidden", "collapsed"}) {
        if (reader.flag(name)) {
            out.attribute(name, "1");
            isFormed = true;
        }
    }
    if (level > 0) {
        out.attribute("outlineLevel", level);
        isFormed = true;
    }
    if (isFormed) {
        takePlace(m_row, 0);
    }
}

bool CellRebuild::copyCell(PartReader& reader, XmlOutput& out)
{
    const CellAttributes attributes(reader);
    const QXlsx::CellReference cell =
        attributes.isPlaced ? attributes.cell : QXlsx::CellReference(m_row, m_column + 1);
    if (!isOnSheet(cell)) {
        return fail("a cell that no sheet has");
    }
    if (--m_budget.cells < 0) {
        return fail("too many cells");
    }
    m_row = cell.row();
    m_column = cell.column();
    Formula formula;
    Value value;
    while (reader.nextChild()) {
        if (reader.is("f")) {
            formula = readFormula(reader);
        } else if (reader.is("v")) {
            value = valueOf(attributes.type, reader.text());
        } else if (reader.is("is")) {
            const int text = m_texts.add(reader);
            value = text < 0 ? Value() : Value{"s", QString(), text, true};
        } else {
            reader.skip();
        }
    }
    const int format = attributes.format < m_formats ? attributes.format : -1;
    writeCell(format, formula, value, out);
    return m_budget.characters >= 0 || fail("too much text");
}

/// A formula that cells share is found by its number: only where the one that has the text came
/// before. Tables of data are more than the library keeps; their values stay.
CellRebuild::Formula CellRebuild::readFormula(PartReader& reader)
{
    Formula formula;
    formula.isThere = true;
    formula.type = reader.attribute("t").toString();
    formula.area = areasFromNames(reader.attribute("ref"));
    formula.group = reader.whole("si", 0, INT_MAX, -1);
    formula.text = reader.text();
    if (formula.type == QLatin1String("shared")) {
        if (!formula.text.isEmpty() && !formula.area.isEmpty() && formula.group >= 0) {
            m_groups.insert(formula.group);
        } else if (formula.text.isEmpty() && !m_groups.contains(formula.group)) {
            formula.isThere = false;
        } else if (!formula.text.isEmpty()) {
            formula.type.clear();
        }
    } else if (formula.type != QLatin1String("array") || formula.area.isEmpty()) {
        formula.isThere = formula.type != QLatin1String("dataTable");
        formula.type.clear();
    }
    return formula;
}

/// The value of a cell of a type. The library takes a number as a number if its cell says so, else
/// as the text that stands there: that is left as it is.
CellRebuild::Value CellRebuild::valueOf(const QByteArray& type, const QString& text) const
{
    if (type == "s") {
        return sharedText(text);
    }
    if (type == "b") {
        return {"b", flagOf(QStringRef(&text)) ? "1" : "0", -1, true};
    }
    if (type == "e") {
        return {"e", text, -1, true};
    }
    if (type == "str" || type == "inlineStr") {
        return {"str", text, -1, true};
    }
    if (type == "d") {
        return date(text);
    }
    if (type == "n") {
        return number(text, "n");
    }
    const Value value = number(text, "");
    return value.isThere || text.trimmed().isEmpty() ? value : Value{"str", text, -1, true};
}

CellRebuild::Value CellRebuild::sharedText(const QString& number) const
{
    bool isNumber = false;
    const int index = number.toInt(&isNumber);
    return isNumber && index >= 0 && index < m_texts.count() ? Value{"s", QString(), index, true}
                                                             : Value();
}

CellRebuild::Value CellRebuild::number(const QString& text, const char* type) const
{
    return isNumber(text) ? Value{type, text.trimmed(), -1, true} : Value();
}

/// A date as the strict form of the format writes it, as the number of days that others write.
CellRebuild::Value CellRebuild::date(const QString& text) const
{
    const QDateTime moment = QDateTime::fromString(text, Qt::ISODate);
    if (!moment.isValid()) {
        return number(text, "n");
    }
    const QDate begin = m_isFrom1904 ? QDate(1904, 1, 1) : QDate(1899, 12, 30);
    const double days =
        double(begin.daysTo(moment.date())) + moment.time().msecsSinceStartOfDay() / msPerDay;
    return number(QString::number(days, 'g', 15), "n");
}

/// Nothing is written of a cell without anything: it reads the same.
void CellRebuild::writeCell(int format, const Formula& formula, const Value& value, XmlOutput& out)
{
    if (format < 0 && !formula.isThere && !value.isThere) {
        return;
    }
    takePlace(m_row, m_column);
    out.start("c");
    out.attribute("r", CellText(m_row, m_column).begin);
    if (format >= 0) {
        out.attribute("s", format);
    }
    if (*value.type) {
        out.attribute("t", value.type);
    }
    if (formula.isThere) {
        out.start("f");
        if (!formula.type.isEmpty()) {
            out.attribute("t", formula.type);
            if (!formula.area.isEmpty()) {
                out.attribute("ref", formula.area);
            }
            if (formula.group >= 0) {
                out.attribute("si", formula.group);
            }
        }
        out.text(formula.text);
        out.end("f");
        m_budget.characters -= formula.text.size();
    }
    if (value.isThere) {
        out.start("v");
        if (value.shared >= 0) {
            out.number(value.shared);
            m_budget.characters -= m_texts.size(value.shared);
        } else {
            out.text(value.text);
            m_budget.characters -= value.text.size();
        }
        out.end("v");
    }
    out.end("c");
}

bool CellRebuild::fail(const QString& reason)
{
    m_error = reason;
    return false;
}

/// The column is 0 for a row without cells.
void CellRebuild::takePlace(int row, int column)
{
    m_firstRow = m_firstRow ? qMin(m_firstRow, row) : row;
    m_lastRow = qMax(m_lastRow, row);
    if (column > 0) {
        m_firstColumn = m_firstColumn ? qMin(m_firstColumn, column) : column;
        m_lastColumn = qMax(m_lastColumn, column);
    }
}
