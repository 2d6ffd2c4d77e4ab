#pragma once

#include "shared/Command.h"

/** Finds what is wrong with packages. */
class CheckCommand : public Command
{
public:
    QString name() const override { return "check"; }
    QString arguments() const override { return "DIR..."; }
    QString summary() const override { return "find what is wrong with packages"; }
    QStringList description() const override;
    QList<Example> examples() const override;
    QList<QCommandLineOption> options() const override;
    Display display(const QCommandLineParser &) const override { return Offscreen; }
    int run(const QCommandLineParser &arguments, Console &console) override;
};
