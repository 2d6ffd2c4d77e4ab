// Types of the host's own: items, objects that know when they are made, value sources, extensions, interfaces
// and attached properties.

#include <QtDeclarative/qdeclarative.h>
#include <QtDeclarative/qdeclarativecomponent.h>
#include <QtDeclarative/qdeclarativeengine.h>
#include <QtDeclarative/qdeclarativeexpression.h>
#include <QtDeclarative/qdeclarativeinfo.h>
#include <QtDeclarative/qdeclarativeitem.h>
#include <QtDeclarative/qdeclarativeparserstatus.h>
#include <QtDeclarative/qdeclarativepropertyvaluesource.h>
#include <QtDeclarative/qdeclarativescriptstring.h>

#include <QtTest/QtTest>

class Gauge : public QDeclarativeItem
{
    Q_OBJECT
    Q_INTERFACES(QDeclarativeParserStatus)
    Q_PROPERTY(QDeclarativeComponent *face READ face WRITE setFace)
    Q_PROPERTY(QDeclarativeScriptString script READ script WRITE setScript)

public:
    explicit Gauge(QDeclarativeItem *parent = 0)
        : QDeclarativeItem(parent)
    {
    }

    QDeclarativeComponent *face() const { return m_face; }
    void setFace(QDeclarativeComponent *face) { m_face = face; }
    QDeclarativeScriptString script() const { return m_script; }
    void setScript(const QDeclarativeScriptString &script) { m_script = script; }

    void classBegin()
    {
        QDeclarativeItem::classBegin();
        m_begun = true;
    }
    void componentComplete()
    {
        QDeclarativeItem::componentComplete();
        if (!m_face)
            return;
        if (QObject *face = m_face->create(qmlContext(this)))
            qobject_cast<QDeclarativeItem *>(face)->setParentItem(this);
    }
    Q_INVOKABLE void complain() { qmlInfo(this) << "out of scale"; }

    bool m_begun = false;

private:
    QDeclarativeComponent *m_face = nullptr;
    QDeclarativeScriptString m_script;
};
QML_DECLARE_TYPE(Gauge)

class Watched : public QObject, public QDeclarativeParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QDeclarativeParserStatus)

public:
    void classBegin() { m_log << "begin"; }
    void componentComplete() { m_log << "complete"; }

    QStringList m_log;
};

class Steps : public QObject, public QDeclarativePropertyValueSource
{
    Q_OBJECT
    Q_INTERFACES(QDeclarativePropertyValueSource)

public:
    void setTarget(const QDeclarativeProperty &property)
    {
        m_target = property;
        m_target.write(17);
    }

    QDeclarativeProperty m_target;
};

class Shape
{
public:
    virtual ~Shape() { }
    virtual int corners() const = 0;
};
Q_DECLARE_INTERFACE(Shape, "host.Shape")
QML_DECLARE_INTERFACE(Shape)

class Triangle : public QObject, public Shape
{
    Q_OBJECT
    Q_INTERFACES(Shape)

public:
    int corners() const { return 3; }
};

class Holder : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Shape *shape READ shape WRITE setShape)

public:
    Shape *shape() const { return m_shape; }
    void setShape(Shape *shape) { m_shape = shape; }

private:
    Shape *m_shape = nullptr;
};

class Plain : public QObject
{
    Q_OBJECT
};

class PlainExtension : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int extra READ extra WRITE setExtra NOTIFY extraChanged)

public:
    explicit PlainExtension(QObject *parent)
        : QObject(parent)
    {
    }
    int extra() const { return parent()->property("kept").toInt(); }
    void setExtra(int extra)
    {
        parent()->setProperty("kept", extra);
        emit extraChanged();
    }

signals:
    void extraChanged();
};

class NoteAttached : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText)

public:
    explicit NoteAttached(QObject *parent)
        : QObject(parent)
    {
    }
    QString text() const { return m_text; }
    void setText(const QString &text) { m_text = text; }

private:
    QString m_text;
};

class Note : public QObject
{
    Q_OBJECT

public:
    static NoteAttached *qmlAttachedProperties(QObject *object) { return new NoteAttached(object); }
};
QML_DECLARE_TYPEINFO(Note, QML_HAS_ATTACHED_PROPERTIES)

