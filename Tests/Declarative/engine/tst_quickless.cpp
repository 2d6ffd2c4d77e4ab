// The module where Qt Quick 2's own QML module is not installed: this program's qt.conf hides it. Types are
// registered once in a process, so each function is a run of its own.

#include "MessageRecorder.h"

#include <QtDeclarative/QDeclarativeView>

#include <QtCore/QLibraryInfo>
#include <QtCore/QTemporaryDir>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>

class tst_Quickless : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void moduleAlone();
    void afterAnImport();

private:
    void checkModule();
};

namespace {

const char scene[] = R"(import QtQuick 1.1
Rectangle {
    id: root
    width: 40; height: 30; color: "#ff0000"
    property font words: title.font
    property color mixed: Qt.rgba(0, 0, 1, 1)
    Text { id: title; text: "a"; font { pixelSize: 17; bold: true } }
    NumberAnimation on x { to: 10; duration: 1; easing.type: Easing.OutQuad }
    states: State {
        name: "blue"
        PropertyChanges { target: root; color: root.mixed }
    }
    Component.onCompleted: state = "blue"
}
)";

} // namespace

void tst_Quickless::initTestCase()
{
    QCOMPARE(QLibraryInfo::location(QLibraryInfo::Qml2ImportsPath), QStringLiteral("/nowhere"));
}

void tst_Quickless::checkModule()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("Scene.qml")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(scene) > 0);
    file.close();
    MessageRecorder messages;
    QDeclarativeView view(QUrl::fromLocalFile(file.fileName()));
    QVERIFY(view.rootObject());
    QCOMPARE(view.rootObject()->property("words").value<QFont>().pixelSize(), 17);
    QCOMPARE(view.rootObject()->property("color").value<QColor>(), QColor(Qt::blue));
    QTRY_COMPARE(view.rootObject()->property("x").toInt(), 10);
    QCOMPARE(messages.texts(), QStringList());
}

void tst_Quickless::moduleAlone()
{
    checkModule();
}

// An import has the library register its part of the types, and no more.
void tst_Quickless::afterAnImport()
{
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick 2.0\nQtObject {}", QUrl());
    checkModule();
}

QTEST_MAIN(tst_Quickless)

#include "tst_quickless.moc"
