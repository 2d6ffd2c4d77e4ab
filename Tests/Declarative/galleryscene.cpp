#include "galleryscene.h"

#include "SteppedAnimations.h"
#include "galleryvalue.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QMetaEnum>
#include <QtCore/QTimer>
#include <QtGui/QMouseEvent>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>

#include <algorithm>

namespace {

GalleryScene *current = nullptr;

SteppedAnimations *animations()
{
    static SteppedAnimations driver;
    return &driver;
}

int enumValue(const QMetaEnum &type, const QString &key)
{
    bool ok = false;
    const int value = type.keyToValue(key.toLatin1().constData(), &ok);
    if (!ok)
        qFatal("the gallery names an unknown key: %s", qPrintable(key));
    return value;
}

Qt::KeyboardModifiers modifiers(const QJsonObject &step)
{
    Qt::KeyboardModifiers all;
    const auto type = QMetaEnum::fromType<Qt::KeyboardModifiers>();
    const auto names = step.value(QLatin1String("modifiers")).toArray();
    for (const QJsonValue &name : names)
        all |= Qt::KeyboardModifier(enumValue(type, name.toString() + QLatin1String("Modifier")));
    return all;
}

Qt::MouseButton button(const QJsonObject &step)
{
    const QString name = step.value(QLatin1String("button")).toString(QStringLiteral("left"));
    if (name == QLatin1String("left"))
        return Qt::LeftButton;
    if (name == QLatin1String("right"))
        return Qt::RightButton;
    if (name == QLatin1String("middle"))
        return Qt::MiddleButton;
    qFatal("the gallery names an unknown button: %s", qPrintable(name));
}

void collect(QObject *object, QHash<QString, QObject *> *found, QSet<QObject *> *visited);

void collectItem(QGraphicsItem *item, QHash<QString, QObject *> *found, QSet<QObject *> *visited)
{
    if (QGraphicsObject *object = item->toGraphicsObject())
        return collect(object, found, visited);
    const auto children = item->childItems();
    for (QGraphicsItem *child : children)
        collectItem(child, found, visited);
}

void collect(QObject *object, QHash<QString, QObject *> *found, QSet<QObject *> *visited)
{
    if (visited->contains(object))
        return;
    visited->insert(object);
    if (!object->objectName().isEmpty() && !found->contains(object->objectName()))
        found->insert(object->objectName(), object);
    if (auto *graphicsObject = qobject_cast<QGraphicsObject *>(object)) {
        const auto items = graphicsObject->childItems();
        for (QGraphicsItem *item : items)
            collectItem(item, found, visited);
    }
    const auto children = object->children();
    for (QObject *child : children)
        collect(child, found, visited);
}

} // namespace

GalleryScene::GalleryScene(const QDir &folder, const QString &name)
    : m_folder(folder)
    , m_file(name + QLatin1String(".qml"))
    , m_previousHandler(qInstallMessageHandler(takeMessage))
{
    current = this;
    animations()->install();
    // Where nothing but pauses is at work, Qt would wait for their ends by the clock instead, and pass over
    // what a busy machine comes too late for.
    m_pulse.setDuration(1);
    m_pulse.setLoopCount(-1);
    m_pulse.start();
    m_view.engine()->setOutputWarningsToStandardError(false);
    QObject::connect(m_view.engine(), &QQmlEngine::warnings, &m_view, [this](const QList<QQmlError> &errors) {
        for (const QQmlError &error : errors)
            m_warnings.append(message(error));
    });
    QObject::connect(m_view.engine(), &QQmlEngine::quit, &m_view,
                     [this] { m_log.append(QStringLiteral("<quit>")); });
}

GalleryScene::~GalleryScene()
{
    qInstallMessageHandler(m_previousHandler);
    m_pulse.stop();
    animations()->uninstall();
    current = nullptr;
}

void GalleryScene::takeMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    GalleryScene *scene = current;
    if (type == QtFatalMsg || !scene) {
        fprintf(stderr, "%s\n", qPrintable(text));
        return;
    }
    const QString words = GalleryValue::relativeText(text, scene->m_folder);
    // console.log() writes debug messages; those of Qt itself have other categories.
    const bool fromScript = qstrcmp(context.category, "qml") == 0 || qstrcmp(context.category, "js") == 0;
    if (type == QtDebugMsg && fromScript)
        scene->m_log.append(words);
    else if (type == QtWarningMsg || type == QtCriticalMsg)
        scene->m_warnings.append(QJsonObject{{QStringLiteral("text"), words}});
}

