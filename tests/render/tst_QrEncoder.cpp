#include <QtTest>

#include <QImage>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QVector>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <type_traits>

#include "qr/QrReference.h"
#include "render/QrEncoder.h"
#include "support/Process.h"

namespace {

enum Level
{
    L,
    M,
    Q,
    H
};

constexpr int anyMask = -1;

/// A block as a test states it: mode and source bytes.
struct Block
{
    int mode;
    int length;

    bool operator==(const Block& other) const
    {
        return mode == other.mode && length == other.length;
    }
};

using Blocks = QVector<Block>;

/// Character count widths by mode and version group.
constexpr int countBits[4][3] = {{10, 12, 14}, {9, 11, 13}, {8, 16, 16}, {8, 10, 12}};

const QByteArray alphanumerics = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ $%*+-./:";

bool encode(QrEncoder& encoder, const QByteArray& text, int level = M, int version = 12,
            bool autoExtend = true, int mask = anyMask)
{
    return encoder.encodeData(level, version, autoExtend, mask, text.constData(), text.size());
}

Blocks blocksOf(const QrEncoder& encoder)
{
    Blocks blocks;
    for (int i = 0; i < encoder.blockCount; ++i) {
        blocks.append({encoder.blockModes[i], encoder.blockLengths[i]});
    }
    return blocks;
}

QString toText(const Blocks& blocks)
{
    QStringList parts;
    for (const Block& block : blocks) {
        parts.append(QString("%1:%2").arg(block.mode).arg(block.length));
    }
    return parts.join(' ');
}

QByteArray codewords(const std::uint8_t* first, int count)
{
    return QByteArray(reinterpret_cast<const char*>(first), count).toHex(' ').toUpper();
}

// --- Segmentation, the slow way: a list of blocks, one step after the other. ---

bool isKanjiPair(int first, int second)
{
    if (second < 0x40) {
        return false;
    }
    if (first == 0x9F) {
        return second <= 0xFC;
    }
    if (first == 0xEB) {
        return second <= 0xBF;
    }
    return (first >= 0x81 && first <= 0x9F) || (first >= 0xE0 && first <= 0xEB);
}

int modeOf(int byte)
{
    const int value = byte == 0 ? -1 : alphanumerics.indexOf(char(byte));
    return value < 0 ? 2 : value < 10 ? 0 : 1;
}

Blocks classified(const QByteArray& text)
{
    Blocks blocks;
    for (int i = 0; i < text.size();) {
        const bool isLast = i == text.size() - 1;
        const bool pair = !isLast && isKanjiPair(uchar(text[i]), uchar(text[i + 1]));
        const int mode = pair ? 3 : modeOf(uchar(text[i]));
        const int length = pair ? 2 : 1;
        if (!blocks.isEmpty() && blocks.last().mode == mode) {
            blocks.last().length += length;
        } else {
            blocks.append({mode, length});
        }
        i += length;
    }
    return blocks;
}

int bitCost(int mode, int length, int group)
{
    int cost = 4 + countBits[mode][group];
    if (mode == 0) {
        cost += length / 3 * 10 + (length % 3 == 1 ? 4 : length % 3 == 2 ? 7 : 0);
    } else if (mode == 1) {
        cost += length / 2 * 11 + (length % 2 == 1 ? 6 : 0);
    } else if (mode == 2) {
        cost += length * 8;
    } else {
        cost += length / 2 * 13;
    }
    return cost;
}

bool has(const Blocks& b, int i, int mode)
{
    return i >= 0 && i < b.size() && b[i].mode == mode;
}

void mergeAlphanumeric(Blocks& b, int i)
{
    if (has(b, i + 2, 1)) {
        b[i + 1].length += b[i + 2].length;
        b.removeAt(i + 2);
    }
    b[i].mode = 1;
    b[i].length += b[i + 1].length;
    b.removeAt(i + 1);
    if (has(b, i - 1, 1)) {
        b[i - 1].length += b[i].length;
        b.removeAt(i);
    }
}

/// Joins at `i` if that is shorter; returns whether it has.
bool joinNumericAt(Blocks& b, int i, int group)
{
    const int a = bitCost(1, b[i].length + b[i + 1].length, group);
    const int s0 = bitCost(b[i].mode, b[i].length, group);
    const int s1 = bitCost(b[i + 1].mode, b[i + 1].length, group);
    if (s0 + s1 <= a) {
        return false;
    }

    int front = 0;
    if (has(b, i - 1, 2)) {
        front = bitCost(2, b[i - 1].length + b[i].length, group) + s1;
        if (front > bitCost(2, b[i - 1].length, group) + a) {
            front = 0;
        }
    }
    int behind = 0;
    if (has(b, i + 2, 2)) {
        behind = bitCost(2, b[i + 1].length + b[i + 2].length, group) + s0;
        if (behind > bitCost(2, b[i + 2].length, group) + a) {
            behind = 0;
        }
    }

    if (front == 0 && behind == 0) {
        mergeAlphanumeric(b, i);
    } else if (behind == 0 || (front != 0 && front < behind)) {
        b[i - 1].length += b[i].length;
        b.removeAt(i);
    } else {
        b[i + 1].mode = 2;
        b[i + 1].length += b[i + 2].length;
        b.removeAt(i + 2);
    }
    return true;
}

void joinNumericSlowly(Blocks& b, int group)
{
    int i = 0;
    while (i < b.size() - 1) {
        const bool neighbours =
            (has(b, i, 0) && has(b, i + 1, 1)) || (has(b, i, 1) && has(b, i + 1, 0));
        if (!neighbours || !joinNumericAt(b, i, group)) {
            ++i;
        }
    }
}

void joinShortSlowly(Blocks& b, int group)
{
    const int header = 4 + countBits[2][group];
    int i = 0;
    while (i < b.size() - 1) {
        const int s =
            bitCost(b[i].mode, b[i].length, group) + bitCost(b[i + 1].mode, b[i + 1].length, group);
        int d = bitCost(2, b[i].length + b[i + 1].length, group);
        if (has(b, i - 1, 2)) {
            d -= header;
        }
        if (has(b, i + 2, 2)) {
            d -= header;
        }
        if (s <= d) {
            ++i;
            continue;
        }
        if (has(b, i - 1, 2)) {
            b[i - 1].length += b[i].length;
            b.removeAt(i);
            --i;
        }
        if (has(b, i + 2, 2)) {
            b[i + 1].length += b[i + 2].length;
            b.removeAt(i + 2);
        }
        b[i].mode = 2;
        b[i].length += b[i + 1].length;
        b.removeAt(i + 1);
        if (i >= 1) {
            --i;
        }
    }
}

Blocks segmentedSlowly(const QByteArray& text, int group)
{
    Blocks blocks = classified(text);
    joinNumericSlowly(blocks, group);
    joinShortSlowly(blocks, group);
    return blocks;
}

// --- Reading the bit stream back. ---

/// What the stream of an encoder says, read with the count widths of `group`.
struct ReadStream
{
    Blocks blocks;
    QByteArray text;
    int bitCount = 0; ///< up to the end of the last block
};

class StreamReader
{
public:
    explicit StreamReader(const QrEncoder& encoder)
        : m_source(encoder)
    {
    }

