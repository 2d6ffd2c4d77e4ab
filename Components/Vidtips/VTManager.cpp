#include "VTManager.h"

#include "VTAccessibility_p.h"
#include "VTBoundedSize_p.h"
#include "VTCatalogue_p.h"
#include "VTContext.h"
#include "VTIndex.h"
#include "VTInterpolation_p.h"
#include "VTLocale_p.h"
#include "VTLookUp_p.h"
#include "VTPackageLoader_p.h"
#include "VTPreparation_p.h"
#include "VTQmlTypes_p.h"
#include "VTReservations_p.h"
#include "VTShowLog_p.h"
#include "VTTipContent_p.h"
#include "VTTipShowing_p.h"
#include "VTTipWatch_p.h"
#include "VTView.h"
#include "VTViewReach_p.h"
#include "VTWidget.h"
#include "VTXmlElement.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QPointer>
#include <QtCore/QUrl>
#include <QtGui/QHelpEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>

namespace Vidtips {

struct VIDTIPS_NO_EXPORT VTManager::Private
{
    Private(VTManager *manager, VTInterface *host, const VTContext &settings, const QStringList &dataPaths)
        : host(host)
        , searchPaths(dataPaths)
        , context(settings)
        , showing(manager, watch)
    {
    }

    VTInterface *const host;
    const QStringList searchPaths;
    QStringList loadedPaths;
    VTContext context;
    QPointer<VTWidget> widget;
    QPointer<VTIndex> index;
    VTReservations reservations;
    QMap<QString, QVariant> globalProperties;
    bool filterInstalled = false;
    bool refreshIsDue = false;
    bool isRefreshing = false;
    QPointer<VTView> askingView; ///< has asked the host for a translation, which may ask the manager
    VTCatalogue catalogue;
    const std::shared_ptr<VTTipWatch> watch = std::make_shared<VTTipWatch>();
    VTTipShowing showing;
    VTPreparation preparation{context};

    QString text(contextKey key, const QString &defaultValue) const
    {
        return context.get(key, defaultValue).toString();
    }

    VTXmlElement *contentOnScreen(const QString &key) const
    {
        VTXmlElement *const content = contentOf(widget);
        return hasKey(content, key) ? content : reservations.contentWithKey(key);
    }
};

VTManager::VTManager(VTInterface *host, VTContext &context, const QStringList &dataPaths, VTIndex *index)
    : d(new Private(this, host, context, dataPaths))
{
    d->index = index ? index : new VTIndex(&d->context, dataPaths);
    d->index->open();
    if (d->context.get(AlwaysShowToolTips, false).toBool()) {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows)
            window->setAttribute(Qt::WA_AlwaysShowToolTips);
    }
    connect(d->watch.get(), &VTTipWatch::popupJoined, this, [this] { d->showing.placeAnew(); });
    QElapsedTimer timer;
    timer.start();
    loadDataPath(dataPaths);
    handleMessage(VTMessageInformation,
                  QStringLiteral("Indexed packages in %1 seconds").arg(timer.elapsed() / 1000.0));
    registerQmlTypes();
    VTAccessibility::install();
    if (d->context.get(InstallEventFilter, false).toBool()) {
        QCoreApplication::instance()->installEventFilter(this);
        d->filterInstalled = true;
    }
    connect(&d->context, &VTContext::settingDidChange, &d->preparation, &VTPreparation::settingChanged);
}

VTManager::~VTManager()
{
    if (d->filterInstalled)
        QCoreApplication::instance()->removeEventFilter(this);
    d->watch->end();
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows)
        window->setAttribute(Qt::WA_AlwaysShowToolTips, false);
    d->reservations.deleteWithApplication();
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
    d->preparation.addPackage(package.canonicalFilePath());
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
        return localeNamed(content);
    const QString userInterface = d->text(UserInterfaceLocale, QString());
    return userInterface.isEmpty() ? QLocale::system() : localeNamed(userInterface);
}

VTXmlElement *VTManager::retrieve(const QString &key, QString &directory, int &depth, VTXmlElement *&root)
{
    const QPointer<VTManager> self(this);
    VTXmlElement *const element = lookUp(key, directory, depth, root);
    // An index of the host's may have destroyed the manager.
    if (self)
        tellOfBrokenFiles();
    return element;
}

VTXmlElement *VTManager::lookUp(const QString &key, QString &directory, int &depth, VTXmlElement *&root)
{
    const QString unset = QStringLiteral("en_US");
    const QString locales[] = {d->text(ContentLocale, unset), d->text(UserInterfaceLocale, unset)};
    const QPointer<VTIndex> index = d->index;
    const VTLookUp lookUp; // the second search need not look at the files again
    VTXmlElement *element = nullptr;
    for (const QString &locale : locales) {
        if (!element && index)
            element = index->retrieve(key, localeNamed(locale), directory, depth, root);
    }
    return element;
}

