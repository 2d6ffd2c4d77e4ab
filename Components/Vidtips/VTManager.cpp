#include "VTManager.h"

#include "VTBoundedSize_p.h"
#include "VTCatalogue_p.h"
#include "VTContext.h"
#include "VTFoundContent_p.h"
#include "VTIndex.h"
#include "VTInterpolation_p.h"
#include "VTPackageLoader_p.h"
#include "VTScrollBarComponent.h"
#include "VTShowLog_p.h"
#include "VTStyledRectangleComponent.h"
#include "VTSurroundings_p.h"
#include "VTTipWatch_p.h"
#include "VTVideoComponent.h"
#include "VTView.h"
#include "VTWidget.h"
#include "VTXmlElement.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtDeclarative/QDeclarativeView>
#include <QtDeclarative/qdeclarative.h>
#include <QtGui/QHelpEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <optional>

namespace Vidtips {

namespace {

const char importUri[] = "com.corvale.vidtips.qml";

void registerDeclarativeTypes()
{
    qmlRegisterType<VTVideoComponent>(importUri, 1, 0, "VTVideoComponent");
    qmlRegisterType<VTXmlElement>(importUri, 1, 0, "VTXmlElement");
    qmlRegisterType<VTStyledRectangleComponent>(importUri, 1, 0, "VTStyledRectangle");
    qmlRegisterType<VTScrollBarComponent>(importUri, 1, 0, "VTScrollBar");
}

/**
 * Has the declarative module make what it makes once in a process, which takes longer than showing a tip
 * does: its first view registers all element types.
 */
void prepareDeclarativeModule()
{
    static bool isPrepared = false;
    if (!isPrepared)
        QDeclarativeView();
    isPrepared = true;
}

QString keyAttribute()
{
    return QStringLiteral("key");
}

VTXmlElement *contentOf(const VTWidget *window)
{
    return window && window->view() ? window->view()->content() : nullptr;
}

bool hasKey(const VTXmlElement *content, const QString &key)
{
    return content && content->hasAttribute(keyAttribute()) && content->attribute(keyAttribute()) == key;
}

QString describeShown(const VTXmlElement *content, const QString &key)
{
    const QString file = content->attribute(QStringLiteral("VTLocation"));
    const QString source = file.isEmpty() ? QStringLiteral("content that is in no file") : file;
    if (hasKey(content, key))
        return QStringLiteral("shows %1").arg(source);
    return QStringLiteral("shows the fallback \"%1\" of %2").arg(content->attribute(keyAttribute()), source);
}

bool isVisibleWith(const VTWidget *window, const QString &key)
{
    return window && window->isVisible() && hasKey(contentOf(window), key);
}

} // namespace

/** What a call of show() asks for. The host's callbacks may delete the object meanwhile. */
struct VTManager::ShowRequest
{
    QString key;
    QPoint position;
    QPointer<QObject> object;
    QRect rect;

    QWidget *widget() const { return qobject_cast<QWidget *>(object.data()); }

    void log(const QString &decision) const
    {
        qCDebug(showLog, "\"%s\" at %d,%d for %s: %s", qUtf8Printable(key), position.x(), position.y(),
                qUtf8Printable(describe(object)), qUtf8Printable(decision));
    }
};

struct VIDTIPS_NO_EXPORT VTManager::Private
{
    Private(VTInterface *host, const VTContext &settings, const QStringList &dataPaths)
        : host(host)
        , searchPaths(dataPaths)
        , context(settings)
    {
    }

    VTInterface *const host;
    const QStringList searchPaths;
    QStringList loadedPaths;
    VTContext context;
    QPointer<VTWidget> widget;
    QPointer<VTIndex> index;
    QPointer<QObject> referenceObject;
    QRect referenceRect;
    QPoint referencePosition;
    QList<QPointer<VTWidget>> reservations;
    QMap<QString, QVariant> globalProperties;
    bool filterInstalled = false;
    bool refreshIsDue = false;
    QPointer<VTView> askingView; ///< has asked the host for a translation, which may ask the manager
    VTCatalogue catalogue;
    const std::shared_ptr<VTTipWatch> watch = std::make_shared<VTTipWatch>();
    std::optional<ShowRequest> awaited; ///< until its user interface is loaded

    QString text(contextKey key, const QString &defaultValue) const
    {
        return context.get(key, defaultValue).toString();
    }

