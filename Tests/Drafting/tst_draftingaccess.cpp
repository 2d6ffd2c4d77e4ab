#include "AccessibleTree.h"
#include "Patience.h"
#include "TestHost.h"
#include "TestPaths.h"

#include <Vidtips/VTVideoComponent.h>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsObject>

#include <memory>

using namespace Vidtips;

/** The user interface that the example ships, for those who do not see it or have no pointer. */
class tst_DraftingAccess : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void whatIsInATip_data();
    void whatIsInATip();
    void showsMoreWhenAsked();
    void keptTipHasTheFocusOnItsClip();
    void tabGoesAround();
    void spaceAndReturnPress_data();
    void spaceAndReturnPress();
    void arrowsScrub();
    void escapeCloses();
    void nextTipBeginsAnew();
    void staysAsLargeInAnotherLanguage();
    void followsTheReadingDirection_data();
    void followsTheReadingDirection();

private:
    QAccessibleInterface *panel() const { return QAccessible::queryAccessibleInterface(view); }
    /** Returns what can be pressed and is called @p name, or null. */
    QAccessibleInterface *find(const QString &name) const;
    QString focused() const;
    bool press(const QString &name) const;
    void show(const QString &key);
    void keep(const QString &key);

    std::unique_ptr<TestSession> session;
    QWidget command;
    QPointer<VTView> view;
};

void tst_DraftingAccess::init()
{
    VTContext context;
    context.set(KeyDataFile, TestPaths::built("share/vidtips-drafting/Content/Keys.xml"));
    context.set(HideDuration, 0);
    context.set(IdleInterval, 0);
    context.set(AllowDocumentation, true);
    session =
        std::make_unique<TestSession>(QStringList{TestPaths::built("share/vidtips-drafting/Content/Base"),
                                                  TestPaths::built("share/vidtips-drafting/Content/Extra")},
                                      context);
    session->host->setGlobalProperty("motion", "off");
    session->host->setGlobalProperty("grid", "10 mm");
}

void tst_DraftingAccess::cleanup()
{
    if (view)
        delete view->window();
    session.reset();
}

QAccessibleInterface *tst_DraftingAccess::find(const QString &name) const
{
    for (int i = 0; i < panel()->childCount(); ++i) {
        QAccessibleInterface *const item = panel()->child(i);
        const bool isPressable = accessibleActions(item).contains(QAccessibleActionInterface::pressAction());
        if (isPressable && item->text(QAccessible::Name) == name)
            return item;
    }
    return nullptr;
}

QString tst_DraftingAccess::focused() const
{
    QAccessibleInterface *const item = panel()->focusChild();
    return item ? item->text(QAccessible::Name) : QString();
}

bool tst_DraftingAccess::press(const QString &name) const
{
    QAccessibleInterface *const button = find(name);
    if (!button)
        return false;
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCoreApplication::processEvents();
    return true;
}

void tst_DraftingAccess::show(const QString &key)
{
    QVERIFY(session->host->show(key, QPoint(10, 20), &command));
    view = session->view();
    QMetaObject::invokeMethod(view->rootObject(), "expand");
}

void tst_DraftingAccess::keep(const QString &key)
{
    show(key);
    QVERIFY(press("Keep open"));
    QTRY_VERIFY(view->reserved());
    QVERIFY(QTest::qWaitForWindowActive(view->window(), Patience::longest));
}

void tst_DraftingAccess::whatIsInATip_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("clip")
        << "draw.line"
        << QStringList{"Heading \"Line\"",
                       "StaticText \"Draws a straight line between two points.\"",
                       "Animation \"Line\" Press",
                       "Button \"Play\" Press",
                       "List \"\"",
                       "  ListItem \"1. Click where the line starts.\"",
                       "  ListItem \"2. Click where it ends. The command stays active for the next line.\"",
                       "StaticText \"With Snap to Grid on, both ends land on the 10 mm grid.\"",
                       "Button \"More help\" Press",
                       "Button \"Keep open\" Press"};
    QTest::newRow("picture") << "view.fit"
                             << QStringList{
                                    "Heading \"Fit drawing\"",
                                    "StaticText \"Chooses the scale at which every shape is in sight.\"",
                                    "Graphic \"Fit drawing\"", "Button \"More help\" Press",
                                    "Button \"Keep open\" Press"};
}

void tst_DraftingAccess::whatIsInATip()
{
    QFETCH(QString, key);
    show(key);
    QTEST(accessibleTree(panel()), "expected");
}

void tst_DraftingAccess::showsMoreWhenAsked()
{
    QVERIFY(session->host->show("draw.line", QPoint(10, 20), &command));
    view = session->view();
    QVERIFY(press("Show more"));
    QTRY_COMPARE(view->rootObject()->property("state").toString(), QStringLiteral("expanded"));
    QVERIFY(!find("Show more"));
}

void tst_DraftingAccess::keptTipHasTheFocusOnItsClip()
{
    keep("draw.line");
    QTRY_COMPARE(focused(), QStringLiteral("Play"));
    QVERIFY(!find("Keep open"));
}

