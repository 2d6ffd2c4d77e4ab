#pragma once

#include "shared/Command.h"

/** Starts another program with tips. */
class AttachCommand : public Command
{
public:
    QString name() const override { return "attach"; }
    QString arguments() const override { return "[--] COMMAND [ARGUMENT...]"; }
    QString summary() const override { return "start any program of Qt 5 with tips"; }
    QStringList description() const override;
    QList<Example> examples() const override;
    QList<QCommandLineOption> options() const override;
    bool startsProgram() const override { return true; }
    int run(const QCommandLineParser &arguments, Console &console) override;
};
