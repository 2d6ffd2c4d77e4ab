#pragma once

#include <Vidtips/VTExport.h>

#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <memory>

class VTContext;

QT_BEGIN_NAMESPACE
class QMouseEvent;
class QWidget;
QT_END_NAMESPACE

namespace Vidtips {

class VTIndex;
class VTManager;

/** The type of a message; the lower, the more severe. Other values may occur. */
enum VTMessageType : int {
    VTMessageError = 100,
    VTMessageWarning = 200,
    VTMessageInformation = 300,
    VTMessageDebug = 400,
};

/** What kind of thing the host is asked to open. */
enum VTExternalResourceType : int {
    VTResourceTopic = 1, ///< a bare name without "/": a topic of the host's documentation.
    VTResourceUrl = 2, ///< a valid URL with a scheme.
    VTResourcePath = 3, ///< any other text with a "/".
};

/** What kind of window the host is asked to supply. */
enum VTWindowType : int {
    VTWindowTooltip = 1, ///< a container for a tip that the user wants to keep.
};

/**
 * What the host is told. The library sends the two listed here; the QML of a content package may send any
 * other number, which reaches the host unchanged.
 */
enum VTNotification : int {
    /**
     * Content was found for a key; value: an empty string, text: the key. Nothing is on screen yet, and what
     * the host does now, such as setting global properties, is seen by the tip; VTInterface::isVisible()
     * tells whether the one before still is. A tip that is on screen for that key already is not told of
     * again.
     */
    VTNotificationShown = 0,
    VTNotificationHidden = 6, ///< the tip's window was hidden; value: "hide", text: the content's key.
};

/**
 * The door between the host application and the library.
 *
 * The host derives from this class, overrides what it wants to customise, and creates one instance with its
 * settings, the folders that hold its content packages and, if it has one, its own index. The constructor
 * creates the VTManager and loads every package before it returns. While it runs, the virtual operations of
 * the derived class are not yet in effect: messages of the start-up reach the default handleMessage().
 *
 * The virtual operations are called on the GUI thread. They may show another tip, close or delete the tip's
 * window, or destroy the interface itself with `delete`; the library then stops what it was doing.
 */
class VIDTIPS_EXPORT VTInterface : public QObject
{
    Q_OBJECT

public:
    /**
     * Creates the manager with a copy of the settings in @p context. @p dataPaths are folders with content
     * packages. @p index is the host's own index, which stays the host's; with null the manager makes one.
     */
    VTInterface(VTContext &context, const QStringList &dataPaths, VTIndex *index);

    /** Destroys the manager. Reserved windows stay with the host, the index is not deleted. */
    ~VTInterface() override;

    /**
     * Returns a widget that takes in a tip which the user wants to keep, or null to let the tip become a
     * window of its own. The widget stays the host's: a window or dialog, a QDockWidget, a QMdiSubWindow, or
     * a widget inside a window, such as a dock's or a tab's page. One that places its children itself, like a
     * scroll area, is refused with a warning. The default returns null.
     */
    virtual QWidget *createWindow(VTWindowType type);

    /**
     * Returns the key whose content is shown for @p object. The default returns its object name, and an empty
     * string for null.
     */
    virtual QString keyForObject(QObject *object);

    /**
     * Opens @p resource outside the library and tells whether that worked. The default opens URLs in the
     * desktop's way and refuses everything else.
     */
    virtual bool openExternalResource(VTExternalResourceType type, const QString &resource);

    /**
     * Receives a message whose type is not above the threshold of Vidtips::MessageThreshold. The default
     * writes it to Qt's debug output.
     */
    virtual void handleMessage(VTMessageType type, const QString &message);

    /** Returns the translation of @p text. The default is VTManager::translateString(). */
    virtual QString translateString(const QString &text, const QString &context);

    /**
     * Returns the shortcut text to show for @p object, which may be null; an empty text keeps @p shortcut,
     * the one that the content of @p key names. The default returns @p shortcut.
     */
    virtual QString shortCutForObject(const QString &key, QObject *object, const QString &shortcut);

    /**
     * Receives a VTNotification or a number that a package's QML sent. The default does nothing. What is told
     * of as VTNotificationShown has been found and comes on screen only after this returns. The window may be
     * deleted within, also when it tells that it was hidden.
     */
    virtual void notification(VTNotification type, const QVariant &value, const QString &text);

    /**
     * Returns the key whose content is shown for what @p object has at the global @p position: a row, a tab,
     * a menu's entry. A tip that belongs to only a part of @p object gets that part's rectangle, in global
     * coordinates, as @p rect, which is null before. VTCommandLocator has answers for Qt's own widgets. The
     * default returns keyForObject().
     */
    virtual QString keyAt(QObject *object, const QPoint &position, QRect &rect);

    /** Returns the settings in effect: the manager's copy, not the object that the host passed in. */
    VTContext &context();

    /** Returns the settings in effect; see the other form. */
    const VTContext &context() const;

    /** Returns the manager, for example to raise reserved windows. It lives as long as the interface. */
    VTManager *manager() const;

    /** Returns every key that has content. */
    QStringList keys();

    /** Returns an attribute of the content of @p key; see VTManager::vidTipAttribute(). */
    QString vidTipAttribute(const QString &key, const QString &attribute, const QString &defaultValue);

    /** Sets a value for placeholders in texts; see VTManager::interpolate(). */
    void setGlobalProperty(const QString &name, const QVariant &value);

    /** Shows the tip of @p key for @p object; see VTManager::show(). */
    bool show(const QString &key, const QPoint &position, QObject *object);

    /** Shows the tip of @p key for the part @p rect, in global coordinates, of @p object. */
    bool show(const QString &key, const QPoint &position, QObject *object, const QRect &rect);

    /** Hides the tip on screen at once. Kept tips stay. */
    void hide();

    /** Tells whether a tip is on screen, also one that fades in or out; kept tips do not count. */
    bool isVisible() const;

    /**
     * Hides the tip on a click outside it. For hosts that do not let the manager filter the application's
     * events (Vidtips::InstallEventFilter); always returns false.
     */
    bool mouseButtonEventFilter(QObject *watched, QMouseEvent *event);

    /** Keeps the tip alive by the pointer's movement. For the same hosts; always returns false. */
    bool mouseMoveEventFilter(QObject *watched, QMouseEvent *event);

private:
    Q_DISABLE_COPY(VTInterface)
    struct Private;
    std::unique_ptr<Private> const d;
};

} // namespace Vidtips