    int bits(int count)
    {
        int value = 0;
        for (int i = 0; i < count; ++i, ++m_position) {
            value =
                value << 1 | (m_source.dataCodewords[m_position / 8] >> (7 - m_position % 8) & 1);
        }
        return value;
    }

    ReadStream read(int group, int sourceLength)
    {
        ReadStream result;
        while (result.text.size() < sourceLength) {
            const int indicator = bits(4);
            const int mode = QVector<int>{1, 2, 4, 8}.indexOf(indicator);
            if (mode < 0) {
                break;
            }
            const int count = bits(countBits[mode][group]);
            const int start = result.text.size();
            for (int left = count; left > 0;) {
                left -= readGroup(mode, left, result.text);
            }
            result.blocks.append({mode, result.text.size() - start});
        }
        result.bitCount = m_position;
        return result;
    }

private:
    /// Reads the next characters of a block and returns how many of them it has read.
    int readGroup(int mode, int left, QByteArray& text)
    {
        if (mode == 0) {
            const int digits = std::min(left, 3);
            const int value = bits(digits == 3 ? 10 : digits == 2 ? 7 : 4);
            text += QByteArray::number(value).rightJustified(digits, '0');
            return digits;
        }
        if (mode == 1 && left == 1) {
            text += alphanumerics[bits(6)];
            return 1;
        }
        if (mode == 1) {
            const int value = bits(11);
            text += alphanumerics[value / 45];
            text += alphanumerics[value % 45];
            return 2;
        }
        if (mode == 2) {
            text += char(bits(8));
            return 1;
        }
        const int value = bits(13);
        const int offset = value / 192 << 8 | value % 192;
        const int code = offset + (offset < 0x1F00 ? 0x8140 : 0xC140);
        text += char(code >> 8);
        text += char(code & 0xFF);
        return 1;
    }

