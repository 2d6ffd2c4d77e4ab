#pragma once

#include <Vidtips/VTCommandLocator.h>
#include <Vidtips/VTContext.h>
#include <Vidtips/VTInterface.h>

#include <QtCore/QPointer>

class Commands;
class MessageLog;
class QWidget;
struct Options;

/** The application's side of the tips: keys, shortcuts, messages, windows and the way to the outside. */
class TipHost : public Vidtips::VTInterface
{
    Q_OBJECT

public:
    /** What the tips' user interface asks the application to do, by VTView::notification(). */
    enum Request {
        CloseWindow = 100 ///< The user closed a pinned tip from its own keyboard.
    };

    /** Makes the settings that @p options ask for. */
    static void fill(VTContext &context, const Options &options);

    TipHost(VTContext &context, const Options &options, Commands *commands, MessageLog *log);
    ~TipHost() override;

    /** Pinned tips move into a window of the application instead of becoming one themselves. */
    void setReservesInContainer(bool on) { m_container = on; }
    void setFallback(bool on) { m_fallback = on; }
    void setMotion(bool on);
    void setLanguage(const QString &localeName);

    /** The key of the tip on screen; empty while there is none. */
    QString shownKey() const { return m_shownKey; }

    /** Shows the tip of the object under the pointer at once, whatever key tips are bound to. */
    bool showUnderPointer();

    /** Opens the help named by the tip of @p key; false when it names none. */
    bool openHelp(const QString &key);

    QWidget *createWindow(Vidtips::VTWindowType type) override;
    QString keyAt(QObject *object, const QPoint &position, QRect &rect) override;
    bool openExternalResource(Vidtips::VTExternalResourceType type, const QString &resource) override;
    void handleMessage(Vidtips::VTMessageType type, const QString &message) override;
    QString shortCutForObject(const QString &key, QObject *object, const QString &shortcut) override;
    void notification(Vidtips::VTNotification type, const QVariant &value, const QString &text) override;

Q_SIGNALS:
    /** Help on @p topic is to be shown inside the application. */
    void topicRequested(const QString &topic);

    void tipShown(const QString &key);
    void tipHidden(const QString &key);

private:
    bool confirms(const QUrl &url) const;
    void describe(const QString &key);

    Vidtips::VTCommandLocator m_locator;
    Commands *m_commands;
    QPointer<MessageLog> m_log;
    QString m_shownKey;
    bool m_container;
    bool m_fallback;
};
