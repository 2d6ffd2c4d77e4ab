#pragma once

#include "shared/Command.h"

/** Makes a package to start from, or a tip in one. */
class NewCommand : public Command
{
public:
    QString name() const override { return "new"; }
    QString arguments() const override { return "NAME | tip KEY PACKAGE"; }
    QString summary() const override { return "make a package to start from, or a tip in one"; }
    QStringList description() const override;
    QList<Example> examples() const override;
    QList<QCommandLineOption> options() const override;
    int run(const QCommandLineParser &arguments, Console &console) override;

private:
    static int addTip(const QCommandLineParser &arguments, Console &console);
};
