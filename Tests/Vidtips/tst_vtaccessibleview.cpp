#include "AccessibleEvents.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsScene>

using namespace Vidtips;

namespace {

const char twoButtons[] =
    "focus: true\n"
    "Item { objectName: 'silent'; y: 40 }\n"
    "FocusScope { objectName: 'A'; width: 50; height: 20; VTAccessible.role: VTAccessible.Button\n"
    "    VTAccessible.name: 'A'; Item { focus: true } }\n"
    "FocusScope { objectName: 'B'; x: 50; width: 50; height: 20; VTAccessible.role: VTAccessible.Button\n"
    "    VTAccessible.name: 'B'; Item { focus: true } }";

} // namespace

/** The view of a tip as assistive technology sees it. */
class tst_VTAccessibleView : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void children();
    void childrenThatAreNone();
    void childAtAPlace();
    void rootThatIsToldOf();
    void invisibleRoot();
    void viewWithoutARoot();
    void focusWithoutTheKeyboard();
    void focusGoesFromItemToItem();

private:
    void show(const QByteArray &qml);
    QAccessibleInterface *view() const { return QAccessible::queryAccessibleInterface(session->view()); }
    QString childAt(const QPoint &place) const
    {
        const QPoint position = session->view()->viewport()->mapToGlobal(place);
        QAccessibleInterface *const child = view()->childAt(position.x(), position.y());
        return child ? child->text(QAccessible::Name) : QString("none");
    }

    QScopedPointer<TestPackages> packages;
    QScopedPointer<TestSession> session;
};

void tst_VTAccessibleView::init()
{
    packages.reset(new TestPackages);
    packages->writeControl("Basic", "tips.xml", "<vidtip key='cut' title='Cut'/>");
}

void tst_VTAccessibleView::cleanup()
{
    session.reset();
}

void tst_VTAccessibleView::show(const QByteArray &qml)
{
    packages->writeUserInterface("Basic", qml, 120, 80, "import com.corvale.vidtips.qml 1.0\n");
    session.reset(new TestSession({packages->path()}));
    session->set(HideDuration, 0);
    QVERIFY(session->host->show("cut", {}, nullptr));
    QVERIFY(session->view()->rootObject());
}

void tst_VTAccessibleView::children()
{
    show(twoButtons);
    QCOMPARE(view()->role(), QAccessible::Pane);
    QCOMPARE(accessibleTree(view()), QStringList({"Button \"A\"", "Button \"B\""}));
}

void tst_VTAccessibleView::childrenThatAreNone()
{
    show(twoButtons);
    QVERIFY(!view()->child(-1));
    QVERIFY(!view()->child(2));
    QVERIFY(!view()->child(99));
    QCOMPARE(view()->indexOfChild(nullptr), -1);
    QCOMPARE(view()->indexOfChild(view()), -1);
    QWidget foreign;
    QCOMPARE(view()->indexOfChild(QAccessible::queryAccessibleInterface(&foreign)), -1);
}

void tst_VTAccessibleView::childAtAPlace()
{
    show(twoButtons);
    QCOMPARE(childAt(QPoint(25, 10)), QString("A"));
    QCOMPARE(childAt(QPoint(75, 10)), QString("B"));
    QCOMPARE(childAt(QPoint(25, 45)), QString("none"));
    QCOMPARE(childAt(QPoint(-500, -500)), QString("none"));
}

void tst_VTAccessibleView::rootThatIsToldOf()
{
    show("VTAccessible.name: 'All'\nText { text: 'A' }");
    QCOMPARE(accessibleTree(view()), QStringList({"Grouping \"All\"", "  StaticText \"A\""}));
}

void tst_VTAccessibleView::invisibleRoot()
{
    show(twoButtons);
    session->view()->rootObject()->setVisible(false);
    QCOMPARE(view()->childCount(), 0);
    QVERIFY(!view()->child(0));
    session->view()->rootObject()->setVisible(true);
    QCOMPARE(view()->childCount(), 2);
}

void tst_VTAccessibleView::viewWithoutARoot()
{
    show(twoButtons);
    VTView bare(session->manager(), nullptr);
    QAccessibleInterface *const panel = QAccessible::queryAccessibleInterface(&bare);
    QCOMPARE(panel->childCount(), 0);
    QVERIFY(!panel->child(0));
    QVERIFY(!panel->focusChild());
    QVERIFY(!panel->childAt(0, 0));
}

void tst_VTAccessibleView::focusWithoutTheKeyboard()
{
    show(twoButtons);
    QVERIFY(!view()->focusChild());
    QVERIFY(!view()->state().focused);
}

// Only one is focused: the item, or the view where the item that has the focus is not told of.
void tst_VTAccessibleView::focusGoesFromItemToItem()
{
    show(twoButtons);
    const QPointer<VTWidget> kept = session->window();
    VTView *const keptView = kept->view();
    keptView->setReserved(true);
    QVERIFY(QTest::qWaitForWindowActive(kept));
    QTRY_VERIFY(keptView->hasFocus());
    QAccessibleInterface *const panel = QAccessible::queryAccessibleInterface(keptView);
    const auto focus = [keptView](const char *name) {
        QMetaObject::invokeMethod(keptView->rootObject()->findChild<QObject *>(name), "forceActiveFocus");
    };
    focus("silent");
    QVERIFY(keptView->scene()->focusItem());
    QVERIFY(panel->state().focused);
    QVERIFY(!panel->focusChild());

    const AccessibleEvents events;
    focus("A");
    QCOMPARE(panel->focusChild(), panel->child(0));
    QVERIFY(!panel->state().focused);
    QVERIFY(panel->child(0)->state().focused);
    focus("B");
    QCOMPARE(panel->focusChild(), panel->child(1));
    QVERIFY(!panel->child(0)->state().focused);
    focus("silent");
    QVERIFY(panel->state().focused);
    QCOMPARE(events.of(QAccessible::Button), QStringList({"Focus A", "Focus B"}));
    delete kept;
}

QTEST_MAIN(tst_VTAccessibleView)
#include "tst_vtaccessibleview.moc"
