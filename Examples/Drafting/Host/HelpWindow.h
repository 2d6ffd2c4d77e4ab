#pragma once

#include <QtWidgets/QTextBrowser>

/** Shows the help page of a topic in the language of the application. */
class HelpWindow : public QTextBrowser
{
    Q_OBJECT

public:
    explicit HelpWindow(QWidget *parent);

    /** Opens the page in @p language at @p topic. */
    void showTopic(const QString &topic, const QString &language);
};
