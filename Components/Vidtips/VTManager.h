#pragma once

#include <Vidtips/VTExport.h>

#include "VTInterface.h"

#include <QtCore/QLocale>
#include <QtCore/QMap>
#include <QtCore/QObject>

#include <memory>

QT_BEGIN_NAMESPACE
class QFileInfo;
QT_END_NAMESPACE

namespace Vidtips {

class VTView;
class VTWidget;
class VTXmlElement;

/**
 * The centre of the library: it loads the content packages, finds and translates content, and decides when a
 * tip is shown and hidden.
 *
 * A VTInterface creates and owns the one manager. All of it runs on the GUI thread. Every message of the
 * library goes through handleMessage().
 */
class VIDTIPS_EXPORT VTManager : public QObject
{
    Q_OBJECT

public:
    /**
     * Copies the settings of @p context, opens @p index (or one of its own, when null), loads the packages in
     * @p dataPaths and registers the library's types with the QML engine. Neither @p host, which may be null,
     * nor the index is owned; an index that the manager made can be had from index() and deleted after the
     * manager.
     */
    VTManager(VTInterface *host, VTContext &context, const QStringList &dataPaths, VTIndex *index);

    /**
     * Schedules the current tooltip window for deletion and leaves reserved windows alone. Clears
     * Qt::WA_AlwaysShowToolTips on every top-level widget, whoever set it.
     */
    ~VTManager() override;

    /** Returns the settings in effect. */
    VTContext &context();

    /** Returns the settings in effect. */
    const VTContext &context() const;

    /** Returns the index; null when its owner has deleted it. */
    VTIndex *index() const;

    /** Returns the current tooltip window; null before the first show(). */
    VTWidget *widget() const;

    /** Returns the host's interface. */
    VTInterface *vtinterface() const;

    /** Returns the data paths as they were given to the constructor. */
    QStringList searchPaths() const;

    /** Returns the canonical paths of the data folders that were loaded, newest first, each once. */
    QStringList loadedPaths() const;

    /** Loads every package in the folders @p dataPaths. What is not a folder is skipped. */
    void loadDataPath(const QStringList &dataPaths);

    /** Indexes the control files of the package folder @p package, not those in sub-folders of its control
     * folder. */
    void loadPackage(const QFileInfo &package);

    /** Offers one control file of a package to the index; both paths are canonical. */
    void indexControFile(const QString &controlFile, const QString &package);

    /** Passes @p message to the host unless its type is above the threshold of Vidtips::MessageThreshold. */
    void handleMessage(VTMessageType type, const QString &message);

    /**
     * Returns the locale of content and translations: Vidtips::ContentLocale, else
     * Vidtips::UserInterfaceLocale, else the system's.
     */
    QLocale currentLocale() const;

    /**
     * Returns the content of @p key in the content locale, else in the user-interface locale, else null.
     * Unset locales are "en_US" here. @p directory becomes the folder of the control file, @p depth its depth
     * below the package, and @p root the container that holds the element: deleting it, which is up to the
     * caller, deletes the element. They have no meaning when null is returned.
     */
    VTXmlElement *retrieve(const QString &key, QString &directory, int &depth, VTXmlElement *&root);

    /**
     * Returns an attribute of the content of @p key, or @p defaultValue. Content that is on screen, then
     * content of reserved windows, is preferred to the index, also when it lacks the attribute.
     */
    QString vidTipAttribute(const QString &key, const QString &attribute, const QString &defaultValue);

    /**
     * Returns the translation of @p text in @p context by the catalogue that the content on screen finds for
     * currentLocale(). Without a window or a catalogue the text comes back unchanged; a text that the
     * catalogue lacks gives an empty string.
     */
    QString translateString(const QString &text, const QString &context);

    /** Fills the placeholders of @p text from the global properties. */
    QString interpolate(const QString &text) const;

    /**
     * Replaces each placeholder "%(name)s" in @p text by the property of that name. Unknown names and null
     * values leave the placeholder as it is. Placeholders in a value are replaced in turn, so a value must
     * not contain its own placeholder: the expansion would never end.
     */
    QString interpolate(const QString &text, const QMap<QString, QVariant> &properties) const;

    /** Sets a global property for interpolate(). Texts on screen are not refreshed. */
    void setGlobalProperty(const QString &name, const QVariant &value);

