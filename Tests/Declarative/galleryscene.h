#pragma once

#include <QtDeclarative/QDeclarativeView>

#include <QtCore/QDir>
#include <QtCore/QEvent>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QVariantAnimation>
#include <QtGui/QImage>

/**
 * One scene of the gallery in a view of its own: it does the steps and tells what can be seen afterwards.
 *
 * Messages of the whole program are taken while a scene exists, so there is one at a time.
 */
class GalleryScene
{
public:
    GalleryScene(const QDir &folder, const QString &name);
    ~GalleryScene();

    /** Loads and shows the scene; returns the load record's log and warnings through record(). */
    void load();

    /** Does @p step; the value of an `eval` is returned, undefined otherwise. */
    QJsonValue play(const QJsonObject &step);

    /** Lets the event loop run for @p milliseconds. */
    static void wait(int milliseconds);

    /** The objects that have a name, by it. */
    QHash<QString, QObject *> objects() const;

    /** The QML 1 name of the type of @p object. */
    static QString typeName(const QObject *object);

    /** The property @p name, which may be `group.member`, of @p object. */
    QJsonValue property(QObject *object, const QString &name) const;

    /** The view as it is painted, without text cursors. */
    QImage picture();

    QJsonArray takeLog();
    QJsonArray takeWarnings();
    QJsonArray errors() const;
    bool isReady() const { return m_view.status() == QDeclarativeView::Ready; }

private:
    void waitForModels();
    QJsonValue evaluate(const QString &script);
    void mouse(const QJsonObject &step);
    void sendMouse(QEvent::Type type, const QPoint &at, Qt::MouseButton button,
                   Qt::KeyboardModifiers modifiers);
    void key(const QJsonObject &step);
    QJsonObject message(const QQmlError &error) const;
    static void takeMessage(QtMsgType type, const QMessageLogContext &context, const QString &text);

    const QDir m_folder;
    const QString m_file;
    QVariantAnimation m_pulse;
    QDeclarativeView m_view;
    Qt::MouseButtons m_buttons;
    QJsonArray m_log;
    QJsonArray m_warnings;
    QtMessageHandler m_previousHandler;
};
