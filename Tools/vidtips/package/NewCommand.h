#pragma once

#include "shared/Command.h"

/** Makes a package to start from. */
class NewCommand : public Command
{
public:
    QString name() const override { return "new"; }
    QString arguments() const override { return "NAME"; }
    QString summary() const override { return "make a package to start from"; }
    QStringList description() const override;
    QList<Example> examples() const override;
    QList<QCommandLineOption> options() const override;
    int run(const QCommandLineParser &arguments, Console &console) override;
};
