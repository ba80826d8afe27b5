// A viewport on its own: a panel of 800 x 600 with image control, bars and gestures, and the commands that it
// asked for.
#pragma once

#include "controls/ScrollBar.h"
#include "engine/ImageEngine.h"
#include "viewer/Viewport.h"
#include "viewer/ViewportGestures.h"

#include <QImage>
#include <QStringList>
#include <QTest>
#include <QWheelEvent>
#include <QWidget>

namespace quorvia::test {

class ViewStage
{
  public:
    explicit ViewStage(QSize image, bool fit = false)
        : ix1(std::make_shared<engine::ImageLoader>(), &pContain), viewport(&pContain, &ix1),
          gestures(&viewport,
                   {.runTool = [this](const QString& tool) { run(tool); }, .openMenu = [this] { ++menus; }})
    {
        pContain.resize(800, 600);
        viewport.setFitToWindow(fit);
        QImage picture(image, QImage::Format_RGB32);
        picture.fill(Qt::darkGreen);
        ix1.SetPicture(picture);
        pContain.show();
        viewport.layout();
    }

    /// Where the panel's point `inPanel` lies in the image control.
    QPoint inControl(QPoint inPanel) const { return ix1.mapFromParent(inPanel); }
    void press(QPoint inPanel, Qt::KeyboardModifiers keys = {}, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(&ix1, button, keys, inControl(inPanel));
    }
    /// Moves the pointer with `buttons` down.
    void drag(QPoint inPanel, Qt::KeyboardModifiers keys = {}, Qt::MouseButtons buttons = Qt::LeftButton)
    {
        const QPoint at = inControl(inPanel);
        QMouseEvent event(QEvent::MouseMove, at, ix1.mapToGlobal(at), Qt::NoButton, buttons, keys);
        QCoreApplication::sendEvent(&ix1, &event);
    }
    void release(QPoint inPanel, Qt::KeyboardModifiers keys = {}, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseRelease(&ix1, button, keys, inControl(inPanel));
    }
    void wheel(QPoint inPanel, QPoint angle, Qt::KeyboardModifiers keys = {})
    {
        QWheelEvent event(inControl(inPanel), pContain.mapToGlobal(inPanel), QPoint(), angle, Qt::NoButton,
                          keys, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&ix1, &event);
    }

    QWidget pContain;
    engine::ImageEngine ix1;
    viewer::Viewport viewport;
    viewer::ViewportGestures gestures;
    QStringList tools;
    int menus = 0;

  private:
    void run(const QString& tool)
    {
        tools.append(tool);
        if (viewport.FitToWindow() && tool.startsWith(QLatin1String("miZoom")))
            viewport.flipFit();
        if (tool == QLatin1String("miZoomIn"))
            viewport.zoomTo(viewer::zoomedIn(ix1.ZoomFactor()));
        if (tool == QLatin1String("miZoomOut"))
            viewport.zoomTo(viewer::zoomedOut(ix1.ZoomFactor()));
    }
};

} // namespace quorvia::test
