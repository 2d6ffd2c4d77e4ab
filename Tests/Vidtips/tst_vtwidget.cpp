#include "TestHost.h"
#include "TestPackage.h"

#include <QtDeclarative/QDeclarativeItem>

#include <QtCore/QPropertyAnimation>
#include <QtCore/QTimer>
#include <QtGui/QCursor>
#include <QtGui/QWindow>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QVBoxLayout>

using namespace Vidtips;

/** Notes how opaque a window is when it is shown. */
class OpacityAtShow : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show)
            opacity = qobject_cast<QWidget *>(watched)->windowOpacity();
        return false;
    }

    qreal opacity = 0.0;
};

class tst_VTWidget : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void slotsInDeclaredOrder();
    void construction();
    void toolWindowSettingChangesNothing();
    void setViewReplacesTheView();
    void destructorDeletesViewAndContent_data();
    void destructorDeletesViewAndContent();

    void nullContentChangesNothing();
    void showWithoutAViewDoesNothing();
    void showWithContentSetsEverything();
    void sameContentIsKept();
    void replacedContentIsDeletedWithItsContainer();
    void replacedContentIsNotReachable();
    void missingUserInterfaceIsReported();
    void emptyReferenceRectIsTheWidgets();

    void showAtOnce();
    void showFadesIn();
    void fadeInTakesTheSizeOfTheView();
    void showOfAVisibleWindowDoesNothing();
    void hideAtOnceResetsTheState();
    void hideFadesOut();
    void hideDuringAFadeDoesNothing();
    void fadeInDoesNotHide();
    void fadeOutEndsWithTheTip();
    void fadeOutThatEndsInAStateChange();
    void reservingInTheLastMomentOfAFadeOut();
    void showDuringAFadeOutDoesNotCancelIt();
    void negativeDurationsAreNone();
    void everyHideIsNotified();
    void hideWithoutContentIsNotNotified();

    void idleTimer_data();
    void idleTimer();
    void idleTimerHides();
    void idleTimerDuringAFadeIn();
    void pointerOutsideStartsTheTimerOnce();
    void pointerInsideStopsTheTimer();
    void stayingOpenNeverHides();
    void hiddenWindowHasNoTimer();
    void safePointerStopsTheTimerOfAShow();
    void showEventArmsTheTimer_data();
    void showEventArmsTheTimer();

    void safeZone_data();
    void safeZone();
    void safeZoneMargin();
    void safeInsideTheReferenceRectangle();
    void safeOverTheReferenceWidget();

    void findVisibleGeometryIsIdentity();
    void repositionMovesNothing();
    void contentSizePlusOne();
    void resizedWindowStaysWhereItWasShown();
    void windowFollowsTheUserInterface();

    void reservingMakesAToolWindow();
    void reservingWithAReference();
    void reservingIntoAContainer();
    void reservingIntoAContainerWithALayout();
    void reservingIntoAContainerThatTheTipOwns();
    void reservingIntoAContainerOfAnotherWindow();
    void reservingIntoItself();
    void reservingWithoutAManager();
    void reservingStopsTimerAndFade();
    void reservedFalseDoesNothing();
    void reservedWindowDeletesItselfOnClose();
    void windowOfItsOwnIsNotReserved();

private:
    VTXmlElement *makeContent(const QString &key = QStringLiteral("cut"));
    void showContent(VTXmlElement *content = nullptr);
    QTimer *timer() const { return window->findChild<QTimer *>(); }
    QPropertyAnimation *animation() const { return window->findChild<QPropertyAnimation *>(); }

    QScopedPointer<TestPackages> packages;
    QScopedPointer<TestSession> session;
    QPointer<VTWidget> window;
    QPointer<VTView> view;
};

void tst_VTWidget::init()
{
    packages.reset(new TestPackages);
    packages->writeUserInterface("Basic", R"(property string title: vidtip.attribute("title"))", 100, 60);
    packages->writeControl("Basic", "tips.xml", "<vidtip key=\"cut\" title=\"Cut\"/>");
    session.reset(new TestSession({packages->path()}));
    // The window as the manager makes it, before any content: the key is unknown.
    QVERIFY(!session->host->show("none", {}, nullptr));
    window = session->window();
    view = session->view();
    QCursor::setPos(0, 0);
}

