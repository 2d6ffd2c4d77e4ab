#include "Patience.h"
#include "ViewTest.h"

#include <Vidtips/VTViewReach_p.h>

using namespace Vidtips;

/** How far the content of a view reaches as settings and content change. */
class tst_VTViewReach : public ViewTest
{
    Q_OBJECT

private slots:
    void init() { makeView(); }
    void cleanup() { endView(); }
    void isAsTheSettingSays();
    void isAsTheContentSays();
    void refusalsAreTold();
    void otherContentIsToldOfAnew();
    void shutTellsWhatIsLeft();
};

void tst_VTViewReach::isAsTheSettingSays()
{
    VTViewReach reach(view.data());
    setContent();
    QVERIFY(!reach.isRestricted() && reach.isCurrent());
    QVERIFY(reach.admitsFile("/etc/passwd"));
    session->set(RestrictContent, true);
    QVERIFY(reach.isRestricted() && !reach.isCurrent());
    QVERIFY(!reach.admitsFile("/etc/passwd"));
    QVERIFY(reach.admitsFile(packages->filePath("Basic.vidtips/ui/VidtipsUI.qml")));
    reach.renew();
    QVERIFY(reach.isCurrent());
    session->set(RestrictContent, false);
    QVERIFY(!reach.isCurrent());
}

void tst_VTViewReach::isAsTheContentSays()
{
    session->set(RestrictContent, true);
    VTViewReach reach(view.data());
    setContent();
    reach.renew();
    setContent();
    QVERIFY(reach.isCurrent());
    setContent({{"VTPackagName", "Shared"}});
    QVERIFY(!reach.isCurrent());
    // Without content it is what it was.
    view->releaseContent([this] {
        VTXmlElement *const old = view->content();
        view->setContent(nullptr);
        return old;
    }());
    QVERIFY(reach.isCurrent());
}

void tst_VTViewReach::refusalsAreTold()
{
    VTViewReach reach(view.data());
    reach.beginContent(*setContent({{"VTLocation", "tips.xml"}}));
    reach.refuse("doing this");
    reach.refuse("doing this");
    QVERIFY(messages().isEmpty());
    QTRY_COMPARE(messages().count(), 1);
    const QString text = messages().first().second;
    QVERIFY2(text.contains("doing this") && text.contains("Basic"), qPrintable(text));
}

void tst_VTViewReach::otherContentIsToldOfAnew()
{
    VTViewReach reach(view.data());
    reach.beginContent(*setContent());
    reach.refuse("doing this");
    QTRY_COMPARE(messages().count(), 1);
    reach.beginContent(*setContent());
    reach.refuse("doing this");
    QTRY_COMPARE(messages().count(), 2);
}

void tst_VTViewReach::shutTellsWhatIsLeft()
{
    VTViewReach reach(view.data());
    reach.beginContent(*setContent());
    reach.refuse("doing this");
    reach.shut();
    QCOMPARE(messages().count(), 1);
}

QTEST_MAIN(tst_VTViewReach)

#include "tst_vtviewreach.moc"
