#include "TestPaths.h"
#include "galleryvalue.h"
#include "typefacts.h"

#include <QtDeclarative/QDeclarativeItem>
#include <QtDeclarative/QDeclarativeView>

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtGui/QFont>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>

#include <private/qhashedstring_p.h>
#include <private/qqmlengine_p.h>
#include <private/qqmlmetatype_p.h>
#include <private/qqmlvaluetype_p.h>

/**
 * Holds every type that QML 1 content can name to the facts of types.json.
 *
 * typesdifferences.json lists the types that are not there yet and what Qt's engine or its own non-visual
 * types make different, each with its reason. An entry that has no use any more fails.
 */
class tst_Types : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void modules_data();
    void modules();
    void creation_data() { addTypes(); }
    void creation();
    void members_data() { addTypes(); }
    void members();
    void enums_data() { addTypes(); }
    void enums();
    void attached_data() { addTypes(); }
    void attached();
    void initialValues_data() { addTypes(); }
    void initialValues();
    void laterMembers_data();
    void laterMembers();
    void groupedTypes_data();
    void groupedTypes();
    void valueTypes_data();
    void valueTypes();
    void globalObject_data();
    void globalObject();
    void missingTypes();
    void knownDifferencesAreMet();

private:
    struct Result
    {
        QSharedPointer<QObject> root;
        QString errors;
    };

    void addTypes();
    Result load(const QString &module, const QString &body);
    QJsonObject facts(const QString &type) const { return m_types.value(type).toObject(); }
    bool isMissing(const QString &type) const { return m_missing.contains(type); }
    QString unknown(const QStringList &differences);

    QDeclarativeView m_view;
    QJsonObject m_types;
    QJsonObject m_grouped;
    QJsonObject m_values;
    QJsonObject m_missing; ///< a type that does not exist yet, with the reason
    QJsonObject m_known; ///< a difference, with the reason
    QStringList m_met;
};

namespace {

QJsonObject readJson(const QString &name)
{
    QFile file(TestPaths::source("Tests/Declarative/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (document.isNull())
        qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(error.errorString()));
    return document.object();
}

const QString allModules[] = {QStringLiteral("Qt 4.7"), QStringLiteral("QtQuick 1.0"),
                              QStringLiteral("QtQuick 1.1")};

bool isIn(const QJsonObject &facts, const QString &module)
{
    const QJsonArray modules = facts.value(QLatin1String("modules")).toArray();
    return modules.contains(module) || modules.contains(QStringLiteral("QtQuick 1.0"));
}

QString handlerName(QString signal)
{
    signal[0] = signal.at(0).toUpper();
    return QLatin1String("on") + signal;
}

/** Types whose text form needs more than empty braces. */
QString instanceOf(const QString &type)
{
    if (type == QLatin1String("Component"))
        return QStringLiteral("Component { Item { } }");
    return type + QLatin1String(" { objectName: \"it\" }");
}

} // namespace

void tst_Types::initTestCase()
{
    const QJsonObject table = readJson(QStringLiteral("types.json"));
    m_types = table.value(QLatin1String("types")).toObject();
    m_grouped = table.value(QLatin1String("grouped")).toObject();
    m_values = table.value(QLatin1String("valueTypes")).toObject();
    QVERIFY(m_types.count() > 80);
    const QJsonObject differences = readJson(QStringLiteral("typesdifferences.json"));
    m_missing = differences.value(QLatin1String("missing")).toObject();
    m_known = differences.value(QLatin1String("members")).toObject();
    m_view.engine()->setOutputWarningsToStandardError(false);
}

void tst_Types::addTypes()
{
    QTest::addColumn<QString>("type");
    const QStringList types = m_types.keys();
    for (const QString &type : types) {
        if (!isMissing(type))
            QTest::newRow(qPrintable(type)) << type;
    }
}

tst_Types::Result tst_Types::load(const QString &module, const QString &body)
{
    QQmlComponent component(m_view.engine());
    const QString text = QStringLiteral("import %1\n%2\n").arg(module, body);
    component.setData(text.toUtf8(), QUrl::fromLocalFile(TestPaths::source("Tests/Declarative/Row.qml")));
    QSharedPointer<QObject> root(component.create());
    return {root, component.errorString()};
}

/** The differences that no entry knows, as text. */
QString tst_Types::unknown(const QStringList &differences)
{
    QStringList unknown;
    for (const QString &difference : differences)
        (m_known.contains(difference) ? m_met : unknown) += difference;
    return unknown.join(QLatin1Char('\n'));
}

void tst_Types::modules_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("module");
    const QStringList types = m_types.keys();
    for (const QString &type : types) {
        for (const QString &module : allModules) {
            if (!isMissing(type))
                QTest::newRow(qPrintable(type + QLatin1String(" in ") + module)) << type << module;
        }
    }
}

