#include "VTWidget.h"

#include "VTAccessibility_p.h"
#include "VTBoundedSize_p.h"
#include "VTManager.h"
#include "VTPointer_p.h"
#include "VTRemainingWindows_p.h"
#include "VTShowLog_p.h"
#include "VTSurroundings_p.h"
#include "VTTipContainer_p.h"
#include "VTTipContent_p.h"
#include "VTTipFade_p.h"
#include "VTTipKeeping_p.h"
#include "VTTipOwner_p.h"
#include "VTTipPlace_p.h"
#include "VTTipPopup_p.h"
#include "VTView.h"
#include "VTViewWork_p.h"
#include "VTWindowKind_p.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtGui/QMoveEvent>
#include <QtWidgets/QApplication>

#include <algorithm>

namespace Vidtips {

struct VIDTIPS_NO_EXPORT VTWidget::Private
{
    QPointer<VTView> view;
    QPointer<QWidget> reference;
    QRect referenceRect;
    bool referenceIsAway = false;
    VTTipPlace place;
    std::unique_ptr<VTTipPopup> popup; ///< where tips are popups
    VTTipFade *fade = nullptr;
    QTimer *timer = nullptr;
    QPointer<VTManager> manager;
    VTTipContainer container;
    bool handedOver = false;
    int visibilityChanges = 0; ///< on the stack
    bool hasHidden = false; ///< and the host does not know it yet

    /** Returns a fade's milliseconds; Wayland has none for windows. */
    int fadeDuration(contextKey key, int defaultValue) const
    {
        return popup ? 0 : setting(key, defaultValue).toInt();
    }

    QVariant setting(contextKey key, const QVariant &defaultValue) const
    {
        return manager ? manager->context().get(key, defaultValue) : defaultValue;
    }
};

VTWidget::VTWidget(VTManager *manager, QWidget *parent, QWidget *reference, QRect referenceRect)
    : QWidget(parent)
    , d(new Private)
{
    d->reference = reference;
    d->referenceRect = referenceRect;
    d->manager = manager;
    d->fade = new VTTipFade(this);
    d->timer = new QTimer(this);
    d->timer->setSingleShot(true);
    VTWindowKind::setFlags(this, d->setting(UseToolWindow, false).toBool());
    if (VTWindowKind::isPopup())
        d->popup = std::make_unique<VTTipPopup>(this);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_X11DoNotAcceptFocus);
    connect(d->fade, &VTTipFade::fadedOut, this, &VTWidget::hideAnimationFinished);
    connect(d->timer, &QTimer::timeout, this, [this] {
        qCDebug(showLog, "the tip goes, as the pointer has been away for %d ms", d->timer->interval());
        hideAnimated();
    });
}

VTWidget::~VTWidget()
{
    setView(nullptr);
    // Else QWidget's destructor would, and who watches over the tip would ask a window that is half gone.
    hide();
}

void VTWidget::checkMousePosition(const QPoint &globalPos)
{
    if (isSafe(globalPos))
        d->timer->stop();
    else if (!d->timer->isActive())
        setTimer();
}

bool VTWidget::isOnReference(const QPoint &globalPos) const
{
    if (d->referenceRect.isValid())
        return d->referenceRect.contains(globalPos);
    return d->reference && QApplication::widgetAt(globalPos) == d->reference;
}

bool VTWidget::isSafe(const QPoint &globalPos) const
{
    if (!d->referenceIsAway && isOnReference(globalPos))
        return true;
    const QSize margin = boundedSize(d->setting(SafeZoneMargin, QSize(20, 20)));
    return frameOnScreen()
        .adjusted(-margin.width(), -margin.height(), margin.width(), margin.height())
        .contains(globalPos);
}

void VTWidget::setView(VTView *view)
{
    if (view == d->view)
        return;
    VTView *const old = d->view;
    d->view = nullptr;
    if (old) {
        disconnect(old, nullptr, this, nullptr);
        old->end();
    }
    d->view = view;
    if (!view)
        return;
    connect(view, &VTView::reservedChanged, this, &VTWidget::contentReservedChanged);
    connect(view, &VTView::contentSizeChanged, this, &VTWidget::contentResized);
    view->move(0, 0);
}

VTView *VTWidget::view() const
{
    return d->view;
}

VTManager *VTWidget::manager() const
{
    return d->manager;
}

void VTWidget::deleteWithApplication()
{
    VTRemainingWindows::add(this);
}

void VTWidget::showWithContent(QObject *reference, const QRect &referenceRect, const QPoint &pos,
                               VTXmlElement *content, const QString &rootPath)
{
    if (fill(reference, referenceRect, pos, content, rootPath))
        reveal();
}

