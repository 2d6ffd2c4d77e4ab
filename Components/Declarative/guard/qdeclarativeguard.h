#pragma once

#include <QtDeclarative/qtdeclarativeglobal.h>

#include <QtCore/QString>
#include <QtCore/QUrl>

/**
 * Decides what the content that an engine runs may reach; see QDeclarativeEngine::setGuard().
 *
 * While an engine has one, native plugins are never loaded, files are only ever read, and each thing below
 * happens as the guard says. Any of its functions may be called on any thread, at any time.
 */
class VIDTIPS_DECLARATIVE_EXPORT QDeclarativeGuard
{
public:
    QDeclarativeGuard() = default;
    virtual ~QDeclarativeGuard();

    /**
     * Returns why the picture in the file @p fileName is not shown while there is a guard: it is of a format
     * that few programs need, or a drawing that names other files. Empty where it may be, and where it is no
     * picture.
     */
    static QString problemOfPicture(const QString &fileName);

    /** Tells whether content may read what is at @p url, which is resolved. */
    virtual bool admits(const QUrl &url) = 0;

    /** Tells whether content may import the module @p name in that version; -1 where it names none. */
    virtual bool admitsModule(const QString &name, int major, int minor) = 0;

    /** Does what Qt.openUrlExternally() asks for, and tells whether that was done. GUI thread. */
    virtual bool openUrlExternally(const QUrl &url) = 0;

    /**
     * Hears of what was refused: @p what names it, and @p file is where content asked for it, at @p line;
     * empty and 0 where that is not known.
     */
    virtual void refused(const QString &what, const QUrl &file, int line) = 0;

private:
    Q_DISABLE_COPY(QDeclarativeGuard)
};