    const QrEncoder& m_source;
    int m_position = 0;
};

// --- Material. ---

/// Lower-case text of `length` bytes, which stays one 8-bit block.
QByteArray byteText(int length)
{
    QByteArray text;
    for (int i = 0; i < length; ++i) {
        text += char('a' + i * i % 26);
    }
    return text;
}

/// Bytes of all kinds, in runs, so that joins of every sort come up.
QByteArray mixedText(QRandomGenerator& random, int runs)
{
    static const QVector<QByteArray> cyrillic = [] {
        QVector<QByteArray> letters;
        for (const QChar letter :
             QString("АБВГДЕЖЗИКЛМНОПРСТУФХЦЧШЩЫЭЮЯабвгдежзийклмнопрстуфхцчшщъыьэюя№")) {
            letters.append(QString(letter).toUtf8());
        }
        return letters;
    }();

    QByteArray text;
    for (int run = 0; run < runs; ++run) {
        const int kind = random.bounded(6);
        const int length = 1 + random.bounded(random.bounded(8) == 0 ? 30 : 8);
        for (int i = 0; i < length; ++i) {
            if (kind == 0) {
                text += alphanumerics[random.bounded(10)];
            } else if (kind == 1) {
                text += alphanumerics[random.bounded(10, 45)];
            } else if (kind == 2) {
                text += char('a' + random.bounded(26));
            } else if (kind == 3) {
                text += cyrillic[random.bounded(cyrillic.size())];
            } else if (kind == 4) {
                text += cyrillic[random.bounded(15)]; // А to П: pairs that pass for Kanji
            } else {
                text += char(random.bounded(256));
            }
        }
    }
    return text;
}

QImage picture(const QrEncoder& encoder)
{
    const int side = encoder.moduleCount + 8;
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int x = 0; x < encoder.moduleCount; ++x) {
        for (int y = 0; y < encoder.moduleCount; ++y) {
            if (encoder.modules[x][y] == 1) {
                image.setPixel(x + 4, y + 4, qRgb(0, 0, 0));
            }
        }
    }
    return image.scaled(side * 4, side * 4).convertToFormat(QImage::Format_Grayscale8);
}

/// A bit of the symbol as 0 or 1, for reading information back.
int moduleAt(const QrEncoder& encoder, int x, int y)
{
    return encoder.modules[x][y];
}

} // namespace

/// The encoder from text to finished symbol.
class tst_QrEncoder : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void isAPlainWorkArea();
    void standardExample();
    void formatInformation();
    void versionInformation();
    void functionPatterns();
    void symbolsReadBack();
    void rawBytesReadBack();

    void classifiesKanjiPairs_data();
    void classifiesKanjiPairs();
    void joinsBlocks_data();
    void joinsBlocks();
    void longestJoinedKanjiRun();
    void segmentsLikeTheSlowWay_data();
    void segmentsLikeTheSlowWay();
    void streamHoldsTheText();

    void measuresText();
    void smallestVersion();
    void givenVersion();
    void longestByteText();
    void versionGroupChange();
    void numberOfBlocksIsLimited();

    void givenMask();
    void choosesTheLowestPenalty();

    void refusals_data();
    void refusals();

private:
    /// One run of the scanner over all pictures: what it read, one symbol after the other.
    QList<QByteArray> scan(const QVector<QImage>& pictures);

    std::unique_ptr<QrEncoder> m_encoder;
};

void tst_QrEncoder::init()
{
    m_encoder = std::make_unique<QrEncoder>();
    // What an earlier user of the memory may have left.
    std::fill_n(reinterpret_cast<unsigned char*>(m_encoder.get()), sizeof(QrEncoder), 0xA5);
}

void tst_QrEncoder::isAPlainWorkArea()
{
    QVERIFY(std::is_trivial<QrEncoder>::value);
    QVERIFY(std::is_standard_layout<QrEncoder>::value);

    const QVector<size_t> offsets{offsetof(QrEncoder, level),
                                  offsetof(QrEncoder, version),
                                  offsetof(QrEncoder, maskingNumber),
                                  offsetof(QrEncoder, moduleCount),
                                  offsetof(QrEncoder, modules),
                                  offsetof(QrEncoder, dataBitCount),
                                  offsetof(QrEncoder, dataCodewords),
                                  offsetof(QrEncoder, blockCount),
                                  offsetof(QrEncoder, blockModes),
                                  offsetof(QrEncoder, blockLengths),
                                  offsetof(QrEncoder, allCodewordCount),
                                  offsetof(QrEncoder, allCodewords),
                                  offsetof(QrEncoder, rsWork)};
    QVERIFY(std::is_sorted(offsets.begin(), offsets.end()));

    QCOMPARE(sizeof(m_encoder->modules), size_t(177 * 177));
    QCOMPARE(sizeof(m_encoder->dataCodewords), size_t(2956));
    QCOMPARE(sizeof(m_encoder->blockModes), size_t(2956));
    QCOMPARE(sizeof(m_encoder->blockLengths), size_t(2956 * 4));
    QCOMPARE(sizeof(m_encoder->allCodewords), size_t(3706));
    QCOMPARE(sizeof(m_encoder->rsWork), size_t(153));
}

