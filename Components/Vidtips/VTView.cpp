#include "VTView.h"

#include "VTAccessibility_p.h"
#include "VTContentNames_p.h"
#include "VTIndex.h"
#include "VTManager.h"
#include "VTRemainingWindows_p.h"
#include "VTScriptWatch_p.h"
#include "VTTipContent_p.h"
#include "VTUserInterfaces_p.h"
#include "VTViewLoader_p.h"
#include "VTViewReach_p.h"
#include "VTViewWork_p.h"
#include "VTWidget.h"

#include <QtCore/QFileInfo>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtDeclarative/QDeclarativeContext>
#include <QtDeclarative/QDeclarativeEngine>
#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QScreen>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsScene>

namespace Vidtips {

namespace {

/** Milliseconds between two looks at whether scripts and the host have returned. */
constexpr int returnInterval = 10;

Qt::CursorShape cursorShape(const QString &name)
{
    if (name == QLatin1String("PointingHandCursor"))
        return Qt::PointingHandCursor;
    if (name == QLatin1String("IBeamCursor"))
        return Qt::IBeamCursor;
    if (name == QLatin1String("BlankCursor"))
        return Qt::BlankCursor;
    return Qt::ArrowCursor;
}

QString describe(const QString &pattern, const QDeclarativeError &error)
{
    return pattern.arg(QString::number(error.line()), QString::number(error.column()), error.description());
}

/** Returns how large all screens together are. What is larger cannot be seen, but its picture fills memory.
 */
QSize largestSize()
{
    const QScreen *const screen = QGuiApplication::primaryScreen();
    return screen ? screen->virtualSize() : QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
}

} // namespace

struct VIDTIPS_NO_EXPORT VTView::Private
{
    QPointer<VTManager> manager;
    QPointer<VTXmlElement> content;
    QString packageRoot;
    bool stayOpen = false;
    bool reserved = false;
    QMetaObject::Connection titleWatch;
    QUrl cutSource; ///< the last user interface that was told to be too large
    QTimer settling; ///< to what waits until scripts and the host have returned
    bool hasEnded = false;
    const std::shared_ptr<VTViewWork> work = std::make_shared<VTViewWork>();
    VTScriptWatch scripts;
    VTViewReach reach;
    VTViewLoader loader;
    VTContentNames names;

