#include <QtTest>

#include <QRandomGenerator>

#include <memory>

#include "QrReference.h"
#include "render/QrEncoder.h"
#include "render/qr/QrMaskTrial.h"

namespace {

constexpr int levelM = 1;
using Matrix = QrEncoder::Matrix;

void setLine(Matrix& modules, bool byRow, int line, int position, bool dark)
{
    (byRow ? modules[position][line] : modules[line][position]) = dark ? QrEncoder::DataBit : 0;
}

} // namespace

/// The penalty by bit lines against the one module by module, on matrices without function
/// patterns but for the format information, so that every rule comes up in every place.
class tst_QrMaskTrial : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void anyShareOfDarkModules();
    void runsAndFindersAtAnyPlace();
    void plainAreas();
    void functionModulesAreNotMasked();

private:
    void fill(QRandomGenerator& random, int side, int darkPercent);
    void layPattern(QRandomGenerator& random, int side, int mask);
    void comparePenalties(int side);

    std::unique_ptr<Matrix> m_modules;
};

void tst_QrMaskTrial::init()
{
    m_modules = std::make_unique<Matrix>();
    for (auto& column : *m_modules) {
        column.fill(0);
    }
}

void tst_QrMaskTrial::fill(QRandomGenerator& random, int side, int darkPercent)
{
    for (int x = 0; x < side; ++x) {
        for (int y = 0; y < side; ++y) {
            const bool dark = random.bounded(100) < darkPercent;
            (*m_modules)[x][y] = dark ? QrEncoder::DataBit : 0;
        }
    }
}

/// Compares the penalties of all masks, having reserved the format modules.
void tst_QrMaskTrial::comparePenalties(int side)
{
    const QVector<QPoint> first = firstFormatModules();
    const QVector<QPoint> second = secondFormatModules(side);
    const QPoint alwaysDark(8, side - 8);
    for (const QPoint place : first + second + QVector<QPoint>{alwaysDark}) {
        (*m_modules)[place.x()][place.y()] = QrEncoder::Function;
    }

    QrMaskTrial trial(*m_modules, side, levelM);
    const auto masked = std::make_unique<Matrix>();
    for (int mask = 0; mask < 8; ++mask) {
        for (int x = 0; x < side; ++x) {
            for (int y = 0; y < side; ++y) {
                const int module = (*m_modules)[x][y];
                const bool isData = (module & QrEncoder::Function) == 0;
                const bool dark = (module & (QrEncoder::DataBit | QrEncoder::FunctionDark)) != 0;
                (*masked)[x][y] = dark != (isData && maskInverts(mask, y, x)) ? 1 : 0;
            }
        }
        for (int bit = 0; bit < 15; ++bit) {
            const int dark = maskedFormatInformation[levelM][mask] >> bit & 1;
            (*masked)[first[bit].x()][first[bit].y()] = std::uint8_t(dark);
            (*masked)[second[bit].x()][second[bit].y()] = std::uint8_t(dark);
        }
        (*masked)[alwaysDark.x()][alwaysDark.y()] = 1;

        QCOMPARE(trial.penalty(mask), SlowPenalty(*masked, side).total());
    }
}

void tst_QrMaskTrial::anyShareOfDarkModules()
{
    QRandomGenerator random(4);
    for (int version = 1; version <= 40; ++version) {
        const int side = version * 4 + 17;
        for (int darkPercent = 10; darkPercent <= 90; darkPercent += 10) {
            fill(random, side, darkPercent);
            comparePenalties(side);
            if (QTest::currentTestFailed()) {
                return;
            }
        }
    }
}

/// Lays a run or a finder pattern with light surroundings, which may reach past the edges, so that
/// `mask` uncovers it.
void tst_QrMaskTrial::layPattern(QRandomGenerator& random, int side, int mask)
{
    const QByteArray pattern =
        random.bounded(2) == 0 ? QByteArray("1011101") : QByteArray(4 + random.bounded(8), '1');
    const QByteArray laid = "0000" + pattern + "0000";
    const bool byRow = random.bounded(2) == 0;
    const int line = random.bounded(side);
    const int start = random.bounded(-8, side - pattern.size() + 1);

    for (int i = 0; i < laid.size(); ++i) {
        const int position = start + i;
        const bool surrounding = i < 4 || i >= laid.size() - 4;
        const bool leftAsItWas = surrounding && random.bounded(4) == 0;
        if (position < 0 || position >= side || leftAsItWas) {
            continue;
        }
        const bool inverted =
            byRow ? maskInverts(mask, line, position) : maskInverts(mask, position, line);
        setLine(*m_modules, byRow, line, position, (laid[i] == '1') != inverted);
    }
}

void tst_QrMaskTrial::runsAndFindersAtAnyPlace()
{
    QRandomGenerator random(5);
    for (int round = 0; round < 200; ++round) {
        const int side = (1 + round % 14) * 4 + 17;
        const int mask = random.bounded(8);
        fill(random, side, 50);
        for (int i = 0; i < side; ++i) {
            layPattern(random, side, mask);
        }
        comparePenalties(side);
        if (QTest::currentTestFailed()) {
            return;
        }
    }
}

void tst_QrMaskTrial::plainAreas()
{
    for (const int side : {21, 61, 65, 125, 129, 177}) {
        for (const std::uint8_t module : {std::uint8_t(0), std::uint8_t(QrEncoder::DataBit)}) {
            for (int x = 0; x < side; ++x) {
                std::fill_n((*m_modules)[x].begin(), side, module);
            }
            comparePenalties(side);
            if (QTest::currentTestFailed()) {
                return;
            }
        }
    }
}

void tst_QrMaskTrial::functionModulesAreNotMasked()
{
    QRandomGenerator random(6);
    for (const int side : {21, 65, 177}) {
        fill(random, side, 50);
        for (int i = 0; i < side * side / 3; ++i) {
            const int dark = random.bounded(2) * QrEncoder::FunctionDark;
            (*m_modules)[random.bounded(side)][random.bounded(side)] =
                std::uint8_t(QrEncoder::Function | dark);
        }
        comparePenalties(side);
        if (QTest::currentTestFailed()) {
            return;
        }
    }
}

QTEST_GUILESS_MAIN(tst_QrMaskTrial)
#include "tst_QrMaskTrial.moc"
