#include "galleryvalue.h"

#include <QtDeclarative/qdeclarative.h>

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMetaEnum>
#include <QtGui/QColor>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <private/qqmlengine_p.h>
#include <private/qqmlmetatype_p.h>

#include <memory>

/**
 * Holds every registered type against types.json: modules, properties, enumerations, signals, methods,
 * attached members and the values of a new object.
 *
 * typesdifferences.json lists the types that do not exist yet, and the members that Qt's own types do not
 * have or have otherwise, each with its reason; an entry that no longer differs fails the type.
 */
class tst_Types : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void types_data();
    void types();
    void membersOf11_data();
    void membersOf11();

private:
    void compareMembers(const QString &where, const QMetaObject *meta, const QJsonObject &type);
    void compareProperty(const QString &where, const QMetaObject *meta, const QJsonObject &property);
    void compareEnums(const QString &where, const QMetaObject *meta, const QJsonObject &enums);
    void compareFunctions(const QString &where, const QMetaObject *meta, const QJsonObject &type,
                          const char *kind);
    void compareInitialValues(const QJsonObject &type);
    std::unique_ptr<QObject> create(const QString &module, const QString &name, const QString &body);
    void differs(const QString &what);

    QQmlEngine m_engine;
    QJsonObject m_types;
    QJsonObject m_missing; ///< name of a type that does not exist yet, to the reason
    QJsonObject m_allowed; ///< "Type.member: how" to the reason
    QStringList m_unexpected;
    QStringList m_met;
    QStringList m_errors;
    QString m_name;
};

static QJsonObject readObject(const char *path)
{
    QFile file(QString::fromUtf8(path));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", path);
    return QJsonDocument::fromJson(file.readAll()).object();
}

void tst_Types::initTestCase()
{
    qmlRegisterDeclarativeTypes();
    m_types = readObject(TEST_SOURCE_DIR "/types.json").value(QLatin1String("types")).toObject();
    const QJsonObject differences = readObject(TEST_SOURCE_DIR "/typesdifferences.json");
    m_missing = differences.value(QLatin1String("missing")).toObject();
    m_allowed = differences.value(QLatin1String("members")).toObject();
    QVERIFY(m_types.count() > 80);
    m_engine.setOutputWarningsToStandardError(false);
}

void tst_Types::types_data()
{
    QTest::addColumn<QString>("name");
    const auto names = m_types.keys();
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << name;
}

static QQmlType typeOf(const QString &name, const QString &module)
{
    const int space = module.lastIndexOf(QLatin1Char(' '));
    const QStringList version = module.mid(space + 1).split(QLatin1Char('.'));
    return QQmlMetaType::qmlType(name, module.left(space), version.at(0).toInt(), version.at(1).toInt());
}

void tst_Types::differs(const QString &what)
{
    if (m_allowed.contains(what))
        m_met.append(what);
    else
        m_unexpected.append(what);
}

void tst_Types::types()
{
    QFETCH(QString, name);
    m_name = name;
    m_unexpected.clear();
    m_met.clear();
    const QJsonObject type = m_types.value(name).toObject();
    const auto modules = type.value(QLatin1String("modules")).toArray();
    const bool exists = typeOf(name, modules.last().toString()).isValid();
    if (m_missing.contains(name)) {
        QVERIFY2(!exists, "is there now, and still listed as missing");
        return;
    }
    QVERIFY(exists);
    for (const QJsonValue &module : modules)
        QVERIFY2(typeOf(name, module.toString()).isValid(), qPrintable(module.toString()));
    const QQmlType registered = typeOf(name, modules.last().toString());
    const bool creatable = type.value(QLatin1String("creatable")).toBool();
    if (creatable != registered.isCreatable())
        differs(name + QLatin1String(": creatable"));
    if (!creatable && registered.noCreationReason() != type.value(QLatin1String("reason")).toString())
        differs(name + QLatin1String(": reason"));
    compareMembers(name, registered.metaObject(), type);
    const QJsonObject attached = type.value(QLatin1String("attached")).toObject();
    if (!attached.isEmpty()) {
        const QMetaObject *meta = registered.attachedPropertiesType(QQmlEnginePrivate::get(&m_engine));
        QVERIFY(meta);
        compareMembers(name + QLatin1String(" attached"), meta, attached);
    }
    if (creatable)
        compareInitialValues(type);
    const auto allowed = m_allowed.keys();
    for (const QString &entry : allowed) {
        const bool isOurs = entry.startsWith(name + QLatin1Char('.'))
            || entry.startsWith(name + QLatin1Char(':')) || entry.startsWith(name + QLatin1Char(' '));
        if (isOurs && !m_met.contains(entry))
            m_unexpected.append(QLatin1String("no longer differs: ") + entry);
    }
    QVERIFY2(m_unexpected.isEmpty(), qPrintable(QLatin1Char('\n') + m_unexpected.join(QLatin1Char('\n'))));
}

