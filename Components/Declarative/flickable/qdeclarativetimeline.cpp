#include "qdeclarativetimeline_p.h"

QT_BEGIN_NAMESPACE

QQuickTimeLineObject::QQuickTimeLineObject()
    : _t(nullptr)
{
}

QQuickTimeLineObject::~QQuickTimeLineObject()
{
    if (_t)
        _t->remove(this);
    _t = nullptr;
}

QQuickTimeLineCallback::QQuickTimeLineCallback()
    : d0(nullptr)
    , d1(nullptr)
    , d2(nullptr)
{
}

QQuickTimeLineCallback::QQuickTimeLineCallback(QQuickTimeLineObject *object, Callback callback, void *data)
    : d0(callback)
    , d1(data)
    , d2(object)
{
}

QQuickTimeLineCallback::QQuickTimeLineCallback(const QQuickTimeLineCallback &) = default;
QQuickTimeLineCallback &QQuickTimeLineCallback::operator=(const QQuickTimeLineCallback &) = default;

QQuickTimeLineObject *QQuickTimeLineCallback::callbackObject() const
{
    return d2;
}

QT_END_NAMESPACE
