#pragma once

#include "shared/Position.h"

#include <QtCore/QMap>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <map>
#include <memory>

class Content;
class Findings;
struct ControlFile;
struct TranslatableText;

QT_BEGIN_NAMESPACE
class QTranslator;
QT_END_NAMESPACE

/** Checks that what is to be translated is, in every locale that the content is for. */
class CatalogueCheck
{
public:
    /** Texts are written in the locale @p sourceLocale, which needs no catalogue. */
    explicit CatalogueCheck(const QString &sourceLocale);
    ~CatalogueCheck();

    void run(const Content &content, Findings &findings);

private:
    /** A text that a catalogue lacks: everywhere it stands, and for which locales. */
    struct Missing
    {
        QVector<QPair<QString, Position>> places;
        QStringList locales;
    };

    void checkFile(const Content &content, const ControlFile &file, const QString &locale,
                   Findings &findings);
    void checkTexts(const ControlFile &file, const QString &catalogue, const QString &locale,
                    Findings &findings);
    void checkWords(const Content &content, const ControlFile &file, const QString &locale,
                    Findings &findings);
    void checkWordsIn(const QString &catalogue, const QString &userInterface, const QString &locale,
                      Findings &findings);
    const QVector<TranslatableText> &wordsOf(const QString &userInterface);
    void reportMissing(Findings &findings) const;
    void reportUnbuilt(const QString &source, Findings &findings);
    const QTranslator *translator(const QString &path, Findings &findings);

    QString m_sourceLocale;
    QStringList m_locales;
    QStringList m_unbuilt;
    QStringList m_checkedWords;
    QMap<QPair<QString, QString>, Missing> m_missing;
    std::map<QString, QVector<TranslatableText>> m_words;
    std::map<QString, std::unique_ptr<QTranslator>> m_translators;
};
