#include "FuzzTarget.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>

#include <cstdint>

namespace {
// Reports of bad input are expected; writing them out takes longer than most inputs do.
void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) { }

int argumentCount = 1;
char programName[] = "fuzz";
char *arguments[] = {programName, nullptr};
} // namespace

QString writeFuzzFile(const QString &relativePath, const QByteArray &content)
{
    static const QTemporaryDir folder;
    QString path = QFileInfo(folder.path()).canonicalFilePath() + QLatin1Char('/') + relativePath;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        QDir().mkpath(QFileInfo(path).path());
        FUZZ_CHECK(file.open(QIODevice::WriteOnly));
    }
    FUZZ_CHECK(file.write(content) == content.size());
    return path;
}

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(&dropMessage);
    theOne<QApplication>(argumentCount, arguments);
    // Before Qt lets go of what it keeps per thread, which then nothing refers to.
    std::atexit(&checkForLeaks);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // A copy, so that reading past its end is noticed.
    fuzz(QByteArray(reinterpret_cast<const char *>(data), int(size)));
    return 0;
}