void tst_QrEncoder::standardExample()
{
    QVERIFY(encode(*m_encoder, "01234567", M, 1));
    QCOMPARE(m_encoder->version, 1);
    QCOMPARE(m_encoder->moduleCount, 21);
    QCOMPARE(codewords(m_encoder->dataCodewords.data(), 16),
             QByteArray("10 20 0C 56 61 80 EC 11 EC 11 EC 11 EC 11 EC 11"));
    QCOMPARE(m_encoder->allCodewordCount, 26);
    QCOMPARE(codewords(m_encoder->allCodewords.data(), 26),
             QByteArray("10 20 0C 56 61 80 EC 11 EC 11 EC 11 EC 11 EC 11 "
                        "A5 24 D4 C1 ED 36 C7 87 2C 55"));
}

void tst_QrEncoder::formatInformation()
{
    for (int level = L; level <= H; ++level) {
        for (int mask = 0; mask < 8; ++mask) {
            QVERIFY(encode(*m_encoder, "a", level, 3, true, mask));
            const int side = m_encoder->moduleCount;
            const auto read = [this](const QVector<QPoint>& places) {
                int information = 0;
                for (int bit = 0; bit < 15; ++bit) {
                    information |= moduleAt(*m_encoder, places[bit].x(), places[bit].y()) << bit;
                }
                return information;
            };
            QCOMPARE(read(firstFormatModules()), maskedFormatInformation[level][mask]);
            QCOMPARE(read(secondFormatModules(side)), maskedFormatInformation[level][mask]);
            QCOMPARE(moduleAt(*m_encoder, 8, side - 8), 1);
        }
    }
}

void tst_QrEncoder::versionInformation()
{
    const QVector<QPair<int, int>> expected{
        {7, 0x07C94}, {8, 0x085BC}, {9, 0x09A99}, {12, 0x0C762}, {40, 0x28C69}};
    for (const auto& [version, information] : expected) {
        QVERIFY(encode(*m_encoder, "a", L, version));
        QCOMPARE(m_encoder->version, version);
        int lower = 0;
        int upper = 0;
        for (int bit = 0; bit < 18; ++bit) {
            const int far = m_encoder->moduleCount - 11 + bit % 3;
            lower |= moduleAt(*m_encoder, bit / 3, far) << bit;
            upper |= moduleAt(*m_encoder, far, bit / 3) << bit;
        }
        QCOMPARE(lower, information);
        QCOMPARE(upper, information);
    }
}

void tst_QrEncoder::functionPatterns()
{
    QVERIFY(encode(*m_encoder, "a", M, 7)); // alignment at 22 and 38, on 45 modules
    const auto area = [this](int left, int top, int width, int height) {
        QStringList lines;
        for (int y = top; y < top + height; ++y) {
            QString line;
            for (int x = left; x < left + width; ++x) {
                line += m_encoder->modules[x][y] == 1 ? '#' : '.';
            }
            lines.append(line);
        }
        return lines;
    };
    const QStringList finder{"#######", "#.....#", "#.###.#", "#.###.#",
                             "#.###.#", "#.....#", "#######"};
    const QStringList alignment{"#####", "#...#", "#.#.#", "#...#", "#####"};

    QCOMPARE(area(0, 0, 7, 7), finder);
    QCOMPARE(area(38, 0, 7, 7), finder);
    QCOMPARE(area(0, 38, 7, 7), finder);

    const QStringList row{"........"};
    const QStringList column(QVector<QString>(8, ".").toList());
    QCOMPARE(area(0, 7, 8, 1), row);
    QCOMPARE(area(37, 7, 8, 1), row);
    QCOMPARE(area(0, 37, 8, 1), row);
    QCOMPARE(area(7, 0, 1, 8), column);
    QCOMPARE(area(37, 0, 1, 8), column);
    QCOMPARE(area(7, 37, 1, 8), column);

    for (const QPoint centre : {QPoint(22, 6), QPoint(6, 22), QPoint(22, 22), QPoint(22, 38),
                                QPoint(38, 22), QPoint(38, 38)})
    {
        QCOMPARE(area(centre.x() - 2, centre.y() - 2, 5, 5), alignment);
    }

    for (int i = 8; i <= 36; ++i) {
        QCOMPARE(moduleAt(*m_encoder, i, 6), i % 2 == 0 ? 1 : 0);
        QCOMPARE(moduleAt(*m_encoder, 6, i), i % 2 == 0 ? 1 : 0);
    }
}