bool VTWidget::fill(QObject *reference, const QRect &referenceRect, const QPoint &pos, VTXmlElement *content,
                    const QString &rootPath)
{
    if (!content || !d->view)
        return false;
    d->reference = qobject_cast<QWidget *>(reference);
    d->referenceRect = referenceRect;
    if (!referenceRect.isValid() && d->reference)
        d->referenceRect = QRect(d->reference->mapToGlobal(QPoint(0, 0)), d->reference->size());
    d->referenceIsAway = false;
    VTTipOwner(this, d->reference).join();
    if (d->popup)
        askPopup(pos);
    const QPointer<VTWidget> self(this);
    d->place.put(pos);
    if (!isVisible())
        move(pos);
    if (!putContent(content, rootPath))
        return false;
    d->view->fitToContent();
    if (!self || contentOf(this) != content)
        return false;
    // The view tells of its size when it is shown, which is too late to find a place for it.
    if (!isVisible())
        contentResized();
    move(d->place.position());
    return true;
}

// The QML may send notifications on the way, and the host may answer by anything: another tip that it shows
// is the one that stays.
bool VTWidget::putContent(VTXmlElement *content, const QString &rootPath)
{
    const QPointer<VTWidget> self(this);
    const QPointer<VTView> view = d->view;
    const std::shared_ptr<VTViewWork> work = view->work();
    const QPointer<VTXmlElement> current(content);
    const auto isCurrent = [&] {
        return self && view && d->view == view && current && contentOf(this) == current;
    };
    view->setPackageRoot(QDir(rootPath));
    const QPointer<VTXmlElement> old = view->content();
    view->setContent(content);
    const QFileInfo userInterface(view->uiRootFilePath());
    if (isCurrent())
        view->exposeContent(rootPath);
    // Only now does no binding name the old tree any more.
    if (view)
        view->releaseContent(old);
    else
        work->release(old);
    if (isCurrent())
        view->loadQML(userInterface.absoluteFilePath());
    return isCurrent();
}

void VTWidget::reveal()
{
    if (d->popup && !d->popup->stand())
        return;
    if (!isVisible()) {
        showAnimated();
        // Without a window manager, a window that is shown again comes back where it was among the others.
        raise();
    }
    // The countdown may have begun on the pointer's way here from what the window showed before.
    if (isSafe(VTPointer::now().position))
        d->timer->stop();
}

// Other content, in the same place; the window may have been made a part of one of the host's.
void VTWidget::refill(VTXmlElement *content, const QString &rootPath)
{
    const QPointer<VTWidget> self(this);
    const VTXmlElement *const old = contentOf(this);
    const QString oldTitle = old ? old->attribute(QStringLiteral("title")) : QString();
    if (putContent(content, rootPath) && self && d->handedOver)
        retitle(oldTitle);
}

// A host may have called its window otherwise since it took the tip in.
void VTWidget::retitle(const QString &oldTitle)
{
    const VTXmlElement *const content = d->view ? d->view->content() : nullptr;
    if (!content)
        return;
    if (isWindow())
        setWindowTitle(content->property("title").toString());
    else if (d->container.widget() && d->container.widget()->windowTitle() == oldTitle)
        d->container.setTitle(content->attribute(QStringLiteral("title")));
}

// Qt has yet to tell what is left of the size in the pixels of the new screen.
bool VTWidget::event(QEvent *event)
{
    if (event->type() == QEvent::ScreenChangeInternal)
        QMetaObject::invokeMethod(
            this, [this] { renewSize(); }, Qt::QueuedConnection);
    return QWidget::event(event);
}

void VTWidget::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange && d->manager)
        d->manager->refreshLater();
}

void VTWidget::askPopup(const QPoint &pos)
{
    const QPoint begin = d->manager ? d->manager->tooltipPosition(QPoint(), nullptr) : QPoint();
    d->popup->ask(surroundingsOf(d->reference, d->referenceRect, pos - begin, QSize(begin.x(), begin.y())),
                  VTTipOwner(this, d->reference).footing());
}

bool VTWidget::isPlacedAnew() const
{
    return d->popup && d->popup->isMoving();
}

void VTWidget::refer(QWidget *reference, const QRect &rect)
{
    d->reference = reference;
    d->referenceRect = rect;
    d->referenceIsAway = !rect.isValid();
}

void VTWidget::reposition() { }

void VTWidget::showAnimated()
{
    if (isVisible())
        return;
    const int duration = d->fadeDuration(ShowDuration, 0);
    if (duration <= 0) {
        setWindowOpacity(1.0);
        show();
        return;
    }
    setWindowOpacity(VTTipFade::faint);
    show();
    contentResized();
    d->fade->fadeIn(duration);
}

void VTWidget::hideAnimated()
{
    if (!isVisible() || d->fade->isAtWork())
        return;
    const int duration = d->fadeDuration(HideDuration, 300);
    if (duration <= 0) {
        hideAnimationFinished();
        return;
    }
    d->fade->fadeOut(duration);
    d->timer->stop();
}

bool VTWidget::fadesOut() const
{
    return d->fade->fadesOut();
}

void VTWidget::stopFadeOut()
{
    if (!fadesOut())
        return;
    d->fade->cancel();
    // The countdown had led to the fade, and with it ended.
    if (!isSafe(VTPointer::now().position))
        setTimer();
}

void VTWidget::hideAnimationFinished()
{
    const QPointer<VTWidget> self(this);
    if (d->view)
        d->view->resetState();
    if (self)
        hide();
}

