// A window with bands to pop up: plain tools, tools with sub-menus, a combo.
#pragma once

#include "platform/BandMenu.h"
#include "platform/ToolBench.h"
#include "platform/ToolCombo.h"
#include "platform/ToolMenu.h"
#include "platform/ToolModel.h"

#include <QMenu>
#include <QTest>

namespace quorvia::platform {

inline QStringList captions(const QMenu* menu)
{
    QStringList rows;
    for (const QAction* row : menu->actions()) {
        if (row->isVisible())
            rows.append(row->isSeparator() ? QStringLiteral("-") : row->text());
    }
    return rows;
}

/// A window with the bands "menu" (a plain tool, a tool with the sub-band "sub", a separator, a drop-down
/// tool with "sub"), "sub" (a tool, one with "inner"), "inner" (a tool), "delay" (the combo alone).
class ToolMenuBench : public QWidget
{
  public:
    ToolMenuBench()
    {
        resize(600, 400);
        plain = addTool(model, "miPlain", ToolKind::Plain, "", "&Plain");
        parent = addTool(model, "miParent", ToolKind::Plain, "sub");
        drop = addTool(model, "miDrop", ToolKind::DropDown, "sub");
        ToolBand* const menuBand = model.addBand(text("menu"), BandKind::PopUp);
        menuBand->append(plain);
        menuBand->append(parent);
        menuBand->append(addTool(model, "sep", ToolKind::Separator));
        menuBand->append(drop);
        ToolBand* const sub = model.addBand(text("sub"), BandKind::PopUp);
        sub->append(addTool(model, "miSub"));
        sub->append(addTool(model, "miInnerParent", ToolKind::Plain, "inner"));
        model.addBand(text("inner"), BandKind::PopUp)->append(addTool(model, "miInner"));
        time = addTool(model, "tTime", ToolKind::Combo, "", "&Delay");
        time->set(&ToolValues::choices, {text("1"), text("2"), text("5"), text("60")});
        time->set(&ToolValues::text, text("2"));
        model.addBand(text("delay"), BandKind::PopUp)->append(time);
    }

    void open()
    {
        show();
        QVERIFY(QTest::qWaitForWindowExposed(this));
    }

    BandMenu* popUp(const char* band)
    {
        QCoreApplication::processEvents(); // the display here deactivates the program for a closed menu
        menus.popUp(text(band), mapToGlobal(QPoint(20, 20)));
        return static_cast<BandMenu*>(menus.menu());
    }

    /// Opens the sub-menu of the second row by keys.
    static QMenu* openSub(QMenu* menu)
    {
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Right);
        return subMenu(menu, "miParent");
    }

    static QAction* row(const QMenu* menu, const char* tool)
    {
        return menu->findChild<QAction*>(text(tool), Qt::FindDirectChildrenOnly);
    }
    static QMenu* subMenu(const QMenu* menu, const char* tool) { return row(menu, tool)->menu(); }
    /// Takes the pointer to a row, over another place: it may have been there before.
    static void hover(QMenu* menu, const char* tool)
    {
        QTest::mouseMove(menu, middleOf(menu, tool) - QPoint(12, 0));
        QTest::mouseMove(menu, middleOf(menu, tool));
    }
    static QPoint middleOf(const QMenu* menu, const char* tool)
    {
        return menu->actionGeometry(row(menu, tool)).center();
    }

    ToolModel model;
    ToolMenu menus{&model, this};
    ToolRecord record{model};
    Tool* plain;
    Tool* parent;
    Tool* drop;
    Tool* time;
};

} // namespace quorvia::platform
