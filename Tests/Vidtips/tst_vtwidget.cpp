#include "WidgetTest.h"

#include <QtGui/QWindow>
#include <QtWidgets/QGraphicsObject>

using namespace Vidtips;

/** A window of a host's own, which links only when all that is virtual is exported. */
class HostsWindow : public VTWidget
{
public:
    using VTWidget::VTWidget;

    void showEvent(QShowEvent *event) override
    {
        ++shown;
        VTWidget::showEvent(event);
    }

    int shown = 0;
};

/** What the window shows, where it stands, and its safe zone. */
class tst_VTWidget : public WidgetTest
{
    Q_OBJECT

private slots:
    void init() { makeWindow(); }
    void cleanup() { endWindow(); }

    void slotsInDeclaredOrder();
    void construction();
    void subclass();
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
};

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

void tst_VTWidget::subclass()
{
    HostsWindow widget(session->manager(), nullptr, nullptr, QRect());
    widget.show();
    QCOMPARE(widget.shown, 1);
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

QTEST_MAIN(tst_VTWidget)
#include "tst_vtwidget.moc"
