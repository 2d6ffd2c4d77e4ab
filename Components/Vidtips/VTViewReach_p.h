#pragma once

#include "VTReach_p.h"

#include <QtCore/QString>

#include <memory>

namespace Vidtips {

class VTContentGuard;
class VTView;
class VTXmlElement;

/**
 * How far the content of a view reaches: what it may do now, what the user interface that is loaded was made
 * for, and what was refused to it, of which the host hears. A member of the view; GUI thread only.
 */
class VTViewReach
{
public:
    /** Restricts the content of @p view, whose member it is, as its settings say. */
    explicit VTViewReach(VTView *view);

    /** Tells what is left to tell, and refuses everything from now on: the view goes. */
    void shut();

    /** Names the content that what follows is refused to. */
    void beginContent(const VTXmlElement &content);

    /** Tells whether content is restricted now. */
    bool isRestricted() const { return now().isRestricted; }

    /** Tells whether the user interface that was loaded last reaches as far as content may now. */
    bool isCurrent() const;

    /** Has the engine judge by what content may do now. What it keeps of components is forgotten then. */
    void renew();

    /** Tells whether content may read the file or folder at @p path, and has the host hear when it may not.
     */
    bool admitsFile(const QString &path) const;

    /** Has the host hear that content was kept from @p what. */
    void refuse(const QString &what) const;

private:
    Q_DISABLE_COPY(VTViewReach)
    VTReach now() const;
    void tell();

    VTView *const m_view;
    VTReach m_loaded; ///< of the user interface that was loaded last
    const std::shared_ptr<VTContentGuard> m_guard;
};

} // namespace Vidtips