QList<QByteArray> tst_QrEncoder::scan(const QVector<QImage>& pictures)
{
    QTemporaryDir directory;
    // Every other line is enough at four pixels per module, and takes a third of the time.
    QStringList arguments{"--raw",           "-q",         "-S*.disable",
                          "-Sqrcode.enable", "-S*.binary", "-Sx-density=2",
                          "-Sy-density=2"};
    for (int i = 0; i < pictures.size(); ++i) {
        const QString file = directory.filePath(QString("%1.png").arg(i));
        if (!pictures[i].save(file)) {
            return {};
        }
        arguments.append(file);
    }
    QByteArray read = runProcess("zbarimg", arguments).out;
    read.chop(1); // the last symbol ends with a line break, too
    return read.split('\n');
}

void tst_QrEncoder::symbolsReadBack()
{
    QVector<QImage> pictures;
    QList<QByteArray> texts;
    for (int version = 1; version <= 40; ++version) {
        for (int level = L; level <= H; ++level) {
            // As long as the version takes, so that every block of it carries text.
            QByteArray text = QByteArray("v%1 level %2 ")
                                  .replace("%1", QByteArray::number(version))
                                  .replace("%2", QByteArray::number(level)) +
                              byteText(version * version * 2 + 20);
            while (!encode(*m_encoder, text, level, version, false)) {
                text.chop(text.size() > 600 ? 16 : 1);
            }
            QCOMPARE(m_encoder->version, version);
            QCOMPARE(m_encoder->moduleCount, version * 4 + 17);
            pictures.append(picture(*m_encoder));
            texts.append(text);
        }
    }
    const QList<QByteArray> read = scan(pictures);
    QCOMPARE(read.size(), texts.size());
    for (int i = 0; i < texts.size(); ++i) {
        QCOMPARE(read[i], texts[i]);
    }
}

void tst_QrEncoder::rawBytesReadBack()
{
    const QList<QByteArray> texts{
        "01234567890123456789",
        "https://example.org/?ID=0001-A",
        "ABC $%*+-./:",
        QString("Иванов Иван Иванович, диплом № 123").toUtf8(),
        QString("ПААБВГДЕЖЗИКЛМНОПААБВ стстстустустустстс №").toUtf8(), // with Kanji blocks
        QByteArray("a\x81"),
    };
    QVector<QImage> pictures;
    for (const QByteArray& text : texts) {
        QVERIFY(encode(*m_encoder, text));
        pictures.append(picture(*m_encoder));
    }
    QCOMPARE(scan(pictures), texts);
}

void tst_QrEncoder::classifiesKanjiPairs_data()
{
    QTest::addColumn<QByteArray>("pair");
    QTest::addColumn<bool>("isKanji");

    QTest::newRow("first pair") << QByteArray("\x81\x40") << true;
    QTest::newRow("second byte too low") << QByteArray("\x81\x3F") << false;
    QTest::newRow("any high second byte") << QByteArray("\x81\xFF") << true;
    QTest::newRow("second byte of no character") << QByteArray("\x9E\x7F") << true;
    QTest::newRow("end of the first range") << QByteArray("\x9F\xFC") << true;
    QTest::newRow("past the first range") << QByteArray("\x9F\xFD") << false;
    QTest::newRow("below the first range") << QByteArray("\x80\x40") << false;
    QTest::newRow("between the ranges") << QByteArray("\xA0\x40") << false;
    QTest::newRow("below the second range") << QByteArray("\xDF\x40") << false;
    QTest::newRow("start of the second range") << QByteArray("\xE0\x40") << true;
    QTest::newRow("second byte too low, second range") << QByteArray("\xE0\x3F") << false;
    QTest::newRow("any high second byte, second range") << QByteArray("\xEA\xFF") << true;
    QTest::newRow("end of the second range") << QByteArray("\xEB\xBF") << true;
    QTest::newRow("past the second range") << QByteArray("\xEB\xC0") << false;
    QTest::newRow("above the second range") << QByteArray("\xEC\x40") << false;
}

void tst_QrEncoder::classifiesKanjiPairs()
{
    QFETCH(QByteArray, pair);
    QFETCH(bool, isKanji);

    QVERIFY(encode(*m_encoder, pair));
    const ReadStream stream = StreamReader(*m_encoder).read(1, pair.size());
    QCOMPARE(stream.text, pair);
    QCOMPARE(toText(stream.blocks), isKanji ? QString("3:2") : QString("2:2"));
}

