#pragma once

#include <QtCore/QMetaObject>
#include <QtCore/QPointer>
#include <QtCore/QString>

namespace Vidtips {

class VTScriptWatch;
class VTView;
class VTXmlElement;

/**
 * The names by which QML finds the content of a view, and the view itself: "vidtip", "dataLocation" and
 * "vidTipView" in the engine's root context.
 *
 * What is bound to them runs at once, and may show other content or destroy the view with this object.
 * A member of the view; GUI thread only.
 */
class VTContentNames
{
public:
    /** Names the content of @p view; @p scripts are given their time for what is bound to it. */
    VTContentNames(VTView *view, VTScriptWatch *scripts);

    /**
     * Names the content that the view has, and @p dataLocation. Returns false when the view has gone
     * meanwhile, or when this was called for content that is being named, whose caller goes on.
     */
    bool expose(const QString &dataLocation);

    /** Names the view's content when what has the name is in @p tree, which is about to go. */
    void leave(const QObject *tree);

    /** Names neither content nor view any more: that goes. */
    void clear();

private:
    Q_DISABLE_COPY(VTContentNames)
    void nameAll();
    void nameContent(VTXmlElement *content);

    VTView *const m_view;
    VTScriptWatch *const m_scripts;
    QString m_dataLocation;
    QPointer<VTXmlElement> m_exposed;
    QMetaObject::Connection m_exposedGone;
    int m_exposures = 0; ///< that were asked for
    bool m_isExposing = false;
};

} // namespace Vidtips
