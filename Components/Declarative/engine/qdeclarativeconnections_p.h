#pragma once

#include <QtCore/QPointer>
#include <QtQml/qqml.h>

#include <private/qqmlcustomparser_p.h>

#include <vector>

class QQmlBoundSignal;

/**
 * Runs handlers when an object that need not be in sight signals.
 *
 * Takes `onFoo: …` alone and without a word, which is how QML 1 has it; Qt's own Connections advises against
 * that form.
 */
class QDeclarativeConnections : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(QObject *target READ target WRITE setTarget NOTIFY targetChanged)
    Q_PROPERTY(bool ignoreUnknownSignals READ ignoreUnknownSignals WRITE setIgnoreUnknownSignals)

public:
    using Unit = QQmlRefPointer<QV4::ExecutableCompilationUnit>;
    using Binding = QV4::CompiledData::Binding;

    /** Whose signals are handled: the parent, until one is set. Not owned. */
    QObject *target() const { return m_isTargetSet ? m_target.data() : parent(); }
    void setTarget(QObject *);

    /** Whether handlers of signals that the target does not have are passed over in silence. */
    bool ignoreUnknownSignals() const { return m_ignoresUnknown; }
    void setIgnoreUnknownSignals(bool ignore) { m_ignoresUnknown = ignore; }

    /** Takes the handlers as they stand in the document. */
    void setHandlers(const Unit &, const QList<const Binding *> &);

    void classBegin() override { }
    void componentComplete() override;

Q_SIGNALS:
    void targetChanged();

private:
    void connectHandlers();
    void connectHandler(const Binding *);
    void disconnectHandlers();

    Unit m_unit;
    QList<const Binding *> m_handlers;
    std::vector<QQmlBoundSignal *> m_connected; ///< which go with this object
    QPointer<QObject> m_target;
    bool m_isTargetSet = false;
    bool m_ignoresUnknown = false;
    bool m_isComplete = false;
};

/** Reads the handlers inside a Connections; anything else keeps the document from loading, with a message. */
class QDeclarativeConnectionsParser : public QQmlCustomParser
{
public:
    using Unit = QDeclarativeConnections::Unit;
    using Binding = QDeclarativeConnections::Binding;

    void verifyBindings(const Unit &, const QList<const Binding *> &) override;
    void applyBindings(QObject *, const Unit &, const QList<const Binding *> &) override;

private:
    bool isObject(const Unit &, const Binding *) const;
};
