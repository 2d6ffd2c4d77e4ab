#pragma once

#include "ProblemOverlay.h"
#include "stage/PreviewKeys.h"
#include "stage/PreviewSettings.h"

#include <QtCore/QMap>
#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

#include <memory>

class Content;
class PackageWatcher;
class PreviewStage;
class PreviewSwitches;
class ProblemPanel;
class StageClock;
class TipProblems;

QT_BEGIN_NAMESPACE
class QLabel;
class QListWidget;
QT_END_NAMESPACE

/** The window of the preview: the list of keys, what can be switched, and beside it the tip itself. */
class PreviewWindow : public QWidget
{
    Q_OBJECT

public:
    /** Shows the tip of @p key, or the first one, with @p settings. */
    PreviewWindow(const PreviewSettings &settings, const QString &key);
    ~PreviewWindow() override;

    /** The key whose tip is shown; empty where there is none. */
    QString currentKey() const;

    /** What is wrong with the tip that is shown. */
    QStringList problems() const { return m_problems; }

    PreviewStage *stage() const { return m_stage.get(); }

    /** How tips are shown now. Another scale than at first takes a new process, so that the window closes. */
    const PreviewSettings &settings() const { return m_settings; }

public Q_SLOTS:
    /** Reads everything anew and shows the same tip again. */
    void reload();

    /** Shows tips as the switches say. */
    void takeSwitches();

Q_SIGNALS:
    void reloaded();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void build();
    QString status() const;
    void fillList();
    void showTip();
    void placeTip();
    QString followedKey(const QVector<PreviewKey> &keys) const;
    void rememberPlaces(const QVector<PreviewKey> &keys);
    void step(int rows);
    void lookForProblems();
    QPoint tipPosition() const;

    PreviewSettings m_settings;
    QString m_key;
    QMap<QString, QPair<QString, int>> m_places; ///< Of each key: file and line.
    QStringList m_problems;
    QListWidget *m_list;
    PreviewSwitches *m_switches;
    ProblemPanel *m_panel;
    QLabel *m_status;
    PackageWatcher *m_watcher;
    ProblemOverlay m_overlay;
    QTimer m_look;
    QTimer m_settle;
    std::unique_ptr<Content> m_content;
    std::unique_ptr<TipProblems> m_tipProblems;
    std::unique_ptr<StageClock> m_clock; ///< Time stands still where there is one.
    std::unique_ptr<PreviewStage> m_stage;
};
