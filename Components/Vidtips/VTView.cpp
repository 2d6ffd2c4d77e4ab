#include "VTView.h"

#include "VTAccessibility_p.h"
#include "VTIndex.h"
#include "VTManager.h"

#include <QtCore/QFileInfo>
#include <QtCore/QPointer>
#include <QtCore/QUrl>
#include <QtDeclarative/QDeclarativeContext>
#include <QtDeclarative/QDeclarativeEngine>
#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsScene>

namespace Vidtips {

namespace {

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

QObject *ownerOf(VTXmlElement *content)
{
    auto *const root = content ? qobject_cast<VTXmlElement *>(content->parent()) : nullptr;
    return root ? root : content;
}

} // namespace

struct VIDTIPS_NO_EXPORT VTView::Private
{
    QPointer<VTManager> manager;
    QPointer<VTXmlElement> content;
    QString packageRoot;
    bool stayOpen = false;
    bool reserved = false;
    QPointer<VTXmlElement> exposed;
    QMetaObject::Connection exposedGone;
    QMetaObject::Connection titleWatch;
    QUrl pendingSource;
    int hostCalls = 0;

    VTInterface *host() const { return manager ? manager->vtinterface() : nullptr; }
};

/** Marks that the host is being called, most often from a handler of the QML. */
class VIDTIPS_NO_EXPORT VTView::HostCall
{
public:
    explicit HostCall(VTView *view)
        : m_view(view)
    {
        ++view->d->hostCalls;
    }
    ~HostCall()
    {
        if (m_view)
            --m_view->d->hostCalls;
    }

private:
    Q_DISABLE_COPY(HostCall)
    const QPointer<VTView> m_view;
};

VTView::VTView(VTManager *manager, QWidget *parent)
    : QDeclarativeView(parent)
    , d(new Private)
{
    d->manager = manager;
    connect(engine(), &QDeclarativeEngine::warnings, this, &VTView::handleWarnings);
    setFrameShape(QFrame::NoFrame);
    setFrameShadow(QFrame::Plain);
    setResizeMode(QDeclarativeView::SizeViewToRootObject);
}

VTView::~VTView()
{
    // The QML goes first, with everything it names still alive; what the engine keeps beyond it finds
    // nothing.
    setSource(QUrl());
    disconnect(engine(), nullptr, this, nullptr);
    disconnect(this, &QDeclarativeView::statusChanged, this, &VTView::statusHasChanged);
    nameContent(nullptr);
    rootContext()->setContextProperty(QStringLiteral("vidTipView"), static_cast<QObject *>(nullptr));
    deleteContent(d->content);
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
        if (file.exists())
            return file.absoluteFilePath();
    }
    return path;
}

void VTView::exposeContent(const QString &dataLocation)
{
    nameContent(d->content);
    rootContext()->setContextProperty(QStringLiteral("dataLocation"), dataLocation);
    // Naming an object connects its end to the context, once more each time; this one lives for all tips.
    disconnect(this, &QObject::destroyed, rootContext(), nullptr);
    rootContext()->setContextProperty(QStringLiteral("vidTipView"), this);
    disconnect(d->titleWatch);
    if (d->content)
        d->titleWatch = connect(d->content, &VTXmlElement::contentChanged, this,
                                [this] { VTAccessibility::titleHasChanged(this); });
    VTAccessibility::contentHasChanged(this);
}

void VTView::nameContent(VTXmlElement *content)
{
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
    QObject *const tree = ownerOf(content);
    if (!tree || isInTree(d->content, tree))
        return;
    if (isInTree(d->exposed, tree))
        nameContent(d->content);
    deleteContent(old);
}

void VTView::deleteContent(VTXmlElement *content)
{
    delete ownerOf(content);
}

void VTView::statusHasChanged(QDeclarativeView::Status s)
{
    if (s != QDeclarativeView::Error)
        return;
    const QList<QDeclarativeError> failures = errors();
    for (const QDeclarativeError &error : failures)
        report(describe(QStringLiteral("Error %1:%2:%3"), error));
}

void VTView::loadQML(const QString &path)
{
    if (!QFileInfo(path).isFile()) {
        report(QStringLiteral("Can't find :%1").arg(path));
        return;
    }
    const QUrl url = QUrl::fromLocalFile(path);
    d->pendingSource = url;
    if (isLoaded(url))
        return;
    if (d->hostCalls == 0) {
        setSource(url);
        return;
    }
    // The QML that called the host must not be destroyed while its handler runs.
    const auto loadPending = [this] {
        if (!isLoaded(d->pendingSource))
            setSource(d->pendingSource);
    };
    QMetaObject::invokeMethod(this, loadPending, Qt::QueuedConnection);
}

bool VTView::isLoaded(const QUrl &url) const
{
    // A root that someone has destroyed is made anew.
    return url == source() && (rootObject() || status() != Ready);
}

// Parts of a user interface may come from the network, and a handler of the present one may have to return
// before another can replace it.
bool VTView::isWaiting() const
{
    return status() == Loading || (d->hostCalls > 0 && !isLoaded(d->pendingSource));
}

// The base class waits for the end of the pass through the event loop, and a window that is shown before
// would have the size of other content.
void VTView::fitToContent()
{
    const QSize wanted = rootObject() ? sizeHint() : QSize();
    if (!wanted.isEmpty() && wanted != size())
        resize(wanted);
}

void VTView::handleWarnings(const QList<QDeclarativeError> &warnings)
{
    for (const QDeclarativeError &warning : warnings)
        report(describe(QStringLiteral("QML Warning %1:%2:%3"), warning));
}

void VTView::resetState()
{
    if (rootObject())
        rootObject()->setProperty("state", QStringLiteral(""));
}

void VTView::managerContextSettingDidChange(VTContextKey key)
{
    if (key == AllowDocumentation)
        Q_EMIT documentationAvailableChanged();
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
    const HostCall call(this);
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
    manager->setAskingView(this);
    const QString translation = d->host()->translateString(string, context);
    if (manager)
        manager->setAskingView(nullptr);
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
    scene()->setSceneRect(rootObject()->boundingRect());
    Q_EMIT contentSizeChanged();
}

QVariant VTView::setting(contextKey key, const QVariant &defaultValue) const
{
    return d->manager ? d->manager->context().get(key, defaultValue) : defaultValue;
}

void VTView::report(const QString &message)
{
    if (d->manager)
        d->manager->handleMessage(VTMessageDebug, message);
}

void VTView::warn(const QString &message)
{
    if (d->manager)
        d->manager->handleMessage(VTMessageWarning, message);
}

} // namespace Vidtips
