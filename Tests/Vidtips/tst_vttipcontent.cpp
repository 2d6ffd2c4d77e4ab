#include <Vidtips/VTTipContent_p.h>

#include "TipWindow.h"

#include <QtTest/QTest>

using namespace Vidtips;

class tst_VTTipContent : public QObject
{
    Q_OBJECT

private slots:
    void contentOfAWindow();
    void keyOfContent();
};

void tst_VTTipContent::contentOfAWindow()
{
    QVERIFY(!contentOf(nullptr));
    TipWindow window("cut");
    QCOMPARE(contentOf(&window), window.view()->content());
    QCOMPARE(keyOf(*contentOf(&window)), QString("cut"));
    delete window.view()->content();
    QVERIFY(!contentOf(&window));
    window.setView(nullptr);
    QVERIFY(!contentOf(&window));
}

void tst_VTTipContent::keyOfContent()
{
    VTXmlElement content;
    QCOMPARE(keyOf(content), QString());
    QVERIFY(!hasKey(&content, QString()));
    QVERIFY(!hasKey(nullptr, QString()));
    content.setAttribute("key", "");
    QVERIFY(hasKey(&content, QString()));
    content.setAttribute("key", "cut");
    QVERIFY(hasKey(&content, "cut"));
    QVERIFY(!hasKey(&content, "Cut"));
    QVERIFY(!hasKey(&content, QString()));
}

QTEST_MAIN(tst_VTTipContent)
#include "tst_vttipcontent.moc"
