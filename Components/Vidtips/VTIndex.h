#pragma once

#include <Vidtips/VTExport.h>

#include <QtCore/QLocale>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

class QXmlAttributes;
class VTContext;

namespace Vidtips {

class VTKnownFile;
class VTLookUp;
class VTXmlElement;

/**
 * The index of control files: which files there are, which packages they belong to, and the content that they
 * hold for a key.
 *
 * A host may hand an index of its own to its VTInterface; every virtual operation has a working base. The
 * base keeps file names, package locations and the files' keys, never content: that is parsed from disk at
 * each lookup, and a file that changed since the last one is read again. Nothing here reports anything: what
 * cannot be read is passed over, and parse errors go to the Qt debug output, at each lookup anew. The manager
 * names such a file to the host, once until it changes. GUI thread only.
 */
class VIDTIPS_EXPORT VTIndex : public QObject
{
    Q_OBJECT

public:
    /**
     * Makes an empty index without a parent. It reads settings from @p context, which stays the caller's, and
     * goes on with every setting unset once @p context is deleted. @p searchPaths are the data paths,
     * which nothing here needs.
     */
    VTIndex(VTContext *context, const QStringList &searchPaths);
    ~VTIndex() override;

    /** Opens the index before it is filled. Returns whether that succeeded; the base always succeeds. */
    virtual bool open();

    /** Prepares the index for filling: calls clear() unless the setting ClearIndexOnSetup is false. */
    virtual bool setup();

    /** Empties a subclass's storage. The base does nothing and returns true. */
    virtual bool clear();

    /** Closes a subclass's storage. The base does nothing and returns true. */
    virtual bool close();

    /** Removes a subclass's storage. The base does nothing and returns true. */
    virtual bool remove();

    /**
     * Returns the content element of @p key for @p locale from the control file that was admitted first among
     * those that have one, or null. There is no fallback to another locale.
     *
     * Sets @p root to the tree that holds the element: the caller owns it, and deleting it deletes the
     * element. Sets @p directory to the absolute path of the control file's folder and @p depth to the file's
     * levels below its package. Without an element @p root is null, and the others keep their values.
     */
    virtual VTXmlElement *retrieve(const QString &key, const QLocale &locale, QString &directory, int &depth,
                                   VTXmlElement *&root);

    /**
     * Adds @p controlFile with @p depth to the files that are searched, unless it is there with that depth.
     * The base keeps neither @p element nor @p locale. Returns true.
     */
    virtual bool store(VTXmlElement *element, const QLocale &locale, const QString &controlFile, int depth);

    /** Begins a series of changes; see isInUpdate(). */
    virtual void startUpdate();

    /** Ends a series of changes; see isInUpdate(). */
    virtual void endUpdate();

    /** Returns the keys of all control files in order of admission, repetitions included. */
    virtual QStringList keys();

    /**
     * Admits @p controlFile of the package folder @p package if its first element is "vidtips". Both paths
     * are canonical. A file outside the package, unreadable, empty or admitted before is passed over.
     */
    virtual void indexControlFile(const QString &controlFile, const QString &package);

    /** Returns the settings. */
    VTContext &context();

    /** Returns the settings. */
    const VTContext &context() const;

    /** Notes that the package of the folder @p package is found there. @p controlFile is not kept. */
    void mapControlFile(const QString &controlFile, const QString &package);

    /**
     * Returns the content element of @p key in @p controlFile, or null when the file cannot be read, serves
     * another locale than @p locale, or does not hold exactly one entry for the key. An empty key has none.
     *
     * The element has its key data, and the attributes "VTLocation" (the control file) and "VTPackagName"
     * (its package). It belongs to @p root, which the caller owns. @p root is of use only with an element:
     * otherwise it is set to null, or, for another locale, may hold the address of a tree that is gone.
     */
    VTXmlElement *load(const QString &key, const QString &controlFile, const QLocale &locale,
                       VTXmlElement *&root);

    /**
     * Copies the attributes that the key-data file (setting KeyDataFile) has for @p key onto @p element, all
     * but "name", replacing what is there. "shortcut-linux", "shortcut-mac" and "shortcut-windows"
     * replace "shortcut" as well, each on its platform. @p controlFile is the file that @p element comes
     * from.
     */
    void loadKeyData(const QString &key, const QString &controlFile, VTXmlElement *element);

    /**
     * Returns the name of the package that @p location is or lies in: its folder's name without the package
     * suffix. Null when there is none up to the root.
     */
    QString packageNameForLocation(const QString &location) const;

    /** Returns the folders where the package @p name was found, then the one of setting ExtraComponentPath.
     */
    QStringList componentPathsForPackageNamed(const QString &name) const;

    /**
     * Returns the places where a component of @p element is looked for: those of its package, then those of
     * the packages that its parent's "search" attribute names. With a @p path, each is that path resolved
     * against the place, absolute. Repetitions are kept. A null element has none.
     */
    QStringList componentPathsForElement(const VTXmlElement *element, const QString &path) const;

    /**
     * The parser's filter for the bare structure of a control file: makes objects for "vidtips" and "vidtip"
     * only. @p atts and @p userData are not read.
     */
    static int indexDataShouldGenerateElement(const QString &qName, const QXmlAttributes &atts,
                                              void *userData);

protected:
    /** Tells whether startUpdate() was called last, rather than endUpdate(). The base never asks. */
    bool isInUpdate();

private:
    friend class VTManager;
    VIDTIPS_NO_EXPORT QStringList takeMessages();
    VIDTIPS_NO_EXPORT VTXmlElement *contentIn(VTKnownFile &file, const QString &key, const QLocale &locale,
                                              VTLookUp &lookUp, VTXmlElement *&root);

    struct Private;
    std::unique_ptr<Private> const d;
};

} // namespace Vidtips
