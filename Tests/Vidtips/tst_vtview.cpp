#include "MetaMembers.h"
#include "ViewTest.h"

#include <QtTest/QSignalSpy>

using namespace Vidtips;

/** What a view has, tells and keeps of its content. */
class tst_VTView : public ViewTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void propertiesInDeclaredOrder();
    void methodsInDeclaredOrder();
    void construction();
    void stayOpenAlwaysNotifies();
    void reservedNotifiesChanges();
    void contentNotifiesNobody();
    void contentThatDiesIsForgotten();
    void destructorDeletesTheContentWithItsContainer();
    void releaseKeepsATreeInUse();
    void documentationAvailable_data();
    void documentationAvailable();
    void settingChangeNotifiesDocumentation();
};

void tst_VTView::init()
{
    makeView();
}

void tst_VTView::cleanup()
{
    endView();
}

void tst_VTView::propertiesInDeclaredOrder()
{
    QCOMPARE(ownProperties(VTView::staticMetaObject),
             (QList<QByteArray>{"bool stayOpen rw stayOpenChanged", "bool reserved rw reservedChanged",
                                "VTXmlElement* content rw contentChanged",
                                "bool documentationAvailable r documentationAvailableChanged",
                                "QString resourceDirectory r "}));
}

void tst_VTView::methodsInDeclaredOrder()
{
    const QMetaObject &meta = VTView::staticMetaObject;
    QStringList methods;
    QList<int> types;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        methods << meta.method(i).name() + '(' + meta.method(i).parameterNames().join(',') + ')';
        types << meta.method(i).methodType();
    }
    QCOMPARE(methods,
             (QStringList{"stayOpenChanged()",
                          "reservedChanged()",
                          "contentChanged()",
                          "contentSizeChanged()",
                          "documentationAvailableChanged()",
                          "resourceDirectoryChanged()",
                          "statusHasChanged(s)",
                          "loadQML(path)",
                          "handleWarnings(warnings)",
                          "resetState()",
                          "managerContextSettingDidChange(key)",
                          "setItemCursor(object,shape,tag)",
                          "debugLog(msg)",
                          "openExternalResource(resourceLocator)",
                          "interpolate(string)",
                          "setOverrideCursor(shape)",
                          "restoreOverrideCursor()",
                          "translate(string,context)",
                          "findResource(relativePath)",
                          "notification(notification,value)"}));
    for (int i = 0; i < types.count(); ++i)
        QCOMPARE(types.at(i),
                 int(i < 6        ? QMetaMethod::Signal
                         : i < 11 ? QMetaMethod::Slot
                                  : QMetaMethod::Method));
}

void tst_VTView::construction()
{
    QCOMPARE(view->frameShape(), QFrame::NoFrame);
    QCOMPARE(view->frameShadow(), QFrame::Plain);
    QCOMPARE(view->resizeMode(), QDeclarativeView::SizeViewToRootObject);
    QVERIFY(!view->content() && !view->stayOpen() && !view->reserved());
    QVERIFY(!view->parent());
}

void tst_VTView::stayOpenAlwaysNotifies()
{
    QSignalSpy changed(view.data(), &VTView::stayOpenChanged);
    view->setStayOpen(false);
    QCOMPARE(changed.count(), 1);
    view->setStayOpen(true);
    view->setStayOpen(true);
    QCOMPARE(changed.count(), 3);
    QVERIFY(view->stayOpen());
}

void tst_VTView::reservedNotifiesChanges()
{
    QSignalSpy changed(view.data(), &VTView::reservedChanged);
    view->setReserved(false);
    QCOMPARE(changed.count(), 0);
    view->setReserved(true);
    view->setReserved(true);
    QCOMPARE(changed.count(), 1);
    QVERIFY(view->reserved());
}

void tst_VTView::contentNotifiesNobody()
{
    QSignalSpy changed(view.data(), &VTView::contentChanged);
    VTXmlElement *const content = setContent();
    QCOMPARE(view->property("content").value<VTXmlElement *>(), content);
    QCOMPARE(changed.count(), 0);
}

void tst_VTView::contentThatDiesIsForgotten()
{
    delete setContent()->parent();
    QVERIFY(!view->content());
    setContent();
    view->exposeContent("here");
    delete view->content()->parent();
    QVERIFY(!view->content());
    QVERIFY(!view->rootContext()->contextProperty("vidtip").value<QObject *>());
}

void tst_VTView::destructorDeletesTheContentWithItsContainer()
{
    const QPointer<QObject> root(setContent()->parent());
    view.reset();
    QVERIFY(!root);
    QObject owner;
    view.reset(new OpenView(session->manager(), nullptr));
    view->setContent(new VTXmlElement(&owner));
    view.reset();
    QVERIFY(owner.children().isEmpty());
}

void tst_VTView::releaseKeepsATreeInUse()
{
    VTXmlElement *const content = setContent();
    const QPointer<VTXmlElement> sibling(new VTXmlElement(content->parent()));
    view->releaseContent(sibling);
    QVERIFY(sibling);
    view->releaseContent(content);
    QCOMPARE(view->content(), content);
}

void tst_VTView::documentationAvailable_data()
{
    QTest::addColumn<QVariant>("setting");
    QTest::addColumn<bool>("available");
    QTest::newRow("unset") << QVariant() << false;
    QTest::newRow("on") << QVariant(true) << true;
    QTest::newRow("off") << QVariant(false) << false;
}

void tst_VTView::documentationAvailable()
{
    QFETCH(QVariant, setting);
    if (setting.isValid())
        session->set(AllowDocumentation, setting);
    QTEST(view->property("documentationAvailable").toBool(), "available");
}

void tst_VTView::settingChangeNotifiesDocumentation()
{
    QSignalSpy changed(view.data(), &VTView::documentationAvailableChanged);
    view->managerContextSettingDidChange(AllowExternalResources);
    view->managerContextSettingDidChange(0);
    QCOMPARE(changed.count(), 0);
    view->managerContextSettingDidChange(AllowDocumentation);
    QCOMPARE(changed.count(), 1);
}

QTEST_MAIN(tst_VTView)

#include "tst_vtview.moc"
