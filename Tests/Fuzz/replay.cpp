// Gives a target each of the files in the folders that are named, without libFuzzer.

#include <QtCore/QDirIterator>
#include <QtCore/QFile>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

bool replay(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(path));
        return false;
    }
    // The last line before a crash names the culprit.
    std::fprintf(stderr, "%s\n", qPrintable(path));
    const QByteArray input = file.readAll();
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(input.constData()), size_t(input.size()));
    return true;
}

int replayFolder(const QString &folder)
{
    int inputs = 0;
    QDirIterator files(folder, QDir::Files);
    while (files.hasNext()) {
        if (!replay(files.next()))
            return 0;
        ++inputs;
    }
    return inputs;
}

} // namespace

int main(int argc, char **argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    LLVMFuzzerTestOneInput(nullptr, 0);
    for (int i = 1; i < argc; ++i) {
        const int inputs = replayFolder(QFile::decodeName(argv[i]));
        if (!inputs) {
            std::fprintf(stderr, "no inputs in %s\n", argv[i]);
            return 1;
        }
        std::fprintf(stderr, "%s: %d inputs\n", argv[i], inputs);
    }
    return 0;
}
