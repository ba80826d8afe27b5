// A main window with its panes, their places, and drags of what stands between them.
#pragma once

#include "app/Twips.h"
#include "controls/gnTab.h"
#include "platform/ToolControl.h"
#include "viewer/DragHandle.h"
#include "viewer/PictureStage.h"

#include <QTest>

namespace quorvia::test {

/// A window over three pictures, 900 x 700; `open` makes it.
class PaneStage : protected PictureStage
{
  protected:
    viewer::frmImageView& open()
    {
        viewer::frmImageView& window = m_bench->load({in("pics")});
        window.resize(900, 700);
        QCoreApplication::processEvents();
        return window;
    }

    static QRect place(const QWidget* pane, const viewer::frmImageView& window)
    {
        return {pane->mapTo(&window, QPoint()), pane->size()};
    }

    /// True when the panes fill pTop from top to bottom without a hole; twips rounded up to pixels may
    /// overlap by one.
    static bool fills(const viewer::frmImageView& window, const QList<const QWidget*>& panes)
    {
        int y = window.panes()->gTab()->geometry().bottom() + 1;
        for (const QWidget* pane : panes) {
            if (pane->isHidden() || pane->y() > y || pane->y() < y - 1 ||
                pane->width() != window.pTop()->width())
                return false;
            y = pane->geometry().bottom() + 1;
        }
        return y == window.pTop()->height() || y == window.pTop()->height() + 1;
    }

    static void sizeToolbar(const viewer::frmImageView& window, QSize pixels)
    {
        window.panes()->ab1()->setWidthInTwips(app::toTwips(pixels.width()));
        window.panes()->ab1()->setHeightInTwips(app::toTwips(pixels.height()));
    }

    static viewer::DragHandle* handle(const viewer::frmImageView& window, const char* name)
    {
        return window.findChild<viewer::DragHandle*>(QLatin1String(name));
    }

    static void drag(viewer::DragHandle* handle, QPoint by)
    {
        const QPoint middle = handle->rect().center();
        QTest::mousePress(handle, Qt::LeftButton, {}, middle);
        QTest::mouseMove(handle, middle + by);
        QTest::mouseRelease(handle, Qt::LeftButton, {}, handle->rect().center());
    }
};

} // namespace quorvia::test