void tst_Types::modules()
{
    QFETCH(QString, type);
    QFETCH(QString, module);
    const Result loaded =
        load(module, QStringLiteral("Item { property bool known: typeof %1 !== 'undefined' }").arg(type));
    QVERIFY2(loaded.root, qPrintable(loaded.errors));
    QCOMPARE(loaded.root->property("known").toBool(), isIn(facts(type), module));
}

void tst_Types::creation()
{
    QFETCH(QString, type);
    const bool creatable = facts(type).value(QLatin1String("creatable")).toBool();
    for (const QString &module : allModules) {
        if (!isIn(facts(type), module))
            continue;
        const Result loaded = load(module, QStringLiteral("Item { %1 }").arg(instanceOf(type)));
        QStringList differences;
        if (bool(loaded.root) != creatable)
            differences += type + QLatin1String(": creatable");
        const QString reason = facts(type).value(QLatin1String("reason")).toString();
        if (!creatable && TypeFacts::registered(type).noCreationReason() != reason)
            differences += type + QLatin1String(": reason");
        if (!creatable && !loaded.errors.contains(reason))
            differences += type + QLatin1String(": error");
        const QString unmet = unknown(differences);
        QVERIFY2(unmet.isEmpty(), qPrintable(unmet + QLatin1Char(' ') + loaded.errors));
    }
}

void tst_Types::members()
{
    QFETCH(QString, type);
    const QQmlType registered = TypeFacts::registered(type);
    QVERIFY(registered.isValid());
    if (!registered.metaObject()) // ListElement is syntax alone
        return;
    const QMetaObject &meta = *registered.metaObject();
    QStringList differences = TypeFacts::memberDifferences(type, facts(type), meta);
    const QString base = facts(type).value(QLatin1String("base")).toString();
    if (!base.isEmpty() && base != QLatin1String("QtObject")) {
        const QMetaObject *baseMeta =
            QQmlMetaType::qmlType(TypeFacts::registered(base).typeId()).baseMetaObject();
        if (!meta.inherits(baseMeta))
            differences += QStringLiteral("%1: not a %2").arg(type, base);
    }
    const int index = meta.indexOfClassInfo("DefaultProperty");
    const QString defaultProperty =
        index < 0 ? QString() : QString::fromLatin1(meta.classInfo(index).value());
    const QString recorded = facts(type).value(QLatin1String("defaultProperty")).toString();
    if (defaultProperty != recorded)
        differences +=
            QStringLiteral("the default property is '%1' instead of '%2'").arg(defaultProperty, recorded);
    const QString unmet = unknown(differences);
    QVERIFY2(unmet.isEmpty(), qPrintable(unmet));
}

void tst_Types::enums()
{
    QFETCH(QString, type);
    const QHash<QString, int> recorded = TypeFacts::enumerators(facts(type));
    QStringList differences;
    for (auto it = recorded.begin(); it != recorded.end(); ++it) {
        bool known = false;
        const int seen = TypeFacts::registered(type).enumValue(QQmlEnginePrivate::get(m_view.engine()),
                                                               QHashedStringRef(&it.key()), &known);
        if (!known)
            differences += QStringLiteral("%1.%2: missing").arg(type, it.key());
        else if (seen != it.value())
            differences += QStringLiteral("%1.%2: %3").arg(type, it.key()).arg(seen);
    }
    const QString unmet = unknown(differences);
    QVERIFY2(unmet.isEmpty(), qPrintable(unmet));
}