    /** Returns every key that the index knows. */
    QStringList keys();

    /** Returns the host's key of @p object. */
    QString keyForObject(QObject *object);

    /** Returns the host's key of what @p object has at the global @p position; see VTInterface::keyAt(). */
    QString keyAt(QObject *object, const QPoint &position, QRect &rect);

    /**
     * Shows the tip of @p key beside the global @p position. @p object is what the tip is about; @p rect is
     * its rectangle in global coordinates, or a null rectangle. Returns whether a tip is on screen for it;
     * without content a visible tip is hidden unless @p position is in its safe zone.
     */
    bool show(const QString &key, const QPoint &position, QObject *object, const QRect &rect);

    /** Hides the tip on screen at once, without fading. Kept tips stay. */
    void hide();

    /** Tells whether a tip is on screen, also one that fades in or out; kept tips do not count. */
    bool isVisible() const;

    /**
     * Looks the content of the tip on screen and of kept ones up anew and shows it in their place. Where
     * there is none any more, the tip on screen is hidden and kept ones stay as they are. While a tip is
     * being shown, this waits until it is; while it is under way, another call has no effect. It happens by
     * itself some time after the application's language has changed (QEvent::LanguageChange), when the host
     * has had its turn to change settings.
     */
    void refresh();

    /**
     * Has all QML read anew from the files, for hosts that run while a user interface is being written: that
     * of the tip on screen and of kept ones at once, as by refresh(), any other when its tip is shown next.
     * Pictures are not read again.
     */
    void reloadUserInterfaces();

    /** Returns what the tip on screen was shown for; null when that is gone, and while there is no tip. */
    QObject *referenceObject() const;

    /**
     * Returns the rectangle that the tip on screen was shown for, in global coordinates; null where it is for
     * a whole object, and while there is no tip.
     */
    QRect referenceRect() const;

    /** Returns the global position that the tip on screen was shown for, or that the last one was. */
    QPoint referencePosition() const;

    /** Returns where a tip goes for the pointer at @p position: off by Vidtips::TooltipOffset. */
    QPoint tooltipPosition(const QPoint &position, QWidget *widget) const;

    /**
     * Hands the current tooltip window @p window over to the host, which owns it from then on, and makes a
     * fresh one. @p hostWindow becomes the container that the host supplies, or null. Returns false for any
     * other window.
     */
    bool reserve(VTWidget *window, QWidget *&hostWindow);

    /** Raises every reserved window. */
    void raise();

    /** Makes every reserved window stay on top, or not. */
    void setStayOnTop(bool on);

    /** Hides the tip on a click outside it, unless it is to stay open. Always returns false. */
    bool mouseButtonEventFilter(QObject *watched, QMouseEvent *event);

    /** Tells the visible tip where the pointer is. Always returns false. */
    bool mouseMoveEventFilter(QObject *watched, QMouseEvent *event);

    /** Has the host open a URL, a topic or a path, as far as the settings allow; tells whether it did. */
    bool openExternalResource(const QString &resource);

protected:
    /** Makes the tooltip window and its view if there are none, else moves the window to @p parent. */
    void initializeTooltipWindow(QWidget *parent);

    /** Watches the whole application when Vidtips::InstallEventFilter asks for it. */
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Q_DISABLE_COPY(VTManager)
    VIDTIPS_NO_EXPORT bool watchesOver(QObject *watched, QEvent *event);
    VIDTIPS_NO_EXPORT bool hideForEvent(QObject *watched, QMouseEvent *event);
    VIDTIPS_NO_EXPORT bool showForEvent(QObject *watched, const QPoint &position);
    friend class VTTipShowing;
    friend class VTView;
    friend class VTWidget;
    VIDTIPS_NO_EXPORT VTXmlElement *lookUp(const QString &key, QString &directory, int &depth,
                                           VTXmlElement *&root);
    VIDTIPS_NO_EXPORT void tellOfBrokenFiles();
    VIDTIPS_NO_EXPORT void refreshLater();
    VIDTIPS_NO_EXPORT void refreshWindows();
    VIDTIPS_NO_EXPORT VTView *setAskingView(VTView *view);

    struct Private;
    std::unique_ptr<Private> const d;
};

} // namespace Vidtips
