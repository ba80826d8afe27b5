#include "viewer/UnloadStep.h"

#include "app/mFile.h"
#include "app/Paths.h"
#include "app/PendingEvents.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "collections/frmImageViewPlaylistEditor.h"
#include "platform/MenuControl.h"
#include "viewer/BandSettings.h"
#include "viewer/frmImageView.h"
#include "viewer/RecentList.h"

#include <QApplication>
#include <QFile>

#include <algorithm>
#include <utility>

namespace quorvia::viewer {

namespace {

constexpr int normalState = 0;
constexpr int maximisedState = 2;

/// Closes the other windows from the last to the first.
void closeOtherWindows(frmImageView& window)
{
    QWidgetList windows = QApplication::topLevelWidgets();
    std::reverse(windows.begin(), windows.end());
    for (QWidget* other : std::as_const(windows)) {
        if (other != &window && other->isVisible())
            other->close();
    }
    app::letPendingEventsRun();
}

/// The editor saves the playlist in hand, and the panel takes over what was deleted or renamed there. A save
/// that fails is told of once.
void closeEditor(frmImageView& window)
{
    if (auto* const editor = window.findChild<collections::frmImageViewPlaylistEditor*>()) {
        if (!editor->close())
            editor->close();
    }
}

/// The geometry that the window has when it is neither minimised nor made as large as the screen: its frame's
/// corner, its inner size.
QRect restoredGeometry(const frmImageView& window)
{
    if (!window.isMinimized() && !window.isMaximized() && !window.isFullScreen())
        return {window.pos(), window.size()};
    const QRect inside = window.normalGeometry();
    return {inside.topLeft() - window.frameOffset(), inside.size()};
}

void saveGeometry(const QRect& pixels)
{
    app::save(app::setting::MainLeft, app::toTwips(pixels.x()));
    app::save(app::setting::MainTop, app::toTwips(pixels.y()));
    app::save(app::setting::MainHeight, app::toTwips(pixels.height()));
    app::save(app::setting::MainWidth, app::toTwips(pixels.width()));
}

/// Tells the next start how large its first picture may become, in device pixels: it comes before the
/// toolbar, and may come without the list. One that is read a little too large costs next to nothing, one
/// that is read too small is read twice.
void saveViewport(const QWidget& window)
{
    const QSize size = window.size() * window.devicePixelRatioF();
    app::save(app::setting::ViewportWidth, size.width());
    app::save(app::setting::ViewportHeight, size.height());
}

} // namespace

void runUnloadStep(frmImageView& window)
{
    window.status()->saveDescriptionNow();
    closeEditor(window);
    window.images().stopConversion();
    const platform::BandState band = window.panes()->bPlay()->state(); // before its window is closed
    window.playlist()->CloseDown();
    closeOtherWindows(window);
    storeBand(band);

    app::save(app::setting::ToggleInterface, window.panes()->interfaceFlag() ? 1 : 0);
    if (!window.isMinimized())
        app::save(app::setting::MainWindowState, window.isMaximized() ? maximisedState : normalState);
    saveGeometry(restoredGeometry(window));
    saveViewport(window);
    if (!window.isLoading()) // until then it has not been read
        app::save(app::setting::Recent, recentToText(window.opening()->recent()));

    app::letPendingEventsRun();
    const QString scratch = app::InstallPath() + QStringLiteral("untitled.pic");
    if (app::FileExists(scratch))
        QFile::remove(scratch);
}

} // namespace quorvia::viewer
