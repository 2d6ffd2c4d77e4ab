#pragma once

#include <Vidtips/VTExport.h>

#include "VTContext.h"
#include "VTXmlElement.h"

#include <QtCore/QDir>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtDeclarative/QDeclarativeError>
#include <QtDeclarative/QDeclarativeItem>
#include <QtDeclarative/QDeclarativeView>

#include <memory>

namespace Vidtips {

class VTManager;
class VTViewReach;
class VTViewWork;

/**
 * The QML view of a tip. It chooses and loads the user interface for its content, offers that QML a small set
 * of properties and operations, and reports QML errors as messages of type VTMessageDebug.
 *
 * The QML sees the content as the context property "vidtip", which is set anew on every show; the property
 * `content` notifies nobody. A view may outlive its manager: settings then have their defaults, nothing is
 * found and nothing is sent.
 */
class VIDTIPS_EXPORT VTView : public QDeclarativeView
{
    Q_OBJECT
    /** The tip must not hide by itself; the QML sets it. */
    Q_PROPERTY(bool stayOpen READ stayOpen WRITE setStayOpen NOTIFY stayOpenChanged)
    /** The tip is to become a window of its own; the QML sets it. */
    Q_PROPERTY(bool reserved READ reserved WRITE setReserved NOTIFY reservedChanged)
    /** The content that is shown; null at first. */
    Q_PROPERTY(VTXmlElement *content READ content WRITE setContent NOTIFY contentChanged)
    /** Topics of the host's documentation can be opened (Vidtips::AllowDocumentation). */
    Q_PROPERTY(bool documentationAvailable READ documentationAvailable NOTIFY documentationAvailableChanged)
    /** The resource folder's name or path, as content and settings give it. */
    Q_PROPERTY(QString resourceDirectory READ resourceDirectoryPath)

public:
    /** Makes a view without content. @p manager is not owned and may be null. */
    VTView(VTManager *manager, QWidget *parent);

    /** Deletes the content that is still set, with its root container. */
    ~VTView() override;

    /** Tells whether the tip must not hide by itself. */
    bool stayOpen() const;

    /** Sets stayOpen. Emits stayOpenChanged(), also when the value stays the same. */
    void setStayOpen(bool stayOpen);

    /** Tells whether the tip is, or is to become, a window of its own. */
    bool reserved() const;

    /** Sets reserved. Emits reservedChanged() when the value changes. */
    void setReserved(bool reserved);

    /** Returns the content, or null. */
    VTXmlElement *content() const;

    /** Stores @p content, which may be null. Emits nothing and deletes nothing. */
    void setContent(VTXmlElement *content);

    /** Returns the setting Vidtips::AllowDocumentation; false when it is not set. */
    bool documentationAvailable() const;

    /** Returns the setting Vidtips::ResourceFolder, unless the content's attribute "resource" says otherwise.
     */
    QString resourceDirectoryPath() const;

    /** Returns the folder of the current package. */
    QDir packageRoot() const;

    /** Sets the folder of the current package. Its absolute path is kept. */
    void setPackageRoot(const QDir &packageRoot);

    /** Returns the path of the user interface's QML file for the content, or its unresolved relative path. */
    QString uiRootFilePath() const;

    /**
     * Returns where a category of files is: the value of @p attribute of the content or of its parent
     * element, else the setting @p key, else @p defaultPath.
     */
    QString categoryPath(const QString &attribute, const QString &defaultPath, contextKey key) const;

    /**
     * Returns the absolute path of the first existing file @p fileName in the folders that the index names
     * for the content and the category; with an empty @p fileName the category path is itself the file.
     * Returns the unresolved category path when there is none.
     */
    QString findComponent(const QString &attribute, contextKey key, const QString &defaultPath,
                          const QString &fileName) const;

    /**
     * Names the current content "vidtip", @p dataLocation "dataLocation" and this view "vidTipView" in the
     * engine's root context, where the QML finds them.
     */
    void exposeContent(const QString &dataLocation);

    /**
     * Deletes @p content, which may be null and which the view no longer holds, with its root container.
     * "vidtip" is moved on to the current content first if it still names something in that tree.
     */
    void releaseContent(VTXmlElement *content);

    /** Deletes @p content, which may be null, with its root container: its parent, if that is an element. */
    static void deleteContent(VTXmlElement *content);

Q_SIGNALS:
    /** Emitted whenever stayOpen is set. */
    void stayOpenChanged();
    /** Emitted when reserved changed. */
    void reservedChanged();
    /** Never emitted. */
    void contentChanged();
    /** Emitted when the view took the size of the user interface. */
    void contentSizeChanged();
    /** Emitted when the setting Vidtips::AllowDocumentation was set. */
    void documentationAvailableChanged();
    /** Never emitted. */
    void resourceDirectoryChanged();

public Q_SLOTS:
    /** Reports the errors of a user interface that did not load. */
    void statusHasChanged(QDeclarativeView::Status s);