void tst_DraftingAccess::tabGoesAround()
{
    keep("draw.line");
    QTRY_COMPARE(focused(), QStringLiteral("Play"));
    QTest::keyClick(view, Qt::Key_Tab);
    QCOMPARE(focused(), QStringLiteral("More help"));
    QTest::keyClick(view, Qt::Key_Tab);
    QCOMPARE(focused(), QStringLiteral("Play"));
    QTest::keyClick(view, Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(focused(), QStringLiteral("More help"));
    QTest::keyClick(view, Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(focused(), QStringLiteral("Play"));
}

void tst_DraftingAccess::spaceAndReturnPress_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Space") << int(Qt::Key_Space);
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

void tst_DraftingAccess::spaceAndReturnPress()
{
    QFETCH(int, key);
    keep("draw.line");
    QTRY_COMPARE(focused(), QStringLiteral("Play"));
    QTRY_VERIFY_WITH_TIMEOUT(find("Line")->object()->property("status").toInt() == VTVideoComponent::Ready,
                             30000);
    QTest::keyClick(view, Qt::Key(key));
    QTRY_VERIFY(find("Line")->state().animated);
    QTRY_COMPARE(focused(), QStringLiteral("Pause"));
    QTest::keyClick(view, Qt::Key(key));
    QTRY_VERIFY(!find("Line")->state().animated);
    QTest::keyClick(view, Qt::Key_Tab);
    QTest::keyClick(view, Qt::Key(key));
    QCOMPARE(session->host->resources.size(), 1);
    QVERIFY(!find("Line")->state().animated);
}

void tst_DraftingAccess::arrowsScrub()
{
    keep("draw.line");
    const auto *const clip = qobject_cast<const VTVideoComponent *>(find("Line")->object());
    QTRY_COMPARE(focused(), QStringLiteral("Play"));
    // A step is a part of the pictures that there are, which become more.
    const auto moves = [this, clip](Qt::Key key, bool forward) {
        return [=] {
            const qint64 before = clip->position();
            QTest::keyClick(view, key);
            return forward ? clip->position() > before : clip->position() < before;
        };
    };
    QVERIFY(QTest::qWaitFor(moves(Qt::Key_Right, true), 30000));
    QVERIFY(QTest::qWaitFor(moves(Qt::Key_Left, false), 30000));
    QVERIFY(!find("Line")->state().animated);
}

void tst_DraftingAccess::escapeCloses()
{
    keep("draw.line");
    const QPointer<QWidget> window = view->window();
    QTest::keyClick(view, Qt::Key_Escape);
    QTRY_VERIFY(!window);
}

// The user interface stays loaded: a button that was clicked in one tip must not be pressed by Space in the
// next.
void tst_DraftingAccess::nextTipBeginsAnew()
{
    show("draw.line");
    const auto *const item = qobject_cast<const QGraphicsObject *>(find("More help")->object());
    const QPoint place = view->mapFromScene(item->sceneBoundingRect().center());
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, place);
    QCOMPARE(session->host->resources.size(), 1);
    QVERIFY(item->property("focus").toBool());
    show("draw.circle");
    QVERIFY(!item->property("focus").toBool());
}

void tst_DraftingAccess::staysAsLargeInAnotherLanguage()
{
    show("draw.line");
    const auto state = [this] { return view->rootObject()->property("state").toString(); };
    QTRY_COMPARE(state(), QStringLiteral("expanded"));
    const QPointer<VTXmlElement> before = session->content();
    // Not even for a moment.
    const QSignalSpy changes(view->rootObject(), SIGNAL(stateChanged(QString)));
    QVERIFY(changes.isValid());
    QEvent event(QEvent::LanguageChange);
    QCoreApplication::sendEvent(qApp, &event);
    QTRY_VERIFY(!before);
    QVERIFY(session->content());
    QCOMPARE(state(), QStringLiteral("expanded"));
    QCOMPARE(changes.count(), 0);
    QVERIFY(session->host->show("draw.circle", QPoint(10, 20), &command));
    QCOMPARE(state(), QString());
}

void tst_DraftingAccess::followsTheReadingDirection_data()
{
    QTest::addColumn<bool>("isKept");
    QTest::newRow("on screen") << false;
    QTest::newRow("kept") << true;
}

void tst_DraftingAccess::followsTheReadingDirection()
{
    QFETCH(bool, isKept);
    if (isKept)
        keep("draw.line");
    else
        show("draw.line");
    const auto *const help = qobject_cast<const QGraphicsObject *>(find("More help")->object());
    const auto isOnTheLeft = [=] { return help->sceneBoundingRect().center().x() < view->width() / 2; };
    QVERIFY(isOnTheLeft());
    QApplication::setLayoutDirection(Qt::RightToLeft);
    QTRY_VERIFY(!isOnTheLeft());
    QApplication::setLayoutDirection(Qt::LeftToRight);
    QTRY_VERIFY(isOnTheLeft());
}

QTEST_MAIN(tst_DraftingAccess)
#include "tst_draftingaccess.moc"
