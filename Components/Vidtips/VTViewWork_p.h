#pragma once

#include <QtCore/QList>
#include <QtCore/QPointer>

#include <memory>

namespace Vidtips {

class VTXmlElement;

/**
 * What a view has on the stack: its own functions and the calls of the host that come from them.
 *
 * These may show another tip, and end the view. Content that is given up meanwhile is kept for those who come
 * back to it, until the outermost has returned. GUI thread.
 */
class VTViewWork
{
public:
    VTViewWork() = default;

    /** Tells whether something is on the stack. */
    bool isInHand() const { return m_depth > 0; }

    /** Deletes @p content, which may be null, with its root container: at once, or when the work is over. */
    void release(VTXmlElement *content);

    /** Stands for work in hand while it lives. The view may go before it. */
    class Scope
    {
    public:
        explicit Scope(std::shared_ptr<VTViewWork> work);
        ~Scope();

    private:
        Q_DISABLE_COPY(Scope)
        const std::shared_ptr<VTViewWork> m_work;
    };

private:
    Q_DISABLE_COPY(VTViewWork)
    void deleteReleased();

    int m_depth = 0;
    QList<QPointer<QObject>> m_released;
};

} // namespace Vidtips
