#pragma once

#include "SoakHost.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTVideoComponent.h>
#include <Vidtips/VTWidget.h>

#include <QtWidgets/QWidget>

/** A window of commands and a user without plan, who hovers them and works the tips. */
class Session
{
public:
    enum class Life {
        Long, ///< no tip is pinned, so that all are shown by one window
        Short ///< tips are pinned and closed
    };

    /**
     * Uses the packages of @p dataPaths, and puts its window at @p place. Equal values of @p seed choose the
     * same acts in the same order.
     */
    Session(const QStringList &dataPaths, Life life, const QPoint &place, quint32 seed);
    ~Session();
    Q_DISABLE_COPY(Session)

    /** Restricts content, and has scripts stopped early. */
    void distrust();

    /** Does one thing at random and lets a random moment pass. */
    void act();

    /** Closes every tip and waits until nothing is left of them: what is held then can be compared. */
    void rest();

    QWidget *window() { return &m_window; }
    SoakHost &host() const { return *m_host; }
    int acts() const { return m_acts; }
    int shown() const { return m_host->shown(); }
    int hidden() const { return m_host->hidden(); }
    int pinned() const { return m_pinned; }
    int clips() const { return m_clips; }

private:
    void makeCommands();
    void hover();
    void wander();
    void click();
    void expand();
    void pin();
    void closePinned();
    void playOrPause();
    void scrub();
    void replaceClip();
    void switchLanguage();
    void switchUserInterface();
    void deactivate();

    void point(QWidget *command);
    void callRoot(const char *function);
    void show(QWidget *command);
    void closeCurrent();
    void setLanguage(const QString &name);
    void countClips();
    QList<QPointer<Vidtips::VTWidget>> tips() const;
    QList<Vidtips::VTVideoComponent *> videos() const;
    Vidtips::VTVideoComponent *anyVideo();
    int below(int bound) { return int(m_random() % quint32(bound)); }

    const Life m_life;
    std::mt19937 m_random;
    QWidget m_window;
    QList<QWidget *> m_commands;
    VTContext m_settings;
    std::unique_ptr<SoakHost> m_host;
    int m_acts = 0;
    int m_pinned = 0;
    int m_clips = 0;
};
