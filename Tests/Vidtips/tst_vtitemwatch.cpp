#include "AccessibleEvents.h"
#include "QmlScene.h"

#include <Vidtips/VTItemWatch_p.h>
#include <Vidtips/VTVideoComponent.h>

#include <QtCore/QMetaProperty>
#include <QtGui/QAccessibleObject>
#include <QtTest/QSignalSpy>

#include <algorithm>

using namespace Vidtips;

namespace {

class ItemInterface : public QAccessibleObject
{
public:
    using QAccessibleObject::QAccessibleObject;

    QAccessibleInterface *parent() const override { return nullptr; }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QString text(QAccessible::Text) const override { return {}; }
    QAccessible::Role role() const override { return QAccessible::StaticText; }
    QAccessible::State state() const override { return {}; }
};

/** Without an object on the accessibility bus, Qt tells nobody anything. */
QAccessibleInterface *make(const QString &, QObject *object)
{
    return qobject_cast<QGraphicsObject *>(object) ? new ItemInterface(object) : nullptr;
}

struct Told
{
    QObject *object;
    QAccessible::Event event;
    bool isAboutPlaying;
};
QVector<Told> told;

void write(QAccessibleEvent *event)
{
    const bool isState = event->type() == QAccessible::StateChanged;
    const bool isAboutPlaying =
        isState && static_cast<QAccessibleStateChangeEvent *>(event)->changedStates().animated;
    told.append({event->object(), event->type(), isAboutPlaying});
}

} // namespace

class tst_VTItemWatch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();
    void texts_data();
    void texts();
    void itemWithoutAText();
    void clip();
    void endsWithTheWatch();
};

void tst_VTItemWatch::initTestCase()
{
    AccessibleEvents::setActive(true);
    QAccessible::installFactory(make);
    QAccessible::installUpdateHandler(write);
}

void tst_VTItemWatch::init()
{
    told.clear();
}

void tst_VTItemWatch::cleanupTestCase()
{
    QAccessible::installUpdateHandler(nullptr);
    QAccessible::removeFactory(make);
    AccessibleEvents::setActive(false);
}

void tst_VTItemWatch::texts_data()
{
    QTest::addColumn<QByteArray>("qml");
    QTest::newRow("text") << QByteArray("Text { text: 'A' }");
    QTest::newRow("line editor") << QByteArray("TextInput { text: 'A' }");
    QTest::newRow("editor") << QByteArray("TextEdit { text: 'A' }");
    QTest::newRow("property of a component") << QByteArray("Item { property string text: 'A' }");
}

void tst_VTItemWatch::texts()
{
    QFETCH(QByteArray, qml);
    QmlScene scene;
    scene.load("import QtQuick 1.1\n" + qml);
    auto *const item = qobject_cast<QGraphicsObject *>(scene.root());
    const VTItemWatch watch(item);
    const QMetaObject *const meta = item->metaObject();
    QSignalSpy changes(item, meta->property(meta->indexOfProperty("text")).notifySignal());
    told.clear();
    item->setProperty("text", "B");
    QVERIFY(changes.count() > 0);
    // Editors tell of more by themselves.
    const auto isNameOfItem = [item](const Told &each) {
        return each.object == item && each.event == QAccessible::NameChanged;
    };
    QCOMPARE(std::count_if(told.cbegin(), told.cend(), isNameOfItem), changes.count());
}

void tst_VTItemWatch::itemWithoutAText()
{
    QmlScene scene;
    scene.load("import QtQuick 1.1\nRectangle { color: 'red' }");
    const VTItemWatch watch(qobject_cast<QGraphicsObject *>(scene.root()));
    scene.root()->setProperty("color", "blue");
    QVERIFY(told.isEmpty());
}

void tst_VTItemWatch::clip()
{
    VTVideoComponent clip;
    const VTItemWatch watch(&clip);
    emit clip.positionChanged();
    QVERIFY(told.isEmpty());
    emit clip.stateChanged();
    QCOMPARE(told.size(), 1);
    QCOMPARE(told.at(0).object, &clip);
    QVERIFY(told.at(0).isAboutPlaying);
}

void tst_VTItemWatch::endsWithTheWatch()
{
    VTVideoComponent clip;
    QScopedPointer<VTItemWatch> watch(new VTItemWatch(&clip));
    watch.reset();
    emit clip.stateChanged();
    QVERIFY(told.isEmpty());
}

QTEST_MAIN(tst_VTItemWatch)
#include "tst_vtitemwatch.moc"