int VTWidget::idleInterval() const
{
    const bool stays = d->handedOver || (d->view && d->view->stayOpen());
    const float interval = stays ? 0.0F : d->setting(IdleInterval, 3000).toFloat();
    const float longest = 2.0e9F;
    return interval > 0.0F ? static_cast<int>(std::min(interval, longest)) : -1;
}

void VTWidget::setTimer()
{
    d->timer->stop();
    if (idleInterval() >= 0)
        d->timer->start(idleInterval());
}

void VTWidget::contentReservedChanged()
{
    if (!d->view || !d->view->reserved() || !d->manager)
        return;
    const QPointer<VTWidget> self(this);
    QWidget *container = nullptr;
    if (!d->manager->reserve(this, container) || !self)
        return;
    d->handedOver = true;
    VTAccessibility::hasBecomeDialog(this);
    d->timer->stop();
    setAttribute(Qt::WA_ShowWithoutActivating, false);
    setAttribute(Qt::WA_X11DoNotAcceptFocus, false);
    if (d->fade->isAtWork())
        d->fade->cancel();
    // Changing the parent hides the window, and the host, which hears of that, may destroy either parent.
    const QPointer<QWidget> host(container);
    const QPoint position = pos();
    hide();
    if (!self)
        return;
    const VTTipKeeping keeping(this, d->reference);
    if (keeping.canMoveInto(host) && self) {
        keeping.prepare(host);
        d->container = VTTipContainer(host);
        keeping.moveInto(d->container, position);
    } else if (self) {
        keeping.becomeWindow(position);
    }
}

void VTWidget::contentResized()
{
    if (!d->view)
        return;
    const QSize size = d->view->size();
    if (isWindow()) {
        takeSize(size + QSize(1, 1));
        return;
    }
    // Inside a window that has other things to show, only the tip itself is as large as its content.
    if (!parentWidget()->isWindow()) {
        setFixedSize(size);
        d->container.makeRoom();
        return;
    }
    setMinimumSize(size);
    setMaximumSize(size);
    parentWidget()->setMinimumSize(size);
    parentWidget()->setMaximumSize(size);
    const QSize grownWindow = window()->geometry().size() + QSize(1, 1);
    setFixedSize(grownWindow);
    window()->setFixedSize(grownWindow);
}

// Place and size in one request, or there would be an answer to the first with the old one of the second. A
// request for the size alone would confirm a place that was reported wrongly.
// On a screen of scale 1.5 or more Qt has window managers change sizes in steps of two pixels. They count
// from the base size.
void VTWidget::takeSize(const QSize &size)
{
    setBaseSize(size);
    if (isVisible() && !d->handedOver) {
        setMinimumSize(0, 0);
        setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
        setGeometry(QRect(d->place.position(), size));
    }
    setFixedSize(size);
    if (d->popup && isVisible() && !d->handedOver)
        d->popup->handleResize();
}

// What window managers were told of the size was in pixels of the screen before.
void VTWidget::renewSize()
{
    if (!isWindow() || !d->view)
        return;
    setMinimumSize(0, 0);
    setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    takeSize(d->view->size() + QSize(1, 1));
}

QRect VTWidget::findVisibleGeometry(QRect geometry, bool *)
{
    return geometry;
}

QRect VTWidget::frameOnScreen() const
{
    if (!isVisible() || d->handedOver)
        return {mapToGlobal(QPoint(0, 0)), frameGeometry().size()};
    return {d->place.position(), minimumSize().isEmpty() ? frameGeometry().size() : minimumSize()};
}

void VTWidget::moveEvent(QMoveEvent *event)
{
    if (d->handedOver || pos() == d->place.position())
        return;
    if (!event->spontaneous() || !isVisible())
        d->place.put(pos());
    else if (d->place.mustAskAgain(pos()))
        move(d->place.position());
}

void VTWidget::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        d->place.put(pos());
    if (!isSafe(VTPointer::now().position))
        setTimer();
    reposition();
}

void VTWidget::hideEvent(QHideEvent *event)
{
    // Of a window that is minimised one hears so, too, when it had been hidden before.
    if (event->spontaneous() && !isVisible())
        return;
    if (isPlacedAnew())
        return;
    // A fade that went on would take the next tip with it.
    d->fade->stop();
    // Movement during a fade-out may have started it again, and it would hide the next tip.
    d->timer->stop();
    d->hasHidden = true;
    // Whoever hides a window together with others goes on with it.
    if (d->visibilityChanges == 0)
        QMetaObject::invokeMethod(this, &VTWidget::tellIfHidden, Qt::QueuedConnection);
}

// The host, which hears of a hide, may delete the window. So it hears of it when Qt is done with that.
void VTWidget::setVisible(bool visible)
{
    const QPointer<VTWidget> self(this);
    ++d->visibilityChanges;
    QWidget::setVisible(visible);
    if (self && --d->visibilityChanges == 0)
        tellIfHidden();
}

void VTWidget::tellIfHidden()
{
    const bool isNews = d->hasHidden;
    d->hasHidden = false;
    if (isNews && d->view)
        d->view->notification(VTNotificationHidden, QStringLiteral("hide"));
}

} // namespace Vidtips