QJsonObject GalleryScene::message(const QQmlError &error) const
{
    return {{QStringLiteral("file"), QFileInfo(error.url().path()).fileName()},
            {QStringLiteral("line"), error.line()},
            {QStringLiteral("column"), error.column()},
            {QStringLiteral("text"), GalleryValue::relativeText(error.description(), m_folder)}};
}

void GalleryScene::load()
{
    m_view.setSource(QUrl::fromLocalFile(m_folder.filePath(m_file)));
    if (!isReady()) {
        // The view says what went wrong; that is in errors() already.
        m_warnings = {};
        return;
    }
    m_view.show();
    m_view.activateWindow();
    if (!QTest::qWaitForWindowActive(&m_view))
        qFatal("the window does not become active");
    wait(100);
    waitForModels();
}

// A thread of its own reads them, which the recorder had time for.
void GalleryScene::waitForModels()
{
    constexpr int loading = 2;
    const auto isReading = [this] {
        const auto objects = m_view.rootObject()->findChildren<QObject *>();
        return std::any_of(objects.begin(), objects.end(), [](const QObject *object) {
            return object->inherits("QDeclarativeXmlListModel")
                && object->property("status").toInt() == loading;
        });
    };
    if (!m_view.rootObject() || !isReading())
        return;
    // One that is not read to its end differs from what was recorded.
    if (QTest::qWaitFor([&] { return !m_view.rootObject() || !isReading(); }, 30000))
        wait(100);
}

void GalleryScene::wait(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    // The first picture of an animation that begins with the step is due one interval later.
    for (int time = SteppedAnimations::interval; time <= milliseconds; time += SteppedAnimations::interval) {
        QTest::qWait(SteppedAnimations::interval);
        animations()->goOn();
    }
    QTest::qWait(int(qMax(qint64(0), milliseconds - timer.elapsed())));
}

QJsonValue GalleryScene::play(const QJsonObject &step)
{
    if (step.contains(QLatin1String("eval")))
        return evaluate(step.value(QLatin1String("eval")).toString());
    if (step.contains(QLatin1String("wait"))) {
        wait(step.value(QLatin1String("wait")).toInt());
        waitForModels();
    } else if (step.contains(QLatin1String("mouse"))) {
        mouse(step);
    } else if (step.contains(QLatin1String("key"))) {
        key(step);
    } else {
        qFatal("the gallery has an unknown step");
    }
    return QJsonValue::Undefined;
}

QJsonValue GalleryScene::evaluate(const QString &script)
{
    QObject *root = m_view.rootObject();
    QQmlExpression expression(qmlContext(root), root, script);
    expression.setSourceLocation(qmlContext(root)->baseUrl().toString(), 1);
    bool isUndefined = false;
    const QVariant value = expression.evaluate(&isUndefined);
    if (expression.hasError())
        m_warnings.append(message(expression.error()));
    if (isUndefined)
        return QJsonValue::Undefined;
    const QJsonValue result = GalleryValue::fromVariant(value, m_folder);
    return result.isNull() && value.value<QObject *>() ? QJsonValue(QStringLiteral("<object>")) : result;
}

void GalleryScene::mouse(const QJsonObject &step)
{
    const QString what = step.value(QLatin1String("mouse")).toString();
    const QPoint at(step.value(QLatin1String("x")).toInt(), step.value(QLatin1String("y")).toInt());
    const auto send = [&](QEvent::Type type) {
        sendMouse(type, at, type == QEvent::MouseMove ? Qt::NoButton : button(step), modifiers(step));
    };
    if (what == QLatin1String("leave")) {
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(m_view.viewport(), &leave);
    } else if (what == QLatin1String("move")) {
        send(QEvent::MouseMove);
    } else if (what == QLatin1String("press")) {
        send(QEvent::MouseButtonPress);
    } else if (what == QLatin1String("release")) {
        send(QEvent::MouseButtonRelease);
    } else if (what == QLatin1String("click")) {
        send(QEvent::MouseButtonPress);
        send(QEvent::MouseButtonRelease);
    } else if (what == QLatin1String("dblclick")) {
        send(QEvent::MouseButtonPress);
        send(QEvent::MouseButtonRelease);
        send(QEvent::MouseButtonDblClick);
        send(QEvent::MouseButtonRelease);
    } else {
        qFatal("the gallery has an unknown mouse step: %s", qPrintable(what));
    }
}

