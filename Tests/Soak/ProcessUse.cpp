#include "ProcessUse.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtGui/QGuiApplication>
#include <QtWidgets/QWidget>

#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>
#include <xcb/res.h>

#include <cstdlib>
#include <memory>

namespace {

constexpr double mebibyte = 1024.0 * 1024.0;

int entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

using BytesFunction = size_t (*)();

// Tells what is allocated under a sanitizer that replaces malloc; null without one.
BytesFunction sanitizerBytes()
{
    static const auto function =
        reinterpret_cast<BytesFunction>(dlsym(RTLD_DEFAULT, "__sanitizer_get_current_allocated_bytes"));
    return function;
}

double heapMebibytes()
{
    if (const BytesFunction bytes = sanitizerBytes())
        return double(bytes()) / mebibyte;
    const struct mallinfo2 heap = mallinfo2();
    return double(heap.uordblks + heap.hblkhd) / mebibyte;
}

double residentMebibytes()
{
    // A sanitizer keeps what was freed, to see whether it is used again.
    if (sanitizerBytes())
        return 0.0;
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0.0;
    return file.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / mebibyte;
}

QVector<QByteArray> &types()
{
    static QVector<QByteArray> names;
    return names;
}

std::size_t indexOfType(const QByteArray &name)
{
    if (!types().contains(name))
        types().append(name);
    return std::size_t(types().indexOf(name));
}

/**
 * A connection of its own to the X server, so that asking changes nothing of what is counted. There is one
 * for all questions: libxcb keeps some memory of each connection that was closed.
 */
class ServerQuery
{
public:
    ServerQuery()
        : m_connection(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(m_connection))
            qFatal("no connection to the X server");
    }
    ~ServerQuery() { xcb_disconnect(m_connection); }
    Q_DISABLE_COPY(ServerQuery)

    static ServerQuery &instance()
    {
        static ServerQuery query;
        return query;
    }

    void count(quint32 resource, ProcessUse *use)
    {
        const Reply<xcb_res_query_client_resources_reply_t> reply(xcb_res_query_client_resources_reply(
            m_connection, xcb_res_query_client_resources(m_connection, resource), nullptr));
        if (!reply)
            qFatal("the X server does not count resources");
        auto type = xcb_res_query_client_resources_types_iterator(reply.get());
        for (; type.rem > 0; xcb_res_type_next(&type)) {
            const QByteArray name = nameOf(type.data->resource_type);
            int *const total = name == "WINDOW" ? &use->windows
                : name == "PIXMAP"              ? &use->pixmaps
                                                : &use->otherResources;
            *total += int(type.data->count);
            use->resources.at(indexOfType(name)) += int(type.data->count);
        }
    }

private:
    struct Free
    {
        void operator()(void *reply) const { std::free(reply); }
    };
    template <typename T>
    using Reply = std::unique_ptr<T, Free>;

    QByteArray nameOf(xcb_atom_t atom)
    {
        const Reply<xcb_get_atom_name_reply_t> reply(
            xcb_get_atom_name_reply(m_connection, xcb_get_atom_name(m_connection, atom), nullptr));
        if (!reply)
            return {};
        return QByteArray(xcb_get_atom_name_name(reply.get()), xcb_get_atom_name_name_length(reply.get()));
    }

    xcb_connection_t *const m_connection;
};

} // namespace

void ProcessUse::prepare()
{
    mallopt(M_ARENA_MAX, 1);
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
}

const QVector<QByteArray> &ProcessUse::resourceTypes()
{
    return types();
}

ProcessUse ProcessUse::now(QWidget *window)
{
    malloc_trim(0);
    ProcessUse use;
    use.heap = heapMebibytes();
    use.resident = residentMebibytes();
    use.threads = entries(QStringLiteral("/proc/self/task"));
    use.handles = entries(QStringLiteral("/proc/self/fd"));
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        ServerQuery::instance().count(quint32(window->winId()), &use);
    return use;
}
