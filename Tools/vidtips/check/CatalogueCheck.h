#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <map>
#include <memory>

class Content;
class Findings;
struct ControlFile;

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
    void collectLocales(const Content &content);
    void checkFile(const Content &content, const ControlFile &file, const QString &locale,
                   Findings &findings);
    void checkTexts(const ControlFile &file, const QString &catalogue, const QString &locale,
                    Findings &findings);
    void reportUnbuilt(const QString &source, Findings &findings);
    const QTranslator *translator(const QString &path, Findings &findings);

    QString m_sourceLocale;
    QStringList m_locales;
    QStringList m_unbuilt;
    std::map<QString, std::unique_ptr<QTranslator>> m_translators;
};
