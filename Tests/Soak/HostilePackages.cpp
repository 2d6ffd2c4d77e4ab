#include "HostilePackages.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

namespace {

struct Tip
{
    const char *name;
    const char *body;
};

constexpr Tip tips[] = {
    {"loop", "Component.onCompleted: { while (true); }"},
    {"timer", "Timer { interval: 5; running: true; onTriggered: { while (true); } }"},
    {"items", "Repeater { model: 200000; Item { } }"},
    {"worker", "WorkerScript { id: it; source: 'endless.js' }\nComponent.onCompleted: it.sendMessage({})"},
    {"outside",
     "Image { source: '/usr/share/pixmaps/debian-logo.png' }\nImage { source: '../../../outside.png' }"},
    {"network", "Image { source: 'http://127.0.0.1:9/a.png' }"},
    {"doors", "Component.onCompleted: { Qt.quit() }"},
    {"request",
     "Component.onCompleted: { var r = new XMLHttpRequest; r.open('GET', 'file:///etc/hosts'); r.send() }"},
    {"throws", "Component.onCompleted: { throw 'hostile' }"},
};

} // namespace

HostilePackages::HostilePackages()
{
    QByteArray entries;
    for (const Tip &tip : tips)
        entries += QByteArray("<vidtip key=\"hostile.") + tip.name + "\" ui=\"ui/" + tip.name + ".qml\"/>";
    write("Control/Hostile.xml", "<vidtips>" + entries + "</vidtips>");
    write("ui/endless.js", "WorkerScript.onMessage = function() { while (true); }");
    write("ui/SimpleTooltip.qml", "import QtQuick 1.1\nItem { width: 80; height: 40 }");
    renew();
}

void HostilePackages::renew()
{
    ++m_round;
    for (const Tip &tip : tips)
        write(QStringLiteral("ui/%1.qml").arg(QLatin1String(tip.name)),
              "import QtQuick 1.1\nItem {\n// " + QByteArray::number(m_round) + "\nwidth: 80; height: 40\n"
                  + tip.body + "\n}\n");
}

bool HostilePackages::isExpected(const QString &message)
{
    // What the QML says comes without its file, too. The other packages show no files by name.
    for (const char *part : {"Hostile.vidtips", "Package \"Hostile\"", "Access denied: ", ":hostile",
                             "QML Image: Cannot open: "}) {
        if (message.contains(QLatin1String(part)))
            return true;
    }
    return false;
}

void HostilePackages::write(const QString &name, const QByteArray &content) const
{
    const QString path = m_folder.filePath(QStringLiteral("Hostile.vidtips/") + name);
    QDir().mkpath(path.section(QLatin1Char('/'), 0, -2));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}
