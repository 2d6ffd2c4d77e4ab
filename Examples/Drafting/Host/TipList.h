#pragma once

#include <QtWidgets/QDialog>

class TipHost;

/** Lists every key that has a tip, with its title, read from the tips themselves. */
class TipList : public QDialog
{
    Q_OBJECT

public:
    explicit TipList(TipHost *host, QWidget *parent);
};
