#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QVector>

#include <array>

class QWidget;

/** What this process holds at one moment. */
struct ProcessUse
{
    double heap = 0.0; ///< MiB that malloc has handed out, of all arenas and mapped blocks
    double resident = 0.0; ///< MiB of memory that is in use by the process; 0 under a sanitizer
    int threads = 0;
    int handles = 0; ///< open files, sockets and pipes
    int windows = 0; ///< of the X server, like the two below; 0 on another platform
    int pixmaps = 0;
    int otherResources = 0;
    /** How many of each type the three above are, in the order of resourceTypes(); nothing that could grow.
     */
    std::array<int, 32> resources{};

    /**
     * Has malloc keep small blocks together and give large ones back at once, so that what is resident does
     * not depend on which thread freed what. To be called before there are threads.
     */
    static void prepare();

    /** The server's names for the types of resources that were seen so far. */
    static const QVector<QByteArray> &resourceTypes();

    /** Gives free memory back to the system and measures; @p window is any of the process. */
    static ProcessUse now(QWidget *window);
};
