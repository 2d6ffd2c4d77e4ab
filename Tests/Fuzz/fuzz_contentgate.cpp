// What restricted content may read, against what the system says of the file that a path opens.
//
// The input is an address, with %R for the folder that is open, which has links that lead out of it. Whatever
// is admitted and is there must be a file below that folder, by the number that the system gives it.

#include "FuzzTarget.h"

#include <Vidtips/VTContentGate_p.h>

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QSet>
#include <QtCore/QUrl>

#include <sys/stat.h>

using Vidtips::VTContentGate;

namespace {

using Number = QPair<quint64, quint64>;

/** Returns the number of what is at @p path; that of nothing where there is nothing. */
Number numberOf(const QByteArray &path)
{
    struct stat status = {};
    return stat(path.constData(), &status) == 0 ? Number(status.st_dev, status.st_ino) : Number();
}

/** The folder that is open, and what lies in it. */
struct OpenFolder
{
    OpenFolder()
        : root(QFileInfo(QFileInfo(writeFuzzFile(QStringLiteral("open/a b/file"), {})).path()).path())
        , gate({root})
    {
        const QString outside = QFileInfo(writeFuzzFile(QStringLiteral("outside/secret"), {})).path();
        QFile::link(outside, root + QStringLiteral("/out"));
        QFile::link(outside + QStringLiteral("/secret"), root + QStringLiteral("/s"));
        QFile::link(outside + QStringLiteral("/none"), root + QStringLiteral("/n"));
        QFile::link(root, root + QStringLiteral("/a b/up"));
        QFile::link(QStringLiteral("loop"), root + QStringLiteral("/loop"));
        inside.insert(numberOf(QFile::encodeName(root)));
        QDirIterator walk(root, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks,
                          QDirIterator::Subdirectories);
        while (walk.hasNext())
            inside.insert(numberOf(QFile::encodeName(walk.next())));
    }

    const QString root;
    const VTContentGate gate;
    QSet<Number> inside;
};

bool isInsideOrNothing(const OpenFolder &folder, const QString &path)
{
    const Number number = numberOf(QFile::encodeName(path));
    return number == Number() || folder.inside.contains(number);
}

} // namespace

void fuzz(const QByteArray &input)
{
    const auto &folder = theOne<OpenFolder>();
    const QString text = QString::fromUtf8(input).replace(QLatin1String("%R"), folder.root);
    if (folder.gate.admitsFile(text))
        FUZZ_CHECK(isInsideOrNothing(folder, text));
    const QUrl url(text);
    if (!folder.gate.admits(url))
        return;
    FUZZ_CHECK(url.isEmpty() || url.isLocalFile() || url.scheme().isEmpty()
               || url.scheme() == QLatin1String("image"));
    if (url.isLocalFile())
        FUZZ_CHECK(isInsideOrNothing(folder, url.toLocalFile()));
    if (url.scheme().isEmpty())
        FUZZ_CHECK(isInsideOrNothing(folder, url.path(QUrl::FullyDecoded)));
}
