#include "WidgetTest.h"

#include <QtWidgets/QVBoxLayout>

using namespace Vidtips;

/** The window of a tip that is kept. */
class tst_VTWidgetReserving : public WidgetTest
{
    Q_OBJECT

private slots:
    void init() { makeWindow(); }
    void cleanup() { endWindow(); }

    void reservingMakesAToolWindow();
    void reservingWithAReference();
    void reservingIntoAContainer();
    void reservingIntoAContainerWithALayout();
    void reservingIntoAContainerThatTheTipOwns();
    void reservingIntoAContainerOfAnotherWindow();
    void reservingWithoutAManager();
    void reservingIntoItself();
    void reservingStopsTimerAndFade();
    void reservedFalseDoesNothing();
    void reservedWindowDeletesItselfOnClose();
    void windowOfItsOwnIsNotReserved();
};

void tst_VTWidgetReserving::reservingMakesAToolWindow()
{
    VTXmlElement *const content = makeContent();
    content->setProperty("title", "From the property");
    showContent(content);
    window->setWindowModality(Qt::ApplicationModal);
    view->setReserved(true);
    QVERIFY(session->window() != window);
    QVERIFY(window->isVisible());
    QVERIFY(!window->parent());
    // Qt itself adds the system menu to a window that has a title.
    QCOMPARE(window->windowFlags() & ~Qt::WindowFlags(Qt::WindowSystemMenuHint),
             Qt::Tool | Qt::WindowTitleHint | Qt::WindowStaysOnTopHint | Qt::CustomizeWindowHint
                 | Qt::WindowCloseButtonHint);
    QCOMPARE(window->windowModality(), Qt::NonModal);
    QVERIFY(window->testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(window->windowTitle(), QStringLiteral("From the property"));
    QCOMPARE(window->pos(), QPoint(300, 200));
    QCOMPARE(session->host->windowTypes, QList<int>{1});
    QCOMPARE(session->host->notificationTexts(), QStringList{"6 cut"});
}

void tst_VTWidgetReserving::reservingWithAReference()
{
    QWidget main;
    auto *const button = new QWidget(&main);
    window->showWithContent(button, QRect(), QPoint(300, 200), makeContent(), packages->path());
    view->setReserved(true);
    QCOMPARE(window->parentWidget(), &main);
    QVERIFY(window->isWindow());
    QCOMPARE(window->windowTitle(), QStringLiteral("CUT"));
    QCOMPARE(window->pos(), QPoint(300, 200));
    window->contentResized();
    QCOMPARE(main.minimumSize(), QSize(0, 0));
    QCOMPARE(main.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}

void tst_VTWidgetReserving::reservingIntoAContainer()
{
    QPointer<QWidget> container(new QWidget);
    session->host->onCreateWindow = [&] { return container.data(); };
    VTXmlElement *const content = makeContent();
    content->setProperty("title", "Unused");
    showContent(content);
    view->setReserved(true);
    QCOMPARE(window->parentWidget(), container.data());
    QVERIFY(!window->isWindow());
    QVERIFY(!(window->windowFlags() & (Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)));
    QVERIFY(!window->testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(container->windowTitle(), QStringLiteral("CUT"));
    const Qt::WindowFlags added = Qt::WindowTitleHint | Qt::CustomizeWindowHint | Qt::WindowCloseButtonHint;
    QCOMPARE(container->windowFlags() & added, added);
    QVERIFY(qobject_cast<QVBoxLayout *>(container->layout()));
    QCOMPARE(container->layout()->contentsMargins(), QMargins());
    QCOMPARE(container->layout()->indexOf(window), 0);
    QVERIFY(container->isVisible());
    QTRY_VERIFY(window->isVisible());
    QCOMPARE(container->pos(), QPoint(300, 200));
    QCOMPARE(container->size(), QSize(101, 61));
    QCOMPARE(container->maximumSize(), QSize(101, 61));
    QCOMPARE(window->minimumSize(), QSize(101, 61));
    delete container;
    QVERIFY(!window);
    session->manager()->raise();
}

void tst_VTWidgetReserving::reservingIntoAContainerWithALayout()
{
    QWidget container;
    auto *const layout = new QHBoxLayout(&container);
    layout->setContentsMargins(1, 2, 3, 4);
    session->host->onCreateWindow = [guard = QPointer<QWidget>(&container)] { return guard.data(); };
    showContent();
    view->setReserved(true);
    QCOMPARE(container.layout(), layout);
    QCOMPARE(layout->contentsMargins(), QMargins(1, 2, 3, 4));
    QCOMPARE(layout->indexOf(window), 0);
}

// What a host returns that owns its window by the active one, when the click made the tip active.
void tst_VTWidgetReserving::reservingIntoAContainerThatTheTipOwns()
{
    auto *const inner = new QWidget(window, Qt::Tool);
    QPointer<QWidget> container(new QWidget(inner, Qt::Tool));
    session->host->onCreateWindow = [&] { return container.data(); };
    showContent();
    view->setReserved(true);
    QVERIFY(!container->parentWidget());
    QVERIFY(container->windowFlags() & Qt::Tool);
    QCOMPARE(window->parentWidget(), container.data());
    QVERIFY(container->isVisible());
    delete container;
    QVERIFY(!window);
}

void tst_VTWidgetReserving::reservingIntoAContainerOfAnotherWindow()
{
    QWidget other;
    const QPointer<QWidget> container(new QWidget(&other, Qt::Tool));
    session->host->onCreateWindow = [container] { return container.data(); };
    showContent();
    view->setReserved(true);
    QCOMPARE(container->parentWidget(), &other);
    QCOMPARE(window->parentWidget(), container.data());
    QCOMPARE(container->size(), QSize(101, 61));
    QCOMPARE(other.minimumSize(), QSize(0, 0));
}

void tst_VTWidgetReserving::reservingWithoutAManager()
{
    showContent();
    delete session->host;
    const Qt::WindowFlags before = window->windowFlags();
    view->setReserved(true);
    QCOMPARE(window->windowFlags(), before);
    QVERIFY(!window->testAttribute(Qt::WA_DeleteOnClose));
}

void tst_VTWidgetReserving::reservingIntoItself()
{
    session->host->onCreateWindow = [&] { return window.data(); };
    showContent();
    view->setReserved(true);
    QVERIFY(window->isWindow());
    QVERIFY(window->isVisible());
    QVERIFY(window->testAttribute(Qt::WA_DeleteOnClose));
}

void tst_VTWidgetReserving::reservingStopsTimerAndFade()
{
    session->set(IdleInterval, 1);
    showContent();
    window->hideAnimated();
    animation()->setCurrentTime(150);
    view->setReserved(true);
    QCOMPARE(animation()->state(), QAbstractAnimation::Stopped);
    QCOMPARE(window->windowOpacity(), 1.0);
    QVERIFY(!timer()->isActive());
    window->setTimer();
    QVERIFY(!timer()->isActive());
}

void tst_VTWidgetReserving::reservedFalseDoesNothing()
{
    showContent();
    window->contentReservedChanged();
    QCOMPARE(session->window(), window.data());
    view->setReserved(true);
    view->setReserved(false);
    QVERIFY(window->isVisible());
    view->setReserved(true);
    QCOMPARE(session->host->windowTypes.count(), 1);
}

void tst_VTWidgetReserving::reservedWindowDeletesItselfOnClose()
{
    showContent();
    const QPointer<QObject> root(view->content()->parent());
    view->setReserved(true);
    window->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!window);
    QVERIFY(!root);
    session->manager()->raise();
    session->manager()->setStayOnTop(true);
}

void tst_VTWidgetReserving::windowOfItsOwnIsNotReserved()
{
    VTWidget widget(session->manager(), nullptr, nullptr, QRect());
    auto *const own = new VTView(session->manager(), &widget);
    widget.setView(own);
    const Qt::WindowFlags before = widget.windowFlags();
    own->setReserved(true);
    QCOMPARE(widget.windowFlags(), before);
    QVERIFY(!widget.testAttribute(Qt::WA_DeleteOnClose));
    QVERIFY(session->host->windowTypes.isEmpty());
}

QTEST_MAIN(tst_VTWidgetReserving)
#include "tst_vtwidgetreserving.moc"
