#include "MessageRecorder.h"
#include "ProcessorTime.h"
#include "QmlScene.h"

#include <QtCore/QMetaProperty>

#include <algorithm>
#include <limits>

/** Every number of every element takes every value: nothing ends, hangs or complains. */
class NumbersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void values_data();
    void values();
};

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int longest = 60000; // milliseconds; sanitizers take many times as long
#else
constexpr int longest = 10000;
#endif

const QList<QByteArray> types = {
    "Item",
    "Rectangle",
    "Text",
    "TextInput",
    "TextEdit",
    "Image",
    "BorderImage",
    "MouseArea",
    "PinchArea",
    "AnimatedImage",
    "Flickable",
    "Flipable",
    "Loader",
    "FocusScope",
    "Column",
    "Row",
    "Grid",
    "Flow",
    "Repeater",
    "ListView",
    "GridView",
    "PathView",
    "Timer",
    "NumberAnimation",
    "PauseAnimation",
    "SmoothedAnimation",
    "SpringAnimation",
};

const QList<QPair<const char *, QByteArray>> contents = {
    {"nothing", ""},
    {"one", "Rectangle { width: 10; height: 10 }"},
    {"hidden", "Rectangle { width: 10; height: 10; visible: false } Rectangle { opacity: 0 } Item { }"},
};

bool takesItems(const QByteArray &type)
{
    return !type.endsWith("Animation") && type != "Timer";
}

bool isView(const QByteArray &type)
{
    return type.endsWith("View") || type == "Repeater";
}

QByteArray sceneOf(const QByteArray &type, const QByteArray &content)
{
    QByteArray body = type + " { id: tried; objectName: 'tried'\n";
    if (isView(type))
        body += "model: " + QByteArray(content.isEmpty() ? "0" : "30") + "; delegate: "
            + (content.isEmpty() ? QByteArray("Item { }") : content.left(content.indexOf('}') + 1)) + "\n";
    else if (takesItems(type))
        body += content;
    if (type == "PathView")
        body += "path: Path { startX: 0; startY: 0; PathLine { x: 100; y: 50 } }\n";
    return "import QtQuick 1.1\nItem { width: 100; height: 100\n" + body + "} }";
}

QVector<QMetaProperty> numbersOf(const QObject *object)
{
    QVector<QMetaProperty> numbers;
    for (int i = 0; i < object->metaObject()->propertyCount(); ++i) {
        const QMetaProperty property = object->metaObject()->property(i);
        const int type = property.userType();
        const bool isNumber = type == QMetaType::Double || type == QMetaType::Float || type == QMetaType::Int;
        if (property.isWritable() && isNumber)
            numbers.append(property);
    }
    return numbers;
}

const QVector<double> tried = {-1,
                               -0.5,
                               0,
                               0.3,
                               7.7,
                               1e6,
                               -1e6,
                               2147483647.0,
                               -2147483648.0,
                               1e300,
                               std::numeric_limits<double>::quiet_NaN(),
                               std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity()};

void tryValues(QmlScene *scene, QObject *object, const QMetaProperty &number)
{
    const QVariant before = number.read(object);
    for (const double value : tried) {
        // As a script would, so that whole numbers are what a script makes of it.
        QQmlExpression expression(
            qmlContext(object), object,
            QStringLiteral("%1 = %2").arg(
                QLatin1String(number.name()),
                qIsNaN(value) ? QStringLiteral("NaN")
                    : qIsInf(value)
                    ? QStringLiteral("%1Infinity").arg(value < 0 ? QStringLiteral("-") : QString())
                    : QString::number(value, 'g', 17)));
        expression.evaluate();
        QCoreApplication::sendPostedEvents();
        // A picture of such a size would be made in full.
        if (qAbs(value) < 1e5)
            scene->picture();
    }
    number.write(object, before);
}

} // namespace

void NumbersTest::values_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("content");
    for (const QByteArray &type : types) {
        for (const auto &content : contents)
            QTest::addRow("%s, %s", type.constData(), content.first) << type << content.second;
    }
}

void NumbersTest::values()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, content);
    const double before = processorTime();
    const MessageRecorder messages;
    {
        QmlScene scene;
        scene.load(sceneOf(type, content));
        QObject *object = scene.find<QObject>("tried");
        QVERIFY(object);
        const auto numbers = numbersOf(object);
        QVERIFY(!numbers.isEmpty());
        for (const QMetaProperty &number : numbers)
            tryValues(&scene, object, number);
    }
    QStringList unexpected = messages.texts();
    // As ever, animations tell of a duration that cannot be.
    unexpected.erase(std::remove_if(unexpected.begin(), unexpected.end(),
                                    [](const QString &text) {
                                        return text.endsWith(QStringLiteral("Cannot set a duration of < 0"));
                                    }),
                     unexpected.end());
    QCOMPARE(unexpected.join(QLatin1Char('\n')), QString());
    const double time = processorTime() - before;
    QVERIFY2(time < longest, qPrintable(QString::number(time)));
}

QTEST_MAIN(NumbersTest)
#include "tst_numbers.moc"