void GalleryScene::sendMouse(QEvent::Type type, const QPoint &at, Qt::MouseButton button,
                             Qt::KeyboardModifiers modifiers)
{
    if (type == QEvent::MouseButtonRelease)
        m_buttons &= ~Qt::MouseButtons(button);
    else
        m_buttons |= button;
    QMouseEvent event(type, at, m_view.viewport()->mapToGlobal(at), button, m_buttons, modifiers);
    QCoreApplication::sendEvent(m_view.viewport(), &event);
}

void GalleryScene::key(const QJsonObject &step)
{
    const int key = enumValue(QMetaEnum::fromType<Qt::Key>(), step.value(QLatin1String("key")).toString());
    const QString text = step.value(QLatin1String("text")).toString();
    for (QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, modifiers(step), text);
        QCoreApplication::sendEvent(&m_view, &event);
    }
}

QHash<QString, QObject *> GalleryScene::objects() const
{
    QHash<QString, QObject *> found;
    QSet<QObject *> visited;
    if (QObject *root = m_view.rootObject())
        collect(root, &found, &visited);
    return found;
}

QString GalleryScene::typeName(const QObject *object)
{
    const QMetaObject *type = object->metaObject();
    while (strstr(type->className(), "_QML"))
        type = type->superClass();
    QString name = QString::fromLatin1(type->className());
    static const QHash<QString, QString> renamed = {
        {QStringLiteral("QObject"), QStringLiteral("QtObject")},
        {QStringLiteral("QQmlDelegateModel"), QStringLiteral("VisualDataModel")},
        {QStringLiteral("QQmlObjectModel"), QStringLiteral("VisualItemModel")},
    };
    if (renamed.contains(name))
        return renamed.value(name);
    for (const char *prefix : {"QDeclarative", "QGraphics", "QQuick", "QQml", "Q"}) {
        if (name.startsWith(QLatin1String(prefix)))
            return name.mid(int(qstrlen(prefix)));
    }
    return name;
}

QJsonValue GalleryScene::property(QObject *object, const QString &name) const
{
    const QQmlProperty property(object, name);
    if (!property.isValid())
        return QJsonValue::Undefined;
    const QJsonValue value = GalleryValue::fromVariant(property.read(), m_folder);
    // The recordings know objects by their names alone.
    return value == QLatin1String("<object>") ? QJsonValue::Null : value;
}

QImage GalleryScene::picture()
{
    const QHash<QString, QObject *> all = objects();
    QVector<QObject *> editors;
    for (QObject *object : all) {
        if (object->property("cursorVisible").toBool())
            editors.append(object);
    }
    for (QObject *editor : qAsConst(editors))
        editor->setProperty("cursorVisible", false);
    QImage image = m_view.grab().toImage().convertToFormat(QImage::Format_ARGB32);
    for (QObject *editor : qAsConst(editors))
        editor->setProperty("cursorVisible", true);
    return image;
}

QJsonArray GalleryScene::takeLog()
{
    return std::exchange(m_log, {});
}

QJsonArray GalleryScene::takeWarnings()
{
    QVector<QJsonObject> sorted;
    for (const QJsonValue &warning : qAsConst(m_warnings))
        sorted.append(warning.toObject());
    m_warnings = {};
    std::stable_sort(sorted.begin(), sorted.end(), [](const QJsonObject &a, const QJsonObject &b) {
        return a.value(QLatin1String("line")).toInt() < b.value(QLatin1String("line")).toInt();
    });
    QJsonArray result;
    for (const QJsonObject &warning : qAsConst(sorted))
        result.append(warning);
    return result;
}

QJsonArray GalleryScene::errors() const
{
    QJsonArray result;
    const auto all = m_view.errors();
    for (const QQmlError &error : all)
        result.append(message(error));
    return result;
}