void tst_QrEncoder::joinsBlocks_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("version");
    QTest::addColumn<QString>("blocks");

    QTest::newRow("letter between digits") << QByteArray("12A34") << 12 << "1:5";
    QTest::newRow("digits long enough to stay") << QByteArray("12345678A") << 12 << "0:8 1:1";
    QTest::newRow("digits too short to stay") << QByteArray("1234567A") << 12 << "1:8";
    QTest::newRow("letter goes to the 8-bit block behind")
        << QByteArray("1234567Ab") << 12 << "0:7 2:2";
    QTest::newRow("letter goes to the 8-bit block before")
        << QByteArray("bA1234567") << 12 << "2:2 0:7";
    QTest::newRow("digits too short between two 8-bit blocks")
        << QByteArray("bbA1234567Abb") << 12 << "2:13";
    QTest::newRow("three to one alphanumeric") << QByteArray("AAAA1234BBBB") << 12 << "1:12";
    QTest::newRow("surname in capitals") << QString("ИВАНОВ").toUtf8() << 12 << "2:12";
    QTest::newRow("number sign") << QByteArray("\xE2\x84\x96") << 12 << "2:3";
    QTest::newRow("number sign kept as a pair") << QByteArray("\xE2\x84") << 12 << "3:2";
    QTest::newRow("lone lead byte at the end") << QByteArray("abc\x81") << 12 << "2:4";
    QTest::newRow("only a lead byte") << QByteArray("\x81") << 12 << "2:1";
}

void tst_QrEncoder::joinsBlocks()
{
    QFETCH(QByteArray, text);
    QFETCH(int, version);
    QFETCH(QString, blocks);

    QVERIFY(encode(*m_encoder, text, M, version));
    QCOMPARE(toText(blocksOf(*m_encoder)), blocks);
}

void tst_QrEncoder::longestJoinedKanjiRun()
{
    const QByteArray pair = "\x98\xD0";
    QVERIFY(encode(*m_encoder, "a" + pair.repeated(11) + "a"));
    QCOMPARE(toText(blocksOf(*m_encoder)), QString("2:24"));
    QVERIFY(encode(*m_encoder, "a" + pair.repeated(12) + "a"));
    QCOMPARE(toText(blocksOf(*m_encoder)), QString("2:1 3:24 2:1"));
}

void tst_QrEncoder::segmentsLikeTheSlowWay_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<int>("group");

    QTest::newRow("versions 1 to 9") << 1 << 0;
    QTest::newRow("versions 10 to 26") << 10 << 1;
    QTest::newRow("versions 27 to 40") << 27 << 2;
}

void tst_QrEncoder::segmentsLikeTheSlowWay()
{
    QFETCH(int, version);
    QFETCH(int, group);

    QRandomGenerator random(20240 + group);
    int compared = 0;
    for (int i = 0; i < 3000; ++i) {
        const QByteArray text = mixedText(random, 1 + i % 24);
        if (!encode(*m_encoder, text, L, version, true, 0)) {
            continue;
        }
        if (m_encoder->version > (group == 0 ? 9 : group == 1 ? 26 : 40)) {
            continue; // a longer text than the group takes
        }
        const Blocks expected = segmentedSlowly(text, group);
        QVERIFY2(blocksOf(*m_encoder) == expected,
                 qPrintable(QString("%1: %2 instead of %3")
                                .arg(QString::fromLatin1(text.toHex()),
                                     toText(blocksOf(*m_encoder)), toText(expected))));
        ++compared;
    }
    QVERIFY(compared > 2000);
}

void tst_QrEncoder::streamHoldsTheText()
{
    QRandomGenerator random(7);
    for (int i = 0; i < 1000; ++i) {
        const QByteArray text = mixedText(random, 1 + i % 40);
        QVERIFY(encode(*m_encoder, text, L, 27, true, 0));
        const ReadStream stream = StreamReader(*m_encoder).read(2, text.size());
        QCOMPARE(stream.text, text);
        QVERIFY(stream.blocks == blocksOf(*m_encoder));
        // What follows is the terminator of four zero bits, which the count includes.
        QCOMPARE(m_encoder->dataBitCount, stream.bitCount + 4);
    }
}

