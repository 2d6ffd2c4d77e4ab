#pragma once

#include "FuzzTarget.h"

#include <QtDeclarative/QDeclarativeItem>
#include <QtDeclarative/QDeclarativeView>

#include <QtCore/QCoreApplication>
#include <QtGui/QImage>
#include <QtGui/QPainter>

/** A view of one QML 1 item, which the inputs share: making it takes far longer than an input may. */
class FuzzScene
{
public:
    /** Shows an item of @p qml, which comes after the import. */
    explicit FuzzScene(const QByteArray &qml)
    {
        m_view.setSource(QUrl::fromLocalFile(writeFuzzFile("Scene.qml", "import QtQuick 1.1\n" + qml)));
        FUZZ_CHECK(m_view.rootObject());
    }

    QObject *item() const { return m_view.rootObject(); }
    QDeclarativeView &view() { return m_view; }

    /** Has the item paint itself. */
    void paint()
    {
        QCoreApplication::sendPostedEvents();
        m_image.fill(Qt::white);
        QPainter painter(&m_image);
        m_view.scene()->render(&painter, m_image.rect(), QRectF(0, 0, 100, 50));
    }

private:
    QDeclarativeView m_view;
    QImage m_image{100, 50, QImage::Format_ARGB32_Premultiplied};
};
