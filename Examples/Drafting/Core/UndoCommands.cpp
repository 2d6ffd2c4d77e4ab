#include "UndoCommands.h"

#include "DraftingScene.h"

#include <QtCore/QCoreApplication>

AddShape::AddShape(DraftingScene *scene, Shape *shape)
    : QUndoCommand(QCoreApplication::translate("UndoCommands", "drawing"))
    , m_scene(scene)
    , m_shape(shape)
{
}

AddShape::~AddShape()
{
    if (m_owned)
        delete m_shape;
}

void AddShape::undo()
{
    m_scene->removeItem(m_shape);
    m_owned = true;
}

void AddShape::redo()
{
    m_scene->addItem(m_shape);
    m_owned = false;
}

RemoveShapes::RemoveShapes(DraftingScene *scene, const QList<Shape *> &shapes)
    : QUndoCommand(QCoreApplication::translate("UndoCommands", "deletion"))
    , m_scene(scene)
    , m_shapes(shapes)
{
}

RemoveShapes::~RemoveShapes()
{
    if (m_owned)
        qDeleteAll(m_shapes);
}

void RemoveShapes::undo()
{
    for (Shape *shape : qAsConst(m_shapes))
        m_scene->addItem(shape);
    m_owned = false;
}

void RemoveShapes::redo()
{
    for (Shape *shape : qAsConst(m_shapes))
        m_scene->removeItem(shape);
    m_owned = true;
}

TransformShapes::TransformShapes(const QList<Shape *> &shapes, const QTransform &transform,
                                 const QString &text)
    : QUndoCommand(text)
    , m_shapes(shapes)
    , m_transform(transform)
{
}

void TransformShapes::undo()
{
    for (Shape *shape : qAsConst(m_shapes))
        shape->apply(m_transform.inverted());
}

void TransformShapes::redo()
{
    for (Shape *shape : qAsConst(m_shapes))
        shape->apply(m_transform);
}
