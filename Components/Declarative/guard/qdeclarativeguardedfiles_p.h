#pragma once

#include <QtCore/qglobal.h>

/**
 * The files that worker scripts open. Their engines are Qt's own and ask nobody, so that whatever their
 * thread opens is judged.
 */
namespace QDeclarativeGuardedFiles {

/** Has files judged, for as long as the program runs. */
void install();

/** While it lives, the thread opens what it likes. */
class Pause
{
public:
    Pause();
    ~Pause();

private:
    Q_DISABLE_COPY(Pause)
};

} // namespace QDeclarativeGuardedFiles
