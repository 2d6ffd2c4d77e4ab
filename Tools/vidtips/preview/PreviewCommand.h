#pragma once

#include "shared/Command.h"

/** Shows tips as a host would. */
class PreviewCommand : public Command
{
public:
    QString name() const override { return "preview"; }
    QString arguments() const override { return "[KEY] DIR..."; }
    QString summary() const override { return "show a tip in its real window"; }
    QStringList description() const override;
    QList<Example> examples() const override;
    QList<QCommandLineOption> options() const override;
    Display display(const QCommandLineParser &arguments) const override;
    void prepare(const QCommandLineParser &arguments) const override;
    int run(const QCommandLineParser &arguments, Console &console) override;
};