void tst_QrEncoder::measuresText()
{
    const char text[] = "abc\0def";
    QVERIFY(m_encoder->encodeData(M, 12, true, anyMask, text, 0));
    QCOMPARE(toText(blocksOf(*m_encoder)), QString("2:3"));
    QVERIFY(m_encoder->encodeData(M, 12, true, anyMask, text, -5));
    QCOMPARE(toText(blocksOf(*m_encoder)), QString("2:3"));

    QVERIFY(m_encoder->encodeData(M, 12, true, anyMask, text, 7));
    QCOMPARE(StreamReader(*m_encoder).read(1, 7).text, QByteArray(text, 7));

    const char open[] = {'1', '2', '3'};
    QVERIFY(m_encoder->encodeData(M, 12, true, anyMask, open, sizeof open));
    QCOMPARE(toText(blocksOf(*m_encoder)), QString("0:3"));
}

void tst_QrEncoder::smallestVersion()
{
    QVERIFY(encode(*m_encoder, "12345", M, 0));
    QCOMPARE(m_encoder->version, 1);

    // 14 bytes are the most that version 1-M takes; 42 bytes that of 3-M.
    QVERIFY(encode(*m_encoder, byteText(14), M, 0));
    QCOMPARE(m_encoder->version, 1);
    QVERIFY(encode(*m_encoder, byteText(15), M, 0));
    QCOMPARE(m_encoder->version, 2);
    QVERIFY(encode(*m_encoder, byteText(42), M, 0));
    QCOMPARE(m_encoder->version, 3);

    // 180 bytes are the most that version 9-M takes, 213 that of 10-M.
    QVERIFY(encode(*m_encoder, byteText(180), M, 0));
    QCOMPARE(m_encoder->version, 9);
    QVERIFY(encode(*m_encoder, byteText(181), M, 0));
    QCOMPARE(m_encoder->version, 10);
    QVERIFY(encode(*m_encoder, byteText(214), M, 0));
    QCOMPARE(m_encoder->version, 11);
}

void tst_QrEncoder::givenVersion()
{
    QVERIFY(encode(*m_encoder, "123"));
    QCOMPARE(m_encoder->version, 12);
    QCOMPARE(m_encoder->moduleCount, 65);

    QVERIFY(encode(*m_encoder, "123", M, 26, false));
    QCOMPARE(m_encoder->version, 26);
    QVERIFY(encode(*m_encoder, "123", M, 40, false));
    QCOMPARE(m_encoder->version, 40);

    // Version 12-M takes 287 bytes, version 13-M 331.
    QVERIFY(encode(*m_encoder, byteText(287), M, 12, false));
    QCOMPARE(m_encoder->version, 12);
    QVERIFY(!encode(*m_encoder, byteText(288), M, 12, false));
    QVERIFY(encode(*m_encoder, byteText(288), M, 12, true));
    QCOMPARE(m_encoder->version, 13);
    QVERIFY(encode(*m_encoder, byteText(332), M, 12, true));
    QCOMPARE(m_encoder->version, 14);
}

void tst_QrEncoder::longestByteText()
{
    QVERIFY(encode(*m_encoder, byteText(2331)));
    QCOMPARE(m_encoder->version, 40);
    QCOMPARE(m_encoder->moduleCount, 177);
    QVERIFY(!encode(*m_encoder, byteText(2332)));

    // The longest texts of all: 2953 bytes and 7089 digits at level L.
    QVERIFY(encode(*m_encoder, byteText(2953), L));
    QVERIFY(!encode(*m_encoder, byteText(2954), L));
    QCOMPARE(m_encoder->dataBitCount, -1);
    QVERIFY(encode(*m_encoder, QByteArray(7089, '7'), L));
    QVERIFY(!encode(*m_encoder, QByteArray(7090, '7'), L));
}

void tst_QrEncoder::versionGroupChange()
{
    // Version 26-M takes 2544 digits.
    const QByteArray longest(2544, '4');
    QVERIFY(encode(*m_encoder, longest));
    QCOMPARE(m_encoder->version, 26);
    QCOMPARE(StreamReader(*m_encoder).read(1, longest.size()).text, longest);

    const QByteArray longer(2545, '4');
    QVERIFY(encode(*m_encoder, longer));
    QCOMPARE(m_encoder->version, 27);
    QCOMPARE(StreamReader(*m_encoder).read(2, longer.size()).text, longer);

    // A given version of group 2 takes its widths even for a text that fits version 1.
    QVERIFY(encode(*m_encoder, "123", M, 27));
    QCOMPARE(m_encoder->version, 27);
    QCOMPARE(StreamReader(*m_encoder).read(2, 3).text, QByteArray("123"));

    // The blocks, too, are joined anew: in group 0 eleven characters stay apart from the digits.
    const QByteArray mixed = "1234567A" + byteText(300);
    QVERIFY(encode(*m_encoder, mixed, M, 1));
    QVERIFY(m_encoder->version >= 10);
    QVERIFY(blocksOf(*m_encoder) == segmentedSlowly(mixed, 1));
}