    explicit Private(VTView *view);
    VTInterface *host() const { return manager ? manager->vtinterface() : nullptr; }
};

VTView::Private::Private(VTView *view)
    : scripts(
        view->engine(), [view] { return view->setting(ScriptTimeout, 5000).toInt(); },
        [this] { loader.stop(); })
    , reach(view)
    , loader(view, &reach, &scripts)
    , names(view, &scripts)
{
}

/** Marks that the host is being called, most often from a handler of the QML; its time is not the QML's. */
class VIDTIPS_NO_EXPORT VTView::HostCall
{
public:
    explicit HostCall(VTView *view)
        : m_scope(view->d->work)
        , m_view(view)
    {
        view->d->scripts.beginPause();
    }
    ~HostCall()
    {
        if (m_view)
            m_view->d->scripts.endPause();
    }

private:
    Q_DISABLE_COPY(HostCall)
    const VTViewWork::Scope m_scope;
    const QPointer<VTView> m_view;
};

VTView::VTView(VTManager *manager, QWidget *parent)
    : QDeclarativeView(parent)
    , d(new Private(this))
{
    d->manager = manager;
    takePictureLimit();
    connect(engine(), &QDeclarativeEngine::warnings, this, &VTView::handleWarnings);
    setFrameShape(QFrame::NoFrame);
    setFrameShadow(QFrame::Plain);
    setResizeMode(QDeclarativeView::SizeViewToRootObject);
    setMaximumSize(largestSize());
    d->settling.setSingleShot(true);
    connect(&d->settling, &QTimer::timeout, this, &VTView::settle);
}

VTView::~VTView()
{
    // The QML goes first, with everything it names still alive; what the engine keeps beyond it finds
    // nothing.
    d->loader.unload();
    d->reach.shut();
    disconnect(engine(), nullptr, this, nullptr);
    disconnect(this, &QDeclarativeView::statusChanged, this, &VTView::statusHasChanged);
    d->names.clear();
    d->work->release(d->content);
}

// What the view has on the stack comes back to it, and to its engine.
void VTView::end()
{
    if (!isAtWork()) {
        delete this;
        return;
    }
    d->hasEnded = true;
    d->manager = nullptr;
    setParent(nullptr);
    VTRemainingWindows::add(this);
    settleSoon();
}

bool VTView::isAtWork() const
{
    return d->work->isInHand() || engine()->property("running").toBool();
}

// The host, or a handler of the QML, may be in an event loop of its own.
void VTView::settle()
{
    if (isAtWork())
        d->settling.start(returnInterval);
    else if (d->hasEnded)
        deleteLater();
    else if (!d->loader.loadPending())
        Q_EMIT statusChanged(status());
}

void VTView::settleSoon()
{
    d->settling.start(0);
}

bool VTView::isSettling() const
{
    return d->settling.isActive();
}

std::shared_ptr<VTViewWork> VTView::work() const
{
    return d->work;
}

bool VTView::stayOpen() const
{
    return d->stayOpen;
}

void VTView::setStayOpen(bool stayOpen)
{
    d->stayOpen = stayOpen;
    Q_EMIT stayOpenChanged();
}

bool VTView::reserved() const
{
    return d->reserved;
}

void VTView::setReserved(bool reserved)
{
    if (d->reserved == reserved)
        return;
    d->reserved = reserved;
    Q_EMIT reservedChanged();
}

VTXmlElement *VTView::content() const
{
    return d->content;
}

void VTView::setContent(VTXmlElement *content)
{
    d->content = content;
    if (content)
        d->reach.beginContent(*content);
}

bool VTView::documentationAvailable() const
{
    return setting(AllowDocumentation, QVariant()).toBool();
}

QString VTView::resourceDirectoryPath() const
{
    return categoryPath(QStringLiteral("resource"), QStringLiteral("Resources"), ResourceFolder);
}

QDir VTView::packageRoot() const
{
    return QDir(d->packageRoot);
}

void VTView::setPackageRoot(const QDir &packageRoot)
{
    d->packageRoot = packageRoot.absolutePath();
}

QString VTView::uiRootFilePath() const
{
    if (setting(UseSimpleUserInterface, false).toBool())
        return simpleRootFilePath();
    return findComponent(QStringLiteral("ui"), FullUserInterface, defaultFullInterface(), QString());
}

QString VTView::simpleRootFilePath() const
{
    return findComponent(QStringLiteral("simple"), SimpleUserInterface, defaultSimpleInterface(), QString());
}

QString VTView::categoryPath(const QString &attribute, const QString &defaultPath, contextKey key) const
{
    QString path;
    if (d->content && d->content->hasAttribute(attribute)) {
        path = d->content->attribute(attribute);
    } else if (d->content) {
        const auto *const parent = qobject_cast<VTXmlElement *>(d->content->parent());
        if (parent)
            path = parent->attribute(attribute);
    }
    return path.isEmpty() ? setting(key, defaultPath).toString() : path;
}

QString VTView::findComponent(const QString &attribute, contextKey key, const QString &defaultPath,
                              const QString &fileName) const
{
    QString path = categoryPath(attribute, defaultPath, key);
    const VTIndex *const index = d->manager ? d->manager->index() : nullptr;
    if (!index || !d->content)
        return path;
    const QStringList candidates = index->componentPathsForElement(d->content, path);
    for (const QString &candidate : candidates) {
        const QFileInfo file(fileName.isEmpty() ? candidate : QDir(candidate).absoluteFilePath(fileName));
        if (file.exists() && d->reach.admitsFile(file.absoluteFilePath()))
            return file.absoluteFilePath();
    }
    return path;
}

void VTView::exposeContent(const QString &dataLocation)
{
    const QPointer<VTView> self(this);
    d->loader.unloadForeign();
    if (!self)
        return;
    const VTViewWork::Scope scope(d->work);
    setMaximumSize(largestSize());
    if (!d->names.expose(dataLocation))
        return;
    disconnect(d->titleWatch);
    if (d->content)
        d->titleWatch = connect(d->content, &VTXmlElement::contentChanged, this,
                                [this] { VTAccessibility::titleHasChanged(this); });
    VTAccessibility::contentHasChanged(this);
}

void VTView::releaseContent(VTXmlElement *content)
{
    const QPointer<VTXmlElement> old(content);
    const std::shared_ptr<VTViewWork> work = d->work;
    QObject *const tree = treeOf(content);
    if (!tree || isInTree(d->content, tree))
        return;
    d->names.leave(tree);
    work->release(old);
}

void VTView::deleteContent(VTXmlElement *content)
{
    delete treeOf(content);
}

void VTView::statusHasChanged(QDeclarativeView::Status s)
{
    if (s != QDeclarativeView::Error)
        return;
    reportAll(QStringLiteral("Error %1:%2:%3"), errors());
}

void VTView::loadQML(const QString &path)
{
    d->loader.load(path);
}

void VTView::forgetUserInterface()
{
    d->loader.forget();
}

bool VTView::isWaiting() const
{
    return d->loader.isWaiting();
}

const VTViewReach &VTView::reach() const
{
    return d->reach;
}

bool VTView::openForContent(const QUrl &url)
{
    const HostCall call(this);
    return d->manager && d->manager->openExternalResource(url.toString());
}

// The base class waits for the end of the pass through the event loop, and a window that is shown before
// would have the size of other content.
void VTView::fitToContent()
{
    const VTViewWork::Scope scope(d->work);
    const QPointer<VTView> self(this);
    const QSize wanted = rootObject() ? sizeHint().boundedTo(maximumSize()) : QSize();
    if (!wanted.isEmpty() && wanted != size())
        resize(wanted);
    if (self)
        tellIfCutOff();
}

void VTView::tellIfCutOff()
{
    const QSize whole = sizeHint();
    const QSize most = maximumSize();
    if (!rootObject() || whole == whole.boundedTo(most) || d->cutSource == source())
        return;
    d->cutSource = source();
    warn(
        QStringLiteral("%1 is %2 x %3 pixels, which is more than the screens have, and is cut off at %4 x %5")
            .arg(source().toLocalFile(), QString::number(whole.width()), QString::number(whole.height()),
                 QString::number(most.width()), QString::number(most.height())));
}

void VTView::handleWarnings(const QList<QDeclarativeError> &warnings)
{
    reportAll(QStringLiteral("QML Warning %1:%2:%3"), warnings);
}

void VTView::reportAll(const QString &pattern, const QList<QDeclarativeError> &errors)
{
    const QPointer<VTView> self(this);
    for (const QDeclarativeError &error : errors) {
        if (self)
            report(describe(pattern, error));
    }
}

void VTView::resetState()
{
    const VTViewWork::Scope scope(d->work);
    if (rootObject())
        rootObject()->setProperty("state", QStringLiteral(""));
}

void VTView::managerContextSettingDidChange(VTContextKey key)
{
    if (key == AllowDocumentation)
        Q_EMIT documentationAvailableChanged();
    else if (key == ScriptTimeout)
        d->scripts.restart();
    else if (key == PictureLimit)
        takePictureLimit();
}

// A module from elsewhere decodes all pictures.
void VTView::takePictureLimit()
{
    engine()->setProperty("pictureLimit", setting(PictureLimit, 0).toInt());
}

void VTView::setItemCursor(QDeclarativeItem *object, const QString &shape, const QString &)
{
    if (!object)
        return;
    if (shape.isEmpty())
        object->unsetCursor();
    else
        object->setCursor(cursorShape(shape));
}

void VTView::debugLog(const QString &msg)
{
    report(msg);
}

void VTView::openExternalResource(const QString &resourceLocator)
{
    const VTViewWork::Scope scope(d->work);
    if (d->manager)
        d->manager->openExternalResource(resourceLocator);
}

QString VTView::interpolate(const QString &string)
{
    return d->manager ? d->manager->interpolate(string) : string;
}

void VTView::setOverrideCursor(const QString &shape)
{
    if (!shape.isEmpty())
        QGuiApplication::setOverrideCursor(cursorShape(shape));
}

void VTView::restoreOverrideCursor()
{
    QGuiApplication::restoreOverrideCursor();
}

QString VTView::translate(const QString &string, const QString &context)
{
    if (!d->host())
        return string;
    const HostCall call(this);
    const QPointer<VTManager> manager = d->manager;
    // A kept tip has another package, and so another catalogue, than the one on screen.
    const QPointer<VTView> before = manager->setAskingView(this);
    const QString translation = d->host()->translateString(string, context);
    if (manager)
        manager->setAskingView(before);
    return translation;
}

QString VTView::findResource(const QString &relativePath)
{
    return findComponent(QStringLiteral("resources"), ResourceFolder, QStringLiteral("Resources"),
                         relativePath);
}

void VTView::notification(int notification, const QVariant &value)
{
    if (!d->host() || !d->content)
        return;
    const HostCall call(this);
    d->host()->notification(static_cast<VTNotification>(notification), value,
                            d->content->attribute(QStringLiteral("key")));
}

// The user interface comes first. A container of the host's is the host's to close.
void VTView::keyPressEvent(QKeyEvent *event)
{
    const QPointer<VTView> self(this);
    QDeclarativeView::keyPressEvent(event);
    const bool isEscape = event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier;
    if (!self || event->isAccepted() || !isEscape || !d->reserved || window() != parentWidget())
        return;
    event->accept();
    window()->close();
}

void VTView::resizeEvent(QResizeEvent *)
{
    if (!rootObject())
        return;
    const QPointer<VTView> self(this);
    scene()->setSceneRect(rootObject()->boundingRect());
    Q_EMIT contentSizeChanged();
    if (self)
        tellIfCutOff();
}

// Handlers run in events, and the view in which they run must not end before these do.
bool VTView::event(QEvent *event)
{
    const VTViewWork::Scope scope(d->work);
    return QDeclarativeView::event(event);
}

bool VTView::viewportEvent(QEvent *event)
{
    const VTViewWork::Scope scope(d->work);
    return QDeclarativeView::viewportEvent(event);
}

VTManager *VTView::manager() const
{
    return d->manager;
}

QVariant VTView::setting(contextKey key, const QVariant &defaultValue) const
{
    return d->manager ? d->manager->context().get(key, defaultValue) : defaultValue;
}

void VTView::report(const QString &message)
{
    const HostCall call(this);
    if (d->manager)
        d->manager->handleMessage(VTMessageDebug, message);
}

void VTView::warn(const QString &message)
{
    const HostCall call(this);
    if (d->manager)
        d->manager->handleMessage(VTMessageWarning, message);
}

} // namespace Vidtips
