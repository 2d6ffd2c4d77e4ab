#include <Vidtips/VTViewWork_p.h>
#include <Vidtips/VTXmlElement.h>

#include <QtTest/QTest>

using namespace Vidtips;

class tst_VTViewWork : public QObject
{
    Q_OBJECT

private slots:
    void contentGoesAtOnceWithoutWork();
    void contentIsKeptUntilTheOutermostHasReturned();
    void workOutlivesItsOwner();
    void endOfOneGivesUpAnother();
};

void tst_VTViewWork::contentGoesAtOnceWithoutWork()
{
    VTViewWork work;
    const QPointer<VTXmlElement> root(new VTXmlElement);
    work.release(new VTXmlElement(root));
    QVERIFY(!root);
    const QPointer<VTXmlElement> alone(new VTXmlElement);
    work.release(alone);
    QVERIFY(!alone);
    work.release(nullptr);
}

void tst_VTViewWork::contentIsKeptUntilTheOutermostHasReturned()
{
    const auto work = std::make_shared<VTViewWork>();
    const QPointer<VTXmlElement> root(new VTXmlElement);
    const QPointer<VTXmlElement> element(new VTXmlElement(root));
    {
        const VTViewWork::Scope outer(work);
        {
            const VTViewWork::Scope inner(work);
            work->release(element);
        }
        QVERIFY(work->isInHand());
        QVERIFY(element && root);
    }
    QVERIFY(!work->isInHand());
    QVERIFY(!element && !root);
}

void tst_VTViewWork::workOutlivesItsOwner()
{
    auto owned = std::make_shared<VTViewWork>();
    const QPointer<VTXmlElement> element(new VTXmlElement);
    {
        const VTViewWork::Scope scope(owned);
        owned->release(element);
        owned.reset();
        QVERIFY(element);
    }
    QVERIFY(!element);
}

void tst_VTViewWork::endOfOneGivesUpAnother()
{
    const auto work = std::make_shared<VTViewWork>();
    const QPointer<VTXmlElement> first(new VTXmlElement);
    const QPointer<VTXmlElement> second(new VTXmlElement);
    connect(first.data(), &QObject::destroyed, this, [&] { work->release(second); });
    work->release(first);
    QVERIFY(!first && !second);
}

QTEST_MAIN(tst_VTViewWork)
#include "tst_vtviewwork.moc"