void tst_VTWidget::cleanup()
{
    session.reset();
    delete window;
}

VTXmlElement *tst_VTWidget::makeContent(const QString &key)
{
    auto *const root = new VTXmlElement;
    auto *const content = new VTXmlElement(root);
    content->setAttribute("key", key);
    content->setAttribute("title", key.toUpper());
    content->setAttribute("VTPackagName", "Basic");
    return content;
}

void tst_VTWidget::showContent(VTXmlElement *content)
{
    window->showWithContent(nullptr, QRect(), QPoint(300, 200), content ? content : makeContent(),
                            packages->path());
}

void tst_VTWidget::slotsInDeclaredOrder()
{
    const QMetaObject &meta = VTWidget::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(i).access(), QMetaMethod::Public);
        methods << meta.method(i).methodSignature() + ' ' + meta.method(i).parameterNames().join(',');
    }
    // NOLINTNEXTLINE(bugprone-suspicious-missing-comma): the first entry takes two lines.
    QCOMPARE(methods,
             (QStringList{"showWithContent(QObject*,QRect,QPoint,VTXmlElement*,QString) "
                          "reference,referenceRect,pos,content,rootPath",
                          "reposition() ", "hideAnimated() ", "hideAnimationFinished() ", "showAnimated() ",
                          "setTimer() ", "contentReservedChanged() ", "contentResized() ",
                          "findVisibleGeometry(QRect,bool*) geometry,move",
                          "findVisibleGeometry(QRect) geometry"}));
    QCOMPARE(meta.propertyCount(), QWidget::staticMetaObject.propertyCount());
}

