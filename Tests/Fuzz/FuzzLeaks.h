#pragma once

#include <QtCore/QtGlobal>

#if defined(__SANITIZE_ADDRESS__)
#define FUZZ_DETECTS_LEAKS
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define FUZZ_DETECTS_LEAKS
#endif
#endif

#ifdef FUZZ_DETECTS_LEAKS
#include <sanitizer/lsan_interface.h>
#endif

/** While it lives, what is allocated counts as in use for good, and so does what that refers to. */
class FuzzKept
{
public:
#ifdef FUZZ_DETECTS_LEAKS
    FuzzKept()
    {
        __lsan_disable();
    }
    ~FuzzKept()
    {
        __lsan_enable();
    }
#else
    FuzzKept() = default;
#endif
    Q_DISABLE_COPY(FuzzKept)
};

/** Ends the process where there are leaks. */
inline void checkForLeaks()
{
#ifdef FUZZ_DETECTS_LEAKS
    __lsan_do_leak_check();
#endif
}
