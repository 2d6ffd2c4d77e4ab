#include "PropertyPanel.h"

#include "Core/DraftingScene.h"

#include <QtCore/QLocale>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>

PropertyPanel::PropertyPanel(DraftingScene *scene, QWidget *parent)
    : QWidget(parent)
    , m_scene(scene)
    , m_form(new QFormLayout(this))
{
    m_form->setContentsMargins(12, 8, 12, 8);
    m_form->setVerticalSpacing(8);
    for (int row = 0; row < 4; ++row) {
        auto *name = new QLabel(this);
        auto *value = new QLabel(this);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        m_form->addRow(name, value);
        m_names.append(name);
        m_values.append(value);
    }
    connect(scene, &DraftingScene::selectionChanged, this, &PropertyPanel::refresh);
    connect(scene, &DraftingScene::shapesChanged, this, &PropertyPanel::refresh);
    refresh();
}

QString PropertyPanel::kindText() const
{
    const QList<Shape *> shapes = m_scene->selectedShapes();
    if (shapes.isEmpty())
        return tr("Nothing selected");
    if (shapes.size() > 1)
        return tr("%n shape(s)", nullptr, shapes.size());
    const QStringList names{tr("Line"), tr("Rectangle"), tr("Circle"), tr("Arc"), tr("Polyline")};
    return names.at(shapes.first()->kind());
}

void PropertyPanel::refresh()
{
    const QStringList names{tr("Shape"), tr("Position"), tr("Size"), tr("Length")};
    for (int row = 0; row < names.size(); ++row)
        m_names.at(row)->setText(names.at(row));

    const QString none = QStringLiteral("–");
    QStringList values{kindText(), none, none, none};
    QRectF extent;
    qreal length = 0;
    for (const Shape *shape : m_scene->selectedShapes()) {
        extent |= shape->extent();
        length += shape->length();
    }
    const auto number = [this](qreal value) { return locale().toString(value, 'f', 1); };
    if (length > 0) {
        values[1] = QStringLiteral("%1 / %2").arg(number(extent.x()), number(extent.y()));
        values[2] = QStringLiteral("%1 × %2").arg(number(extent.width()), number(extent.height()));
        values[3] = tr("%1 mm").arg(number(length));
    }
    for (int row = 0; row < values.size(); ++row)
        m_values.at(row)->setText(values.at(row));
}
