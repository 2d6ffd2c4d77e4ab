#include <Vidtips/VTTipPlace_p.h>

#include <QtTest/QTest>

using namespace Vidtips;

namespace {

const QPoint place(300, 200);
const QPoint corner(0, 0);

} // namespace

class tst_VTTipPlace : public QObject
{
    Q_OBJECT

private slots:
    void isWhereItWasPut();
    void lateReportsAreNotBelieved();
    void windowManagerThatInsistsHasItsWill();
    void nextPlaceIsAskedForAsOften();
};

void tst_VTTipPlace::isWhereItWasPut()
{
    VTTipPlace tip;
    tip.put(place);
    QVERIFY(!tip.mustAskAgain(place));
    QCOMPARE(tip.position(), place);
}

void tst_VTTipPlace::lateReportsAreNotBelieved()
{
    VTTipPlace tip;
    tip.put(place);
    for (int i = 0; i < VTTipPlace::mostRequests; ++i) {
        QVERIFY(tip.mustAskAgain(corner));
        QVERIFY(!tip.mustAskAgain(place));
        QCOMPARE(tip.position(), place);
    }
}

void tst_VTTipPlace::windowManagerThatInsistsHasItsWill()
{
    VTTipPlace tip;
    tip.put(place);
    int requests = 0;
    while (requests < 1000 && tip.mustAskAgain(corner))
        ++requests;
    QCOMPARE(requests, VTTipPlace::mostRequests);
    QCOMPARE(tip.position(), corner);
}

void tst_VTTipPlace::nextPlaceIsAskedForAsOften()
{
    VTTipPlace tip;
    tip.put(place);
    while (tip.mustAskAgain(corner)) { }
    tip.put(place);
    QVERIFY(tip.mustAskAgain(corner));
    QCOMPARE(tip.position(), place);
}

QTEST_MAIN(tst_VTTipPlace)
#include "tst_vttipplace.moc"
