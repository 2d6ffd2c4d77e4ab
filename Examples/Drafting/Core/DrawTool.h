#pragma once

#include "Tool.h"

/** Draws shapes of one kind. */
class DrawTool : public Tool
{
    Q_DECLARE_TR_FUNCTIONS(DrawTool)

public:
    DrawTool(DraftingScene *scene, Shape::Kind kind);
    void press(const QPointF &point) override;
    void finish() override;
    void draw(QPainter *painter) const override;
    QString prompt() const override;

private:
    int pickCount() const;
    void commit();

    Shape::Kind m_kind;
};
