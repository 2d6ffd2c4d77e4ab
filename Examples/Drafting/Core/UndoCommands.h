#pragma once

#include <QtCore/QList>
#include <QtGui/QTransform>
#include <QtWidgets/QUndoCommand>

class DraftingScene;
class Shape;

/** Adds one shape; owns it while it is undone. */
class AddShape : public QUndoCommand
{
public:
    AddShape(DraftingScene *scene, Shape *shape);
    ~AddShape() override;
    void undo() override;
    void redo() override;

private:
    DraftingScene *m_scene;
    Shape *m_shape;
    bool m_owned = true;
};

/** Removes shapes; owns them while they are removed. */
class RemoveShapes : public QUndoCommand
{
public:
    RemoveShapes(DraftingScene *scene, const QList<Shape *> &shapes);
    ~RemoveShapes() override;
    void undo() override;
    void redo() override;

private:
    DraftingScene *m_scene;
    QList<Shape *> m_shapes;
    bool m_owned = false;
};

/** Maps shapes; undone by the inverse mapping. */
class TransformShapes : public QUndoCommand
{
public:
    TransformShapes(const QList<Shape *> &shapes, const QTransform &transform, const QString &text);
    void undo() override;
    void redo() override;

private:
    QList<Shape *> m_shapes;
    QTransform m_transform;
};
