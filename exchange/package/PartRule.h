#pragma once

#include <QVector>

#include <climits>

#include "exchange/package/PartReader.h"

class XmlOutput;

/// What an attribute may hold, and how it is written down.
enum class ValueKind
{
    Text,
    Style,       ///< a text; where it is "none", the element is left out
    OnFlag,      ///< written only if true: the library takes its mere presence for true
    OffFlag,     ///< written only if false
    Switch,      ///< written never; where it is false, the element is left out
    Whole,       ///< a whole number within the limits
    Rounded,     ///< a number within the limits, of which the library takes whole ones only
    Number,      ///< any finite number
    Hexadecimal, ///< a colour of six or eight digits
    Areas        ///< cells of a sheet; those that no sheet has are left out
};

struct AttributeRule
{
    const char* name;
    ValueKind kind = ValueKind::Text;
    int least = 0;
    int most = INT_MAX;
    bool isRequired = false; ///< without a good value the element is left out
};

/// An element of a part that goes on to the library, with all that may stand in it. What no rule
/// tells of is left out.
struct ElementRule
{
    const char* name;    ///< in its vocabulary, as it is looked for
    const char* written; ///< with the prefix that the library expects, as it is written
    QVector<AttributeRule> attributes = {};
    QVector<ElementRule> children = {};
    bool hasText = false;
    bool needsChild = false; ///< without any child the element is left out
};

/// Writes the attributes of the element that the reader is at into the start tag that is open.
void copyAttributes(const PartReader& reader, const ElementRule& rule, XmlOutput& out);

/// Copies the element that the reader is at, by its rule. Returns false if it was left out.
bool copyElement(PartReader& reader, const ElementRule& rule, XmlOutput& out);

/// Copies those children of the element that have a rule; returns how many.
int copyChildren(PartReader& reader, const QVector<ElementRule>& rules, XmlOutput& out);
