#pragma once

#include "TestHost.h"
#include "TestPackage.h"

#include <QtTest/QTest>

/** A view whose protected functions a test can call. */
class OpenView : public Vidtips::VTView
{
public:
    using Vidtips::VTView::receivers;
    using Vidtips::VTView::resizeEvent;
    using Vidtips::VTView::VTView;
};

/** A test with a view on packages, one of which has the entry that setContent() stands for. */
class ViewTest : public QObject
{
protected:
    void makeView()
    {
        packages.reset(new TestPackages);
        packages->writeUserInterface("Basic", "", 100, 60);
        packages->writeControl("Basic", "tips.xml", "<vidtip key=\"cut\"/>");
        packages->writeControl("Shared", "tips.xml", "<vidtip key=\"copy\"/>");
        session.reset(new TestSession({packages->path()}));
        session->set(Vidtips::MessageThreshold, 400);
        view.reset(new OpenView(session->manager(), nullptr));
    }

    void endView()
    {
        view.reset();
        session.reset();
    }

    /** Has the view hold the entry with these attributes, in a document element with those; returns it. */
    Vidtips::VTXmlElement *setContent(const QMap<QString, QString> &attributes = {},
                                      const QMap<QString, QString> &parentAttributes = {})
    {
        auto *const root = new Vidtips::VTXmlElement;
        auto *const content = new Vidtips::VTXmlElement(root);
        content->setAttribute("VTPackagName", "Basic");
        content->setAttribute("key", "cut");
        for (auto it = attributes.cbegin(); it != attributes.cend(); ++it)
            content->setAttribute(it.key(), it.value());
        for (auto it = parentAttributes.cbegin(); it != parentAttributes.cend(); ++it)
            root->setAttribute(it.key(), it.value());
        view->releaseContent([this] {
            Vidtips::VTXmlElement *const old = view->content();
            view->setContent(nullptr);
            return old;
        }());
        view->setContent(content);
        return content;
    }

    QList<QPair<int, QString>> messages() const { return session->host->messages; }

    QScopedPointer<TestPackages> packages;
    QScopedPointer<TestSession> session;
    QScopedPointer<OpenView> view;
};
