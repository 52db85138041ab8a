#include "Harness.h"

#include <QDirIterator>
#include <QFile>

#include <cstdio>

static void run(const QByteArray &data)
{
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(data.constData()),
                           static_cast<std::size_t>(data.size()));
}

/// Every beginning of the input, and the input with every one of its bytes damaged.
static void runDamaged(const QByteArray &whole)
{
    for (qsizetype i = 0; i < whole.size(); ++i) {
        run(whole.first(i));
        for (const int byte : {0x00, 0x0f, 0x22, 0x3c, 0x7f, 0xa1, 0xd1, 0xff}) {
            QByteArray damaged = whole;
            damaged[i] = char(byte);
            run(damaged);
        }
    }
}

/// Runs the inputs in the folders that are named. Ends with 1 when there was none.
int main(int argc, char **argv)
{
    int inputs = 0;
    for (int i = 1; i < argc; ++i) {
        QDirIterator files(QFile::decodeName(argv[i]), QDir::Files);
        while (files.hasNext()) {
            QFile file(files.next());
            if (!file.open(QIODevice::ReadOnly))
                return 1;
            const QByteArray data = file.readAll();
            std::printf("%s\n", qPrintable(file.fileName()));
            std::fflush(stdout);
            run(data);
            runDamaged(data);
            ++inputs;
        }
    }
    return inputs > 0 ? 0 : 1;
}