void tst_Types::compareMembers(const QString &where, const QMetaObject *meta, const QJsonObject &type)
{
    const auto properties = type.value(QLatin1String("properties")).toArray();
    for (const QJsonValue &property : properties)
        compareProperty(where, meta, property.toObject());
    compareEnums(where, meta, type.value(QLatin1String("enums")).toObject());
    compareFunctions(where, meta, type, "signals");
    compareFunctions(where, meta, type, "methods");
    const QString byDefault = type.value(QLatin1String("defaultProperty")).toString();
    const int info = meta->indexOfClassInfo("DefaultProperty");
    const QString seen = info < 0 ? QString() : QString::fromLatin1(meta->classInfo(info).value());
    if (!byDefault.isEmpty() && byDefault != seen)
        differs(QStringLiteral("%1: default property %2").arg(where, seen));
}

void tst_Types::compareProperty(const QString &where, const QMetaObject *meta, const QJsonObject &property)
{
    const QString name = property.value(QLatin1String("name")).toString();
    const QString full = where + QLatin1Char('.') + name;
    const int index = meta->indexOfProperty(name.toLatin1().constData());
    if (index < 0) {
        differs(full + QLatin1String(": missing"));
        return;
    }
    const QMetaProperty seen = meta->property(index);
    const bool isList = property.value(QLatin1String("type")).toString().startsWith(QLatin1String("list<"));
    if (!isList && seen.isWritable() == property.value(QLatin1String("readOnly")).toBool())
        differs(full + QLatin1String(": writable"));
    const bool isLate = property.value(QLatin1String("since")) == QLatin1String("1.1");
    if (isLate != (seen.revision() > 0))
        differs(full + QLatin1String(": since"));
    if (property.contains(QLatin1String("notify")) && !seen.hasNotifySignal())
        differs(full + QLatin1String(": does not notify"));
}

void tst_Types::compareEnums(const QString &where, const QMetaObject *meta, const QJsonObject &enums)
{
    for (auto it = enums.begin(); it != enums.end(); ++it) {
        const QString full = where + QLatin1Char('.') + it.key();
        const int index = meta->indexOfEnumerator(it.key().toLatin1().constData());
        if (index < 0) {
            differs(full + QLatin1String(": missing"));
            continue;
        }
        const QMetaEnum seen = meta->enumerator(index);
        const QJsonObject values = it.value().toObject();
        for (auto value = values.begin(); value != values.end(); ++value) {
            bool ok = false;
            const int number = seen.keyToValue(value.key().toLatin1().constData(), &ok);
            if (!ok || number != value.value().toInt())
                differs(QStringLiteral("%1.%2: %3")
                            .arg(full, value.key())
                            .arg(ok ? QString::number(number) : QStringLiteral("missing")));
        }
    }
}

