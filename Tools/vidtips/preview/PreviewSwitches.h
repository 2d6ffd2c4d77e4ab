#pragma once

#include "stage/PreviewSettings.h"

#include <QtWidgets/QWidget>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QComboBox;
QT_END_NAMESPACE

/** What can be switched of the way in which tips are shown. */
class PreviewSwitches : public QWidget
{
    Q_OBJECT

public:
    /** Begins with @p settings. */
    PreviewSwitches(const PreviewSettings &settings, QWidget *parent);

    /** Offers @p locales, and the one that is chosen. */
    void setLocales(const QStringList &locales);

    /** Sets in @p settings what is switched. */
    void read(PreviewSettings &settings) const;

Q_SIGNALS:
    void changed();

private:
    QCheckBox *addCheck(const QString &name, const QString &text, bool isChecked, const QString &help);
    void followLocale();

    QComboBox *m_locale;
    QComboBox *m_scale;
    QComboBox *m_phase;
    QCheckBox *m_simple;
    QCheckBox *m_dark;
    QCheckBox *m_mirrored;
    QCheckBox *m_still;
    QCheckBox *m_unavailable;
};
