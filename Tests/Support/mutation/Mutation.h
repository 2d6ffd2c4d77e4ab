#pragma once

// What the library's sources include first when Tests/Support/mutate builds them: one build holds every
// mutation, and the environment says which one is switched on.

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <type_traits>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace Mutation {

constexpr int mostMutations = 65536;

/** Writes the number of each mutation that is reached to the file that VIDTIPS_MUTATION_TRACE names. */
inline void trace(int number)
{
    static const char *const path = std::getenv("VIDTIPS_MUTATION_TRACE");
    static std::atomic<bool> reached[mostMutations];
    if (!path || reached[number].exchange(true))
        return;
    static const int file = ::open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    const std::string line = std::to_string(number) + '\n';
    if (::write(file, line.data(), line.size()) < 0)
        std::perror(path);
}

/** Tells whether mutation @p number is the one that VIDTIPS_MUTATION names. */
inline bool on(int number)
{
    static const char *const name = std::getenv("VIDTIPS_MUTATION");
    static const int active = name ? std::atoi(name) : -1;
    trace(number);
    return number == active;
}

template <typename T>
bool negated(int number, const T &condition)
{
    return on(number) != static_cast<bool>(condition);
}

template <typename T, typename = std::enable_if_t<std::is_arithmetic<T>::value>>
T nextTo(int number, T value)
{
    return on(number) ? T(value + 1) : value;
}

template <typename T, typename = std::enable_if_t<std::is_arithmetic<T>::value>>
T one(int number, T value)
{
    return on(number) ? T(1) : value;
}

template <typename T>
auto minus(int number, const T &value) -> std::decay_t<decltype(-value)>
{
    using Result = std::decay_t<decltype(-value)>;
    return on(number) ? Result(-value) : Result(value);
}

inline const char *text(int number, const char *value)
{
    return on(number) ? "#" : value;
}

/** Returns the opposite of a truth value, and for other types the value that nothing stands for. */
template <typename T>
T result(int number, T value)
{
    if (!on(number))
        return value;
    if constexpr (std::is_same<T, bool>::value)
        return !value;
    else
        return T();
}

// Comparisons are written "a < Mutation::less(1) > b", which keeps the precedence of the operator.
#define MUTATION_COMPARISON(name, op, otherOp, closing)                                                      \
    struct name                                                                                              \
    {                                                                                                        \
        int number;                                                                                          \
    };                                                                                                       \
    template <typename Left>                                                                                 \
    struct name##Left                                                                                        \
    {                                                                                                        \
        const Left &left;                                                                                    \
        int number;                                                                                          \
    };                                                                                                       \
    template <typename Left>                                                                                 \
    name##Left<Left> operator op(const Left &left, name which)                                               \
    {                                                                                                        \
        return {left, which.number};                                                                         \
    }                                                                                                        \
    template <typename Left, typename Right>                                                                 \
    bool operator closing(const name##Left<Left> &side, const Right &right)                                  \
    {                                                                                                        \
        return on(side.number) ? side.left otherOp right : side.left op right;                               \
    }

MUTATION_COMPARISON(Less, <, <=, >)
MUTATION_COMPARISON(LessOrEqual, <=, <, >)
MUTATION_COMPARISON(Greater, >, >=, >)
MUTATION_COMPARISON(GreaterOrEqual, >=, >, >)
MUTATION_COMPARISON(Equal, ==, !=, ==)
MUTATION_COMPARISON(NotEqual, !=, ==, !=)

#undef MUTATION_COMPARISON

} // namespace Mutation
