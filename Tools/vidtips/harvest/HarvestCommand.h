#pragma once

#include "shared/Command.h"

/** Makes a package of the commands that another program has. */
class HarvestCommand : public Command
{
public:
    QString name() const override { return "harvest"; }
    QString arguments() const override { return "[--] COMMAND [ARGUMENT...]"; }
    QString summary() const override { return "make a package of the commands that a program has"; }
    QStringList description() const override;
    QList<Example> examples() const override;
    QList<QCommandLineOption> options() const override;
    bool startsProgram() const override { return true; }
    int run(const QCommandLineParser &arguments, Console &console) override;
};
