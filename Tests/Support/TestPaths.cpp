#include "TestPaths.h"

namespace TestPaths {

QString source(const QString &path)
{
    return QStringLiteral(SOURCE_DIR "/") + path;
}

QString built(const QString &path)
{
    return QStringLiteral(BINARY_DIR "/") + path;
}

} // namespace TestPaths
