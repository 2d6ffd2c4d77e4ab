#include "qdeclarativegraphicswidget_p.h"

QDeclarativeGraphicsWidget::QDeclarativeGraphicsWidget(QObject *widget)
    : QObject(widget)
{
}

QDeclarativeAnchors *QDeclarativeGraphicsWidget::anchors()
{
    if (!m_anchors)
        m_anchors = std::make_unique<QDeclarativeAnchors>(widget());
    return m_anchors.get();
}

#include "moc_qdeclarativegraphicswidget_p.cpp"
