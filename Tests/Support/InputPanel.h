#pragma once

#include <QtGui/QGuiApplication>
#include <QtGui/QInputMethod>

#include <private/qinputmethod_p.h>
#include <qpa/qplatforminputcontext.h>

/** A keyboard on the screen, as far as the application can tell. */
class InputPanel : public QPlatformInputContext
{
public:
    InputPanel() { QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = this; }
    ~InputPanel() override
    {
        QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = nullptr;
    }

    void showInputPanel() override { visible = true; }
    void hideInputPanel() override { visible = false; }
    bool isInputPanelVisible() const override { return visible; }

    bool visible = false;
};
