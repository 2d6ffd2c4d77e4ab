#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

class Content;

/** One showing of a tip. */
struct TrialTip
{
    QString key;
    QString locale;
    bool isSimple = false;
    bool isDark = false;
    QString userInterface; ///< Its file.

    /** Tells whether the same host, as it is, can show both. */
    bool sharesStage(const TrialTip &other) const;
};

/** What is shown for a check: every tip in each of its locales, by both user interfaces, in light and dark
 * colours. What has no user interface is left out. */
namespace TrialPlan {

/** The showings for @p content, those by one host together; @p sourceLocale is that of texts for every
 * locale. */
QVector<TrialTip> of(const Content &content, const QString &sourceLocale);

} // namespace TrialPlan
