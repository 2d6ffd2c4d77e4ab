#include "VTContentGuard_p.h"

#include <QtCore/QUrl>

#include <utility>

namespace Vidtips {

namespace {

struct Module
{
    const char *name;
    int major;
    int firstMinor;
    int lastMinor;
};

// Those of QML 1, and the library's own.
constexpr Module modules[] = {
    {"QtQuick", 1, 0, 1},
    {"Qt", 4, 7, 7},
    {"Qt.labs.particles", 1, 0, 0},
    {"Qt.labs.folderlistmodel", 1, 0, 0},
    {"com.corvale.vidtips.qml", 1, 0, 0},
};

// Content may ask for something else again and again.
constexpr int mostMessages = 100;

QString placeOf(const QString &package, const QString &file, int line)
{
    QString place = QStringLiteral("Package \"%1\"").arg(package);
    if (!file.isEmpty())
        place += QStringLiteral(", %1").arg(file);
    return line > 0 ? place + QStringLiteral(", line %1").arg(line) : place;
}

} // namespace

VTContentGuard::VTContentGuard(const std::function<bool(const QUrl &)> &opener)
    : m_opener(opener)
{
}

bool VTContentGuard::isSupported()
{
#if __has_include(<QtDeclarative/QDeclarativeGuard>)
    return true;
#else
    return false;
#endif
}

// What the engine keeps is what other content was let have.
void VTContentGuard::apply(const std::shared_ptr<VTContentGuard> &guard, const VTReach &reach,
                           QDeclarativeEngine *engine)
{
    engine->clearComponentCache();
    {
        const QMutexLocker locker(&guard->m_lock);
        guard->m_gate = VTContentGate(reach.folders);
    }
#if __has_include(<QtDeclarative/QDeclarativeGuard>)
    engine->setGuard(reach.isRestricted ? guard : nullptr);
#endif
}

void VTContentGuard::beginContent(const QString &package, const QString &file)
{
    const QMutexLocker locker(&m_lock);
    m_package = package;
    m_file = file;
    m_told.clear();
}

void VTContentGuard::shut()
{
    m_opener = nullptr;
    const QMutexLocker locker(&m_lock);
    m_gate = VTContentGate();
}

// The file system may take its time, and no other thread has to wait for that.
bool VTContentGuard::admits(const QUrl &url)
{
    QMutexLocker locker(&m_lock);
    const VTContentGate gate = m_gate;
    locker.unlock();
    return gate.admits(url);
}

bool VTContentGuard::admitsModule(const QString &name, int major, int minor)
{
    for (const Module &module : modules) {
        if (name == QLatin1String(module.name))
            return major == module.major && minor >= module.firstMinor && minor <= module.lastMinor;
    }
    return false;
}

bool VTContentGuard::openUrlExternally(const QUrl &url)
{
    return m_opener && m_opener(url);
}

void VTContentGuard::refused(const QString &what, const QUrl &file, int line)
{
    {
        const QMutexLocker locker(&m_lock);
        const QString path = file.isEmpty() ? m_file : file.toDisplayString(QUrl::PreferLocalFile);
        const QString message =
            placeOf(m_package, path, line) + QStringLiteral(": restricted content is refused ") + what;
        if (m_told.contains(message) || m_told.count() > mostMessages)
            return;
        m_told.insert(message);
        m_messages.append(m_told.count() > mostMessages ? placeOf(m_package, m_file, 0)
                                  + QStringLiteral(": restricted content is refused more than is told here")
                                                        : message);
    }
    Q_EMIT added();
}

QStringList VTContentGuard::take()
{
    const QMutexLocker locker(&m_lock);
    return std::exchange(m_messages, {});
}

} // namespace Vidtips