void tst_VTWidget::construction()
{
    QWidget reference;
    VTWidget widget(session->manager(), nullptr, &reference, QRect(1, 2, 3, 4));
    QCOMPARE(widget.windowFlags(), Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    QVERIFY(widget.testAttribute(Qt::WA_ShowWithoutActivating));
    QVERIFY(!widget.view());
    QCOMPARE(widget.manager(), session->manager());
    QVERIFY(!widget.isVisible());
    const auto *const idle = widget.findChild<QTimer *>();
    QVERIFY(idle->isSingleShot() && !idle->isActive());
    const auto *const fade = widget.findChild<QPropertyAnimation *>();
    QCOMPARE(fade->propertyName(), QByteArray("windowOpacity"));
    QCOMPARE(fade->targetObject(), &widget);
    QVERIFY(widget.isSafe(QPoint(1, 2)));
    widget.hideAnimated();
    QCOMPARE(fade->state(), QAbstractAnimation::Stopped);
    widget.contentResized();
    widget.contentReservedChanged();
    widget.setTimer();
    QVERIFY(idle->isActive());
    widget.show();
    widget.hide();
    QVERIFY(session->host->notifications.isEmpty());
}

void tst_VTWidget::toolWindowSettingChangesNothing()
{
    session->set(UseToolWindow, true);
    const VTWidget widget(session->manager(), nullptr, nullptr, QRect());
    QCOMPARE(widget.windowFlags(), window->windowFlags());
}

void tst_VTWidget::setViewReplacesTheView()
{
    auto *const next = new VTView(session->manager(), window);
    next->move(5, 5);
    window->setView(next);
    QVERIFY(!view);
    QCOMPARE(window->view(), next);
    QCOMPARE(next->pos(), QPoint(0, 0));
    window->setView(next);
    QCOMPARE(window->view(), next);
    next->resize(30, 20);
    Q_EMIT next->contentSizeChanged();
    QCOMPARE(window->size(), QSize(31, 21));
    window->setView(nullptr);
    QVERIFY(!window->view());
}

void tst_VTWidget::destructorDeletesViewAndContent_data()
{
    QTest::addColumn<bool>("isChild");
    QTest::newRow("view inside") << true;
    QTest::newRow("view taken out") << false;
}

void tst_VTWidget::destructorDeletesViewAndContent()
{
    QFETCH(bool, isChild);
    showContent();
    if (!isChild)
        view->setParent(nullptr);
    const QPointer<QObject> root(view->content()->parent());
    delete window;
    QVERIFY(!view);
    QVERIFY(!root);
}

void tst_VTWidget::nullContentChangesNothing()
{
    QWidget reference;
    reference.setGeometry(1000, 1000, 10, 10);
    window->showWithContent(&reference, QRect(2000, 2000, 5, 5), QPoint(9, 9), nullptr, "/tmp");
    QVERIFY(!window->isVisible());
    QVERIFY(window->pos() != QPoint(9, 9));
    QVERIFY(!window->isSafe(QPoint(2001, 2001)));
    QVERIFY(!view->rootContext()->contextProperty("vidTipView").isValid());
}

void tst_VTWidget::showWithoutAViewDoesNothing()
{
    VTWidget widget(session->manager(), nullptr, nullptr, QRect());
    VTXmlElement content;
    widget.showWithContent(nullptr, QRect(), {}, &content, "/tmp");
    QVERIFY(!widget.isVisible());
}

void tst_VTWidget::showWithContentSetsEverything()
{
    VTXmlElement *const content = makeContent();
    window->showWithContent(nullptr, QRect(), QPoint(300, 200), content, "/tmp/../tmp");
    QVERIFY(window->isVisible());
    QCOMPARE(window->windowOpacity(), 1.0);
    QCOMPARE(window->pos(), QPoint(300, 200));
    QCOMPARE(view->content(), content);
    QCOMPARE(view->packageRoot().path(), QStringLiteral("/tmp"));
    QDeclarativeContext *const context = view->rootContext();
    QCOMPARE(context->contextProperty("vidtip").value<QObject *>(), content);
    QCOMPARE(context->contextProperty("dataLocation").toString(), QStringLiteral("/tmp/../tmp"));
    QCOMPARE(context->contextProperty("vidTipView").value<QObject *>(), view.data());
    QCOMPARE(view->source(), QUrl::fromLocalFile(packages->filePath("Basic.vidtips/ui/VidtipsUI.qml")));
    QCOMPARE(view->rootObject()->property("title").toString(), QStringLiteral("CUT"));
}

void tst_VTWidget::sameContentIsKept()
{
    const QPointer<VTXmlElement> content(makeContent());
    showContent(content);
    showContent(content);
    QVERIFY(content);
    QCOMPARE(view->content(), content.data());
}

void tst_VTWidget::replacedContentIsDeletedWithItsContainer()
{
    const QPointer<VTXmlElement> content(makeContent());
    const QPointer<QObject> root(content->parent());
    showContent(content);
    const QPointer<VTXmlElement> orphan(new VTXmlElement);
    orphan->setAttribute("VTPackagName", "Basic");
    showContent(orphan);
    QVERIFY(!content && !root);
    QObject owner;
    auto *const owned = new VTXmlElement(&owner);
    owned->setAttribute("VTPackagName", "Basic");
    showContent(owned);
    QVERIFY(!orphan);
    showContent();
    QVERIFY(owner.children().isEmpty());
}

void tst_VTWidget::replacedContentIsNotReachable()
{
    packages->writeUserInterface("Basic", R"(
        property variant tip: vidtip
        function titleNow() { return vidtip ? vidtip.attribute("title") : "none" }
        Component.onDestruction: vidTipView.notification(9, titleNow()))");
    session->set(MessageThreshold, 400);
    showContent();
    QString seenAtDeath;
    connect(view->content(), &QObject::destroyed, this, [&] {
        QVariant title;
        QMetaObject::invokeMethod(view->rootObject(), "titleNow", Q_RETURN_ARG(QVariant, title));
        seenAtDeath = title.toString();
    });
    showContent(makeContent("copy"));
    QCOMPARE(seenAtDeath, QStringLiteral("COPY"));
    delete view->content()->parent();
    QVERIFY(!view->content());
    QVariant title;
    QMetaObject::invokeMethod(view->rootObject(), "titleNow", Q_RETURN_ARG(QVariant, title));
    QCOMPARE(title.toString(), QStringLiteral("none"));
    showContent(makeContent("paste"));
    session->host->notifications.clear();
    delete window;
    QCOMPARE(session->host->notificationTexts(), QStringList{"9 paste"});
    QCOMPARE(session->host->notifications.first().value.toString(), QStringLiteral("PASTE"));
}

void tst_VTWidget::missingUserInterfaceIsReported()
{
    session->set(MessageThreshold, 400);
    VTXmlElement *const content = makeContent();
    content->setAttribute("ui", "ui/Missing.qml");
    showContent(content);
    const QList<QPair<int, QString>> messages{
        {400, "Can't find :" + QDir::current().absoluteFilePath("ui/Missing.qml")}};
    QCOMPARE(session->host->messages, messages);
    QVERIFY(window->isVisible());
    QVERIFY(view->source().isEmpty());
}

void tst_VTWidget::emptyReferenceRectIsTheWidgets()
{
    QWidget reference;
    reference.setGeometry(600, 500, 40, 30);
    window->showWithContent(&reference, QRect(), QPoint(300, 200), makeContent(), packages->path());
    const QPoint corner = reference.mapToGlobal(QPoint(0, 0));
    QVERIFY(window->isSafe(corner));
    QVERIFY(window->isSafe(corner + QPoint(39, 29)));
    QVERIFY(!window->isSafe(corner + QPoint(40, 29)));
    QObject object;
    window->showWithContent(&object, QRect(), QPoint(300, 200), makeContent(), packages->path());
    QVERIFY(!window->isSafe(corner));
}

void tst_VTWidget::showAtOnce()
{
    window->setWindowOpacity(0.3);
    window->showAnimated();
    QVERIFY(window->isVisible());
    QCOMPARE(window->windowOpacity(), 1.0);
    QCOMPARE(animation()->state(), QAbstractAnimation::Stopped);
}

void tst_VTWidget::showFadesIn()
{
    session->set(ShowDuration, 60);
    OpacityAtShow atShow;
    window->installEventFilter(&atShow);
    showContent();
    QVERIFY(window->isVisible());
    QVERIFY(qAbs(atShow.opacity - 0.1) < 0.02);
    QVERIFY(qAbs(window->windowOpacity() - 0.1) < 0.02);
    QCOMPARE(animation()->duration(), 60);
    QCOMPARE(animation()->startValue().toReal(), 0.1);
    QCOMPARE(animation()->endValue().toReal(), 1.0);
    QCOMPARE(animation()->easingCurve().type(), QEasingCurve::Linear);
    QTRY_COMPARE(animation()->state(), QAbstractAnimation::Stopped);
    QCOMPARE(window->windowOpacity(), 1.0);
    QVERIFY(window->isVisible());
    QCOMPARE(window->size(), QSize(101, 61));
}

void tst_VTWidget::fadeInTakesTheSizeOfTheView()
{
    session->set(ShowDuration, 60);
    view->resize(70, 50);
    window->showAnimated();
    QCOMPARE(window->size(), QSize(71, 51));
}

void tst_VTWidget::showOfAVisibleWindowDoesNothing()
{
    showContent();
    window->setWindowOpacity(0.5);
    window->showAnimated();
    QVERIFY(qAbs(window->windowOpacity() - 0.5) < 0.01);
}

void tst_VTWidget::hideAtOnceResetsTheState()
{
    session->set(HideDuration, 0);
    packages->writeUserInterface("Basic", R"(states: State { name: "open" })");
    showContent();
    QVERIFY(view->rootObject()->setProperty("state", "open"));
    window->hideAnimated();
    QVERIFY(!window->isVisible());
    QCOMPARE(view->rootObject()->property("state").toString(), QString());
    QCOMPARE(animation()->state(), QAbstractAnimation::Stopped);
}

void tst_VTWidget::hideFadesOut()
{
    showContent();
    window->setTimer();
    window->setWindowOpacity(0.5);
    window->hideAnimated();
    QCOMPARE(animation()->duration(), 300);
    QVERIFY(qAbs(animation()->startValue().toReal() - 0.5) < 0.01);
    QCOMPARE(animation()->endValue().toReal(), 0.0);
    QVERIFY(!timer()->isActive());
    QVERIFY(window->isVisible());
    QTRY_VERIFY(!window->isVisible());
    QCOMPARE(session->host->notificationTexts(), QStringList{"6 cut"});
}

void tst_VTWidget::hideDuringAFadeDoesNothing()
{
    showContent();
    window->hideAnimated();
    animation()->setCurrentTime(100);
    const int time = animation()->currentTime();
    session->set(HideDuration, 0);
    window->hideAnimated();
    QVERIFY(window->isVisible());
    QVERIFY(animation()->currentTime() >= time);
    QCOMPARE(animation()->duration(), 300);
}

void tst_VTWidget::fadeInDoesNotHide()
{
    session->set(HideDuration, 1);
    session->set(ShowDuration, 1);
    for (int i = 0; i < 2; ++i) {
        showContent();
        QTRY_COMPARE(animation()->state(), QAbstractAnimation::Stopped);
        QVERIFY(window->isVisible());
        window->hideAnimated();
        QTRY_VERIFY(!window->isVisible());
    }
    QCOMPARE(session->host->notifications.count(), 2);
    showContent();
    window->hide();
    showContent();
    QTRY_COMPARE(animation()->state(), QAbstractAnimation::Stopped);
    QVERIFY(window->isVisible());
}

void tst_VTWidget::fadeOutEndsWithTheTip()
{
    session->set(HideDuration, 100000);
    showContent();
    window->hideAnimated();
    QTRY_VERIFY(window->windowOpacity() < 1.0);
    window->hide();
    QCOMPARE(animation()->state(), QAbstractAnimation::Stopped);
    showContent();
    QCOMPARE(window->windowOpacity(), 1.0);
    QCOMPARE(animation()->state(), QAbstractAnimation::Stopped);
}

void tst_VTWidget::fadeOutThatEndsInAStateChange()
{
    packages->writeUserInterface("Basic", R"(states: State { name: "grown" })");
    session->set(MessageThreshold, 400);
    session->set(HideDuration, 1000);
    showContent();
    auto *const root = qobject_cast<QDeclarativeItem *>(view->rootObject());
    window->hideAnimated();
    // An animation that the QML starts advances all others, and so may end the fade.
    connect(root, &QDeclarativeItem::stateChanged, window.data(),
            [this] { animation()->setCurrentTime(animation()->duration()); });
    root->setProperty("state", "grown");
    QCOMPARE(animation()->state(), QAbstractAnimation::Stopped);
    QTRY_VERIFY(!window->isVisible());
    QCOMPARE(root->property("state").toString(), QString());
    QVERIFY(session->host->messages.isEmpty());
}

void tst_VTWidget::reservingInTheLastMomentOfAFadeOut()
{
    session->set(HideDuration, 1);
    showContent();
    window->hideAnimated();
    connect(animation(), &QPropertyAnimation::finished, window.data(),
            [this] { window->view()->setReserved(true); });
    QTRY_VERIFY(window->view()->reserved());
    QCoreApplication::processEvents();
    QVERIFY(window->isVisible());
    QCOMPARE(window->windowOpacity(), 1.0);
}

void tst_VTWidget::showDuringAFadeOutDoesNotCancelIt()
{
    session->set(HideDuration, 40);
    showContent();
    window->hideAnimated();
    showContent(makeContent("copy"));
    QCOMPARE(view->rootObject()->property("title").toString(), QStringLiteral("COPY"));
    QCOMPARE(animation()->state(), QAbstractAnimation::Running);
    QTRY_VERIFY(!window->isVisible());
    QCOMPARE(session->host->notificationTexts(), QStringList{"6 copy"});
}

void tst_VTWidget::negativeDurationsAreNone()
{
    session->set(ShowDuration, -5);
    session->set(HideDuration, -5);
    showContent();
    QCOMPARE(window->windowOpacity(), 1.0);
    window->hideAnimated();
    QVERIFY(!window->isVisible());
}

void tst_VTWidget::everyHideIsNotified()
{
    session->set(HideDuration, 0);
    showContent();
    window->hide();
    showContent();
    window->hideAnimated();
    showContent();
    window->close();
    QCOMPARE(session->host->notificationTexts(), (QStringList{"6 cut", "6 cut", "6 cut"}));
    QCOMPARE(session->host->notifications.first().value, QVariant(QStringLiteral("hide")));
    window->hide();
    QCOMPARE(session->host->notifications.count(), 3);
}

void tst_VTWidget::hideWithoutContentIsNotNotified()
{
    window->show();
    window->hide();
    window->setView(nullptr);
    window->show();
    window->hideAnimationFinished();
    QVERIFY(!window->isVisible());
    QVERIFY(session->host->notifications.isEmpty());
}

void tst_VTWidget::idleTimer_data()
{
    QTest::addColumn<QVariant>("setting");
    QTest::addColumn<bool>("stayOpen");
    QTest::addColumn<int>("interval");
    QTest::newRow("default") << QVariant() << false << 3000;
    QTest::newRow("set") << QVariant(50) << false << 50;
    QTest::newRow("fraction") << QVariant(50.9) << false << 50;
    QTest::newRow("text") << QVariant("70") << false << 70;
    QTest::newRow("less than a millisecond") << QVariant(0.5) << false << 0;
    QTest::newRow("zero") << QVariant(0) << false << -1;
    QTest::newRow("negative") << QVariant(-1) << false << -1;
    QTest::newRow("not a number") << QVariant("abc") << false << -1;
    QTest::newRow("huge") << QVariant(1e30) << false << 2000000000;
    QTest::newRow("staying open") << QVariant(50) << true << -1;
}

void tst_VTWidget::idleTimer()
{
    QFETCH(QVariant, setting);
    QFETCH(bool, stayOpen);
    QFETCH(int, interval);
    if (setting.isValid())
        session->set(IdleInterval, setting);
    view->setStayOpen(stayOpen);
    timer()->start(1000000);
    window->setTimer();
    QCOMPARE(timer()->isActive(), interval >= 0);
    if (interval >= 0)
        QCOMPARE(timer()->interval(), interval);
}

void tst_VTWidget::idleTimerHides()
{
    session->set(IdleInterval, 1);
    session->set(HideDuration, 1);
    showContent();
    window->setTimer();
    QTRY_VERIFY(!window->isVisible());
    QCOMPARE(session->host->notificationTexts(), QStringList{"6 cut"});
}

void tst_VTWidget::idleTimerDuringAFadeIn()
{
    session->set(ShowDuration, 100000);
    session->set(IdleInterval, 1);
    showContent();
    QSignalSpy timeouts(timer(), &QTimer::timeout);
    QTRY_COMPARE(timeouts.count(), 1);
    QVERIFY(window->isVisible());
    QVERIFY(!timer()->isActive());
    QCOMPARE(animation()->state(), QAbstractAnimation::Running);
    window->checkMousePosition(QPoint(3000, 3000));
    QVERIFY(timer()->isActive());
}

void tst_VTWidget::pointerOutsideStartsTheTimerOnce()
{
    showContent();
    timer()->stop();
    window->checkMousePosition(QPoint(3000, 3000));
    QVERIFY(timer()->isActive());
    QCOMPARE(timer()->interval(), 3000);
    timer()->setInterval(5000);
    window->checkMousePosition(QPoint(3000, 3001));
    QCOMPARE(timer()->interval(), 5000);
}

void tst_VTWidget::pointerInsideStopsTheTimer()
{
    showContent();
    window->setTimer();
    window->checkMousePosition(QPoint(310, 210));
    QVERIFY(!timer()->isActive());
    window->checkMousePosition(QPoint(310, 210));
    QVERIFY(!timer()->isActive());
}

void tst_VTWidget::stayingOpenNeverHides()
{
    showContent();
    view->setStayOpen(true);
    timer()->stop();
    window->checkMousePosition(QPoint(3000, 3000));
    QVERIFY(!timer()->isActive());
}

void tst_VTWidget::hiddenWindowHasNoTimer()
{
    showContent();
    window->setTimer();
    window->hide();
    QVERIFY(!timer()->isActive());
}

void tst_VTWidget::safePointerStopsTheTimerOfAShow()
{
    showContent();
    window->setTimer();
    QCursor::setPos(310, 210);
    showContent(makeContent("copy"));
    QVERIFY(!timer()->isActive());
}

void tst_VTWidget::showEventArmsTheTimer_data()
{
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<bool>("armed");
    QTest::newRow("outside") << QPoint(0, 0) << true;
    QTest::newRow("in the zone") << QPoint(290, 190) << false;
}

void tst_VTWidget::showEventArmsTheTimer()
{
    QFETCH(QPoint, pointer);
    QCursor::setPos(pointer);
    showContent();
    QTEST(timer()->isActive(), "armed");
}

void tst_VTWidget::safeZone_data()
{
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<bool>("safe");
    // The window covers 300…400 by 200…260.
    QTest::newRow("inside") << QPoint(350, 230) << true;
    QTest::newRow("20 left") << QPoint(280, 230) << true;
    QTest::newRow("21 left") << QPoint(279, 230) << false;
    QTest::newRow("20 right") << QPoint(420, 230) << true;
    QTest::newRow("21 right") << QPoint(421, 230) << false;
    QTest::newRow("20 above") << QPoint(350, 180) << true;
    QTest::newRow("21 above") << QPoint(350, 179) << false;
    QTest::newRow("20 below") << QPoint(350, 280) << true;
    QTest::newRow("21 below") << QPoint(350, 281) << false;
    QTest::newRow("corner") << QPoint(420, 280) << true;
}

void tst_VTWidget::safeZone()
{
    QFETCH(QPoint, point);
    showContent();
    QCOMPARE(window->frameGeometry(), QRect(300, 200, 101, 61));
    QTEST(window->isSafe(point), "safe");
}

void tst_VTWidget::safeZoneMargin()
{
    showContent();
    session->set(SafeZoneMargin, QSize(50, 0));
    QVERIFY(window->isSafe(QPoint(250, 200)));
    QVERIFY(!window->isSafe(QPoint(249, 200)));
    QVERIFY(!window->isSafe(QPoint(250, 199)));
}

void tst_VTWidget::safeInsideTheReferenceRectangle()
{
    window->showWithContent(nullptr, QRect(600, 500, 10, 10), QPoint(300, 200), makeContent(),
                            packages->path());
    QVERIFY(window->isSafe(QPoint(600, 500)));
    QVERIFY(window->isSafe(QPoint(609, 509)));
    QVERIFY(!window->isSafe(QPoint(610, 509)));
    QVERIFY(window->isSafe(QPoint(280, 200)));
}

void tst_VTWidget::safeOverTheReferenceWidget()
{
    QWidget reference;
    reference.setGeometry(600, 400, 40, 30);
    reference.show();
    QVERIFY(QTest::qWaitForWindowExposed(&reference));
    const QPoint over = reference.mapToGlobal(QPoint(20, 15));
    VTWidget widget(session->manager(), nullptr, &reference, QRect());
    widget.resize(10, 10);
    QVERIFY(widget.isSafe(over));
    QVERIFY(!widget.isSafe(QPoint(3000, 3000)));
    VTWidget without(session->manager(), nullptr, nullptr, QRect());
    without.resize(10, 10);
    QVERIFY(!without.isSafe(over));
    QVERIFY(!without.isSafe(QPoint(-4000, -4000)));
    VTWidget elsewhere(session->manager(), nullptr, &reference, QRect(1, 1, 1, 1));
    elsewhere.resize(10, 10);
    QVERIFY(!elsewhere.isSafe(over));
}

void tst_VTWidget::findVisibleGeometryIsIdentity()
{
    bool move = true;
    const QRect outside(-5000, 9000, 70000, 1);
    QCOMPARE(window->findVisibleGeometry(outside, &move), outside);
    QVERIFY(move);
    move = false;
    QCOMPARE(window->findVisibleGeometry(outside, &move), outside);
    QVERIFY(!move);
    QCOMPARE(window->findVisibleGeometry(QRect()), QRect());
}

void tst_VTWidget::repositionMovesNothing()
{
    window->move(-500, 9000);
    window->show();
    const QRect before = window->geometry();
    window->reposition();
    QCOMPARE(window->geometry(), before);
}

void tst_VTWidget::contentSizePlusOne()
{
    view->resize(70, 50);
    window->contentResized();
    QCOMPARE(window->size(), QSize(71, 51));
    QCOMPARE(window->minimumSize(), QSize(71, 51));
    QCOMPARE(window->maximumSize(), QSize(71, 51));
    window->contentResized();
    QCOMPARE(window->size(), QSize(71, 51));
    view->resize(20, 10);
    window->contentResized();
    QCOMPARE(window->size(), QSize(21, 11));
}

// As if a window manager had reported the corner of the screen before it placed the window, and then insisted
// on another place.
void tst_VTWidget::resizedWindowStaysWhereItWasShown()
{
    showContent();
    window->windowHandle()->setPosition(0, 0);
    QTRY_COMPARE(window->pos(), QPoint(300, 200));
    // Its last word, when it has had the time for all of its answers.
    QTRY_VERIFY((window->windowHandle()->setPosition(40, 50), window->isSafe(QPoint(20, 30))));
    view->resize(20, 10);
    window->contentResized();
    QCOMPARE(window->pos(), QPoint(40, 50));
    QVERIFY(!window->isSafe(QPoint(19, 30)));
    window->move(0, 0);
    window->contentResized();
    QCOMPARE(window->pos(), QPoint(0, 0));
}

void tst_VTWidget::windowFollowsTheUserInterface()
{
    showContent();
    QCOMPARE(window->size(), QSize(101, 61));
    view->rootObject()->setProperty("width", 200);
    QTRY_COMPARE(window->size(), QSize(201, 61));
    QCOMPARE(view->sceneRect(), QRectF(0, 0, 200, 60));
}

void tst_VTWidget::reservingMakesAToolWindow()
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

void tst_VTWidget::reservingWithAReference()
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

void tst_VTWidget::reservingIntoAContainer()
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

void tst_VTWidget::reservingIntoAContainerWithALayout()
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
void tst_VTWidget::reservingIntoAContainerThatTheTipOwns()
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

void tst_VTWidget::reservingIntoAContainerOfAnotherWindow()
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

void tst_VTWidget::reservingWithoutAManager()
{
    showContent();
    delete session->host;
    const Qt::WindowFlags before = window->windowFlags();
    view->setReserved(true);
    QCOMPARE(window->windowFlags(), before);
    QVERIFY(!window->testAttribute(Qt::WA_DeleteOnClose));
}

void tst_VTWidget::reservingIntoItself()
{
    session->host->onCreateWindow = [&] { return window.data(); };
    showContent();
    view->setReserved(true);
    QVERIFY(window->isWindow());
    QVERIFY(window->isVisible());
    QVERIFY(window->testAttribute(Qt::WA_DeleteOnClose));
}

void tst_VTWidget::reservingStopsTimerAndFade()
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

void tst_VTWidget::reservedFalseDoesNothing()
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

void tst_VTWidget::reservedWindowDeletesItselfOnClose()
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

void tst_VTWidget::windowOfItsOwnIsNotReserved()
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

QTEST_MAIN(tst_VTWidget)
#include "tst_vtwidget.moc"
