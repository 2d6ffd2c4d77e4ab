#pragma once

#include <QtGui/QGuiApplication>
#include <QtGui/QInputMethod>
#include <QtGui/QInputMethodEvent>

#include <private/qinputmethod_p.h>
#include <qpa/qplatforminputcontext.h>

#include <utility>

/** A keyboard on the screen with an input method, as far as the application can tell. */
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

    void commit() override
    {
        QInputMethodEvent event;
        event.setCommitString(std::exchange(composed, {}));
        if (!event.commitString().isEmpty())
            QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }

    bool visible = false;
    QString composed; ///< what it enters when it is asked to come to an end
};