    /**
     * Loads the user interface at @p path, unless it is the one that is loaded. A missing file is reported
     * and leaves the current one. While a script of the view or the host that it has called is on the stack,
     * that waits until they have returned, and the last path counts. One that was stopped twice for tips of
     * the content's package, as its scripts ran for longer than Vidtips::ScriptTimeout, is reported and
     * leaves none, until the file changes. So does one outside the packages of the content while
     * Vidtips::RestrictContent is set.
     */
    void loadQML(const QString &path);

    /** Reports warnings of the QML engine. */
    void handleWarnings(const QList<QDeclarativeError> &warnings);

    /** Sets the root object's state to its default one. */
    void resetState();

    /**
     * Emits documentationAvailableChanged() when @p key is Vidtips::AllowDocumentation; the scripts that run
     * have the new time when it is Vidtips::ScriptTimeout, and pictures that are decoded from now on the new
     * bound when it is Vidtips::PictureLimit.
     */
    void managerContextSettingDidChange(VTContextKey key);

public:
    /**
     * Gives @p object the cursor named @p shape ("PointingHandCursor", "ArrowCursor", "IBeamCursor",
     * "BlankCursor"; any other name is the arrow), or none of its own when @p shape is empty. @p tag has no
     * effect.
     */
    Q_INVOKABLE void setItemCursor(QDeclarativeItem *object, const QString &shape, const QString &tag);

    /** Sends @p msg to the host as a message of type VTMessageDebug. */
    Q_INVOKABLE void debugLog(const QString &msg);

    /** Has the host open @p resourceLocator; see VTManager::openExternalResource(). */
    Q_INVOKABLE void openExternalResource(const QString &resourceLocator);

    /** Returns @p string with its placeholders filled; see VTManager::interpolate(). */
    Q_INVOKABLE QString interpolate(const QString &string);

    /** Gives the whole application the cursor named @p shape until restoreOverrideCursor(). */
    Q_INVOKABLE void setOverrideCursor(const QString &shape);

    /** Takes back one setOverrideCursor(). */
    Q_INVOKABLE void restoreOverrideCursor();

    /** Returns the host's translation of @p string. */
    Q_INVOKABLE QString translate(const QString &string, const QString &context);

    /** Returns the absolute path of the resource @p relativePath, or the resource folder if there is none. */
    Q_INVOKABLE QString findResource(const QString &relativePath);

    /** Sends @p notification with @p value and the content's key to the host, if there is content. */
    Q_INVOKABLE void notification(int notification, const QVariant &value);

protected:
    /** Makes the scene as large as the user interface. The base class has no part in it. */
    void resizeEvent(QResizeEvent *event) override;

    /** Keeps the view from ending while it handles an event. */
    bool event(QEvent *event) override;

    /** Keeps the view from ending while it handles an event of its viewport. */
    bool viewportEvent(QEvent *event) override;

    /** Gives the key to the user interface; Escape closes a kept tip that is a window, unless that wants it.
     */
    void keyPressEvent(QKeyEvent *event) override;

private:
    Q_DISABLE_COPY(VTView)
    // Which says by the view that a clip is missing or broken.
    friend class VTVideoComponent;
    // Which has the view refuse a catalogue.
    friend class VTManager;
    friend class VTTipShowing;
    friend class VTWidget;
    // Its parts.
    friend class VTContentNames;
    friend class VTViewLoader;
    friend class VTViewReach;
    class HostCall;
    VIDTIPS_NO_EXPORT VTManager *manager() const;
    VIDTIPS_NO_EXPORT QVariant setting(contextKey key, const QVariant &defaultValue) const;
    VIDTIPS_NO_EXPORT void report(const QString &message);
    VIDTIPS_NO_EXPORT void warn(const QString &message);
    VIDTIPS_NO_EXPORT void reportAll(const QString &pattern, const QList<QDeclarativeError> &errors);
    VIDTIPS_NO_EXPORT void takePictureLimit();
    VIDTIPS_NO_EXPORT const VTViewReach &reach() const;
    VIDTIPS_NO_EXPORT bool openForContent(const QUrl &url);
    VIDTIPS_NO_EXPORT void forgetUserInterface();
    VIDTIPS_NO_EXPORT QString simpleRootFilePath() const;
    VIDTIPS_NO_EXPORT bool isWaiting() const;
    VIDTIPS_NO_EXPORT void fitToContent();
    VIDTIPS_NO_EXPORT void tellIfCutOff();
    VIDTIPS_NO_EXPORT void end();
    VIDTIPS_NO_EXPORT bool isAtWork() const;
    VIDTIPS_NO_EXPORT void settle();
    VIDTIPS_NO_EXPORT void settleSoon();
    VIDTIPS_NO_EXPORT bool isSettling() const;
    VIDTIPS_NO_EXPORT std::shared_ptr<VTViewWork> work() const;

    struct Private;
    std::unique_ptr<Private> const d;
};

} // namespace Vidtips
