#pragma once

#include <QtCore/QBasicTimer>
#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <memory>

class VTContext;

namespace Vidtips {

/**
 * Prepares what the first tip needs, while the host has nothing else to do.
 *
 * Each piece waits for an idle moment of its own and takes a few milliseconds at most. The user interfaces of
 * packages are compiled on a thread, for Qt's cache of compiled QML, which takes an engine only where that
 * does not have them; those of restricted content are left to its view. Nothing happens until the event loop
 * runs. GUI thread only.
 */
class VTPreparation : public QObject
{
    Q_OBJECT

public:
    /** Takes from @p settings, which must live as long, which user interface is shown. */
    explicit VTPreparation(const VTContext &settings);

    /** Gives up what is under way. */
    ~VTPreparation() override;

    /** Adds the package at the path @p package. */
    void addPackage(const QString &package);

    /** Begins with all packages anew if @p key names another user interface. */
    void settingChanged(int key);

    /** Tells whether nothing is left to do. */
    bool isDone() const;

protected:
    /** Does one piece. */
    void timerEvent(QTimerEvent *event) override;

private:
    Q_DISABLE_COPY(VTPreparation)
    QString interfaceOf(const QString &package) const;
    void compileNext();
    void compiled();

    const VTContext &m_settings;
    QStringList m_packages;
    int m_next = 0; ///< the first package that has not been looked at
    bool m_hasTypes = false;
    QBasicTimer m_idle;
    std::unique_ptr<QObject> m_compiling;
};

} // namespace Vidtips
