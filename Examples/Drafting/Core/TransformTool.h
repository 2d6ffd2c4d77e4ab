#pragma once

#include "Tool.h"

#include <QtGui/QTransform>

/** Moves, rotates or mirrors the selected shapes. */
class TransformTool : public Tool
{
    Q_DECLARE_TR_FUNCTIONS(TransformTool)

public:
    enum Operation { Move, Rotate, Mirror };

    TransformTool(DraftingScene *scene, Operation operation);
    void press(const QPointF &point) override;
    void draw(QPainter *painter) const override;
    QString prompt() const override;

private:
    int pickCount() const { return m_operation == Rotate ? 3 : 2; }
    QTransform transform(const QVector<QPointF> &points) const;
    QString name() const;

    Operation m_operation;
};
