#pragma once

#include "VTContentGate_p.h"
#include "VTReach_p.h"

#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtDeclarative/QDeclarativeEngine>

#include <functional>
#include <memory>

// A module from elsewhere does not have it.
#if __has_include(<QtDeclarative/QDeclarativeGuard>)
#include <QtDeclarative/QDeclarativeGuard>
#else
class QDeclarativeGuard
{
public:
    QDeclarativeGuard() = default;
    virtual ~QDeclarativeGuard() = default;
    static QString problemOfPicture(const QString &) { return {}; }
    virtual bool admits(const QUrl &url) = 0;
    virtual bool admitsModule(const QString &name, int major, int minor) = 0;
    virtual bool openUrlExternally(const QUrl &url) = 0;
    virtual void refused(const QString &what, const QUrl &file, int line) = 0;
};
#endif

namespace Vidtips {

/**
 * Keeps the content of a view inside its packages, and has the view hear of what it refuses.
 *
 * The QML module asks it on any thread, and may do so when the view is gone. What has no thread named is for
 * the GUI thread.
 */
class VTContentGuard : public QObject, public QDeclarativeGuard
{
    Q_OBJECT

public:
    /** Opens addresses for content with @p opener, which tells whether it did. */
    explicit VTContentGuard(const std::function<bool(const QUrl &)> &opener);

    /** Tells whether the QML module has the means to restrict content. */
    static bool isSupported();

    /** Has @p guard decide about what content in @p engine reaches from now on, as @p reach says. */
    static void apply(const std::shared_ptr<VTContentGuard> &guard, const VTReach &reach,
                      QDeclarativeEngine *engine);

    /** Names the content that what follows is refused to: its @p package, and the @p file that it is of. */
    void beginContent(const QString &package, const QString &file);

    /** Refuses everything from now on, and opens nothing any more: the view goes. */
    void shut();

    bool admits(const QUrl &url) override;
    bool admitsModule(const QString &name, int major, int minor) override;
    bool openUrlExternally(const QUrl &url) override;
    void refused(const QString &what, const QUrl &file, int line) override;

    /** Returns what there is to tell the host, in its order, and forgets it. Any thread. */
    QStringList take();

Q_SIGNALS:
    /** There is something to tell; on the thread on which it was refused. */
    void added();

private:
    std::function<bool(const QUrl &)> m_opener;
    QMutex m_lock; ///< for what follows
    VTContentGate m_gate;
    QString m_package;
    QString m_file;
    QSet<QString> m_told; ///< of this content
    QStringList m_messages;
};

} // namespace Vidtips
