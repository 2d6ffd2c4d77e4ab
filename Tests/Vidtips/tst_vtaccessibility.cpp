#include "AccessibleEvents.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <Vidtips/VTAccessibility_p.h>

#include <QtCore/QSet>
#include <QtDeclarative/QDeclarativeView>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsScene>

#include <utility>

using namespace Vidtips;

namespace {

QWidget *victim = nullptr;

// Going, the victim tells something itself.
void destroyVictim(QAccessibleEvent *)
{
    delete std::exchange(victim, nullptr);
}

QAccessible::Role roleOf(QObject *object)
{
    QAccessibleInterface *const known = QAccessible::queryAccessibleInterface(object);
    return known ? known->role() : QAccessible::NoRole;
}

} // namespace

/** What stands for tips in Qt's accessibility, and what is told of them there. */
class tst_VTAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void whatStandsForTips();
    void nothingStandsForOthers();
    void contentOfAViewWithoutATip();
    void contentOfAHiddenTip();
    void contentIsNotToldUnasked();
    void contentIsToldOnceHoweverOftenItIsExposed();
    void titleIsToldWhoeverAskedLater();
    void titleOfContentThatIsShownNoMore();
    void tipMayGoMeanwhile();
    void dialogIsAnotherObject();
    void dialogIsNotToldUnasked();

private:
    QScopedPointer<TestPackages> packages;
    QScopedPointer<TestSession> session;
};

void tst_VTAccessibility::init()
{
    packages.reset(new TestPackages);
    packages->writeUserInterface("Basic", "Text { text: 'A' }");
    packages->writeControl("Basic", "tips.xml",
                           "<vidtip key='cut' title='Cut'/><vidtip key='copy' title='Copy'/>");
    session.reset(new TestSession({packages->path()}));
    session->set(HideDuration, 0);
    QVERIFY(session->host->show("cut", {}, nullptr));
}

void tst_VTAccessibility::cleanup()
{
    session.reset();
}

void tst_VTAccessibility::whatStandsForTips()
{
    QCOMPARE(roleOf(session->window()), QAccessible::ToolTip);
    QCOMPARE(roleOf(session->view()), QAccessible::Pane);
    QCOMPARE(roleOf(session->view()->rootObject()->childItems().constFirst()->toGraphicsObject()),
             QAccessible::StaticText);
}

void tst_VTAccessibility::nothingStandsForOthers()
{
    QDeclarativeView other;
    other.setSource(
        QUrl::fromLocalFile(packages->write("other.qml", "import QtQuick 1.0\nText { text: 'A' }")));
    QVERIFY(other.rootObject());
    QVERIFY(!QAccessible::queryAccessibleInterface(other.rootObject()));
    const QScopedPointer<QGraphicsObject> loose(other.rootObject());
    loose->scene()->removeItem(loose.data());
    QVERIFY(!QAccessible::queryAccessibleInterface(loose.data()));
    QObject plain;
    QVERIFY(!QAccessible::queryAccessibleInterface(&plain));
}

void tst_VTAccessibility::contentOfAViewWithoutATip()
{
    QWidget window;
    auto *const view = new VTView(session->manager(), &window);
    const AccessibleEvents events;
    VTAccessibility::contentHasChanged(view);
    VTAccessibility::titleHasChanged(view);
    QCOMPARE(events.of(QAccessible::Pane), QStringList());
    QCOMPARE(events.of(roleOf(&window)), QStringList());
}

void tst_VTAccessibility::contentOfAHiddenTip()
{
    session->window()->hide();
    const AccessibleEvents events;
    VTAccessibility::contentHasChanged(session->view());
    QCOMPARE(events.of(QAccessible::ToolTip), QStringList({"NameChanged Cut", "DescriptionChanged Cut"}));
}

void tst_VTAccessibility::contentIsNotToldUnasked()
{
    const AccessibleEvents events;
    events.setActive(false);
    VTAccessibility::contentHasChanged(session->view());
    session->content()->setTitle("Schneiden");
    QCOMPARE(events.of(QAccessible::ToolTip), QStringList());
}

void tst_VTAccessibility::contentIsToldOnceHoweverOftenItIsExposed()
{
    const AccessibleEvents events;
    session->view()->exposeContent({});
    session->view()->exposeContent({});
    events.clear();
    session->content()->setTitle("Schneiden");
    QCOMPARE(events.of(QAccessible::ToolTip), QStringList("NameChanged Schneiden"));
}

// The tip was there before anybody asked.
void tst_VTAccessibility::titleIsToldWhoeverAskedLater()
{
    const AccessibleEvents events;
    session->content()->setTitle("Schneiden");
    QCOMPARE(events.of(QAccessible::ToolTip), QStringList("NameChanged Schneiden"));
}

void tst_VTAccessibility::titleOfContentThatIsShownNoMore()
{
    VTView *const view = session->view();
    VTXmlElement *const old = view->content();
    VTXmlElement other;
    view->setContent(&other);
    view->exposeContent({});
    const AccessibleEvents events;
    old->setTitle("Schneiden");
    QCOMPARE(events.of(QAccessible::ToolTip), QStringList());
    view->setContent(old);
    view->exposeContent({});
}

void tst_VTAccessibility::tipMayGoMeanwhile()
{
    const AccessibleEvents events;
    const QPointer<VTWidget> tip = session->window();
    victim = tip;
    QAccessible::installUpdateHandler(&destroyVictim);
    VTAccessibility::contentHasChanged(session->view());
    QVERIFY(!tip);
}

void tst_VTAccessibility::dialogIsAnotherObject()
{
    const AccessibleEvents events;
    const auto idOf = [](QObject *object) {
        return QAccessible::uniqueId(QAccessible::queryAccessibleInterface(object));
    };
    const QAccessible::Id tip = idOf(session->window());
    const QAccessible::Id view = idOf(session->view());
    VTAccessibility::hasBecomeDialog(session->window());
    QVERIFY(!QAccessible::accessibleInterface(tip));
    QVERIFY(!QAccessible::accessibleInterface(view));
    const QSet<QAccessible::Id> ids{tip, view, idOf(session->window()), idOf(session->view())};
    QCOMPARE(ids.size(), 4);
}

void tst_VTAccessibility::dialogIsNotToldUnasked()
{
    const AccessibleEvents events;
    QAccessibleInterface *const tip = QAccessible::queryAccessibleInterface(session->window());
    QAccessibleInterface *const view = QAccessible::queryAccessibleInterface(session->view());
    events.setActive(false);
    VTAccessibility::hasBecomeDialog(session->window());
    QCOMPARE(QAccessible::queryAccessibleInterface(session->window()), tip);
    QCOMPARE(QAccessible::queryAccessibleInterface(session->view()), view);
    QCOMPARE(events.of(QAccessible::ToolTip), QStringList());
}

QTEST_MAIN(tst_VTAccessibility)
#include "tst_vtaccessibility.moc"