void tst_Types::attached()
{
    QFETCH(QString, type);
    const QJsonObject recorded = facts(type).value(QLatin1String("attached")).toObject();
    const QMetaObject *meta =
        TypeFacts::registered(type).attachedPropertiesType(QQmlEnginePrivate::get(m_view.engine()));
    if (recorded.isEmpty())
        return;
    QStringList differences;
    if (!meta) {
        differences += type + QLatin1String(": not attached");
    } else {
        differences = TypeFacts::memberDifferences(type + QLatin1String(" attached"), recorded, *meta);
    }
    const QString unmet = unknown(differences);
    QVERIFY2(unmet.isEmpty(), qPrintable(unmet));
}

void tst_Types::initialValues()
{
    QFETCH(QString, type);
    QJsonObject initial;
    for (const QJsonValue property : facts(type).value(QLatin1String("properties")).toArray()) {
        if (!property[QLatin1String("initial")].isUndefined())
            initial.insert(property[QLatin1String("name")].toString(), property[QLatin1String("initial")]);
    }
    for (const QString &module : allModules) {
        if (initial.isEmpty() || !isIn(facts(type), module))
            continue;
        const Result loaded = load(module, QStringLiteral("Item { %1 }").arg(instanceOf(type)));
        QVERIFY2(loaded.root, qPrintable(loaded.errors));
        auto *object = loaded.root->findChild<QObject *>(QStringLiteral("it"));
        QVERIFY(object);
        QStringList differences;
        for (auto it = initial.begin(); it != initial.end(); ++it) {
            const QJsonValue seen = GalleryValue::fromVariant(object->property(it.key().toLatin1()), {});
            if (!GalleryValue::same(it.value(), seen, qMax(0.001, qAbs(it.value().toDouble()) * 1e-9)))
                differences +=
                    QStringLiteral("%1.%2: initially %3").arg(type, it.key(), GalleryValue::text(seen));
        }
        const QString unmet = unknown(differences);
        QVERIFY2(unmet.isEmpty(), qPrintable(unmet));
    }
}

void tst_Types::laterMembers_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("member");
    const QString kinds[] = {QStringLiteral("properties"), QStringLiteral("signals"),
                             QStringLiteral("methods")};
    for (auto it = m_types.begin(); it != m_types.end(); ++it) {
        if (isMissing(it.key()) || !isIn(it->toObject(), QStringLiteral("QtQuick 1.0")))
            continue;
        for (const QString &kind : kinds) {
            for (const QJsonValue member : it->toObject().value(kind).toArray()) {
                const QString name = member[QLatin1String("name")].toString();
                if (!member[QLatin1String("since")].isUndefined())
                    QTest::newRow(qPrintable(it.key() + QLatin1Char('.') + name)) << it.key() << kind << name;
            }
        }
    }
}

void tst_Types::laterMembers()
{
    QFETCH(QString, type);
    QFETCH(QString, kind);
    QFETCH(QString, member);
    const bool isSignal = kind == QLatin1String("signals");
    const QString name = isSignal ? handlerName(member) : member;
    if (kind != QLatin1String("methods")) {
        for (int i = 0; i < 2; ++i) {
            const Result old = load(allModules[i], QStringLiteral("Item { %1 { %2: { } } }").arg(type, name));
            QVERIFY(!old.root);
            QVERIFY2(old.errors.contains(name), qPrintable(old.errors));
        }
    }
    // The engine looks at versions where a name is found in its scope.
    const QString reading =
        QStringLiteral("Item { %1 { objectName: \"it\"; property string seen: typeof %2 } }")
            .arg(type, member);
    for (const QString &module : allModules) {
        const Result loaded = load(module, reading);
        QVERIFY2(loaded.root, qPrintable(loaded.errors));
        const QString seen =
            loaded.root->findChild<QObject *>(QStringLiteral("it"))->property("seen").toString();
        QCOMPARE(seen != QLatin1String("undefined"), module == QLatin1String("QtQuick 1.1"));
    }
    if (isSignal) {
        const Result now =
            load(QStringLiteral("QtQuick 1.1"), QStringLiteral("Item { %1 { %2: { } } }").arg(type, name));
        QVERIFY2(now.root, qPrintable(now.errors));
    }
}

void tst_Types::groupedTypes_data()
{
    QTest::addColumn<QString>("type");
    const QStringList types = m_grouped.keys();
    for (const QString &type : types)
        QTest::newRow(qPrintable(type)) << type;
}