    /** Returns what keeps every tip from being shown; empty for nothing. */
    QString obstacle() const
    {
        if (context.get(TipsOff, false).toBool())
            return QStringLiteral("TipsOff is set");
        const int required = context.get(RequiredModifiers, 0).toInt();
        const int held = int(QGuiApplication::keyboardModifiers());
        if (required == 0 || held == required)
            return {};
        return QStringLiteral("RequiredModifiers is 0x%1, and 0x%2 are held")
            .arg(QString::number(required, 16), QString::number(held, 16));
    }

    VTXmlElement *contentOnScreen(const QString &key) const
    {
        if (hasKey(contentOf(widget), key))
            return contentOf(widget);
        for (const QPointer<VTWidget> &window : reservations) {
            if (hasKey(contentOf(window), key))
                return contentOf(window);
        }
        return nullptr;
    }

    /** Returns the reserved windows, last first, and forgets those that are gone. */
    QList<QPointer<VTWidget>> reservedWindows()
    {
        reservations.removeAll(nullptr);
        QList<QPointer<VTWidget>> windows = reservations;
        std::reverse(windows.begin(), windows.end());
        return windows;
    }
};

VTManager::VTManager(VTInterface *host, VTContext &context, const QStringList &dataPaths, VTIndex *index)
    : d(new Private(host, context, dataPaths))
{
    d->index = index ? index : new VTIndex(&d->context, dataPaths);
    d->index->open();
    if (d->context.get(AlwaysShowToolTips, false).toBool()) {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows)
            window->setAttribute(Qt::WA_AlwaysShowToolTips);
    }
    QElapsedTimer timer;
    timer.start();
    loadDataPath(dataPaths);
    handleMessage(VTMessageInformation,
                  QStringLiteral("Indexed packages in %1 seconds").arg(timer.elapsed() / 1000.0));
    registerDeclarativeTypes();
    if (d->context.get(InstallEventFilter, false).toBool()) {
        QCoreApplication::instance()->installEventFilter(this);
        d->filterInstalled = true;
    }
    // When the host has nothing else to do: neither its start nor the first tip waits for it.
    QTimer::singleShot(0, this, [this] {
        if (!d->widget)
            prepareDeclarativeModule();
    });
}

VTManager::~VTManager()
{
    if (d->filterInstalled)
        QCoreApplication::instance()->removeEventFilter(this);
    d->watch->end();
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows)
        window->setAttribute(Qt::WA_AlwaysShowToolTips, false);
    const QList<QPointer<VTWidget>> reserved = d->reservedWindows();
    for (const QPointer<VTWidget> &window : reserved)
        window->deleteWithApplication();
    if (!d->widget)
        return;
    d->widget->deleteWithApplication();
    d->widget->deleteLater();
}

VTContext &VTManager::context()
{
    return d->context;
}

const VTContext &VTManager::context() const
{
    return d->context;
}

VTIndex *VTManager::index() const
{
    return d->index;
}

VTWidget *VTManager::widget() const
{
    return d->widget;
}

VTInterface *VTManager::vtinterface() const
{
    return d->host;
}

QStringList VTManager::searchPaths() const
{
    return d->searchPaths;
}

QStringList VTManager::loadedPaths() const
{
    return d->loadedPaths;
}

void VTManager::loadDataPath(const QStringList &dataPaths)
{
    VTPackageLoader(this).loadFolders(dataPaths, &d->loadedPaths);
}

void VTManager::loadPackage(const QFileInfo &package)
{
    VTPackageLoader(this).loadPackage(package);
}

void VTManager::indexControFile(const QString &controlFile, const QString &package)
{
    if (d->index)
        d->index->indexControlFile(controlFile, package);
}

void VTManager::handleMessage(VTMessageType type, const QString &message)
{
    const int threshold = d->context.get(MessageThreshold, int(VTMessageWarning)).toInt();
    if (type <= threshold && d->host)
        d->host->handleMessage(type, message);
}

QLocale VTManager::currentLocale() const
{
    const QString content = d->text(ContentLocale, QString());
    if (!content.isEmpty())
        return QLocale(content);
    const QString userInterface = d->text(UserInterfaceLocale, QString());
    return userInterface.isEmpty() ? QLocale::system() : QLocale(userInterface);
}

