#pragma once

#include "ClipRequest.h"
#include "shared/Command.h"

/** Makes a clip that fits a tip of a recording of the screen. */
class ClipCommand : public Command
{
public:
    QString name() const override { return "clip"; }
    QString arguments() const override { return "[RECORDING] [CLIP]"; }
    QString summary() const override { return "make a clip of a screen recording"; }
    QStringList description() const override;
    QList<Example> examples() const override;
    QList<QCommandLineOption> options() const override { return ClipRequest::options(); }
    int run(const QCommandLineParser &arguments, Console &console) override;
};
