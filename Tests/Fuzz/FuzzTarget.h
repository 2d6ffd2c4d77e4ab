#pragma once

#include "FuzzLeaks.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstdio>
#include <cstdlib>
#include <utility>

/**
 * What a target does with one input. Each target's source defines it; the program around it is made by
 * FuzzTarget.cpp, and either libFuzzer or replay.cpp drives that.
 */
void fuzz(const QByteArray &input);

/** Writes a file that the process removes when it ends, with the folders on the way; returns its path. */
QString writeFuzzFile(const QString &relativePath, const QByteArray &content);

/**
 * Returns the one object of a class, made by the first call. It is never destroyed: at the end of the process
 * Qt has let go of what its destructor would need. What a script engine refers to cannot be seen from
 * outside, so that none of the object's memory is looked for as a leak.
 */
template <typename T, typename... Arguments>
T &theOne(Arguments &&...arguments)
{
    static T *const object = [&] {
        const FuzzKept kept;
        Q_UNUSED(kept)
        return new T(std::forward<Arguments>(arguments)...);
    }();
    return *object;
}

/** Ends the process, and with it the run of the input, where @p condition does not hold. */
#define FUZZ_CHECK(condition)                                                                                \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition);              \
            std::abort();                                                                                    \
        }                                                                                                    \
    } while (false)
