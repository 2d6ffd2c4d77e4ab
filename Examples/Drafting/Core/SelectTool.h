#pragma once

#include "Tool.h"

/** Selects the shape under the pointer, or those inside a frame dragged open. */
class SelectTool : public Tool
{
    Q_DECLARE_TR_FUNCTIONS(SelectTool)

public:
    using Tool::Tool;
    void press(const QPointF &point) override;
    void move(const QPointF &point) override;
    void release(const QPointF &point) override;
    void draw(QPainter *painter) const override;
    QString prompt() const override;
};
