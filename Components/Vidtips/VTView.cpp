#include "VTView.h"

#include "VTAccessibility_p.h"
#include "VTContentGuard_p.h"
#include "VTIndex.h"
#include "VTManager.h"
#include "VTReach_p.h"
#include "VTRemainingWindows_p.h"
#include "VTScriptWatch_p.h"
#include "VTStoppedFiles_p.h"
#include "VTTipContent_p.h"
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

/** How often content is named once more for bindings that have had other content shown. */
constexpr int mostRounds = 5;

/** How many user interfaces may load the next as soon as they are made. */
constexpr int mostLoadsInARow = 10;

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

bool isInTree(const QObject *object, const QObject *root)
{
    while (object && object != root)
        object = object->parent();
    return object;
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
    QString dataLocation;
    QPointer<VTXmlElement> exposed;
    QMetaObject::Connection exposedGone;
    QMetaObject::Connection titleWatch;
    int exposures = 0; ///< that were asked for
    bool isExposing = false;
    QUrl pendingSource;
    bool isForgotten = false; ///< what the engine has of the user interface is to be read anew
    int loadsInARow = 0; ///< each asked for by the one before, while that was being made
    QUrl cutSource; ///< the last user interface that was told to be too large
    QTimer settling; ///< to what waits until scripts and the host have returned
    bool hasEnded = false;
    const std::shared_ptr<VTViewWork> work = std::make_shared<VTViewWork>();
    std::unique_ptr<VTScriptWatch> scriptWatch;
    std::shared_ptr<VTContentGuard> guard;
    VTReach reach; ///< of the user interface that was loaded last

    VTInterface *host() const { return manager ? manager->vtinterface() : nullptr; }
};

/** Marks that the host is being called, most often from a handler of the QML; its time is not the QML's. */
class VIDTIPS_NO_EXPORT VTView::HostCall
{
public:
    explicit HostCall(VTView *view)
        : m_scope(view->d->work)
        , m_view(view)
    {
        view->d->scriptWatch->beginPause();
    }
    ~HostCall()
    {
        if (m_view)
            m_view->d->scriptWatch->endPause();
    }

private:
    Q_DISABLE_COPY(HostCall)
    const VTViewWork::Scope m_scope;
    const QPointer<VTView> m_view;
};

VTView::VTView(VTManager *manager, QWidget *parent)
    : QDeclarativeView(parent)
    , d(new Private)
{
    d->manager = manager;
    takePictureLimit();
    d->scriptWatch.reset(new VTScriptWatch(engine(), [this] { stop(); }));
    d->guard = std::make_shared<VTContentGuard>([this](const QUrl &url) { return openForContent(url); });
    // Whoever asks holds locks of the engine's.
    connect(d->guard.get(), &VTContentGuard::added, this, &VTView::tellRefusals, Qt::QueuedConnection);
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
    replaceSource(QUrl());
    tellRefusals();
    d->guard->shut();
    disconnect(engine(), nullptr, this, nullptr);
    disconnect(this, &QDeclarativeView::statusChanged, this, &VTView::statusHasChanged);
    nameContent(nullptr);
    rootContext()->setContextProperty(QStringLiteral("vidTipView"), static_cast<QObject *>(nullptr));
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
    d->settling.start(0);
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
    else if (!isLoaded(d->pendingSource))
        load();
    else
        Q_EMIT statusChanged(status());
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
        d->guard->beginContent(content->attribute(QStringLiteral("VTPackagName")),
                               content->attribute(QStringLiteral("VTLocation")));
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
    return findComponent(QStringLiteral("ui"), FullUserInterface, QStringLiteral("ui/VidtipsUI.qml"),
                         QString());
}

QString VTView::simpleRootFilePath() const
{
    return findComponent(QStringLiteral("simple"), SimpleUserInterface,
                         QStringLiteral("ui/SimpleTooltip.qml"), QString());
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
        if (file.exists() && admitsFile(file.absoluteFilePath()))
            return file.absoluteFilePath();
    }
    return path;
}

