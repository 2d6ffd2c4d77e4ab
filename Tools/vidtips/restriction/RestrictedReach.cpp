#include "RestrictedReach.h"

#include "shared/Content.h"

#include <Vidtips/VTContentGate_p.h>

#include <QtCore/QUrl>

#include <algorithm>

using Vidtips::VTContentGate;

RestrictedReach::RestrictedReach(const Content &content)
    : m_content(content)
{
    for (const ControlFile &file : content.controlFiles()) {
        const QStringList folders = file.isAdmitted ? content.locations(file) : QStringList();
        if (!folders.isEmpty() && !m_folders.contains(folders))
            m_folders << folders;
    }
    // Of what no tip uses, yet, nothing else is known.
    for (const Package &package : content.packages()) {
        const bool isSearched =
            std::any_of(m_folders.cbegin(), m_folders.cend(), [&](const QStringList &folders) {
                return VTContentGate(folders).admitsFile(package.path);
            });
        if (!isSearched)
            m_folders << QStringList{package.path};
    }
}

RestrictedReach::~RestrictedReach() = default;

bool RestrictedReach::admits(const ControlFile &control, const QString &path) const
{
    return VTContentGate(m_content.locations(control)).admitsFile(path);
}

bool RestrictedReach::admitsForCode(const QString &path, const QUrl &url) const
{
    const auto admitsBoth = [&](const QStringList &folders) {
        const VTContentGate gate(folders);
        return !gate.admitsFile(path) || gate.admits(url);
    };
    return std::all_of(m_folders.cbegin(), m_folders.cend(), admitsBoth);
}
