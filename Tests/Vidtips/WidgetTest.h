#pragma once

#include "TestHost.h"
#include "TestPackage.h"

#include <QtCore/QPropertyAnimation>
#include <QtCore/QTimer>
#include <QtGui/QCursor>
#include <QtTest/QTest>

/** A test with the window that a manager has made, before any content. */
class WidgetTest : public QObject
{
protected:
    void makeWindow()
    {
        packages.reset(new TestPackages);
        packages->writeUserInterface("Basic", R"(property string title: vidtip.attribute("title"))", 100, 60);
        packages->writeControl("Basic", "tips.xml", "<vidtip key=\"cut\" title=\"Cut\"/>");
        session.reset(new TestSession({packages->path()}));
        // Nothing is found, and the window is made.
        QVERIFY(!session->host->show("none", {}, nullptr));
        window = session->window();
        view = session->view();
        QCursor::setPos(0, 0);
    }

    void endWindow()
    {
        session.reset();
        delete window;
    }

    /** Returns content with @p key, whose title is that in capitals. */
    Vidtips::VTXmlElement *makeContent(const QString &key = QStringLiteral("cut"))
    {
        auto *const root = new Vidtips::VTXmlElement;
        auto *const content = new Vidtips::VTXmlElement(root);
        content->setAttribute("key", key);
        content->setAttribute("title", key.toUpper());
        content->setAttribute("VTPackagName", "Basic");
        return content;
    }

    void showContent(Vidtips::VTXmlElement *content = nullptr)
    {
        window->showWithContent(nullptr, QRect(), QPoint(300, 200), content ? content : makeContent(),
                                packages->path());
    }

    QTimer *timer() const { return window->findChild<QTimer *>(); }
    QPropertyAnimation *animation() const { return window->findChild<QPropertyAnimation *>(); }

    QScopedPointer<TestPackages> packages;
    QScopedPointer<TestSession> session;
    QPointer<Vidtips::VTWidget> window;
    QPointer<Vidtips::VTView> view;
};
