#pragma once

#include "shared/Command.h"

/** Lists the keys that packages define. */
class KeysCommand : public Command
{
public:
    QString name() const override { return "keys"; }
    QString arguments() const override { return "DIR..."; }
    QString summary() const override { return "list every key with its title, locale, package and file"; }
    QStringList description() const override;
    QList<Example> examples() const override;
    QList<QCommandLineOption> options() const override;
    int run(const QCommandLineParser &arguments, Console &console) override;
};