// Bindings ask the host, which may show other content meanwhile. That is named at once, and once more
// afterwards: a binding that was being evaluated has not taken it.
void VTView::exposeContent(const QString &dataLocation)
{
    const QPointer<VTView> self(this);
    dropForeignRoot();
    if (!self)
        return;
    const VTViewWork::Scope scope(d->work);
    d->dataLocation = dataLocation;
    setMaximumSize(largestSize());
    ++d->exposures;
    if (d->isExposing) {
        nameAll();
        return;
    }
    d->isExposing = true;
    int seen = 0;
    for (int round = 0; self && seen != d->exposures && round < mostRounds; ++round) {
        seen = d->exposures;
        nameAll();
    }
    if (!self)
        return;
    d->isExposing = false;
    disconnect(d->titleWatch);
    if (d->content)
        d->titleWatch = connect(d->content, &VTXmlElement::contentChanged, this,
                                [this] { VTAccessibility::titleHasChanged(this); });
    VTAccessibility::contentHasChanged(this);
}

// What other packages have loaded is not to be judged as if it were this content's.
void VTView::dropForeignRoot()
{
    if (rootObject() && d->reach != reach() && !isAtWork())
        replaceSource(QUrl());
}

void VTView::nameAll()
{
    const QPointer<VTView> self(this);
    // What is bound to them follows at once.
    d->scriptWatch->restart(scriptTimeout());
    nameContent(d->content);
    if (self)
        rootContext()->setContextProperty(QStringLiteral("dataLocation"), d->dataLocation);
    if (!self)
        return;
    // Naming an object connects its end to the context, once more each time; this one lives for all tips.
    disconnect(this, &QObject::destroyed, rootContext(), nullptr);
    rootContext()->setContextProperty(QStringLiteral("vidTipView"), this);
}

void VTView::nameContent(VTXmlElement *content)
{
    const VTViewWork::Scope scope(d->work);
    disconnect(d->exposedGone);
    d->exposed = content;
    // Not every engine notices when a context property dies, and anyone may delete the tree.
    if (content)
        d->exposedGone = connect(content, &QObject::destroyed, this, [this] { nameContent(nullptr); });
    rootContext()->setContextProperty(QStringLiteral("vidtip"), content);
}

void VTView::releaseContent(VTXmlElement *content)
{
    const QPointer<VTXmlElement> old(content);
    const std::shared_ptr<VTViewWork> work = d->work;
    QObject *const tree = treeOf(content);
    if (!tree || isInTree(d->content, tree))
        return;
    if (isInTree(d->exposed, tree))
        nameContent(d->content);
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
    const QPointer<VTView> self(this);
    const bool isFile = QFileInfo(path).isFile();
    if (!isFile)
        report(QStringLiteral("Can't find :%1").arg(path));
    if (!self || (!isFile && d->reach == reach()))
        return;
    const bool mayLoad = isFile && admitsFile(path) && !isBarred(path);
    const QUrl url = mayLoad ? QUrl::fromLocalFile(path) : QUrl();
    if (!self || (!isLoaded(url) && loadsWithoutEnd()))
        return;
    d->pendingSource = url;
    if (!isLoaded(url))
        loadOnceReturned();
}

// The QML must not be destroyed while its handler runs, or the host that it has called.
void VTView::loadOnceReturned()
{
    if (isAtWork())
        d->settling.start(0);
    else
        load();
}

bool VTView::loadsWithoutEnd()
{
    const bool isInARow = isAtWork() && !rootObject();
    d->loadsInARow = isInARow ? d->loadsInARow + 1 : 0;
    // Who hears of it may ask for the next one.
    if (d->loadsInARow == mostLoadsInARow + 1)
        warn(QStringLiteral("%1 has another user interface loaded before it is made, as did those before it; "
                            "it stays")
                 .arg(source().toLocalFile()));
    return d->loadsInARow > mostLoadsInARow;
}