VTXmlElement *VTManager::retrieve(const QString &key, QString &directory, int &depth, VTXmlElement *&root)
{
    const QString unset = QStringLiteral("en_US");
    const QString locales[] = {d->text(ContentLocale, unset), d->text(UserInterfaceLocale, unset)};
    const QPointer<VTIndex> index = d->index;
    VTXmlElement *element = nullptr;
    for (const QString &locale : locales) {
        if (!element && index)
            element = index->retrieve(key, QLocale(locale), directory, depth, root);
    }
    return element;
}

QString VTManager::vidTipAttribute(const QString &key, const QString &attribute, const QString &defaultValue)
{
    if (const VTXmlElement *const content = d->contentOnScreen(key))
        return content->hasAttribute(attribute) ? content->attribute(attribute) : defaultValue;
    QString directory;
    int depth = 0;
    VTXmlElement *root = nullptr;
    const std::unique_ptr<VTXmlElement> element(retrieve(key, directory, depth, root));
    return element && element->hasAttribute(attribute) ? element->attribute(attribute) : defaultValue;
}

QString VTManager::translateString(const QString &text, const QString &context)
{
    const VTView *const current = d->widget ? d->widget->view() : nullptr;
    const VTView *const view = d->askingView ? d->askingView.data() : current;
    if (!view)
        return text;
    const QString folderAttribute = QStringLiteral("l10n_name");
    const QString defaultFolder = QStringLiteral("l10n");
    const QString fileName =
        QStringLiteral("%1_%2.qm")
            .arg(d->text(TranslationContext, QStringLiteral("Vidtips")), currentLocale().name());
    const QString path = view->findComponent(folderAttribute, CatalogueFolder, defaultFolder, fileName);
    if (!d->catalogue.isOf(path)) {
        const bool isMissing = path == view->categoryPath(folderAttribute, defaultFolder, CatalogueFolder);
        d->catalogue.load(isMissing ? QString() : path);
    }
    return d->catalogue.isOf(path) ? d->catalogue.translate(text, context) : text;
}

QString VTManager::interpolate(const QString &text) const
{
    return interpolate(text, d->globalProperties);
}

QString VTManager::interpolate(const QString &text, const QMap<QString, QVariant> &properties) const
{
    return interpolated(text, properties);
}

void VTManager::setGlobalProperty(const QString &name, const QVariant &value)
{
    d->globalProperties.insert(name, value);
}

QStringList VTManager::keys()
{
    return d->index ? d->index->keys() : QStringList();
}

QString VTManager::keyForObject(QObject *object)
{
    return object && d->host ? d->host->keyForObject(object) : QString();
}

QString VTManager::keyAt(QObject *object, const QPoint &position, QRect &rect)
{
    return object && d->host ? d->host->keyAt(object, position, rect) : QString();
}

void VTManager::hide()
{
    if (d->widget)
        d->widget->hide();
}

bool VTManager::isVisible() const
{
    return d->widget && d->widget->isVisible();
}

void VTManager::refresh()
{
    const QPointer<VTManager> self(this);
    const QPointer<VTWidget> window = d->widget;
    if (isVisible() && !refill(window, d->referenceObject) && self && window)
        window->hide();
    if (!self)
        return;
    const QList<QPointer<VTWidget>> reserved = d->reservedWindows();
    for (const QPointer<VTWidget> &kept : reserved) {
        if (self && kept)
            refill(kept, nullptr);
    }
}

// The host hears of a new language in no certain order among all windows, and may set a locale only then.
void VTManager::refreshLater()
{
    if (d->refreshIsDue)
        return;
    d->refreshIsDue = true;
    const auto refreshNow = [this] {
        d->refreshIsDue = false;
        refresh();
    };
    QMetaObject::invokeMethod(this, refreshNow, Qt::QueuedConnection);
}

bool VTManager::refill(VTWidget *window, QObject *object)
{
    const QPointer<VTWidget> guard(window);
    const VTXmlElement *const old = contentOf(window);
    if (!old)
        return false;
    const ShowRequest request{old->attribute(keyAttribute()), d->referencePosition, object, QRect()};
    VTFoundContent found;
    find(request.key, found);
    if (!found.element || !found.root)
        return false;
    rewriteShortcut(request, found.element);
    if (!guard || !found.element)
        return false;
    found.taken = true;
    guard->refill(found.element, found.packageFolder());
    return true;
}

