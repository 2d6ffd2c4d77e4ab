#include "TipList.h"

#include "Core/Icons.h"
#include "TipHost.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QTranslator>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

namespace {

// A tip for every locale says in which context its texts are translated. The library looks in the catalogue
// of the tip on screen; a list of all tips looks in the catalogue of each tip's own package.
QString title(TipHost *host, const QString &key)
{
    QString source = host->vidTipAttribute(key, QStringLiteral("title"), QString());
    const QByteArray context = host->vidTipAttribute(key, QStringLiteral("context"), QString()).toUtf8();
    const QFileInfo controlFile(host->vidTipAttribute(key, QStringLiteral("VTLocation"), QString()));
    const QString catalogue = QStringLiteral("../l10n/Vidtips_%1.qm").arg(QLocale().name());
    QTranslator translator;
    if (context.isEmpty() || !translator.load(controlFile.dir().filePath(catalogue)))
        return source;
    const QString translated = translator.translate(context.constData(), source.toUtf8().constData());
    return translated.isEmpty() ? source : translated;
}

} // namespace

TipList::TipList(TipHost *host, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(tr("All Tips"));
    resize(480, 520);
    auto *tree = new QTreeWidget(this);
    tree->setObjectName(QStringLiteral("TipListTree"));
    tree->setHeaderLabels({tr("Key"), tr("Title")});
    tree->setRootIsDecorated(false);
    tree->setAlternatingRowColors(true);
    tree->setIconSize(QSize(20, 20));
    QStringList keys = host->keys();
    keys.removeDuplicates();
    for (const QString &key : qAsConst(keys)) {
        auto *item = new QTreeWidgetItem(tree, {key, title(host, key)});
        item->setIcon(0, Icons::icon(key));
        item->setSizeHint(0, QSize(0, 26));
    }
    tree->sortItems(0, Qt::AscendingOrder);
    tree->header()->resizeSection(0, 200);

    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(tr("Close"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(tree);
    layout->addWidget(buttons);
}
