#pragma once

#include <Vidtips/VTExport.h>

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QVariant>

/** The key of a setting; see Vidtips::contextKey for the keys that the library reads. */
using VTContextKey = int;

namespace Vidtips {

/**
 * The settings that the library reads from a VTContext, each with the type its reader converts to and the
 * default that the reader passes. A key that is not set is never an error.
 */
enum contextKey {
    IdleInterval = 2, ///< number, milliseconds, 3000: time until an unattended tip hides; 0 or less: never.
    UseToolWindow = 3, ///< bool, false: skip the tool-tip window flags when the tip's window is made.
    PackageSuffix = 10, ///< string, "vidtips": suffix of package folders, without the dot.
    ExtraComponentPath = 11, ///< string, none: folder searched after a package's own locations.
    FullUserInterface = 12, ///< string, "ui/VidtipsUI.qml": the full QML user interface.
    SimpleUserInterface = 13, ///< string, "ui/SimpleTooltip.qml": the simple QML user interface.
    ResourceFolder = 16, ///< string, "Resources": resource folder of a package.
    InstallEventFilter = 17, ///< bool, false: the manager filters the events of the whole application.
    SafeZoneMargin = 18, ///< size, 20 x 20 pixels: margin around the tip in which the pointer keeps it.
    TooltipOffset = 19, ///< size, 35 x 30 pixels: offset of the tip from the pointer.
    UseSimpleUserInterface = 20, ///< bool, false: show tips in the simple user interface.
    AllowDocumentation = 21, ///< bool: topics may be opened; unset reads false in QML and true when opening.
    AllowExternalResources = 22, ///< bool, true: URLs and paths may be opened.
    FallbackKey = 23, ///< string, none: the key shown for a key that has no content.
    UserInterfaceLocale = 24, ///< string: the host's locale; unset means "en_US" or the system's, by reader.
    ContentLocale = 25, ///< string: locale of the content, before UserInterfaceLocale.
    TipsOff = 26, ///< bool, false: no tip is shown.
    ClearIndexOnSetup = 27, ///< bool, true: setting up an index clears it first.
    AlwaysShowToolTips = 29, ///< bool, false: inactive top-level windows get tool-tip events too.
    KeyDataFile = 30, ///< string, none: path of the key-data file.
    RequiredModifiers = 31, ///< int, 0: Qt::KeyboardModifiers that must be held, exactly, for a tip to show.
    ControlFolder = 32, ///< string, "Control": control-file folder of a package.
    CatalogueFolder = 33, ///< string, "l10n": translation folder of a package.
    ShowDuration = 34, ///< int, milliseconds, 0: fade-in; 0 shows at once.
    HideDuration = 35, ///< int, milliseconds, 300: fade-out; 0 hides at once.
    MessageThreshold = 36, ///< int, 200: most verbose message type that reaches the host.
    TranslationContext = 37, ///< string, "Vidtips": base name of translation catalogues.
    RestrictContent = 38, ///< bool, false: content reaches nothing outside its packages.
    ScriptTimeout = 39, ///< int, milliseconds, 5000: how long a script may run; 0 or less: for ever.
    PictureLimit = 40, ///< int, megapixels, 64: what a picture may have to be decoded; 0 or less: 64.
};

} // namespace Vidtips

/**
 * The settings of the library: an observable map from integer keys to values.
 *
 * The host fills one and hands it to the Vidtips::VTInterface it creates. The library works on a copy of its
 * own, which VTInterface::context() returns; settings are read where they are used and never cached, so a
 * change takes effect at the next use. GUI thread only.
 */
class VIDTIPS_EXPORT VTContext : public QObject
{
    Q_OBJECT

public:
    /** Makes an empty context owned by @p parent, if there is one. */
    explicit VTContext(QObject *parent = nullptr);

    /** Copies the settings of @p other, not its parent, name or connections. */
    VTContext(const VTContext &other);
    ~VTContext() override;

    /** Takes over the settings of @p other. No signal is emitted. */
    VTContext &operator=(const VTContext &other);

    /**
     * Stores @p value under @p key. Both signals fire, also when the value stays the same. A key, once set,
     * stays set. A receiver of settingWillChange may delete the context, which then stores nothing.
     */
    void set(const int &key, const QVariant &value);

    /** Returns the value under @p key, or @p defaultValue when the key was never set. */
    QVariant get(const int &key, const QVariant &defaultValue) const;

    /** Tells whether @p key was set; a key set to an invalid value counts. */
    bool contains(const int &key);

    /** Returns the keys that are set, ascending. */
    QList<int> keys();

Q_SIGNALS:
    /** Emitted after a setting was stored; get() gives the new value. */
    void settingDidChange(const VTContextKey &key);

    /** Emitted before a setting is stored; get() still gives the old value. */
    void settingWillChange(const VTContextKey &key);

private:
    QMap<int, QVariant> m_settings;
};
