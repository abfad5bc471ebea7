// Changes of a workbook's parts that keep them workbooks: numbers, attributes, elements, relations
// and whole parts. Bytes changed at random would end in the parser of XML.

#include <QByteArray>

#include <algorithm>
#include <cstring>
#include <random>

#include "fuzz/WorkbookParts.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace {

using Random = std::minstd_rand;

int below(int limit, Random& random)
{
    return limit > 0 ? int(random() % unsigned(limit)) : 0;
}

/// Where a text stands, from a random place on and around the end; -1 if nowhere.
int findFrom(const QByteArray& text, const char* what, Random& random)
{
    const int found = text.indexOf(what, below(text.size(), random));
    return found < 0 ? text.indexOf(what) : found;
}

struct Span
{
    int begin = -1;
    int size = 0;
};

/// The value of some attribute.
Span someValue(const QByteArray& text, Random& random)
{
    const int begin = findFrom(text, "=\"", random);
    const int end = begin < 0 ? -1 : text.indexOf('"', begin + 2);
    return end < 0 ? Span() : Span{begin + 2, end - begin - 2};
}

/// Some element with all that stands in it.
Span someElement(const QByteArray& text, Random& random)
{
    const int begin = findFrom(text, "<", random);
    int depth = 0;
    for (int at = begin; at >= 0; at = text.indexOf('<', at + 1)) {
        const int end = text.indexOf('>', at);
        if (end < 0) {
            return {};
        }
        const bool isEnd = text[at + 1] == '/';
        const bool isWhole = text[end - 1] == '/' || text[at + 1] == '?';
        depth += isEnd ? -1 : isWhole ? 0 : 1;
        if (depth <= 0) {
            return depth < 0 ? Span() : Span{begin, end + 1 - begin};
        }
    }
    return {};
}

const char* someNumber(Random& random)
{
    static const char* const numbers[] = {"0",       "1",          "-1",          "2",
                                          "7",       "16384",      "16385",       "1048576",
                                          "1048577", "2147483647", "-2147483648", "4294967296",
                                          "1e300",   "-0",         "0.5",         "99999999999",
                                          "nan",     "",           "true",        "false"};
    return numbers[below(std::size(numbers), random)];
}

const char* someName(Random& random)
{
    static const char* const names[] = {
        "A1",       "XFD1048576", "ZZZ9999999", "A0",         "A1:B2",   "B2:A1", "A1:ZZZZ1",
        "$C$3",     "rId1",       "rId2",       "rId99",      "s",       "str",   "inlineStr",
        "b",        "e",          "d",          "n",          "shared",  "array", "dataTable",
        "External", "none",       "solid",      "colorScale", "dataBar", "hidden"};
    return names[below(std::size(names), random)];
}

void changeValue(QByteArray& part, const QByteArray& donor, Random& random)
{
    const Span value = someValue(part, random);
    if (value.begin < 0) {
        return;
    }
    const Span other = someValue(donor, random);
    switch (below(3, random)) {
    case 0:
        part.replace(value.begin, value.size, someNumber(random));
        break;
    case 1:
        part.replace(value.begin, value.size, someName(random));
        break;
    default:
        part.replace(value.begin, value.size, donor.mid(std::max(other.begin, 0), other.size));
    }
}

void changeElement(QByteArray& part, const QByteArray& donor, Random& random)
{
    const Span element = someElement(part, random);
    if (element.begin < 0) {
        return;
    }
    const Span other = someElement(donor, random);
    const QByteArray more = donor.mid(std::max(other.begin, 0), other.size);
    switch (below(4, random)) {
    case 0:
        part.remove(element.begin, element.size);
        break;
    case 1:
        part.insert(element.begin, part.mid(element.begin, element.size));
        break;
    case 2:
        part.insert(element.begin, more);
        break;
    default:
        part.replace(element.begin, element.size, more);
    }
}

/// Takes an attribute away.
void dropAttribute(QByteArray& part, Random& random)
{
    const Span value = someValue(part, random);
    const int begin = value.begin < 0 ? -1 : part.lastIndexOf(' ', value.begin);
    if (begin >= 0) {
        part.remove(begin, value.begin + value.size + 1 - begin);
    }
}

void changeParts(WorkbookParts& parts, Random& random)
{
    const int one = below(parts.size(), random);
    const int other = below(parts.size(), random);
    switch (below(3, random)) {
    case 0:
        parts.remove(one);
        break;
    case 1:
        std::swap(parts[one].second, parts[other].second);
        break;
    default:
        parts[one].second = parts[other].second;
    }
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned int seed)
{
    Random random(seed | 1U);
    WorkbookParts parts =
        partsOf(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    if (parts.isEmpty() || below(20, random) == 0) {
        return LLVMFuzzerMutate(data, size, most);
    }
    for (int changes = 1 + below(4, random); changes > 0 && !parts.isEmpty(); --changes) {
        QByteArray& part = parts[below(parts.size(), random)].second;
        const QByteArray donor = parts[below(parts.size(), random)].second;
        const int kind = below(20, random);
        if (kind < 10) {
            changeValue(part, below(2, random) ? part : donor, random);
        } else if (kind < 17) {
            changeElement(part, below(2, random) ? part : donor, random);
        } else if (kind < 19) {
            dropAttribute(part, random);
        } else {
            changeParts(parts, random);
        }
    }
    const QByteArray changed = inputOf(parts).left(static_cast<int>(most));
    std::memcpy(data, changed.constData(), std::size_t(changed.size()));
    return std::size_t(changed.size());
}