void VTManager::setAskingView(VTView *view)
{
    d->askingView = view;
}

QObject *VTManager::referenceObject() const
{
    return isVisible() ? d->referenceObject : nullptr;
}

QPoint VTManager::referencePosition() const
{
    return d->referencePosition;
}

QRect VTManager::referenceRect() const
{
    return isVisible() ? d->referenceRect : QRect();
}

bool VTManager::show(const QString &key, const QPoint &position, QObject *object, const QRect &rect)
{
    const ShowRequest request{key, position, object, rect};
    const QString obstacle = d->obstacle();
    if (!obstacle.isEmpty()) {
        request.log(QStringLiteral("not shown, as %1").arg(obstacle));
        return false;
    }
    const QPointer<VTManager> self(this);
    initializeTooltipWindow(nullptr);
    if (!self)
        return false;
    d->awaited.reset();
    if (keeps(request.key, request)) {
        request.log(QStringLiteral("is on screen already"));
        return true;
    }
    VTFoundContent found;
    find(request.key, found);
    if (self && !found.element) {
        const QString fallback = d->text(FallbackKey, QString());
        if (!fallback.isEmpty() && keeps(fallback, request)) {
            request.log(QStringLiteral("has no content, and the fallback is on screen already"));
            return true;
        }
        findFallback(fallback, found);
    }
    if (!self)
        return false;
    if (!found.element || !found.root)
        return keepOrHide(request);
    // A window that is on screen cannot change over to another owner.
    if (d->widget && d->widget->isVisible() && !d->widget->belongsTo(request.object))
        d->widget->hide();
    if (!self)
        return false;
    if (d->host)
        d->host->notification(VTNotificationShown, QStringLiteral(""), request.key);
    return self && present(request, found);
}

// A tip that is on screen stays, also when it was about to go, and goes with the command that was named last.
bool VTManager::keeps(const QString &key, const ShowRequest &request)
{
    if (!isVisibleWith(d->widget, key) || !d->widget->belongsTo(request.object))
        return false;
    if (request.object)
        d->watch->begin(d->widget, request.object, request.rect, request.position);
    d->widget->stopFadeOut();
    return true;
}

void VTManager::find(const QString &key, VTFoundContent &found)
{
    VTXmlElement *root = nullptr;
    VTXmlElement *const element = retrieve(key, found.directory, found.depth, root);
    found.setElement(element, root);
}

void VTManager::findFallback(const QString &key, VTFoundContent &found)
{
    if (key.isEmpty() || !d->index)
        return;
    VTXmlElement *root = nullptr;
    const QLocale locale(d->text(UserInterfaceLocale, QStringLiteral("en_US")));
    VTXmlElement *const element = d->index->retrieve(key, locale, found.directory, found.depth, root);
    found.setElement(element, root);
}

bool VTManager::present(const ShowRequest &request, VTFoundContent &found)
{
    const QPointer<VTWidget> window = d->widget;
    const QPointer<VTView> view = window ? window->view() : nullptr;
    const QPointer<VTXmlElement> content = found.element;
    if (!view || !content)
        return false;
    found.taken = true;
    window->stopFadeOut();
    if (window->isVisible() && view->content() == content) {
        d->watch->begin(window, request.object, request.rect, request.position);
        return true;
    }
    const QPointer<VTManager> self(this);
    const QPointer<VTXmlElement> old = view->content() == content ? nullptr : view->content();
    const QPoint point = tooltipPosition(request.position, request.widget());
    view->setContent(content);
    rewriteShortcut(request, content);
    const bool current = self && view && content && window == d->widget;
    request.log(current ? describeShown(content, request.key)
                        : QStringLiteral("not shown, as the host has done something else meanwhile"));
    if (current) {
        d->referenceObject = request.object;
        d->referenceRect = request.rect;
        d->referencePosition = request.position;
    }
    const bool filled =
        current && window->fill(request.object, request.rect, point, content, found.packageFolder());
    if (view)
        view->releaseContent(old);
    else
        VTView::deleteContent(old);
    if (filled && self && view && window == d->widget && view->content() == content)
        return reveal(request);
    return current || (self && d->widget && d->widget->isVisible());
}

