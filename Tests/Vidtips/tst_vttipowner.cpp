#include <Vidtips/VTTipOwner_p.h>

#include "TipWindow.h"

#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QDialog>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>

using namespace Vidtips;

/** That the tip follows its command from one window to another is tested with the manager. */
class tst_VTTipOwner : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void lastingWindow();
    void window();
    void referenceThatGoes();
    void modalWindowWithoutReference();
    void joins();
    void keyboardStaysWhereItIs();
    void hiddenWindowBeginsAnew();
    void visibleWindowStays();
    void partOfAContainerStays();
    void leavesMinimised();
    void isJoined();

private:
    QWindow *ownerOfTip() const { return tip->windowHandle()->transientParent(); }

    QScopedPointer<QWidget> host;
    QScopedPointer<QWidget> otherHost;
    QPushButton *button = nullptr;
    QScopedPointer<TipWindow> tip;
};

void tst_VTTipOwner::init()
{
    host.reset(new QWidget);
    button = new QPushButton(host.data());
    otherHost.reset(new QWidget);
    host->show();
    otherHost->show();
    tip.reset(new TipWindow("cut"));
}

void tst_VTTipOwner::cleanup()
{
    tip.reset();
    otherHost.reset();
    host.reset();
}

void tst_VTTipOwner::lastingWindow()
{
    QCOMPARE(VTTipOwner::lastingWindow(button), host.data());
    QCOMPARE(VTTipOwner::lastingWindow(host.data()), host.data());
    QMenu menu(button);
    QCOMPARE(VTTipOwner::lastingWindow(&menu), host.data());
    const QMenu *const submenu = menu.addMenu("More");
    QCOMPARE(VTTipOwner::lastingWindow(submenu), host.data());
    const QMenu alone;
    QCOMPARE(VTTipOwner::lastingWindow(&alone), QApplication::activeWindow());
}

void tst_VTTipOwner::window()
{
    QCOMPARE(VTTipOwner(tip.data(), button).window(), host.data());
    QVERIFY(!VTTipOwner(tip.data(), nullptr).window());
    QVERIFY(!VTTipOwner(tip.data(), tip.data()).window());
    QVERIFY(!VTTipOwner(tip.data(), tip->view()).window());
}

void tst_VTTipOwner::referenceThatGoes()
{
    const VTTipOwner owner(tip.data(), button);
    delete button;
    QVERIFY(!owner.window());
    QVERIFY(owner.isJoined());
}

void tst_VTTipOwner::modalWindowWithoutReference()
{
    QVERIFY(!VTTipOwner(tip.data(), nullptr).footing());
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    QTRY_COMPARE(QApplication::activeModalWidget(), &dialog);
    QCOMPARE(VTTipOwner(tip.data(), nullptr).footing(), &dialog);
    QCOMPARE(VTTipOwner(tip.data(), button).footing(), host.data());
}

void tst_VTTipOwner::joins()
{
    QVERIFY(!tip->windowHandle());
    VTTipOwner(tip.data(), button).join();
    QCOMPARE(ownerOfTip(), host->windowHandle());
    VTTipOwner(tip.data(), nullptr).join();
    QVERIFY(!ownerOfTip());
}

void tst_VTTipOwner::keyboardStaysWhereItIs()
{
    const Qt::WindowFlags flags = tip->windowFlags();
    VTTipOwner(tip.data(), button).join();
    QVERIFY(tip->windowHandle()->flags() & Qt::WindowDoesNotAcceptFocus);
    QCOMPARE(tip->windowFlags(), flags);
}

void tst_VTTipOwner::hiddenWindowBeginsAnew()
{
    VTTipOwner(tip.data(), button).join();
    const QPointer<QWindow> first(tip->windowHandle());
    VTTipOwner(tip.data(), button).join();
    QCOMPARE(tip->windowHandle(), first.data());
    VTTipOwner(tip.data(), otherHost.data()).join();
    QVERIFY(!first);
    QCOMPARE(ownerOfTip(), otherHost->windowHandle());
}

void tst_VTTipOwner::visibleWindowStays()
{
    VTTipOwner(tip.data(), button).join();
    tip->show();
    const QPointer<QWindow> first(tip->windowHandle());
    VTTipOwner(tip.data(), otherHost.data()).join();
    QVERIFY(first);
    QCOMPARE(tip->windowHandle(), first.data());
    QVERIFY(tip->isVisible());
}

void tst_VTTipOwner::partOfAContainerStays()
{
    tip->setParent(host.data(), tip->windowFlags());
    tip->show();
    QWindow *const owner = ownerOfTip();
    VTTipOwner(tip.data(), otherHost.data()).join();
    QCOMPARE(ownerOfTip(), owner);
    QVERIFY(VTTipOwner(tip.data(), otherHost.data()).isJoined());
    tip->setParent(nullptr);
}

void tst_VTTipOwner::leavesMinimised()
{
    VTTipOwner(tip.data(), button).join();
    tip->setWindowState(Qt::WindowMinimized);
    tip->show();
    VTTipOwner(tip.data(), button).join();
    QVERIFY2(tip->isMinimized(), "one that is shown is the window manager's");
    tip->hide();
    VTTipOwner(tip.data(), button).join();
    QVERIFY(!tip->isMinimized());
    QVERIFY(!(tip->windowHandle()->windowStates() & Qt::WindowMinimized));
    QCOMPARE(ownerOfTip(), host->windowHandle());
}

void tst_VTTipOwner::isJoined()
{
    QVERIFY2(VTTipOwner(tip.data(), button).isJoined(), "there is no native window yet");
    VTTipOwner(tip.data(), button).join();
    QVERIFY(VTTipOwner(tip.data(), button).isJoined());
    QVERIFY(VTTipOwner(tip.data(), host.data()).isJoined());
    QVERIFY(VTTipOwner(tip.data(), nullptr).isJoined());
    QVERIFY(!VTTipOwner(tip.data(), otherHost.data()).isJoined());
}

QTEST_MAIN(tst_VTTipOwner)
#include "tst_vttipowner.moc"
