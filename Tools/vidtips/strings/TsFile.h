#pragma once

#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

struct TranslatableText;

/** A text with its translation, as Linguist keeps it. */
struct TsMessage
{
    QString context;
    QString source;
    QString comment; ///< Tells texts apart that are alike; part of the text's identity.
    QString extraComment;
    QString translatorComment;
    QString state; ///< "unfinished", "vanished", "obsolete", or empty for a finished translation.
    QStringList translations; ///< One, or one for each plural form.
    QVector<QPair<QString, int>> locations; ///< File, relative to the folder of the catalogue, and line.
    int line = 0; ///< Where the translation stands in the file; 0 for what was not read from one.
    bool isPlural = false;

    bool isTranslated() const;

    /** Tells whether the sources no longer hold the text, which is then in no catalogue. */
    bool isGone() const;
};

/** A file of translations (.ts). */
class TsFile
{
public:
    /** What merging changed. */
    struct Changes
    {
        int texts = 0; ///< Texts that the sources hold.
        int added = 0;
        int vanished = 0; ///< Translated texts that the sources no longer hold; they are kept and marked.
        int untranslated = 0;
    };

    /** Makes an empty file of translations from @p sourceLocale to @p locale. */
    TsFile(const QString &locale, const QString &sourceLocale);

    /** Reads the file at @p path; returns what is wrong, or nothing. */
    QString read(const QString &path);

    /** Takes in what the sources hold now; @p folder is that of the file. Translations are kept. */
    Changes merge(const QVector<TranslatableText> &texts, const QString &folder);

    /**
     * Translates every text by its PseudoText, and returns true; false, and does nothing, where somebody has
     * translated one otherwise.
     */
    bool pseudotranslate();

    QByteArray toXml() const;

    const QVector<TsMessage> &messages() const { return m_messages; }

private:
    void readMessage(class QXmlStreamReader &reader, const QString &context);
    int find(const TranslatableText &text) const;
    int markVanished(const QVector<bool> &isUsed);

    QString m_locale;
    QString m_sourceLocale;
    QVector<TsMessage> m_messages;
};
