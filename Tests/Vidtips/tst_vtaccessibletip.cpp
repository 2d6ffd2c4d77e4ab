#include "AccessibleEvents.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtTest/QTest>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QMainWindow>

using namespace Vidtips;

/** A tip's window as assistive technology sees it. */
class tst_VTAccessibleTip : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void isAToolTipOfThatName();
    void whatTheHostHasSetGoesBefore();
    void showingIsTold();
    void otherContentIsTold();
    void otherTitleIsTold();
    void keptTipIsADialog();
    void keptTipInADockIsADialog();
    void destroyedTips();
    void nothingIsToldUnasked();
    void withoutContent();

private:
    QAccessibleInterface *tip() const { return QAccessible::queryAccessibleInterface(session->window()); }

    QScopedPointer<TestPackages> packages;
    QScopedPointer<TestSession> session;
};

void tst_VTAccessibleTip::init()
{
    packages.reset(new TestPackages);
    packages->writeUserInterface("Basic");
    packages->writeControl("Basic", "tips.xml",
                           "<vidtip key='cut' title='Cut'><summary>Takes it out.</summary></vidtip>"
                           "<vidtip key='copy' title='Copy'/>");
    session.reset(new TestSession({packages->path()}));
    session->set(HideDuration, 0);
}

void tst_VTAccessibleTip::cleanup()
{
    session.reset();
}

void tst_VTAccessibleTip::isAToolTipOfThatName()
{
    QVERIFY(session->host->show("cut", {}, nullptr));
    QCOMPARE(tip()->role(), QAccessible::ToolTip);
    QCOMPARE(tip()->text(QAccessible::Name), QStringLiteral("Cut"));
    QCOMPARE(tip()->text(QAccessible::Description), QStringLiteral("Takes it out."));
    QVERIFY(!tip()->state().invisible);
    session->window()->hide();
    QVERIFY(tip()->state().invisible);
}

void tst_VTAccessibleTip::whatTheHostHasSetGoesBefore()
{
    QVERIFY(session->host->show("cut", {}, nullptr));
    session->window()->setAccessibleName("Scissors");
    session->window()->setAccessibleDescription("Snip.");
    QCOMPARE(tip()->text(QAccessible::Name), QStringLiteral("Scissors"));
    QCOMPARE(tip()->text(QAccessible::Description), QStringLiteral("Snip."));
}

void tst_VTAccessibleTip::showingIsTold()
{
    const AccessibleEvents events;
    QVERIFY(session->host->show("cut", {}, nullptr));
    const QStringList told = events.of(QAccessible::ToolTip);
    QVERIFY(told.contains("NameChanged Cut"));
    QVERIFY(told.contains("DescriptionChanged Cut"));
    // Once, and when the rest is told: readers ask for the name then, or have it.
    QCOMPARE(told.count("ObjectShow Cut"), 1);
    QVERIFY(told.indexOf("ObjectShow Cut") > told.indexOf("DescriptionChanged Cut"));
    session->window()->hide();
    QCOMPARE(events.of(QAccessible::ToolTip).count("ObjectHide Cut"), 1);
}

void tst_VTAccessibleTip::otherContentIsTold()
{
    const AccessibleEvents events;
    QVERIFY(session->host->show("cut", {}, nullptr));
    events.clear();
    QVERIFY(session->host->show("copy", {}, nullptr));
    const QStringList expected{"NameChanged Copy", "DescriptionChanged Copy", "ObjectShow Copy"};
    QCOMPARE(events.of(QAccessible::ToolTip).mid(0, 3), expected);
    QCOMPARE(events.of(QAccessible::ToolTip).count("ObjectShow Copy"), 1);
}

void tst_VTAccessibleTip::otherTitleIsTold()
{
    const AccessibleEvents events;
    QVERIFY(session->host->show("cut", {}, nullptr));
    QVERIFY(tip());
    events.clear();
    session->content()->setTitle("Schneiden");
    QCOMPARE(events.of(QAccessible::ToolTip), QStringList("NameChanged Schneiden"));
}

void tst_VTAccessibleTip::keptTipIsADialog()
{
    const AccessibleEvents events;
    QVERIFY(session->host->show("cut", {}, nullptr));
    const QPointer<VTWidget> kept = session->window();
    const QAccessible::Id id = QAccessible::uniqueId(tip());
    session->view()->setReserved(true);
    QVERIFY(session->window() != kept);
    QAccessibleInterface *const dialog = QAccessible::queryAccessibleInterface(kept);
    QCOMPARE(dialog->role(), QAccessible::Dialog);
    QCOMPARE(dialog->text(QAccessible::Name), QStringLiteral("Cut"));
    QCOMPARE(dialog->text(QAccessible::Description), QStringLiteral("Takes it out."));
    QVERIFY(QAccessible::uniqueId(dialog) != id);
    QVERIFY(events.of(QAccessible::Dialog).contains("ObjectShow Cut"));
    QCOMPARE(tip()->role(), QAccessible::ToolTip);
    delete kept;
}

void tst_VTAccessibleTip::keptTipInADockIsADialog()
{
    QMainWindow window;
    auto *const dock = new QDockWidget(&window);
    window.addDockWidget(Qt::LeftDockWidgetArea, dock);
    session->host->onCreateWindow = [dock] { return dock; };
    QVERIFY(session->host->show("cut", {}, nullptr));
    const QPointer<VTWidget> kept = session->window();
    session->view()->setReserved(true);
    QVERIFY(window.isAncestorOf(kept));
    QCOMPARE(QAccessible::queryAccessibleInterface(kept)->role(), QAccessible::Dialog);
    QCOMPARE(QAccessible::queryAccessibleInterface(kept)->text(QAccessible::Name), QStringLiteral("Cut"));
}

// The recorder asks for role and name with each event, also the last.
void tst_VTAccessibleTip::destroyedTips()
{
    const AccessibleEvents events;
    QVERIFY(session->host->show("cut", {}, nullptr));
    QVERIFY(QAccessible::queryAccessibleInterface(session->view()));
    const QPointer<VTWidget> window = session->window();
    const QAccessible::Id id = QAccessible::uniqueId(tip());
    delete window;
    QVERIFY(!QAccessible::accessibleInterface(id));
    QVERIFY(session->host->show("copy", {}, nullptr));
    QCOMPARE(tip()->text(QAccessible::Name), QStringLiteral("Copy"));
}

void tst_VTAccessibleTip::nothingIsToldUnasked()
{
    const AccessibleEvents events;
    events.setActive(false);
    QVERIFY(session->host->show("cut", {}, nullptr));
    QVERIFY(session->host->show("copy", {}, nullptr));
    QVERIFY(!events.of(QAccessible::ToolTip).contains("NameChanged Cut"));
    QVERIFY(!events.of(QAccessible::ToolTip).contains("DescriptionChanged Copy"));
    QVERIFY(!events.of(QAccessible::ToolTip).contains("ObjectShow Copy"));
}

void tst_VTAccessibleTip::withoutContent()
{
    VTWidget bare(session->manager(), nullptr, nullptr, QRect());
    QAccessibleInterface *const tip = QAccessible::queryAccessibleInterface(&bare);
    QCOMPARE(tip->role(), QAccessible::ToolTip);
    QCOMPARE(tip->text(QAccessible::Name), QString());
    QCOMPARE(tip->text(QAccessible::Description), QString());
    QCOMPARE(tip->childCount(), 0);
}

QTEST_MAIN(tst_VTAccessibleTip)
#include "tst_vtaccessibletip.moc"