void tst_Types::groupedTypes()
{
    QFETCH(QString, type);
    const QMetaObject *meta = TypeFacts::groupedMetaObject(type.toLatin1());
    QVERIFY(meta);
    const QString unmet =
        unknown(TypeFacts::memberDifferences(type, m_grouped.value(type).toObject(), *meta));
    QVERIFY2(unmet.isEmpty(), qPrintable(unmet));
}

void tst_Types::valueTypes_data()
{
    QTest::addColumn<QString>("type");
    const QStringList types = m_values.keys();
    for (const QString &type : types)
        QTest::newRow(qPrintable(type)) << type;
}

void tst_Types::valueTypes()
{
    QFETCH(QString, type);
    const QByteArray cppName = type == QLatin1String("font") ? QByteArray("QFont") : type.toLatin1();
    const QMetaObject *meta = QQmlValueTypeFactory::metaObjectForMetaType(QMetaType::type(cppName));
    QVERIFY(meta);
    const QString unmet =
        unknown(TypeFacts::propertyDifferences(type, m_values.value(type).toObject(), *meta));
    QVERIFY2(unmet.isEmpty(), qPrintable(unmet));
}

void tst_Types::globalObject_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("kind");
    const char *const functions[] = {
        "Qt.include",
        "Qt.isQtObject",
        "Qt.rgba",
        "Qt.hsla",
        "Qt.rect",
        "Qt.point",
        "Qt.size",
        "Qt.vector3d",
        "Qt.lighter",
        "Qt.darker",
        "Qt.tint",
        "Qt.formatDate",
        "Qt.formatTime",
        "Qt.quit",
        "Qt.formatDateTime",
        "Qt.openUrlExternally",
        "Qt.fontFamilies",
        "Qt.md5",
        "Qt.btoa",
        "Qt.atob",
        "Qt.resolvedUrl",
        "qsTr",
        "Qt.createQmlObject",
        "Qt.createComponent",
        "qsTranslate",
        "qsTrId",
        "QT_TR_NOOP",
        "QT_TRANSLATE_NOOP",
        "QT_TRID_NOOP",
        "print",
        "gc",
        "XMLHttpRequest",
        "String",
        "escape",
        "unescape",
        "encodeURIComponent",
        "eval",
        "parseInt",
    };
    for (const char *function : functions)
        QTest::newRow(function) << QString::fromLatin1(function) << QStringLiteral("function");
    QTest::newRow("Qt.application") << QStringLiteral("Qt.application") << QStringLiteral("object");
    QTest::newRow("active") << QStringLiteral("Qt.application.active") << QStringLiteral("boolean");
    QTest::newRow("layoutDirection") << QStringLiteral("Qt.application.layoutDirection")
                                     << QStringLiteral("number");
}

void tst_Types::globalObject()
{
    QFETCH(QString, expression);
    QFETCH(QString, kind);
    for (const QString &module : allModules) {
        const Result loaded =
            load(module, QStringLiteral("Item { property string kind: typeof %1 }").arg(expression));
        QVERIFY2(loaded.root, qPrintable(loaded.errors));
        QCOMPARE(loaded.root->property("kind").toString(), kind);
    }
}

/** A type that has come needs no place in the list. */
void tst_Types::missingTypes()
{
    const QStringList types = m_missing.keys();
    for (const QString &type : types)
        QVERIFY2(!TypeFacts::registered(type).isValid(), qPrintable(type));
}

/** Runs last: only a run of all rows can tell. */
void tst_Types::knownDifferencesAreMet()
{
    if (QCoreApplication::arguments().count() > 1)
        return;
    QStringList left = m_known.keys();
    for (const QString &line : qAsConst(m_met))
        left.removeAll(line);
    QVERIFY2(left.isEmpty(), qPrintable(left.join(QLatin1Char('\n'))));
}

int main(int argc, char **argv)
{
    qputenv("FONTCONFIG_FILE", QFile::encodeName(TestPaths::source("Tests/Declarative/gallery/fonts.conf")));
    // Text without a size was recorded at the platform's own resolution.
    qunsetenv("QT_FONT_DPI");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    tst_Types test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_types.moc"
