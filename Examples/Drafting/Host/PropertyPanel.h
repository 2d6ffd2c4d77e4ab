#pragma once

#include <QtWidgets/QWidget>

class DraftingScene;
class QFormLayout;
class QLabel;

/** The property panel: kind, place and size of what is selected. */
class PropertyPanel : public QWidget
{
    Q_OBJECT

public:
    explicit PropertyPanel(DraftingScene *scene, QWidget *parent = nullptr);

    /** Shows the selection as it is now, in the current language. */
    void refresh();

private:
    QString kindText() const;

    DraftingScene *m_scene;
    QFormLayout *m_form;
    QList<QLabel *> m_names;
    QList<QLabel *> m_values;
};
