// List properties of host classes, by every form of the constructor.

#include <QtDeclarative/qdeclarativecomponent.h>
#include <QtDeclarative/qdeclarativeengine.h>
#include <QtDeclarative/qdeclarativelist.h>

#include <QtDeclarative/qdeclarative.h>

#include <QtTest/QtTest>

class Thing : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString name READ name WRITE setName)

public:
    QString name() const { return m_name; }
    void setName(const QString &name) { m_name = name; }

private:
    QString m_name;
};
QML_DECLARE_TYPE(Thing)

class Box : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QDeclarativeListProperty<Thing> things READ things)
    Q_PROPERTY(QDeclarativeListProperty<Thing> listed READ listed)
    Q_PROPERTY(QDeclarativeListProperty<Thing> appended READ appended)
    Q_PROPERTY(QDeclarativeListProperty<Thing> counted READ counted)
    Q_PROPERTY(QDeclarativeListProperty<Thing> empty READ empty)
    Q_PROPERTY(QDeclarativeListProperty<QObject> anything READ anything)
    Q_CLASSINFO("DefaultProperty", "things")

public:
    typedef QDeclarativeListProperty<Thing> List;

    List things() { return List(this, &m_things, append, count, at, clear); }
    List listed() { return List(this, m_listed); }
    List appended() { return List(this, 0, &Box::appendToBox); }
    List counted() { return QDeclarativeListProperty<Thing>(this, &m_things, append, count); }
    List empty() { return List(); }
    QDeclarativeListProperty<QObject> anything()
    {
        return QDeclarativeListProperty<QObject>(this, m_anything);
    }

    QList<Thing *> m_things;
    QList<Thing *> m_listed;
    QList<Thing *> m_appended;
    QList<QObject *> m_anything;

private:
    static QList<Thing *> *of(QDeclarativeListProperty<Thing> *list)
    {
        return static_cast<QList<Thing *> *>(list->data);
    }
    static void append(QDeclarativeListProperty<Thing> *list, Thing *thing) { of(list)->append(thing); }
    static int count(QDeclarativeListProperty<Thing> *list) { return of(list)->count(); }
    static Thing *at(QDeclarativeListProperty<Thing> *list, int index) { return of(list)->at(index); }
    static void clear(QDeclarativeListProperty<Thing> *list) { of(list)->clear(); }
    static void appendToBox(QDeclarativeListProperty<Thing> *list, Thing *thing)
    {
        static_cast<Box *>(list->object)->m_appended.append(thing);
    }
};
QML_DECLARE_TYPE(Box)

static const char document[] = "import QtQuick 1.0\nimport Things 1.0\n"
                               "Box {\n"
                               "    Thing { name: 'a' }\n"
                               "    Thing { name: 'b' }\n"
                               "    listed: [ Thing { name: 'c' }, Thing { name: 'd' } ]\n"
                               "    appended: Thing { name: 'e' }\n"
                               "    anything: [ QtObject {}, Thing {} ]\n"
                               "    property int number: things.length + 10 * listed.length\n"
                               "    property string second: things[1].name + listed[0].name\n"
                               "}\n";

class host_lists : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void filledByQml();
    void readByQml();
    void readByReference();
    void calledByTheHost();

private:
    Box *make(QDeclarativeEngine *engine)
    {
        QDeclarativeComponent component(engine);
        component.setData(document, QUrl());
        if (component.isError())
            qWarning() << component.errors();
        return qobject_cast<Box *>(component.create());
    }
};

void host_lists::initTestCase()
{
    qmlRegisterType<Thing>("Things", 1, 0, "Thing");
    qmlRegisterType<Box>("Things", 1, 0, "Box");
}

void host_lists::filledByQml()
{
    QDeclarativeEngine engine;
    QScopedPointer<Box> box(make(&engine));
    QVERIFY(box);
    QCOMPARE(box->m_things.count(), 2);
    QCOMPARE(box->m_listed.count(), 2);
    QCOMPARE(box->m_appended.count(), 1);
    QCOMPARE(box->m_anything.count(), 2);
    QCOMPARE(box->m_appended.first()->name(), QString("e"));
}

void host_lists::readByQml()
{
    QDeclarativeEngine engine;
    QScopedPointer<Box> box(make(&engine));
    QVERIFY(box);
    QCOMPARE(box->property("number").toInt(), 22);
    QCOMPARE(box->property("second").toString(), QString("bc"));
}

void host_lists::readByReference()
{
    QDeclarativeEngine engine;
    QScopedPointer<Box> box(make(&engine));
    QVERIFY(box);
    QDeclarativeListReference things(box.data(), "things", &engine);
    QVERIFY(things.isValid());
    QVERIFY(things.canAppend() && things.canAt() && things.canClear() && things.canCount());
    Thing thing;
    QVERIFY(things.append(&thing));
    QCOMPARE(things.count(), 3);
    QVERIFY(things.clear());
    QCOMPARE(box->m_things.count(), 0);
    QDeclarativeListReference appended(box.data(), "appended");
    QVERIFY(appended.canAppend() && !appended.canAt() && !appended.canCount() && !appended.canClear());
    QDeclarativeListReference counted(box.data(), "counted");
    QVERIFY(counted.canAppend() && counted.canCount() && !counted.canAt() && !counted.canClear());
    QVERIFY(!QDeclarativeListReference(box.data(), "empty").canAppend());
}

void host_lists::calledByTheHost()
{
    Box box;
    Thing thing;
    QDeclarativeListProperty<Thing> list = box.things();
    list.append(&list, &thing);
    QCOMPARE(list.count(&list), 1);
    QCOMPARE(list.at(&list, 0), &thing);
    QVERIFY(list == box.things());
    list.clear(&list);
    QCOMPARE(box.m_things.count(), 0);
}

QTEST_MAIN(host_lists)
#include "host_lists.moc"
