// A header that knows QML 1 by names alone.
#pragma once

#include <QtCore/QObject>

class QDeclarativeEngine;
class QDeclarativeView;
class QDeclarativeError;
template <typename T>
class QDeclarativeListProperty;
QT_FORWARD_DECLARE_CLASS(QDeclarativeContext)
QT_FORWARD_DECLARE_CLASS(QDeclarativeComponent)
QT_FORWARD_DECLARE_CLASS(QDeclarativeExpression)
QT_FORWARD_DECLARE_CLASS(QDeclarativeItem)
QT_FORWARD_DECLARE_CLASS(QDeclarativeProperty)
QT_FORWARD_DECLARE_CLASS(QDeclarativePropertyMap)

namespace Host {

class QDeclarativeEngine; // another one, as QML 1's has no namespace

class Stage : public QObject
{
    Q_OBJECT

public:
    explicit Stage(QDeclarativeView *view);

    ::QDeclarativeEngine *engine() const;
    QDeclarativeContext *context() const;
    Host::QDeclarativeEngine *otherEngine() const { return nullptr; }
    QDeclarativeItem *make(const QByteArray &qml);
    QVariant evaluate(const QString &script, QDeclarativeError *error);
    QDeclarativePropertyMap *settings() const { return m_settings; }

Q_SIGNALS:
    void made(QDeclarativeItem *item);

private:
    QDeclarativeView *const m_view;
    QDeclarativePropertyMap *const m_settings;
};

} // namespace Host
