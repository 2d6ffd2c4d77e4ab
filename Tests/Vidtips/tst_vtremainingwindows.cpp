#include <Vidtips/VTRemainingWindows_p.h>

#include <QtCore/QPointer>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include <memory>

using namespace Vidtips;

/** A window whose end is the end of another. */
class Pair : public QWidget
{
public:
    ~Pair() override { delete other; }

    QPointer<QWidget> other;
};

class tst_VTRemainingWindows : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void windowsGoWithTheApplication();
    void windowThatIsGoneIsForgotten();
    void windowThatTakesAnotherAlong();
    void nextApplicationHasItsOwn();

private:
    int argc = 0;
    std::unique_ptr<QApplication> application;
};

void tst_VTRemainingWindows::init()
{
    application = std::make_unique<QApplication>(argc, nullptr);
}

void tst_VTRemainingWindows::windowsGoWithTheApplication()
{
    const QPointer<QWidget> first(new QWidget);
    const QPointer<QWidget> second(new QWidget);
    VTRemainingWindows::add(first);
    VTRemainingWindows::add(second);
    second->show();
    QVERIFY(first && second);
    application.reset();
    QVERIFY(!first);
    QVERIFY(!second);
}

void tst_VTRemainingWindows::windowThatIsGoneIsForgotten()
{
    auto *const gone = new QWidget;
    VTRemainingWindows::add(gone);
    delete gone;
    const QPointer<QWidget> other(new QWidget);
    VTRemainingWindows::add(other);
    VTRemainingWindows::add(other);
    application.reset();
    QVERIFY(!other);
}

void tst_VTRemainingWindows::windowThatTakesAnotherAlong()
{
    const QPointer<Pair> pair(new Pair);
    pair->other = new QWidget;
    VTRemainingWindows::add(pair);
    VTRemainingWindows::add(pair->other);
    application.reset();
    QVERIFY(!pair);
}

void tst_VTRemainingWindows::nextApplicationHasItsOwn()
{
    const QPointer<QWidget> before(new QWidget);
    VTRemainingWindows::add(before);
    application.reset();
    QVERIFY(!before);
    application = std::make_unique<QApplication>(argc, nullptr);
    const QPointer<QWidget> after(new QWidget);
    VTRemainingWindows::add(after);
    application.reset();
    QVERIFY(!after);
}

QTEST_APPLESS_MAIN(tst_VTRemainingWindows)
#include "tst_vtremainingwindows.moc"
