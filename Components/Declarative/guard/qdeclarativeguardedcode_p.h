#pragma once

#include <QtCore/QUrl>
#include <QtQml/QQmlAbstractUrlInterceptor>

class QDeclarativeGuard;

/** What code of content imports. Any thread. */
namespace QDeclarativeGuardedCode {

/** Tells whether @p guard admits all that the file at @p url imports, and has it hear of what it refuses. */
bool isAdmitted(QDeclarativeGuard &guard, const QUrl &url, QQmlAbstractUrlInterceptor::DataType type);

/** Tells the same of the document @p text, which is to be at @p url. */
bool isDocumentAdmitted(QDeclarativeGuard &guard, const QString &text, const QUrl &url);

} // namespace QDeclarativeGuardedCode