// What cannot be filled is not shown: where the full user interface does not load, the simple one may.
bool VTManager::reveal(const ShowRequest &request)
{
    const QPointer<VTManager> self(this);
    const QPointer<VTWidget> window = d->widget;
    const QPointer<VTView> view = window->view();
    const QFileInfo simple(view->simpleRootFilePath());
    if (!view->rootObject() && !view->isWaiting() && simple.isFile()) {
        view->loadQML(simple.absoluteFilePath());
        if (view)
            view->fitToContent();
    }
    if (!self || !view || window != d->widget)
        return self && d->widget && d->widget->isVisible();
    if (view->isWaiting()) {
        d->awaited = request;
    } else if (!view->rootObject() && view->status() == VTView::Error) {
        withdraw();
    } else {
        moveOffPopups(request);
        window->reveal();
        if (self && window && window == d->widget && window->isVisible())
            d->watch->begin(window, request.object, request.rect, request.position);
    }
    return true;
}

// A menu without its entries is of no use; everything else may be covered unless the host wants it otherwise.
void VTManager::moveOffPopups(const ShowRequest &request)
{
    const QPoint begin = tooltipPosition(request.position, request.widget()) - request.position;
    const auto around =
        surroundingsOf(request.object, request.rect, request.position, {begin.x(), begin.y()});
    if (!around.popups.isNull() && !around.screen.isNull())
        d->widget->move(VTPlacement::placed(d->widget->size(), around).topLeft());
}

void VTManager::revealAwaited()
{
    if (!d->awaited || !d->widget || !d->widget->view() || d->widget->view()->isWaiting())
        return;
    const ShowRequest request = *d->awaited;
    d->awaited.reset();
    reveal(request);
}

// The host has heard that there is content, and hears that it is not on screen.
void VTManager::withdraw()
{
    if (d->widget->isVisible())
        d->widget->hide();
    else
        d->widget->view()->notification(VTNotificationHidden, QStringLiteral("hide"));
}

void VTManager::rewriteShortcut(const ShowRequest &request, VTXmlElement *content)
{
    if (!d->host)
        return;
    const QPointer<VTXmlElement> guard(content);
    const QString attribute = QStringLiteral("shortcut");
    const QString shortcut =
        d->host->shortCutForObject(request.key, request.object, content->attribute(attribute));
    if (guard && !shortcut.isEmpty())
        content->setAttribute(attribute, shortcut);
}

bool VTManager::keepOrHide(const ShowRequest &request)
{
    VTWidget *const window = d->widget;
    const QString reason =
        request.key.isEmpty() ? QStringLiteral("it has no key") : QStringLiteral("there is no content");
    if (!window || !window->isVisible()) {
        request.log(QStringLiteral("not shown, as %1").arg(reason));
        return false;
    }
    const QWidget *const widget = request.widget();
    const bool stays = window->isSafe(request.position) && (!widget || widget->toolTip().isEmpty());
    request.log(
        QStringLiteral("not shown, as %1; the tip on screen %2")
            .arg(reason, stays ? QStringLiteral("stays, as the pointer is near") : QStringLiteral("goes")));
    if (stays)
        return true;
    window->hideAnimated();
    return false;
}

QPoint VTManager::tooltipPosition(const QPoint &position, QWidget *) const
{
    const QSize offset = boundedSize(d->context.get(TooltipOffset, QSize(35, 30)));
    return position + QPoint(offset.width(), offset.height());
}

void VTManager::initializeTooltipWindow(QWidget *parent)
{
    const QPointer<VTManager> self(this);
    if (d->widget)
        d->widget->setParent(parent);
    else
        d->widget = new VTWidget(this, parent, nullptr, QRect());
    // Another parent hides a window, and the host hears of that.
    if (!self || !d->widget || d->widget->view())
        return;
    auto *const view = new VTView(this, d->widget);
    connect(view, &VTView::statusChanged, view, &VTView::statusHasChanged);
    connect(view, &VTView::statusChanged, this, &VTManager::revealAwaited);
    connect(&d->context, &VTContext::settingDidChange, view, &VTView::managerContextSettingDidChange);
    d->widget->setView(view);
}

