#pragma once

// Everything that differs between the releases of Qt 5.15, decided by what a header has.

#include <QtCore/QtGlobal>

namespace QtCompat {

/** Returns of which kind the value of @p binding is, where that is a function, as in Qt 5.15.15. */
template <typename Binding>
auto bindingType(const Binding &binding) -> decltype(quint32(binding.type()))
{
    return binding.type();
}

/** Returns of which kind the value of @p binding is, where that is a member, as in Qt 5.15.8. */
template <typename Binding>
auto bindingType(const Binding &binding) -> decltype(quint32(binding.type))
{
    return binding.type;
}

/** Returns the line of a @p location in a document, where that is a function, as in Qt 5.15.15. */
template <typename Location>
auto line(const Location &location) -> decltype(int(location.line()))
{
    return int(location.line());
}

/** Returns the line of a @p location in a document, where that is a member, as in Qt 5.15.8. */
template <typename Location>
auto line(const Location &location) -> decltype(int(location.line))
{
    return int(location.line);
}

} // namespace QtCompat
