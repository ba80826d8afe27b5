// A window with a toolbar of one tool of each kind.
#pragma once

#include "platform/ToolBench.h"
#include "platform/ToolButton.h"
#include "platform/ToolCombo.h"
#include "platform/ToolControl.h"
#include "platform/ToolMenu.h"
#include "platform/ToolModel.h"

#include <QTest>

namespace quorvia::platform {

/// A window with the toolbar: miOpen (drop-down, band "bOpen"), miSave, a separator, miFit, miText (no
/// drawing), at its full width.
class ToolbarBench : public QWidget
{
  public:
    ToolbarBench()
    {
        resize(900, 300);
        other->setFocusPolicy(Qt::StrongFocus);
        other->setGeometry(10, 10, 50, 50);
        ToolModel& model = *bar->model();
        open = addTool(model, "miOpen", ToolKind::DropDown, "bOpen", "&Open...");
        open->setPicture(0, text("#open"));
        save = addTool(model, "miSave");
        save->setPicture(0, text("#save"));
        fit = addTool(model, "miFit", ToolKind::Plain, "bOpen");
        fit->setPicture(0, text("#bestfit"));
        words = addTool(model, "miText", ToolKind::Plain, "", "&Text");
        model.addBand(text("bOpen"), BandKind::PopUp)->append(addTool(model, "tRecent"));
        band = model.addBand(text("Toolbar"), BandKind::Toolbar);
        for (Tool* tool : {open, save, addTool(model, "miSep", ToolKind::Separator), fit, words})
            band->append(tool);
        bar->move(40, 200);
        settle();
    }

    /// As the definition of the bar is built.
    void settle()
    {
        bar->recalculateLayout();
        bar->setWidthInTwips(band->size().width());
        bar->setHeightInTwips(band->size().height());
    }

    void showAll()
    {
        show();
        activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(this));
        other->setFocus();
    }

    ToolButton* button(const char* tool) const
    {
        for (ToolButton* each : bar->findChildren<ToolButton*>(text(tool))) {
            if (!each->isHidden())
                return each;
        }
        return nullptr;
    }
    static QPoint openingPart(const ToolButton* button)
    {
        return {button->width() - 6, button->height() / 2};
    }

    QWidget* other = new QWidget(this);
    ToolControl* bar = new ToolControl(this);
    ToolRecord record{*bar->model()};
    ToolBand* band;
    Tool* open;
    Tool* save;
    Tool* fit;
    Tool* words;
};

} // namespace quorvia::platform
