// The module beside Qt Quick 2 in one process, whichever of them came first. Either is set up once in a
// process, so each function is a run of its own.

#include "MessageRecorder.h"

#include <QtDeclarative/QDeclarativeView>

#include <QtCore/QTemporaryDir>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtQuickWidgets/QQuickWidget>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>

#include <QtGui/QVector3D>

class tst_QuickOrder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void moduleFirst();
    void quickFirst();

private:
    void checkModule();
    void checkQuick();
    QUrl write(const QString &fileName, const QByteArray &import);

    QTemporaryDir m_folder;
};

namespace {

// Types of both worlds, and values that only Qt Quick's providers make from text.
const char scene[] = R"(
Rectangle {
    id: root
    width: 40; height: 30; color: "#ff0000"
    property font words: title.font
    property color mixed: Qt.rgba(0, 0, 1, 1)
    property vector3d direction: Qt.vector3d(1, 2, 3)
    Text { id: title; text: "a"; font { pixelSize: 17; bold: true } }
    states: State {
        name: "blue"
        PropertyChanges { target: root; color: root.mixed }
    }
    Component.onCompleted: state = "blue"
}
)";

void checkRoot(QObject *root)
{
    QVERIFY(root);
    QCOMPARE(root->property("words").value<QFont>().pixelSize(), 17);
    QCOMPARE(root->property("color").value<QColor>(), QColor(Qt::blue));
    QCOMPARE(root->property("direction").value<QVector3D>(), QVector3D(1, 2, 3));
}

} // namespace

void tst_QuickOrder::initTestCase()
{
    QVERIFY(m_folder.isValid());
    QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
}

QUrl tst_QuickOrder::write(const QString &fileName, const QByteArray &import)
{
    QFile file(m_folder.filePath(fileName));
    if (!file.open(QIODevice::WriteOnly) || file.write(import + scene) < 0)
        return {};
    return QUrl::fromLocalFile(file.fileName());
}

void tst_QuickOrder::checkModule()
{
    MessageRecorder messages;
    QDeclarativeView view(write(QStringLiteral("Module.qml"), "import QtQuick 1.1\n"));
    checkRoot(view.rootObject());
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QCOMPARE(view.grab().toImage().pixelColor(35, 25), QColor(Qt::blue));
    QCOMPARE(messages.texts(), QStringList());
}

void tst_QuickOrder::checkQuick()
{
    MessageRecorder messages;
    QQuickWidget widget;
    widget.setSource(write(QStringLiteral("Quick.qml"), "import QtQuick 2.0\n"));
    QVERIFY(widget.errors().isEmpty());
    checkRoot(widget.rootObject());
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QCOMPARE(widget.grab().toImage().pixelColor(35, 25), QColor(Qt::blue));
    QCOMPARE(messages.texts(), QStringList());
}

void tst_QuickOrder::moduleFirst()
{
    checkModule();
    checkQuick();
    checkModule();
}

void tst_QuickOrder::quickFirst()
{
    checkQuick();
    checkModule();
    checkQuick();
}

QTEST_MAIN(tst_QuickOrder)

#include "tst_quickorder.moc"