bool VTManager::reserve(VTWidget *window, QWidget *&hostWindow)
{
    if (!window || window != d->widget)
        return false;
    const QPointer<VTManager> self(this);
    QWidget *const container = d->host ? d->host->createWindow(VTWindowTooltip) : nullptr;
    if (!self || window != d->widget)
        return false;
    hostWindow = container;
    // The windows that users have closed since.
    d->reservations.removeAll(nullptr);
    d->reservations.append(window);
    d->watch->end();
    d->widget = nullptr;
    initializeTooltipWindow(nullptr);
    return true;
}

void VTManager::raise()
{
    const QList<QPointer<VTWidget>> windows = d->reservedWindows();
    for (const QPointer<VTWidget> &window : windows) {
        if (window)
            window->raise();
    }
}

void VTManager::setStayOnTop(bool on)
{
    const QList<QPointer<VTWidget>> windows = d->reservedWindows();
    for (const QPointer<VTWidget> &window : windows) {
        if (window)
            window->setWindowFlag(Qt::WindowStaysOnTopHint, on);
        if (window)
            window->show();
    }
}

// Who hears of the tip's end may destroy the manager.
bool VTManager::watchesOver(QObject *watched, QEvent *event)
{
    const std::shared_ptr<VTTipWatch> watch = d->watch;
    const QPointer<VTManager> self(this);
    return watch->filter(watched, event) || !self;
}

bool VTManager::eventFilter(QObject *watched, QEvent *event)
{
    if (d->watch->isAtWork() && watchesOver(watched, event))
        return true;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
        return hideForEvent(watched, static_cast<QMouseEvent *>(event));
    case QEvent::MouseMove:
        return mouseMoveEventFilter(watched, static_cast<QMouseEvent *>(event));
    case QEvent::ToolTip:
        return showForEvent(watched, static_cast<QHelpEvent *>(event)->globalPos());
    case QEvent::ApplicationDeactivate:
        if (isVisible())
            qCDebug(showLog, "the tip goes, as the application is no longer active");
        if (d->widget)
            d->widget->hide();
        return false;
    default:
        return QObject::eventFilter(watched, event);
    }
}

// An event whose object the host has destroyed meanwhile is consumed, because it would be delivered all the
// same.
bool VTManager::hideForEvent(QObject *watched, QMouseEvent *event)
{
    const QPointer<QObject> object(watched);
    return mouseButtonEventFilter(watched, event) || (watched && !object);
}

bool VTManager::showForEvent(QObject *watched, const QPoint &position)
{
    const QPointer<VTManager> self(this);
    const QPointer<QObject> object(watched);
    QRect rect;
    const QString key = keyAt(watched, position, rect);
    const bool shown = self && object && show(key, position, object, rect);
    // Of a tip that could not be filled, the plain one is left.
    const bool isThere = shown && self && (d->awaited || (d->widget && d->widget->isVisible()));
    return isThere || (watched && !object);
}

bool VTManager::mouseButtonEventFilter(QObject *watched, QMouseEvent *)
{
    VTWidget *const window = d->widget;
    const auto *const clicked = qobject_cast<QWidget *>(watched);
    if (!clicked || !window || !window->isVisible())
        return false;
    const bool inside = clicked == window || window->isAncestorOf(clicked);
    const bool stays = window->view() && window->view()->stayOpen();
    if (inside || stays)
        return false;
    qCDebug(showLog, "the tip goes, as there was a click on %s", qUtf8Printable(describe(clicked)));
    window->hide();
    return false;
}

bool VTManager::mouseMoveEventFilter(QObject *watched, QMouseEvent *event)
{
    if (event)
        d->watch->pointerMoved(qobject_cast<QWidget *>(watched), event->globalPos());
    if (event && d->widget && d->widget->isVisible())
        d->widget->checkMousePosition(event->globalPos());
    return false;
}

bool VTManager::openExternalResource(const QString &resource)
{
    const QUrl url(resource, QUrl::StrictMode);
    const bool isUrl = url.isValid() && !url.scheme().isEmpty();
    const bool isTopic = !isUrl && !resource.contains(QLatin1Char('/'));
    const contextKey permission = isTopic ? AllowDocumentation : AllowExternalResources;
    if (!d->host || !d->context.get(permission, true).toBool())
        return false;
    const VTExternalResourceType type = isUrl ? VTResourceUrl : isTopic ? VTResourceTopic : VTResourcePath;
    return d->host->openExternalResource(type, resource);
}

} // namespace Vidtips
