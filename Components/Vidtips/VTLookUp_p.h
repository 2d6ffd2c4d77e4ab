#pragma once

#include "VTFileStamp_p.h"

#include <QtCore/QByteArray>

namespace Vidtips {

/**
 * One look at the control files, for as long as it lives. One that is made while another lives continues
 * that, so that files are looked at once for all that belongs together. GUI thread only.
 */
class VTLookUp
{
public:
    VTLookUp();
    ~VTLookUp();

    /** Returns what tells this look-up from all before it; never 0. */
    quint64 number() const { return m_number; }

    /**
     * Returns the stamp of the regular file at the encoded path @p path, or a null one. Takes least time
     * where files of the same folder follow each other.
     */
    VTFileStamp stampOf(const QByteArray &path);

private:
    Q_DISABLE_COPY(VTLookUp)

    void leaveFolder();

    const quint64 m_number;
    QByteArray m_folder; // of the file before, with its slash
    int m_descriptor = -1; // of that folder
};

} // namespace Vidtips
