#pragma once

#include <QtCore/QStringList>

QT_BEGIN_NAMESPACE
class QFileInfo;
QT_END_NAMESPACE

namespace Vidtips {

class VTManager;

/** Finds packages in data folders and their control files, and offers these to the index of a manager. */
class VTPackageLoader
{
public:
    explicit VTPackageLoader(VTManager *manager)
        : m_manager(manager)
    {
    }

    /** Loads what is in @p folders, and adds their canonical paths before those in @p loaded. */
    void loadFolders(const QStringList &folders, QStringList *loaded) const;

    /** Loads one package. */
    void loadPackage(const QFileInfo &package) const;

private:
    void inform(const QString &message) const;

    VTManager *m_manager;
};

} // namespace Vidtips
