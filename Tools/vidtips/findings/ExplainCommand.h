#pragma once

#include "shared/Command.h"

/** Says what a finding means. */
class ExplainCommand : public Command
{
public:
    QString name() const override { return "explain"; }
    QString arguments() const override { return "[CODE...]"; }
    QString summary() const override { return "say what a finding means and how to mend it"; }
    QStringList description() const override;
    QList<Example> examples() const override;
    QList<QCommandLineOption> options() const override;
    int run(const QCommandLineParser &arguments, Console &console) override;
};