void tst_QrEncoder::numberOfBlocksIsLimited()
{
    // Digits and letters by turns: 2956 blocks of one byte, joined to one that fits at level L.
    const QByteArray most = QByteArray("1A").repeated(1478);
    QVERIFY(encode(*m_encoder, most, L));
    QCOMPARE(toText(blocksOf(*m_encoder)), QString("1:2956"));

    QVERIFY(!encode(*m_encoder, most + "1", L));
    QVERIFY(!encode(*m_encoder, QByteArray("1A").repeated(3000), L));
    QVERIFY(!encode(*m_encoder, QByteArray("1A").repeated(500000), L));
}

void tst_QrEncoder::givenMask()
{
    QVERIFY(encode(*m_encoder, "mask", M, 12, true, 0));
    const auto first = std::make_unique<QrEncoder>(*m_encoder);
    for (int mask = 0; mask < 8; ++mask) {
        QVERIFY(encode(*m_encoder, "mask", M, 12, true, mask));
        QCOMPARE(m_encoder->maskingNumber, mask);
        // An area without function patterns, right of the alignment pattern at 6, 32.
        for (int x = 9; x < 30; ++x) {
            for (int y = 9; y < 30; ++y) {
                const bool changed = m_encoder->modules[x][y] != first->modules[x][y];
                QCOMPARE(changed, maskInverts(mask, y, x) != maskInverts(0, y, x));
            }
        }
    }
}

void tst_QrEncoder::choosesTheLowestPenalty()
{
    QRandomGenerator random(12);
    QVector<int> chosen(8, 0);
    QVector<QPair<QByteArray, int>> cases; // text and version
    for (int version = 1; version <= 40; ++version) {
        cases.append({"A", version});
    }
    for (int i = 0; i < 150; ++i) {
        cases.append({mixedText(random, 1 + i % 12), 1 + i % 14});
    }
    for (const int version : {15, 20, 26, 27, 28, 33, 40}) {
        cases.append({mixedText(random, version * 3), version});
    }

    for (const auto& [text, version] : cases) {
        QVector<int> penalties;
        for (int mask = 0; mask < 8; ++mask) {
            QVERIFY(encode(*m_encoder, text, L, version, true, mask));
            penalties.append(SlowPenalty(m_encoder->modules, m_encoder->moduleCount).total());
        }
        auto* const lowest = std::min_element(penalties.begin(), penalties.end());
        const int expected = int(lowest - penalties.begin());

        QVERIFY(encode(*m_encoder, text, L, version, true, anyMask));
        QCOMPARE(m_encoder->maskingNumber, expected);
        ++chosen[expected];
    }
    QVERIFY(!chosen.contains(0)); // each mask has won at least once
}

void tst_QrEncoder::refusals_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("version");
    QTest::addColumn<int>("mask");

    QTest::newRow("empty text") << QByteArray("") << int(Q) << 12 << 3;
    QTest::newRow("too long for version 40") << byteText(2332) << int(M) << 0 << 5;
    QTest::newRow("overflow of the stream") << byteText(5000) << int(H) << 12 << -1;
    QTest::newRow("longer than any text") << QByteArray(100000, '1') << int(L) << 12 << -1;
    QTest::newRow("too many blocks") << QByteArray("1A").repeated(1479) << int(L) << 12 << 2;
    QTest::newRow("needs a higher version") << byteText(288) << int(M) << 12 << 7;
    QTest::newRow("needs the next group") << byteText(181) << int(M) << 9 << 7;
    QTest::newRow("no such version") << QByteArray("1") << int(M) << 41 << 0;
    QTest::newRow("no such level") << QByteArray("1") << 4 << 12 << 0;
    QTest::newRow("no such mask") << QByteArray("1") << int(M) << 12 << 8;
}

void tst_QrEncoder::refusals()
{
    QFETCH(QByteArray, text);
    QFETCH(int, level);
    QFETCH(int, version);
    QFETCH(int, mask);

    QVERIFY(encode(*m_encoder, "an earlier symbol", L, 5));
    const auto before = std::make_unique<QrEncoder>(*m_encoder);

    const bool accepted = m_encoder->encodeData(level, version, false, mask, text.constData(), 0);
    QVERIFY(!accepted);
    QCOMPARE(m_encoder->level, level);
    QCOMPARE(m_encoder->maskingNumber, mask);
    QCOMPARE(m_encoder->moduleCount, before->moduleCount);
    QVERIFY(m_encoder->modules == before->modules);
}

QTEST_GUILESS_MAIN(tst_QrEncoder)
#include "tst_QrEncoder.moc"
