// Runs a fuzz target on every file of a folder, for builds without libFuzzer.

#include <QDir>
#include <QFile>

#include <cstdio>

#include "fuzz/FuzzSupport.h"

int main(int argc, char** argv)
{
    const QDir corpus(QString::fromLocal8Bit(argc > 1 ? argv[1] : ""));
    const QFileInfoList inputs = argc > 1 ? corpus.entryInfoList(QDir::Files) : QFileInfoList();
    if (inputs.isEmpty()) {
        std::fprintf(stderr, "Usage: %s CORPUS, a folder with inputs\n", argv[0]);
        return 2;
    }
    for (const QFileInfo& input : inputs) {
        QFile file(input.filePath());
        // Named before it is run: the last name is the one that broke it.
        std::printf("%s\n", qPrintable(input.fileName()));
        std::fflush(stdout);
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "Cannot be read: %s\n", qPrintable(input.filePath()));
            return 2;
        }
        const QByteArray bytes = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                               static_cast<std::size_t>(bytes.size()));
    }
    return 0;
}