// Once each, however often they are read: the parser says at every look-up what it does not understand, and
// not where. Who hears of it may destroy the manager.
void VTManager::tellOfBrokenFiles()
{
    const QPointer<VTManager> self(this);
    const QStringList messages = d->index ? d->index->takeMessages() : QStringList();
    for (const QString &message : messages) {
        if (self)
            handleMessage(VTMessageWarning, message);
    }
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
    const bool isRestricted = d->context.get(RestrictContent, false).toBool();
    if (!d->catalogue.isCurrent(path, !isRestricted)) {
        const bool isMissing = path == view->categoryPath(folderAttribute, defaultFolder, CatalogueFolder);
        d->catalogue.load(isMissing ? QString() : path, !isRestricted);
    }
    // The guard tells each tip of it once.
    if (d->catalogue.isRefused())
        view->reach().refuse(QStringLiteral("the catalogue %1, which names others").arg(path));
    return d->catalogue.isOf(path, !isRestricted) ? d->catalogue.translate(text, context) : text;
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
    const QPointer<VTManager> self(this);
    const QStringList keys = d->index ? d->index->keys() : QStringList();
    if (self)
        tellOfBrokenFiles();
    return keys;
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
    if (d->showing.isAtWork()) {
        refreshLater();
        return;
    }
    // Who is asked for what is looked up anew cannot have it looked up once more.
    if (d->isRefreshing)
        return;
    const QPointer<VTManager> self(this);
    d->isRefreshing = true;
    refreshWindows();
    if (self)
        d->isRefreshing = false;
}

void VTManager::refreshWindows()
{
    const QPointer<VTManager> self(this);
    const QPointer<VTWidget> window = d->widget;
    if (isVisible() && !d->showing.refill(window, d->showing.shown().object) && self && window)
        window->hide();
    if (!self)
        return;
    const QList<QPointer<VTWidget>> reserved = d->reservations.windows();
    for (const QPointer<VTWidget> &kept : reserved) {
        if (self && kept)
            d->showing.refill(kept, nullptr);
    }
}

void VTManager::reloadUserInterfaces()
{
    QList<QPointer<VTWidget>> windows = d->reservations.windows();
    windows << d->widget;
    for (const QPointer<VTWidget> &window : qAsConst(windows)) {
        if (window && window->view())
            window->view()->forgetUserInterface();
    }
    refresh();
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

VTView *VTManager::setAskingView(VTView *view)
{
    VTView *const before = d->askingView;
    d->askingView = view;
    return before;
}

QObject *VTManager::referenceObject() const
{
    return isVisible() ? d->showing.shown().object : nullptr;
}

QPoint VTManager::referencePosition() const
{
    return d->showing.shown().position;
}

QRect VTManager::referenceRect() const
{
    return isVisible() ? d->showing.shown().rect : QRect();
}

bool VTManager::show(const QString &key, const QPoint &position, QObject *object, const QRect &rect)
{
    return d->showing.show({key, position, object, rect});
}

QPoint VTManager::tooltipPosition(const QPoint &position, QWidget *) const
{
    const QSize offset = boundedSize(d->context.get(TooltipOffset, QSize(35, 30)));
    return position + QPoint(offset.width(), offset.height());
}

void VTManager::initializeTooltipWindow(QWidget *parent)
{
    const QPointer<VTManager> self(this);
    const QPointer<VTWidget> window = d->widget;
    // Another parent hides a window, and the host, which hears of that, may delete it.
    if (window && window->parentWidget() != parent)
        window->hide();
    if (window)
        window->setParent(parent);
    if (!self)
        return;
    if (!d->widget)
        d->widget = new VTWidget(this, parent, nullptr, QRect());
    if (d->widget->view())
        return;
    auto *const view = new VTView(this, d->widget);
    connect(view, &VTView::statusChanged, view, &VTView::statusHasChanged);
    connect(view, &VTView::statusChanged, this, [this] { d->showing.revealAwaited(); });
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
    d->reservations.add(window);
    d->watch->end();
    d->widget = nullptr;
    initializeTooltipWindow(nullptr);
    return true;
}

void VTManager::raise()
{
    d->reservations.raise();
}

void VTManager::setStayOnTop(bool on)
{
    d->reservations.setStayOnTop(on);
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
    const bool isThere = shown && self && (d->showing.isAwaiting() || isVisible());
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
