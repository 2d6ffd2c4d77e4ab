#pragma once

#include "VTXmlElement.h"

#include <QtCore/QPointer>
#include <QtCore/QString>

namespace Vidtips {

/** Content on its way from the index into a view: what no view has taken is deleted. */
struct VTFoundContent
{
    VTFoundContent() = default;
    ~VTFoundContent();

    void setElement(VTXmlElement *newElement, VTXmlElement *newRoot);

    /** Returns the canonical path of the package that the control file is in. */
    QString packageFolder() const;

    QString directory; ///< of the control file.
    int depth = 0; ///< of the control file below its package.
    QPointer<VTXmlElement> root;
    QPointer<VTXmlElement> element;
    bool taken = false;

private:
    Q_DISABLE_COPY(VTFoundContent)
};

} // namespace Vidtips
