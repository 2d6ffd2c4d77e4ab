#include "Session.h"

#include <Vidtips/VTManager.h>
#include <Vidtips/VTView.h>
#include <Vidtips/VTXmlElement.h>

#include <QtCore/QDeadlineTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QCursor>
#include <QtGui/QHelpEvent>
#include <QtGui/QPixmapCache>
#include <QtGui/QScreen>
#include <QtQuick/private/qquickpixmapcache_p.h>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QPushButton>

#include <functional>

using namespace Vidtips;

namespace {

constexpr int mostPinned = 4;
constexpr int longestWait = 10000;
const char seenClip[] = "seenClip";

void letPass(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

void waitUntil(const char *what, const std::function<bool()> &isSo)
{
    const QDeadlineTimer deadline(longestWait);
    while (!isSo()) {
        if (deadline.hasExpired()) {
            qWarning("not within %d ms: %s", longestWait, what);
            return;
        }
        letPass(5);
    }
}

bool isPinned(const VTWidget *tip)
{
    return tip->view() && tip->view()->reserved();
}

} // namespace

Session::Session(const QStringList &dataPaths, Life life, const QPoint &place, quint32 seed)
    : m_life(life)
    , m_random(seed)
    , m_host(new SoakHost(m_settings, dataPaths, m_window, m_random))
{
    makeCommands();
    setLanguage(QStringLiteral("en_US"));
    m_window.move(place);
    m_window.show();
}

Session::~Session()
{
    rest();
    m_host.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void Session::makeCommands()
{
    auto *const layout = new QGridLayout(&m_window);
    const QStringList keys = m_host->keys() + QStringList{QStringLiteral("no.such.command")};
    for (const QString &key : keys) {
        if (m_window.findChild<QWidget *>(key))
            continue;
        auto *const command = new QPushButton(key, &m_window);
        command->setObjectName(key);
        // Qt keeps every cursor once it was needed, and this one is also that of the tips' buttons.
        command->setCursor(Qt::PointingHandCursor);
        layout->addWidget(command, m_commands.size() / 5, m_commands.size() % 5);
        m_commands.append(command);
    }
}

void Session::distrust()
{
    m_host->context().set(RestrictContent, true);
    // Sound content takes less than that on a busy machine, too.
    m_host->context().set(ScriptTimeout, 2000);
}

void Session::act()
{
    struct Choice
    {
        void (Session::*function)();
        int weight;
    };
    static const Choice choices[] = {
        {&Session::hover, 40},
        {&Session::wander, 10},
        {&Session::click, 3},
        {&Session::expand, 15},
        {&Session::pin, 3},
        {&Session::closePinned, 3},
        {&Session::playOrPause, 8},
        {&Session::scrub, 8},
        {&Session::replaceClip, 5},
        {&Session::switchLanguage, 2},
        {&Session::switchUserInterface, 2},
        {&Session::deactivate, 1},
    };
    int chosen = below(100);
    for (const Choice &choice : choices) {
        chosen -= choice.weight;
        if (chosen < 0) {
            (this->*choice.function)();
            break;
        }
    }
    ++m_acts;
    letPass(1 + below(below(4) ? 30 : 200));
    countClips();
}

void Session::rest()
{
    const QList<QPointer<VTWidget>> open = tips();
    for (const QPointer<VTWidget> &tip : open) {
        if (tip && isPinned(tip))
            tip->window()->close();
    }
    if (m_life == Life::Short)
        delete m_host->manager()->widget();
    setLanguage(QStringLiteral("en_US"));
    m_host->context().set(UseSimpleUserInterface, false);
    // The same tips each time, so that what is kept of the last ones is the same.
    for (QWidget *command : {m_commands.at(1), m_commands.first()}) {
        closeCurrent();
        show(command);
    }
    closeCurrent();
    // The user interface lets go of what a tip showed a moment after it is closed.
    letPass(600);
    waitUntil("clips are closed", [this] { return videos().isEmpty(); });
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // Pictures that nobody shows any more are kept for a while.
    QPixmapCache::clear();
    QQuickPixmap::purgeCache();
    const QPointer<VTWidget> current = m_host->manager()->widget();
    for (int i = 0; i < 3 && current && current->view(); ++i) {
        current->view()->engine()->collectGarbage();
        letPass(20);
    }
}

void Session::show(QWidget *command)
{
    point(command);
    waitUntil("a tip is shown", [&] {
        const VTWidget *const tip = m_host->manager()->widget();
        const VTXmlElement *const content = tip && tip->isVisible() ? tip->view()->content() : nullptr;
        return content && content->attribute(QStringLiteral("key")) == command->objectName();
    });
}

void Session::closeCurrent()
{
    // A pointer that stays on a command opens its tip again.
    QCursor::setPos(0, 0);
    const QPointer<VTWidget> current = m_host->manager()->widget();
    waitUntil("the tip is hidden", [&] {
        // It does not begin to fade out before it has faded in.
        if (current)
            current->hideAnimated();
        return !current || !current->isVisible();
    });
}

void Session::hover()
{
    point(m_commands.at(below(m_commands.size())));
}

void Session::wander()
{
    const VTWidget *const tip = m_host->manager()->widget();
    const bool isWithinTip = tip && tip->isVisible() && below(2) == 0;
    const QRect area = isWithinTip ? tip->window()->geometry() : QGuiApplication::primaryScreen()->geometry();
    QCursor::setPos(area.left() + below(area.width()), area.top() + below(area.height()));
}

void Session::click()
{
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(1, 1), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&m_window, &press);
}

void Session::expand()
{
    callRoot("expand");
}

void Session::pin()
{
    const VTWidget *const tip = m_host->manager()->widget();
    if (m_life == Life::Long || !tip || !tip->isVisible())
        return;
    int open = 0;
    for (const QPointer<VTWidget> &other : tips())
        open += other && isPinned(other);
    if (open >= mostPinned)
        return;
    callRoot("pin");
    ++m_pinned;
}

void Session::closePinned()
{
    for (const QPointer<VTWidget> &tip : tips()) {
        if (tip && isPinned(tip)) {
            tip->window()->close();
            return;
        }
    }
}

void Session::playOrPause()
{
    VTVideoComponent *const video = anyVideo();
    if (!video)
        return;
    if (video->state() == VTVideoComponent::playingState)
        video->pause();
    else if (below(4))
        video->play();
    else
        video->rewindToStart();
}

void Session::scrub()
{
    VTVideoComponent *const video = anyVideo();
    if (!video)
        return;
    video->setScrubbing(true);
    for (int i = below(5); i >= 0; --i)
        video->setProgress(below(100) / 100.0);
    video->setScrubbing(false);
}

void Session::replaceClip()
{
    static const QStringList names{
        QStringLiteral("line.mp4"),   QStringLiteral("circle.webm"),
        QStringLiteral("arc.avi"),    QStringLiteral("move.mp4"),
        QStringLiteral("mirror.avi"), QStringLiteral("rotate.webm"),
        QStringLiteral("none.mp4"),   QString(),
    };
    if (VTVideoComponent *const video = anyVideo())
        video->setSource(names.at(below(names.size())));
}

void Session::switchLanguage()
{
    setLanguage(below(2) ? QStringLiteral("de_DE") : QStringLiteral("en_US"));
}

void Session::switchUserInterface()
{
    m_host->context().set(UseSimpleUserInterface, below(3) == 0);
}

void Session::deactivate()
{
    QEvent event(QEvent::ApplicationDeactivate);
    QCoreApplication::sendEvent(qApp, &event);
}

void Session::point(QWidget *command)
{
    const QPoint within = command->rect().center();
    const QPoint global = command->mapToGlobal(within);
    QCursor::setPos(global);
    QHelpEvent event(QEvent::ToolTip, within, global);
    QCoreApplication::sendEvent(command, &event);
}

void Session::callRoot(const char *function)
{
    const VTWidget *const tip = m_host->manager()->widget();
    QObject *const root = tip && tip->isVisible() && tip->view() ? tip->view()->rootObject() : nullptr;
    // The simple user interface has no such functions.
    if (root && root->metaObject()->indexOfMethod((QByteArray(function) + "()").constData()) >= 0)
        QMetaObject::invokeMethod(root, function);
}

void Session::setLanguage(const QString &name)
{
    m_host->context().set(UserInterfaceLocale, name);
    m_host->context().set(ContentLocale, name);
}

void Session::countClips()
{
    for (VTVideoComponent *video : videos()) {
        if (video->loadProgress() <= 0.0 || video->property(seenClip) == video->source())
            continue;
        video->setProperty(seenClip, video->source());
        ++m_clips;
    }
}

QList<QPointer<VTWidget>> Session::tips() const
{
    QList<QPointer<VTWidget>> tips;
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget *widget : widgets) {
        auto *const tip = qobject_cast<VTWidget *>(widget);
        if (tip && tip->manager() == m_host->manager())
            tips.append(tip);
    }
    return tips;
}

QList<VTVideoComponent *> Session::videos() const
{
    QList<VTVideoComponent *> videos;
    for (const QPointer<VTWidget> &tip : tips()) {
        const QList<QGraphicsItem *> items =
            tip->view() ? tip->view()->scene()->items() : QList<QGraphicsItem *>();
        for (QGraphicsItem *item : items) {
            if (auto *video = qobject_cast<VTVideoComponent *>(item->toGraphicsObject()))
                videos.append(video);
        }
    }
    return videos;
}

VTVideoComponent *Session::anyVideo()
{
    const QList<VTVideoComponent *> all = videos();
    return all.isEmpty() ? nullptr : all.at(below(all.size()));
}
