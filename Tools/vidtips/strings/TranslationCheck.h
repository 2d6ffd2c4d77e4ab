#pragma once

#include <QtCore/QString>

#include <memory>

class Content;
class Findings;

QT_BEGIN_NAMESPACE
class QTranslator;
QT_END_NAMESPACE

/** Checks that catalogues are built from what translators wrote last. */
namespace TranslationCheck {

/** Checks every file of translations (.ts) in the folders of catalogues that @p content has. */
void run(const Content &content, Findings &findings);

/** Checks the file of translations @p path, and the catalogue beside it where there is one. */
void checkFile(const QString &path, Findings &findings);

/** Loads the catalogue @p path; returns null for one that does not load, which is a finding. */
std::unique_ptr<QTranslator> load(const QString &path, Findings &findings);

/** Reports that the file of translations @p path has no catalogue beside it. */
void reportUnbuilt(const QString &path, Findings &findings);

} // namespace TranslationCheck
