#include "VTTipShowing_p.h"

#include "VTContext.h"
#include "VTFoundContent_p.h"
#include "VTIndex.h"
#include "VTInterface.h"
#include "VTLocale_p.h"
#include "VTManager.h"
#include "VTSurroundings_p.h"
#include "VTTipContent_p.h"
#include "VTTipOwner_p.h"
#include "VTTipWatch_p.h"
#include "VTView.h"
#include "VTViewWork_p.h"
#include "VTWidget.h"

#include <QtCore/QFileInfo>
#include <QtGui/QGuiApplication>
#include <QtWidgets/QGraphicsObject>

namespace Vidtips {

namespace {

/** How many tips may be asked for while the one before is being shown. */
constexpr int mostDepth = 10;

QString describeShown(const VTXmlElement &content, const QString &key)
{
    const QString file = content.attribute(QStringLiteral("VTLocation"));
    const QString source = file.isEmpty() ? QStringLiteral("content that is in no file") : file;
    if (hasKey(&content, key))
        return QStringLiteral("shows %1").arg(source);
    return QStringLiteral("shows the fallback \"%1\" of %2").arg(keyOf(content), source);
}

/** Returns what keeps every tip from being shown; empty for nothing. */
QString obstacleIn(const VTContext &settings)
{
    if (settings.get(TipsOff, false).toBool())
        return QStringLiteral("TipsOff is set");
    const int required = settings.get(RequiredModifiers, 0).toInt();
    const int held = int(QGuiApplication::keyboardModifiers());
    if (required == 0 || held == required)
        return {};
    return QStringLiteral("RequiredModifiers is 0x%1, and 0x%2 are held")
        .arg(QString::number(required, 16), QString::number(held, 16));
}

bool isVisibleWith(const VTWidget *window, const QString &key)
{
    return window && window->isVisible() && hasKey(contentOf(window), key);
}

} // namespace

VTTipShowing::VTTipShowing(VTManager *manager, const std::shared_ptr<VTTipWatch> &watch)
    : m_manager(manager)
    , m_watch(watch)
{
}

// What the host is called for may show the next tip, and showing that calls the host.
bool VTTipShowing::show(const VTShowRequest &request)
{
    if (m_depth >= mostDepth) {
        refuseWithoutEnd(request);
        return false;
    }
    const QPointer<VTManager> self(m_manager);
    ++m_depth;
    const bool isThere = showNow(request);
    if (self && --m_depth == 0)
        m_isRefusing = false;
    return isThere;
}

// Who hears of it may show yet another.
void VTTipShowing::refuseWithoutEnd(const VTShowRequest &request)
{
    request.log(QStringLiteral("not shown, as %1 others are being shown").arg(mostDepth));
    if (m_isRefusing)
        return;
    m_isRefusing = true;
    m_manager->handleMessage(
        VTMessageWarning,
        QStringLiteral("\"%1\" is not shown, as showing a tip shows another one without end")
            .arg(request.key));
}

bool VTTipShowing::showNow(const VTShowRequest &request)
{
    const QString obstacle = obstacleIn(m_manager->context());
    if (!obstacle.isEmpty()) {
        request.log(QStringLiteral("not shown, as %1").arg(obstacle));
        return false;
    }
    const QPointer<VTManager> self(m_manager);
    m_manager->initializeTooltipWindow(nullptr);
    if (!self)
        return false;
    m_awaited.reset();
    if (keeps(request.key, request)) {
        request.log(QStringLiteral("is on screen already"));
        return true;
    }
    VTFoundContent found;
    find(request.key, found);
    if (self && !found.element) {
        const QString fallback = m_manager->context().get(FallbackKey, QString()).toString();
        if (!fallback.isEmpty() && keeps(fallback, request)) {
            request.log(QStringLiteral("has no content, and the fallback is on screen already"));
            return true;
        }
        findFallback(fallback, found);
    }
    if (!self)
        return false;
    return found.element && found.root ? announce(request, found) : keepOrHide(request);
}

bool VTTipShowing::announce(const VTShowRequest &request, VTFoundContent &found)
{
    const QPointer<VTManager> self(m_manager);
    hideFromOtherOwner(request);
    if (!self)
        return false;
    if (VTInterface *const host = m_manager->vtinterface())
        host->notification(VTNotificationShown, QStringLiteral(""), request.key);
    return self && present(request, found);
}

// A tip that is on screen stays, also when it was about to go, and stands by and goes with the command that
// was named last.
bool VTTipShowing::keeps(const QString &key, const VTShowRequest &request)
{
    VTWidget *const window = m_manager->widget();
    if (!isVisibleWith(window, key) || !VTTipOwner(window, request.widget()).isJoined())
        return false;
    if (request.object)
        m_watch->begin(window, request.object, request.rect, request.position);
    window->stopFadeOut();
    follow(request);
    return true;
}

void VTTipShowing::remember(const VTShowRequest &request)
{
    m_shown = request;
    m_place = request.place();
}

// Its window may have moved, or another command may have the same tip.
void VTTipShowing::follow(const VTShowRequest &request)
{
    const QRect place = request.place();
    if (place.isNull() || place == m_place)
        return;
    remember(request);
    const QPointer<VTManager> self(m_manager);
    m_manager->widget()->move(m_manager->tooltipPosition(request.position, request.widget()));
    if (self && m_manager->isVisible())
        moveOffPopups(request);
}

void VTTipShowing::find(const QString &key, VTFoundContent &found)
{
    VTXmlElement *root = nullptr;
    VTXmlElement *const element = m_manager->retrieve(key, found.directory, found.depth, root);
    found.setElement(element, root);
}

void VTTipShowing::findFallback(const QString &key, VTFoundContent &found)
{
    VTIndex *const index = m_manager->index();
    if (key.isEmpty() || !index)
        return;
    VTXmlElement *root = nullptr;
    const QVariant locale = m_manager->context().get(UserInterfaceLocale, QStringLiteral("en_US"));
    VTXmlElement *const element =
        index->retrieve(key, localeNamed(locale.toString()), found.directory, found.depth, root);
    found.setElement(element, root);
}

// A window that is on screen cannot change over to another owner.
void VTTipShowing::hideFromOtherOwner(const VTShowRequest &request)
{
    VTWidget *const window = m_manager->widget();
    if (window && window->isVisible() && !VTTipOwner(window, request.widget()).isJoined())
        window->hide();
}

bool VTTipShowing::present(const VTShowRequest &request, VTFoundContent &found)
{
    const QPointer<VTWidget> window = m_manager->widget();
    const QPointer<VTView> view = window ? window->view() : nullptr;
    const QPointer<VTXmlElement> content = found.element;
    if (!view || !content)
        return false;
    found.taken = true;
    window->stopFadeOut();
    if (window->isVisible() && view->content() == content) {
        m_watch->begin(window, request.object, request.rect, request.position);
        return true;
    }
    const QPointer<VTManager> self(m_manager);
    const std::shared_ptr<VTViewWork> work = view->work();
    const QPointer<VTXmlElement> old = view->content() == content ? nullptr : view->content();
    const QPoint point = m_manager->tooltipPosition(request.position, request.widget());
    view->setContent(content);
    rewriteShortcut(request, content);
    const bool current = self && view && content && window == m_manager->widget();
    request.log(current ? describeShown(*content, request.key)
                        : QStringLiteral("not shown, as the host has done something else meanwhile"));
    if (current)
        remember(request);
    const bool filled =
        current && window->fill(request.object, request.rect, point, content, found.packageFolder());
    if (view)
        view->releaseContent(old);
    else
        work->release(old);
    // Else the host has shown something else meanwhile, which may wait for its user interface.
    const bool stays = filled && self && content && window && window == m_manager->widget();
    if (stays && contentOf(window) == content)
        return reveal(request);
    return self && (isAwaiting() || m_manager->isVisible());
}

// Where the full user interface does not load, the simple one may.
void VTTipShowing::fallBack(const QPointer<VTView> &view)
{
    const QFileInfo simple(view->simpleRootFilePath());
    if (view->rootObject() || view->isWaiting() || !simple.isFile())
        return;
    view->loadQML(simple.absoluteFilePath());
    if (view)
        view->fitToContent();
}

bool VTTipShowing::isFilled(const QPointer<VTView> &view)
{
    if (view)
        fallBack(view);
    return view && (view->rootObject() || view->isWaiting());
}

// What cannot be filled is not shown.
bool VTTipShowing::reveal(const VTShowRequest &request)
{
    const QPointer<VTManager> self(m_manager);
    const QPointer<VTWidget> window = m_manager->widget();
    const QPointer<VTView> view = window->view();
    const QPointer<VTXmlElement> content = view->content();
    fallBack(view);
    if (!self || !content || !window || window != m_manager->widget() || contentOf(window) != content)
        return self && m_manager->isVisible();
    if (view->isWaiting()) {
        m_awaited = request;
    } else if (!view->rootObject()) {
        withdraw();
    } else {
        moveOffPopups(request);
        window->reveal();
        if (self && window && window == m_manager->widget() && window->isVisible())
            m_watch->begin(window, request.object, request.rect, request.position);
    }
    return true;
}

// A menu without its entries is of no use; everything else may be covered unless the host wants it otherwise.
void VTTipShowing::moveOffPopups(const VTShowRequest &request)
{
    VTWidget *const window = m_manager->widget();
    const QPoint begin = m_manager->tooltipPosition(request.position, request.widget()) - request.position;
    const auto around =
        surroundingsOf(request.object, request.rect, request.position, {begin.x(), begin.y()});
    if (!around.popups.isNull() && !around.screen.isNull())
        window->move(VTPlacement::placed(window->size(), around).topLeft());
}

void VTTipShowing::placeAnew()
{
    if (m_manager->isVisible())
        moveOffPopups(m_shown);
}

void VTTipShowing::revealAwaited()
{
    VTWidget *const window = m_manager->widget();
    if (!m_awaited || !window || !window->view() || window->view()->isWaiting())
        return;
    const VTShowRequest request = *m_awaited;
    m_awaited.reset();
    // Meanwhile the window system may have reported where the hidden window stood before.
    if (!window->isVisible())
        window->move(m_manager->tooltipPosition(request.position, request.widget()));
    reveal(request);
}

// The host has heard that there is content, and hears that it is not on screen.
void VTTipShowing::withdraw()
{
    VTWidget *const window = m_manager->widget();
    if (window->isVisible())
        window->hide();
    else
        window->view()->notification(VTNotificationHidden, QStringLiteral("hide"));
}

void VTTipShowing::rewriteShortcut(const VTShowRequest &request, VTXmlElement *content)
{
    VTInterface *const host = m_manager->vtinterface();
    if (!host)
        return;
    const QPointer<VTXmlElement> guard(content);
    const QString attribute = QStringLiteral("shortcut");
    const QString shortcut =
        host->shortCutForObject(request.key, request.object, content->attribute(attribute));
    if (guard && !shortcut.isEmpty())
        content->setAttribute(attribute, shortcut);
}

bool VTTipShowing::keepOrHide(const VTShowRequest &request)
{
    VTWidget *const window = m_manager->widget();
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

bool VTTipShowing::refill(VTWidget *window, QObject *object)
{
    const QPointer<VTManager> self(m_manager);
    const QPointer<VTWidget> guard(window);
    const QPointer<VTXmlElement> old = contentOf(window);
    if (!old)
        return false;
    const VTShowRequest request{keyOf(*old), m_shown.position, object, QRect()};
    VTFoundContent found;
    find(request.key, found);
    if (self && found.element && found.root)
        rewriteShortcut(request, found.element);
    // What the host has shown in the window meanwhile is there anew.
    if (guard && contentOf(guard) != old)
        return true;
    if (!guard || !found.element || !found.root)
        return false;
    found.taken = true;
    guard->refill(found.element, found.packageFolder());
    return !guard || isFilled(guard->view());
}

} // namespace Vidtips
