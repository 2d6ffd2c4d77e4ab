#include "TipList.h"

#include "Core/Icons.h"
#include "TipHost.h"

#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

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
        const QString title = host->vidTipAttribute(key, QStringLiteral("title"), QString());
        auto *item =
            new QTreeWidgetItem(tree, {key, host->translateString(title, QStringLiteral("Application"))});
        if (item->text(1).isEmpty())
            item->setText(1, title);
        item->setIcon(0, Icons::icon(key));
    }
    tree->sortItems(0, Qt::AscendingOrder);
    tree->header()->resizeSection(0, 200);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(tree);
    layout->addWidget(buttons);
}