void VTView::load()
{
    const VTViewWork::Scope scope(d->work);
    replaceSource(d->pendingSource);
}

// The next user interface begins with all of its time, and answers for its own scripts alone.
void VTView::replaceSource(const QUrl &url)
{
    const QPointer<VTView> self(this);
    const QString before = source().toLocalFile();
    d->scriptWatch->restart(scriptTimeout());
    setSource(QUrl());
    if (self && d->scriptWatch->resume())
        countStop(before);
    if (!self)
        return;
    // Nothing is left by now that was made of what the engine forgets.
    if (d->isForgotten)
        engine()->clearComponentCache();
    d->isForgotten = false;
    if (url.isEmpty())
        return;
    renewReach();
    d->scriptWatch->restart(scriptTimeout());
    setSource(url);
}

// A view that its manager has left behind, or without content, has what it had.
VTReach VTView::reach() const
{
    if (!d->manager)
        return d->reach;
    if (!setting(RestrictContent, false).toBool())
        return {};
    const VTIndex *const index = d->manager->index();
    const bool hasContent = index && d->content;
    return {true, hasContent ? index->componentPathsForElement(d->content, QString()) : d->reach.folders};
}

void VTView::renewReach()
{
    const VTReach now = reach();
    if (now == d->reach)
        return;
    d->reach = now;
    VTContentGuard::apply(d->guard, now, engine());
}

bool VTView::admitsFile(const QString &path) const
{
    const VTReach now = reach();
    const bool isAdmitted = now.admitsFile(path) && (VTContentGuard::isSupported() || !now.isRestricted);
    if (!isAdmitted)
        refuse(QStringLiteral("reading %1").arg(path));
    return isAdmitted;
}

void VTView::refuse(const QString &what) const
{
    d->guard->refused(what, QUrl(), 0);
}

void VTView::tellRefusals()
{
    const QPointer<VTView> self(this);
    const QStringList refusals = d->guard->take();
    for (const QString &refusal : refusals) {
        if (self)
            warn(refusal);
    }
}

bool VTView::openForContent(const QUrl &url)
{
    const HostCall call(this);
    return d->manager && d->manager->openExternalResource(url.toString());
}

bool VTView::isBarred(const QString &path)
{
    if (!VTStoppedFiles::instance().isBarred(path))
        return false;
    warn(QStringLiteral("%1 was stopped twice and is not loaded until it changes").arg(path));
    return true;
}

int VTView::scriptTimeout() const
{
    return setting(ScriptTimeout, 5000).toInt();
}

void VTView::countStop(const QString &path)
{
    VTStoppedFiles::instance().add(path);
    // What has changed since is to be read when it is loaded again.
    engine()->clearComponentCache();
    warn(QStringLiteral("%1 was stopped, as its scripts ran for more than %2 ms")
             .arg(path, QString::number(scriptTimeout())));
}

// One that holds the application up does so again at the next occasion, so that all of it goes. The script
// that was stopped may have been called by another, in whose event loop this is.
void VTView::stop()
{
    const QPointer<VTView> self(this);
    const QString path = source().toLocalFile();
    d->pendingSource.clear();
    loadOnceReturned();
    if (self && !path.isEmpty())
        countStop(path);
    auto *const window = self ? qobject_cast<VTWidget *>(parentWidget()) : nullptr;
    if (window)
        window->close();
}

void VTView::forgetUserInterface()
{
    d->isForgotten = true;
}

bool VTView::isLoaded(const QUrl &url) const
{
    // A root that someone has destroyed is made anew, and so is one of another reach.
    const bool isSource = !d->isForgotten && url == source() && (rootObject() || status() != Ready);
    return isSource && (url.isEmpty() || d->reach == reach());
}

// Parts of a user interface may come from the network, and a handler of the present one may have to return
// before another can replace it.
bool VTView::isWaiting() const
{
    return status() == Loading || (d->settling.isActive() && !isLoaded(d->pendingSource));
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
        d->scriptWatch->restart(scriptTimeout());
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
