#pragma once

#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>
#include <Vidtips/VTXmlElement.h>

/** A tip's window without a manager, with a view and its content. */
class TipWindow : public Vidtips::VTWidget
{
public:
    explicit TipWindow(const QString &key)
        : VTWidget(nullptr, nullptr, nullptr, QRect())
    {
        setView(new Vidtips::VTView(nullptr, this));
        auto *const content = new Vidtips::VTXmlElement;
        content->setAttribute(QStringLiteral("key"), key);
        view()->setContent(content);
    }
};
