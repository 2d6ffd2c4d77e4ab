#pragma once

#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTInterface.h>
#include <Vidtips/VTManager.h>
#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <functional>

/** An index that the test owns, so that nothing is left behind when the manager goes. */
class TestIndex : public Vidtips::VTIndex
{
public:
    using VTIndex::VTIndex;

    struct Request
    {
        QString key;
        QString locale;
    };

    bool open() override
    {
        ++opened;
        return VTIndex::open();
    }

    Vidtips::VTXmlElement *retrieve(const QString &key, const QLocale &locale, QString &directory, int &depth,
                                    Vidtips::VTXmlElement *&root) override
    {
        requests.append({key, locale.name()});
        Vidtips::VTXmlElement *const element = VTIndex::retrieve(key, locale, directory, depth, root);
        if (element)
            roots.append(root);
        return element;
    }

    void indexControlFile(const QString &controlFile, const QString &package) override
    {
        indexed.append({controlFile, package});
        VTIndex::indexControlFile(controlFile, package);
    }

    /** Deletes the containers that an attribute lookup leaves behind. */
    void deleteRoots()
    {
        for (const QPointer<Vidtips::VTXmlElement> &root : std::as_const(roots))
            delete root;
        roots.clear();
    }

    int opened = 0;
    QList<Request> requests;
    QList<QPointer<Vidtips::VTXmlElement>> roots;
    QList<QPair<QString, QString>> indexed;
};

/** A host that writes down every call of the library and answers as the test wants. */
class TestHost : public Vidtips::VTInterface
{
public:
    struct Notification
    {
        int type;
        QVariant value;
        QString text;
    };

    using VTInterface::VTInterface;

    QWidget *createWindow(Vidtips::VTWindowType type) override
    {
        windowTypes.append(type);
        return onCreateWindow ? onCreateWindow() : nullptr;
    }

    bool openExternalResource(Vidtips::VTExternalResourceType type, const QString &resource) override
    {
        resources.append({int(type), resource});
        return opensResources;
    }

    void handleMessage(Vidtips::VTMessageType type, const QString &message) override
    {
        messages.append({int(type), message});
    }

    QString shortCutForObject(const QString &key, QObject *object, const QString &shortcut) override
    {
        return onShortcut ? onShortcut(key, object, shortcut) : shortcut;
    }

    void notification(Vidtips::VTNotification type, const QVariant &value, const QString &text) override
    {
        notifications.append({int(type), value, text});
        // The answer may destroy the host, and with it the function.
        const auto answer = onNotification;
        if (answer)
            answer(type, text);
    }

    QString keyAt(QObject *object, const QPoint &position, QRect &rect) override
    {
        return onKeyAt ? onKeyAt(object, position, rect) : VTInterface::keyAt(object, position, rect);
    }

    QStringList notificationTexts() const
    {
        QStringList texts;
        for (const Notification &notification : notifications)
            texts << QStringLiteral("%1 %2").arg(notification.type).arg(notification.text);
        return texts;
    }

    QList<int> windowTypes;
    QList<QPair<int, QString>> resources;
    QList<QPair<int, QString>> messages;
    QList<Notification> notifications;
    bool opensResources = true;
    std::function<QWidget *()> onCreateWindow;
    std::function<QString(const QString &, QObject *, const QString &)> onShortcut;
    std::function<void(int, const QString &)> onNotification;
    std::function<QString(QObject *, const QPoint &, QRect &)> onKeyAt;
};

/** A host with its settings and index, and everything that a test leaves of windows removed at its end. */
class TestSession
{
public:
    explicit TestSession(const QStringList &dataPaths, const VTContext &context = VTContext())
        : m_settings(context)
        , index(&m_settings, dataPaths)
        , host(new TestHost(m_settings, dataPaths, &index))
    {
    }

    ~TestSession()
    {
        delete host;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        index.deleteRoots();
    }

    Vidtips::VTManager *manager() const { return host->manager(); }
    Vidtips::VTWidget *window() const { return manager()->widget(); }
    Vidtips::VTView *view() const { return window() ? window()->view() : nullptr; }
    Vidtips::VTXmlElement *content() const { return view() ? view()->content() : nullptr; }
    void set(Vidtips::contextKey key, const QVariant &value) { host->context().set(key, value); }

private:
    VTContext m_settings;

public:
    TestIndex index;
    QPointer<TestHost> host;
};
