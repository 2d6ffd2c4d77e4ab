#pragma once

#include "TestHost.h"
#include "TestPackage.h"

#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>

/** A test that shows what a package has, and after it the tip of another package that nothing is wrong with.
 */
class HostileTest : public QObject
{
protected:
    void begin()
    {
        packages.reset(new TestPackages);
        packages->writeUserInterface("Sound", R"(property string key: vidtip ? vidtip.attribute("key") : "")",
                                     120, 80);
        packages->writeControl("Sound", "tips.xml", R"(<vidtip key="sound"/>)");
        session.reset(new TestSession({packages->path()}));
        session->set(Vidtips::MessageThreshold, int(Vidtips::VTMessageDebug));
        session->set(Vidtips::HideDuration, 0);
    }

    void end()
    {
        if (!QTest::currentTestFailed())
            verifyTheNextTip();
        session.reset();
    }

    void verifyTheNextTip()
    {
        QVERIFY(show("sound"));
        QVERIFY(session->window()->isVisible());
        QTRY_VERIFY(root());
        QTRY_COMPARE(root()->property("key").toString(), QStringLiteral("sound"));
    }

    bool show(const QString &key) { return session->host->show(key, QPoint(10, 10), nullptr); }
    QObject *root() const { return session->view() ? session->view()->rootObject() : nullptr; }

    QScopedPointer<TestPackages> packages;
    QScopedPointer<TestSession> session;
};
