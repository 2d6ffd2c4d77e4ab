#pragma once

#include "shared/Command.h"

/** Makes an XML schema of what a user interface reads. */
class SchemaCommand : public Command
{
public:
    QString name() const override { return "schema"; }
    QString arguments() const override { return "[PACKAGE]"; }
    QString summary() const override { return "make the schema by which XML editors complete"; }
    QStringList description() const override;
    QList<Example> examples() const override;
    QList<QCommandLineOption> options() const override;
    int run(const QCommandLineParser &arguments, Console &console) override;
};
