#include "qdeclarativeguardedfiles_p.h"

#include "qdeclarativeguard.h"
#include "qdeclarativeguards_p.h"
#include "qdeclarativeworkers_p.h"

#include <QtCore/QFileInfo>

#include <private/qabstractfileengine_p.h>

namespace {

thread_local int pauses = 0;

/** A file that is not there. */
class Absent : public QAbstractFileEngine
{
public:
    bool open(QIODevice::OpenMode) override
    {
        setError(QFile::PermissionsError, QStringLiteral("Access denied"));
        return false;
    }
};

class Handler : public QAbstractFileEngineHandler
{
public:
    QAbstractFileEngine *create(const QString &path) const override
    {
        const auto guard = pauses > 0 ? nullptr : QDeclarativeGuards::of(QDeclarativeWorkers::engine());
        if (!guard)
            return nullptr;
        const QDeclarativeGuardedFiles::Pause pause;
        const QUrl url =
            path.startsWith(QLatin1Char(':')) ? QUrl(QLatin1String("qrc") + path) : QUrl::fromLocalFile(path);
        // A pipe keeps the thread waiting, and whoever ends the thread.
        const QFileInfo file(path);
        const bool isFile = file.isFile() || !file.exists();
        if (isFile && guard->admits(url))
            return nullptr;
        guard->refused(QDeclarativeGuards::message(url), QUrl(), 0);
        return new Absent;
    }
};

} // namespace

void QDeclarativeGuardedFiles::install()
{
    static const Handler handler;
    Q_UNUSED(handler)
}

QDeclarativeGuardedFiles::Pause::Pause()
{
    ++pauses;
}

QDeclarativeGuardedFiles::Pause::~Pause()
{
    --pauses;
}
