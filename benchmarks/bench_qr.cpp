// How long a text takes to its finished symbol at level M with the mask chosen by penalty: our
// encoder against libqrencode and qrcodegen, with the same text and version.

#include <benchmark/benchmark.h>
#include <qrcodegen/QrCode.hpp>
#include <qrencode.h>

#include <cstdint>
#include <string>
#include <vector>

#include "benchmarks/RatioReporter.h"
#include "render/QrEncoder.h"

namespace {

constexpr int levelM = 1;
constexpr int anyMask = -1;

struct Case
{
    std::string name;
    int version;
    std::string text;
};

std::string lowerCaseText(int length)
{
    std::string text = "https://example.org/";
    for (int i = 0; static_cast<int>(text.size()) < length; ++i) {
        text += static_cast<char>('a' + i * i % 26);
    }
    return text;
}

std::string repeated(const std::string& text, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

const std::string diplomaLine = "Диплом № 107704 0012345, Иванов Пётр Ильич, 12.06.2024; ";

std::vector<Case> makeCases()
{
    return {
        {"v12 short number", 12, "107704 0012345"},
        {"v12 Cyrillic", 12, repeated(diplomaLine, 2)},
        {"v12 full", 12, lowerCaseText(287)},
        {"v20 full", 20, lowerCaseText(660)},
        {"v26 Cyrillic", 26, repeated(diplomaLine, 11)},
        {"v40 full", 40, lowerCaseText(2331)},
    };
}

void runOurs(benchmark::State& state, const Case& input)
{
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): a plain work area
    QrEncoder encoder;
    for ([[maybe_unused]] auto _ : state) {
        const bool done =
            encoder.encodeData(levelM, input.version, false, anyMask, input.text.c_str(), 0);
        benchmark::DoNotOptimize(encoder.modules.data());
        if (!done || encoder.version != input.version) {
            state.SkipWithError("unexpected version");
            break;
        }
    }
}

// The peers are given one 8-bit segment, which spares them the search for a better one.

void runQrencode(benchmark::State& state, const Case& input)
{
    for ([[maybe_unused]] auto _ : state) {
        QRcode* const symbol =
            QRcode_encodeString8bit(input.text.c_str(), input.version, QR_ECLEVEL_M);
        const bool done = symbol != nullptr && symbol->version == input.version;
        QRcode_free(symbol);
        if (!done) {
            state.SkipWithError("unexpected version");
            break;
        }
    }
}

void runQrcodegen(benchmark::State& state, const Case& input)
{
    using qrcodegen::QrCode;
    using qrcodegen::QrSegment;
    const std::vector<std::uint8_t> bytes(input.text.begin(), input.text.end());
    for ([[maybe_unused]] auto _ : state) {
        const QrCode symbol =
            QrCode::encodeSegments({QrSegment::makeBytes(bytes)}, QrCode::Ecc::MEDIUM,
                                   input.version, input.version, anyMask, false);
        benchmark::DoNotOptimize(symbol.getModule(0, 0));
    }
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<Case> cases = makeCases();
    for (const Case& input : cases) {
        const auto add = [&input](const char* subject, auto run) {
            benchmark::RegisterBenchmark(
                (input.name + "/" + subject).c_str(),
                [&input, run](benchmark::State& state) { run(state, input); })
                ->Unit(benchmark::kMicrosecond);
        };
        add("ours", runOurs);
        add("libqrencode", runQrencode);
        add("qrcodegen", runQrcodegen);
    }

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    RatioReporter reporter(RatioReporter::Clock::Cpu);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
