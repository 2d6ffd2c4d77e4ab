#pragma once

#include <QtWidgets/QListWidget>

/** The message panel: what the application and its tips had to say, newest last. */
class MessageLog : public QListWidget
{
    Q_OBJECT

public:
    enum Severity { Error, Warning, Information, Debug };

    explicit MessageLog(QWidget *parent = nullptr);

    /** Appends @p text with the time of day and the colour of @p severity. */
    void append(Severity severity, const QString &text);
};
