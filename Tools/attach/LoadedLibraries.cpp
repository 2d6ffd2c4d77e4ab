#include "LoadedLibraries.h"

#include <QtCore/QByteArray>
#include <QtCore/QtGlobal>

#ifdef Q_OS_LINUX
#include <dlfcn.h>
#include <link.h>

namespace {

struct Search
{
    QByteArray name;
    QByteArray end; ///< The file of this module.
    bool isFound = false;
};

// Is called in the order in which the libraries were loaded.
int look(dl_phdr_info *library, size_t, void *data)
{
    auto *const search = static_cast<Search *>(data);
    const QByteArray path(library->dlpi_name);
    if (path == search->end)
        return 1;
    search->isFound = path.mid(path.lastIndexOf('/') + 1).startsWith(search->name);
    return search->isFound;
}

} // namespace

bool LoadedLibraries::isBeforeThis(const char *name)
{
    Dl_info own;
    if (!dladdr(reinterpret_cast<const void *>(&LoadedLibraries::isBeforeThis), &own))
        return false;
    Search search{name, own.dli_fname};
    dl_iterate_phdr(look, &search);
    return search.isFound;
}
#else
bool LoadedLibraries::isBeforeThis(const char *)
{
    return false;
}
#endif
