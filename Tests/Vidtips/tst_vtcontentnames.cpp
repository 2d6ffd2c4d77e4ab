#include "ViewTest.h"

#include <QtTest/QSignalSpy>
#include <QtWidgets/QGraphicsObject>

using namespace Vidtips;

/** How QML finds the content of a view, by its exposeContent(). */
class tst_VTContentNames : public ViewTest
{
    Q_OBJECT

private slots:
    void init() { makeView(); }
    void cleanup() { endView(); }
    void namesAreSet();
    void exposedContentFollowsReleases();
    void exposingAgainConnectsNothingMore();
    void contentOfABindingIsNamedLast();
    void contentsInACircle();

private:
    QObject *named(const char *name) const
    {
        return view->rootContext()->contextProperty(name).value<QObject *>();
    }

    /** Loads a user interface that has the host do @p work whenever content is named. */
    void loadCaller(const std::function<void()> &work);
};

void tst_VTContentNames::loadCaller(const std::function<void()> &work)
{
    view->exposeContent("here");
    // By another name, as what is bound to "vidTipView" runs once more when that is set.
    view->rootContext()->setContextProperty("caller", view.data());
    view->loadQML(packages->write("calls.qml", R"(import QtQuick 1.0
        Item { property QtObject seen: { var tip = vidtip; caller.notification(9, 0); tip } })"));
    QVERIFY(view->rootObject());
    session->host->onNotification = [work](int, const QString &) { work(); };
}

void tst_VTContentNames::namesAreSet()
{
    VTXmlElement *const content = setContent();
    QVERIFY(!named("vidtip") && !named("vidTipView"));
    view->exposeContent("folder");
    QCOMPARE(named("vidtip"), content);
    QCOMPARE(named("vidTipView"), view.data());
    QCOMPARE(view->rootContext()->contextProperty("dataLocation").toString(), QStringLiteral("folder"));
}

void tst_VTContentNames::exposedContentFollowsReleases()
{
    QPointer<VTXmlElement> first(setContent());
    view->exposeContent("here");
    auto *const next = new VTXmlElement;
    view->setContent(next);
    view->releaseContent(first);
    QVERIFY(!first);
    QCOMPARE(named("vidtip"), next);
    view->setContent(nullptr);
    view->releaseContent(next);
    QVERIFY(!named("vidtip"));
    view->releaseContent(nullptr);
}

void tst_VTContentNames::exposingAgainConnectsNothingMore()
{
    setContent();
    view->exposeContent("folder");
    const int receivers = view->receivers(SIGNAL(destroyed(QObject *)));
    for (int i = 0; i < 10; ++i)
        view->exposeContent("folder");
    QCOMPARE(view->receivers(SIGNAL(destroyed(QObject *))), receivers);
}

// A binding that was being evaluated for the first content has the other all the same.
void tst_VTContentNames::contentOfABindingIsNamedLast()
{
    const QScopedPointer<QObject> first(setContent()->parent());
    const QScopedPointer<VTXmlElement> second(new VTXmlElement);
    loadCaller([&] {
        session->host->onNotification = nullptr;
        view->setContent(new VTXmlElement);
        view->exposeContent("there");
    });
    view->setContent(second.data());
    view->exposeContent("here");
    QVERIFY(view->content() != second.data());
    QCOMPARE(named("vidtip"), view->content());
    QCOMPARE(view->rootObject()->property("seen").value<QObject *>(), view->content());
    QCOMPARE(view->rootContext()->contextProperty("dataLocation").toString(), QStringLiteral("there"));
}

void tst_VTContentNames::contentsInACircle()
{
    setContent();
    int calls = 0;
    loadCaller([&] {
        ++calls;
        setContent();
        view->exposeContent("there");
    });
    setContent();
    view->exposeContent("here");
    session->host->onNotification = nullptr;
    QVERIFY2(calls > 1 && calls < 100, QByteArray::number(calls));
    QCOMPARE(named("vidtip"), view->content());
}

QTEST_MAIN(tst_VTContentNames)

#include "tst_vtcontentnames.moc"
