#include "TestHost.h"
#include "TestPackage.h"

#include <QtTest/QTest>
#include <QtWidgets/QApplication>

using namespace Vidtips;

/** A host that ends as programs do: the interface goes after the last event loop, then the application. */
class tst_Shutdown : public QObject
{
    Q_OBJECT

private slots:
    void noWindowOutlivesTheApplication();
};

void tst_Shutdown::noWindowOutlivesTheApplication()
{
    int argc = 0;
    auto *const application = new QApplication(argc, nullptr);
    const TestPackages packages;
    packages.writeUserInterface("Basic", "VTVideoComponent {}", 120, 80,
                                "import com.corvale.vidtips.qml 1.0\n");
    packages.writeControl("Basic", "tips.xml", R"(<vidtip key="cut"/><vidtip key="copy"/>)");
    VTContext settings;
    VTIndex index(&settings, {packages.path()});
    auto *const host = new VTInterface(settings, {packages.path()}, &index);
    QVERIFY(host->show("cut", QPoint(10, 10), nullptr));
    const QPointer<VTWidget> reserved(host->manager()->widget());
    reserved->view()->setReserved(true);
    QVERIFY(host->show("copy", QPoint(10, 10), nullptr));
    const QPointer<VTWidget> current(host->manager()->widget());
    QVERIFY(current != reserved);
    QVERIFY(current->view()->rootObject());
    delete host;
    QVERIFY(current);
    QVERIFY(reserved);
    delete application;
    QVERIFY(!current);
    QVERIFY(!reserved);
}

QTEST_APPLESS_MAIN(tst_Shutdown)
#include "tst_shutdown.moc"