void tst_Types::compareFunctions(const QString &where, const QMetaObject *meta, const QJsonObject &type,
                                 const char *kind)
{
    const auto functions = type.value(QLatin1String(kind)).toArray();
    for (const QJsonValue &value : functions) {
        const QJsonObject function = value.toObject();
        const QString name = function.value(QLatin1String("name")).toString();
        const int parameters = function.value(QLatin1String("parameters")).toArray().count();
        const bool isSignal = qstrcmp(kind, "signals") == 0;
        bool found = false;
        for (int i = 0; i < meta->methodCount() && !found; ++i) {
            const QMetaMethod method = meta->method(i);
            found = method.name() == name.toLatin1()
                && (method.methodType() == QMetaMethod::Signal) == isSignal
                && method.access() == QMetaMethod::Public && method.parameterCount() >= parameters;
        }
        if (!found)
            differs(QStringLiteral("%1.%2(): missing").arg(where, name));
    }
}

std::unique_ptr<QObject> tst_Types::create(const QString &module, const QString &name, const QString &body)
{
    QQmlComponent component(&m_engine);
    const QString text = QStringLiteral("import %1\nItem { property variant made: thing; "
                                        "resources: [ %2 { id: thing; %3 } ] }")
                             .arg(module, name, body);
    component.setData(text.toUtf8(), QUrl(QStringLiteral("file:///scene.qml")));
    std::unique_ptr<QObject> item(component.create());
    m_errors.clear();
    const auto errors = component.errors();
    for (const QQmlError &error : errors)
        m_errors.append(error.description());
    return item;
}

void tst_Types::compareInitialValues(const QJsonObject &type)
{
    const QString module = type.value(QLatin1String("modules")).toArray().last().toString();
    const bool isComponent = m_name == QLatin1String("Component");
    const std::unique_ptr<QObject> item =
        create(module, m_name, isComponent ? QStringLiteral("QtObject {}") : QString());
    QObject *object = item ? item->property("made").value<QObject *>() : nullptr;
    QVERIFY2(object, qPrintable(m_errors.join(QLatin1Char('\n'))));
    const auto properties = type.value(QLatin1String("properties")).toArray();
    for (const QJsonValue &value : properties) {
        const QJsonObject property = value.toObject();
        if (!property.contains(QLatin1String("initial")))
            continue;
        const QString name = property.value(QLatin1String("name")).toString();
        const QVariant seen = object->property(name.toLatin1().constData());
        QJsonValue json = GalleryValue::fromVariant(seen, QDir());
        if (seen.userType() == QMetaType::QColor && !seen.value<QColor>().isValid())
            json = QStringLiteral("invalid");
        const QJsonValue recorded = property.value(QLatin1String("initial"));
        const bool isNumber = recorded.isDouble() && seen.canConvert<double>();
        const bool same = isNumber ? qFuzzyCompare(1 + recorded.toDouble(), 1 + seen.toDouble())
                                   : GalleryValue::same(recorded, json, 0.01);
        if (!same)
            differs(QStringLiteral("%1.%2: initially %3").arg(m_name, name, GalleryValue::text(json)));
    }
}

void tst_Types::membersOf11_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("body");
    QTest::newRow("Item.implicitWidth") << "Item"
                                        << "implicitWidth: 3";
    QTest::newRow("Item.implicitHeight") << "Item"
                                         << "implicitHeight: 3";
    QTest::newRow("Item.onImplicitWidthChanged") << "Item"
                                                 << "onImplicitWidthChanged: {}";
    QTest::newRow("inherited") << "FocusScope"
                               << "implicitWidth: 3";
    QTest::newRow("LayoutMirroring") << "Item"
                                     << "LayoutMirroring.enabled: true";
}

void tst_Types::membersOf11()
{
    QFETCH(QString, name);
    QFETCH(QString, body);
    for (const char *module : {"QtQuick 1.0", "Qt 4.7"}) {
        QVERIFY2(!create(QString::fromLatin1(module), name, body), module);
        QCOMPARE(m_errors.count(), 1);
    }
    QVERIFY2(create(QStringLiteral("QtQuick 1.1"), name, body).get(),
             qPrintable(m_errors.join(QLatin1Char('\n'))));
}

int main(int argc, char **argv)
{
    // The size of an empty Text is that of the font.
    qputenv("FONTCONFIG_FILE", TEST_SOURCE_DIR "/gallery/fonts.conf");
    QApplication app(argc, argv);
    tst_Types test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_types.moc"
