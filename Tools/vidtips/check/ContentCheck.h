#pragma once

#include "findings/Finding.h"

class Content;
class FileCheck;

/** The checks that read content and decode nothing. */
namespace ContentCheck {

/** Runs them; @p files gathers what is worth opening afterwards. */
void run(const Content &content, FileCheck &files, Findings &findings);

/**
 * Returns those of @p findings that concern the tip of @p key for @p locale: those of its entries, and those
 * of the files that these are in as a whole.
 */
QVector<Finding> ofTip(const Content &content, const Findings &findings, const QString &key,
                       const QString &locale);

} // namespace ContentCheck