class host_types : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void itemWithAComponent();
    void scriptString();
    void infoIsAWarning();
    void parserStatus();
    void valueSource();
    void interface();
    void extendedType();
    void attachedProperties();

private:
    QObject *make(const QByteArray &qml)
    {
        QDeclarativeComponent component(&m_engine);
        component.setData("import QtQuick 1.0\nimport Host 1.0\n" + qml, QUrl("file:///made.qml"));
        if (component.isError())
            qWarning() << component.errors();
        QObject *const object = component.create();
        if (object)
            object->setParent(&m_made);
        return object;
    }

    QDeclarativeEngine m_engine;
    QObject m_made;
};

void host_types::initTestCase()
{
    qmlRegisterType<Gauge>("Host", 1, 0, "Gauge");
    qmlRegisterType<Watched>("Host", 1, 0, "Watched");
    qmlRegisterType<Steps>("Host", 1, 0, "Steps");
    qmlRegisterInterface<Shape>("Shape");
    qmlRegisterType<Triangle>("Host", 1, 0, "Triangle");
    qmlRegisterType<Holder>("Host", 1, 0, "Holder");
    qmlRegisterExtendedType<Plain, PlainExtension>("Host", 1, 0, "Plain");
    qmlRegisterType<Note>("Host", 1, 0, "Note");
}

void host_types::itemWithAComponent()
{
    Gauge *gauge = qobject_cast<Gauge *>(make("Gauge { face: Rectangle { width: 7 } }"));
    QVERIFY(gauge);
    QVERIFY(gauge->m_begun);
    QVERIFY(gauge->face());
    QCOMPARE(gauge->childItems().count(), 1);
    Gauge *other =
        qobject_cast<Gauge *>(make("Gauge { property Component c: Component { Item {} } face: c }"));
    QVERIFY(other && other->face());
}

void host_types::scriptString()
{
    Gauge *gauge = qobject_cast<Gauge *>(make("Gauge { id: g; width: 4; script: g.width * 2 }"));
    QVERIFY(gauge);
    QDeclarativeExpression expression(gauge->script(), qmlContext(gauge), gauge);
    QCOMPARE(expression.evaluate().toInt(), 8);
}

void host_types::infoIsAWarning()
{
    Gauge *gauge = qobject_cast<Gauge *>(make("Gauge {}"));
    QVERIFY(gauge);
    QTest::ignoreMessage(QtWarningMsg, "file:///made.qml:3:1: QML Gauge: out of scale");
    gauge->complain();
}

void host_types::parserStatus()
{
    Watched *watched = qobject_cast<Watched *>(make("Watched {}"));
    QVERIFY(watched);
    QCOMPARE(watched->m_log,
             QStringList() << "begin"
                           << "complete");
    QVERIFY(qobject_cast<QDeclarativeParserStatus *>(static_cast<QObject *>(watched)));
}

void host_types::valueSource()
{
    QObject *item = make("Item { Steps on width {} }");
    QVERIFY(item);
    QCOMPARE(item->property("width").toInt(), 17);
}

void host_types::interface()
{
    Holder *holder = qobject_cast<Holder *>(make("Holder { shape: Triangle {} }"));
    QVERIFY(holder && holder->shape());
    QCOMPARE(holder->shape()->corners(), 3);
}

void host_types::extendedType()
{
    QObject *plain = make("Plain { extra: 5; property int again: extra + 1 }");
    QVERIFY(plain);
    QCOMPARE(plain->property("kept").toInt(), 5);
    QCOMPARE(plain->property("again").toInt(), 6);
}

void host_types::attachedProperties()
{
    QObject *item = make("Item { Note.text: 'hello' }");
    QVERIFY(item);
    QObject *note = qmlAttachedPropertiesObject<Note>(item);
    QVERIFY(note);
    QCOMPARE(note->property("text").toString(), QString("hello"));
    QObject *bare = make("Item {}");
    QVERIFY(!qmlAttachedPropertiesObject<Note>(bare, false));
    QVERIFY(qmlAttachedPropertiesObject<Note>(bare));
}

QTEST_MAIN(host_types)
#include "host_types.moc"
