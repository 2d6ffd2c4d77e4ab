#pragma once

#include "shared/Command.h"

/** Extracts the texts of packages for translation, and builds catalogues. */
class StringsCommand : public Command
{
public:
    QString name() const override { return "strings"; }
    QString arguments() const override { return "DIR..."; }
    QString summary() const override { return "extract texts for translation and build catalogues"; }
    QStringList description() const override;
    QList<Example> examples() const override;
    QList<QCommandLineOption> options() const override;
    int run(const QCommandLineParser &arguments, Console &console) override;
};
