// A main window with the menu control in it: a band for the list, one for facts, and the client area.
#pragma once

#include "platform/MenuControl.h"

#include <QAbstractButton>
#include <QDockWidget>
#include <QPointer>
#include <QTest>
#include <QtTest>

namespace quorvia::platform {

/// A main window as the viewer has one: the control fills it.
class MenuControlBench : public QWidget
{
  public:
    MenuControlBench()
    {
        resize(900, 600);
        top->setObjectName(QStringLiteral("pTop"));
        control->setClientArea(top);
        list = control->addBand(QStringLiteral("bPlay"), QStringLiteral("fPlaylist"),
                                QStringLiteral("Picture List"));
        info = control->addBand(QStringLiteral("bInfo"), QStringLiteral("fBar"),
                                QStringLiteral("Resource Panel"), dockingArea::right);
        listClient = new QWidget;
        list->setClient(listClient);
        control->setGeometry(rect());
    }

    void open()
    {
        show();
        QVERIFY(QTest::qWaitForWindowExposed(this));
    }

    /// Opens the window with the list floating beside it.
    void openFloating()
    {
        open();
        list->setVisible(true);
        list->setDockingArea(dockingArea::floating);
    }

    QDockWidget* dockOf(const Band* band) const { return control->findChild<QDockWidget*>(band->name()); }
    QAbstractButton* button(const Band* band, const char* name) const
    {
        return dockOf(band)->findChild<QAbstractButton*>(QLatin1String(name));
    }
    /// Where the widget stands within the control.
    QRect placeOf(const QWidget* widget) const { return {widget->mapTo(control, QPoint()), widget->size()}; }
    QRect placeOf(const Band* band) const { return placeOf(dockOf(band)); }

    /// Gives a band another height, for where it is docked at the top or bottom.
    static void setHeight(Band* band, int height)
    {
        BandState state = band->state();
        state.height = height;
        band->apply(state);
    }
    /// Place and size of a band while floating; a null rectangle before there was one.
    static QRect floatingRect(const Band* band)
    {
        const BandState state = band->state();
        return state.floatingPosition ? QRect(*state.floatingPosition, state.floatingSize) : QRect();
    }
    static void setFloatingRect(Band* band, const QRect& rect)
    {
        BandState state = band->state();
        state.floatingPosition = rect.topLeft();
        state.floatingSize = rect.size();
        band->apply(state);
    }

    MenuControl* control = new MenuControl(this);
    QWidget* top = new QWidget;
    Band* list;
    Band* info;
    QPointer<QWidget> listClient;

  protected:
    void resizeEvent(QResizeEvent*) override { control->setGeometry(rect()); }
};

} // namespace quorvia::platform
