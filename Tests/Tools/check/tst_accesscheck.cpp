#include "TestPackage.h"
#include "check/AccessCheck.h"
#include "findings/Finding.h"

#include <QtTest/QTest>

/** What has no name for those who do not see a tip. */
class tst_AccessCheck : public QObject
{
    Q_OBJECT

private slots:
    void places_data();
    void places();
    void missingFile();
};

void tst_AccessCheck::places_data()
{
    QTest::addColumn<QByteArray>("qml");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QByteArray &qml, const QString &expected = {}) {
        QTest::newRow(name) << "import QtQuick 1.1\nimport com.corvale.vidtips.qml 1.0\n" + qml << expected;
    };
    row("bare area", "Item {\n  MouseArea { onClicked: go() }\n}", "4:3");
    row("bare area at the root", "MouseArea { onPressed: go() }", "3:1");
    row("handlers of all kinds",
        "Item {\nMouseArea { onReleased: go() }\nMouseArea { onDoubleClicked: go() }\n"
        "MouseArea { onPressAndHold: go() }\n}",
        "4:1 5:1 6:1");
    row("handler of many lines", "Item {\nMouseArea { onClicked: { var a = 1;\ngo(a) } }\n}", "4:1");
    row("area for hovering", "Item { MouseArea { hoverEnabled: true; onEntered: go() } }");
    row("named area", "Item { MouseArea { onClicked: go(); VTAccessible.name: word } }");
    row("ignored area", "Item { MouseArea { onClicked: go(); VTAccessible.ignored: true } }");
    row("area under another import", "Item { MouseArea { onClicked: go(); V.VTAccessible.name: 'Go' } }");
    row("area with a text", "Item { MouseArea { onClicked: go(); Row { Text { text: 'Go' } } } }");
    row("area beside a text", "Item { MouseArea { onClicked: go() } Row { Text { text: 'Go' } } }");
    row("area on a text", "Text { MouseArea { onClicked: go() } }");
    row("area on a named picture", "Image { VTAccessible.name: 'Go'; MouseArea { onClicked: go() } }");
    row("area on a picture", "Image {\nMouseArea { onClicked: go() }\n}", "4:1");
    row("area on an ignored picture", "Image {\nVTAccessible.ignored: true\nMouseArea { onClicked: go() }\n}",
        "5:1");
    row("area beside what is from elsewhere", "Item { Label { } MouseArea { onClicked: go() } }");
    row("part of a button",
        "Item { Item { VTAccessible.role: VTAccessible.Button; VTAccessible.name: 'Go'; MouseArea { "
        "onClicked: go() } } }");
    row("deep in a button",
        "Item { VTAccessible.role: VTAccessible.Button; VTAccessible.name: 'Go'; Item { MouseArea { "
        "onClicked: go() } } }");
    row("button without a name",
        "Item {\nItem { VTAccessible.role: VTAccessible.Button; MouseArea { onClicked: go() } }\n}", "4:1");
    row("link with a text", "Item { Item { VTAccessible.role: VTAccessible.Link; Text { } } }");
    row("in a group",
        "Item { VTAccessible.role: VTAccessible.Grouping; VTAccessible.name: 'Parts'\nItem {\n"
        "MouseArea { onClicked: go() } }\n}",
        "5:1");
    row("in a component", "Item {\nComponent {\nMouseArea { onClicked: go() } }\n}");
    row("as a property", "Item { property Item area:\nMouseArea { onClicked: go() } }", "4:1");
    row("not QML", "Item { MouseArea { onClicked: ");
}

void tst_AccessCheck::places()
{
    QFETCH(QByteArray, qml);
    const TestPackages packages;
    Findings findings;
    AccessCheck().run({packages.write("Tip.qml", qml)}, findings);
    QStringList places;
    for (const Finding &finding : findings.sorted()) {
        QCOMPARE(finding.code, QStringLiteral("VT604"));
        places << QStringLiteral("%1:%2").arg(finding.position.line).arg(finding.position.column);
    }
    QTEST(places.join(' '), "expected");
}

void tst_AccessCheck::missingFile()
{
    Findings findings;
    AccessCheck().run({"/none/Tip.qml"}, findings);
    QVERIFY(findings.sorted().isEmpty());
}

QTEST_APPLESS_MAIN(tst_AccessCheck)
#include "tst_accesscheck.moc"
