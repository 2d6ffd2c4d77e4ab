#pragma once

#include <QtCore/QTimer>

/** Ends the program with a message where something is still awaited after a minute; needs an event loop. */
class Deadline : public QTimer
{
public:
    explicit Deadline(const char *what)
    {
        callOnTimeout([what] { qFatal("%s did not come within a minute", what); });
        start(60000);
    }
};
