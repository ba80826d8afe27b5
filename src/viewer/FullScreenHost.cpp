#include "viewer/FullScreenHost.h"

#include "output/frmImageViewFull.h"
#include "viewer/frmImageView.h"

#include <utility>

namespace quorvia::viewer {

FullScreenHost::FullScreenHost(frmImageView& window) : m_window(window)
{
    m_heldKeys.observe();
}

void FullScreenHost::LoadX()
{
    if (!m_view)
        m_view = makeView();
    m_view->LoadX(m_window.ix1(), &m_window);
}

bool FullScreenHost::isVisible() const
{
    return m_view && m_view->isVisible();
}

void FullScreenHost::close()
{
    if (m_view)
        m_view->close();
}

bool FullScreenHost::GenImage()
{
    if (!isVisible())
        return false;
    m_view->GenImage(m_window.ix1());
    return true;
}

std::optional<QSize> FullScreenHost::loadBox() const
{
    return isVisible() ? std::optional(m_view->loadBox()) : std::nullopt;
}

output::frmImageViewFull* FullScreenHost::makeView()
{
    frmImageView* const w = &m_window;
    const app::CommandLine& line = w->commandLine();
    auto* const view =
        new output::frmImageViewFull({.runTool = [w](const QString& name) { w->RunTool(name); },
                                      .isSlideRunning = [w] { return w->slideshow()->isRunning(); },
                                      .isSlideShowOnly = [w] { return w->slideshow()->SlideShowOnly(); },
                                      .showMain = [this] { showMain(); },
                                      .closeMain = [w] { w->close(); },
                                      .startedHidden = line.mentions(QStringLiteral("/miHide")),
                                      .startedForShow = line.mentions(QStringLiteral("xSlideShow"))},
                                     w);
    QObject::connect(view, &output::frmImageViewFull::composingChanged, w, [this] { noteChange(); });
    return view;
}

void FullScreenHost::noteChange()
{
    if (std::exchange(m_wasVisible, isVisible()) != isVisible())
        m_heldKeys.dropHeld();
    // What is read ahead, and how large, depends on where the picture is shown.
    Q_EMIT m_window.viewport()->laidOut();
}

/// Behind the window that fills the screen, which keeps the keys.
void FullScreenHost::showMain()
{
    if (m_window.isVisible())
        return;
    m_window.setAttribute(Qt::WA_ShowWithoutActivating);
    m_window.show();
    m_window.setAttribute(Qt::WA_ShowWithoutActivating, false);
}

} // namespace quorvia::viewer
