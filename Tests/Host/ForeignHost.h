#pragma once

#include "TestHost.h"
#include "TestPackage.h"

#include <QtWidgets/QMainWindow>

#include <memory>

QT_BEGIN_NAMESPACE
class QComboBox;
class QGraphicsRectItem;
class QGraphicsView;
class QLineEdit;
class QMdiArea;
class QMenu;
class QPushButton;
class QScrollArea;
class QTabBar;
class QTreeWidget;
QT_END_NAMESPACE

/**
 * An application that has everything the drafting example has not: rows, tabs, entries of menus and lists,
 * and items of a scene with tips of their own, sub-windows, dialogs and a second window. Its tips are found
 * by place, by an event filter of its own.
 */
class ForeignHost : public QObject
{
    Q_OBJECT

public:
    /** Opens the windows, with @p settings in addition to what every run has. */
    explicit ForeignHost(const std::function<void(VTContext &)> &configure = {});
    ~ForeignHost() override;

    TestSession *session() const { return m_session.get(); }
    TestHost *host() const { return m_session->host; }
    Vidtips::VTWidget *tip() const { return m_session->window(); }
    bool isShown() const { return tip() && tip()->isVisible(); }

    /** Returns the key of the tip on screen; empty without one. */
    QString shownKey() const;

    /** Rests the pointer there until the tip of @p key is on screen; false if that does not come. */
    bool hover(const QPoint &position, const QString &key);
    bool hover(const QWidget *command);

    /** Returns places on the screen. */
    QPoint row(int index) const;
    QPoint tab(int index) const;
    QPoint entry(const QMenu *menu, int index) const;
    QPoint item() const;
    QPoint nowhere() const;

    /** Opens the menu by a click and returns it. */
    QMenu *openMenu();

    /** Returns a shown dialog with a button of that name in it; @p parent owns it. */
    QDialog *openDialog(QWidget *parent, Qt::WindowModality modality, const QString &buttonName);

    QPushButton *addButton(QWidget *parent, const QString &name, const QPoint &position) const;

    /** Leaves a picture of the screen in the folder that VIDTIPS_PICTURES names, if it does. */
    void picture(const QString &name) const;

    QMainWindow *window = nullptr;
    QWidget *secondWindow = nullptr;
    QTreeWidget *tree = nullptr;
    QTabBar *tabs = nullptr;
    QComboBox *combo = nullptr;
    QGraphicsView *view = nullptr;
    QMdiArea *mdi = nullptr;
    QScrollArea *scrollArea = nullptr;
    QLineEdit *edit = nullptr;
    QPushButton *plain = nullptr;
    QPushButton *other = nullptr;
    QPushButton *farther = nullptr;
    QPushButton *embedded = nullptr;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void writeContent();
    void makeWindow();
    void makeViews(QWidget *page);
    void makeMdi(QWidget *page);
    QString locate(QObject *object, const QPoint &position, QRect *rect) const;

    TestPackages m_packages;
    std::unique_ptr<TestSession> m_session;
};
