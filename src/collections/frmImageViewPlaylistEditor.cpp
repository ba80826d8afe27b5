#include "collections/frmImageViewPlaylistEditor.h"

#include "app/Settings.h"
#include "app/Twips.h"
#include "app/WindowGeometry.h"
#include "app/WindowPlacement.h"
#include "collections/PlaylistEditor.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QScreen>

namespace quorvia::collections {

namespace {

constexpr app::PlacementKeys place{
    .state = app::setting::PlaylistEditorWindowState,
    .left = app::setting::PlaylistEditorLeft,
    .top = app::setting::PlaylistEditorTop,
    .width = app::setting::PlaylistEditorWidth,
    .height = app::setting::PlaylistEditorHeight,
};
constexpr QSize smallest(480, 360); // pixels

} // namespace

frmImageViewPlaylistEditor::frmImageViewPlaylistEditor(const QString& activePlaylist, QWidget* parent)
    : QWidget(parent, Qt::Window), m_editor(new PlaylistEditor(this))
{
    setObjectName(QStringLiteral("frmImageViewPlaylistEditor"));
    setWindowTitle(QStringLiteral("Playlist Editor"));
    setWindowModality(Qt::ApplicationModal);
    setAttribute(Qt::WA_DeleteOnClose);
    setMinimumSize(smallest);
    connect(m_editor, &PlaylistEditor::CloseRequest, this, &QWidget::close);
    restorePlace();
    m_editor->SetActivePlaylist(activePlaylist);
}

void frmImageViewPlaylistEditor::restorePlace()
{
    const QScreen& home = parentWidget() ? *parentWidget()->screen() : *QGuiApplication::primaryScreen();
    const QRect screen = app::inTwips(home.geometry());
    const QSize usual = app::defaultSize(screen.size());
    const QRect first(screen.topLeft() + app::defaultCorner(screen.size(), usual), usual);
    resize(app::toPixels(first).size());
    move(app::toPixels(first).topLeft());
    app::LoadWindowPlacement(place, this);
    // Nothing but itself could bring it back while it keeps all input.
    setWindowState(windowState() & ~Qt::WindowMinimized);
}

void frmImageViewPlaylistEditor::closeEvent(QCloseEvent* event)
{
    event->accept();
    if (std::exchange(m_closing, true))
        return;
    const QPointer<frmImageViewPlaylistEditor> alive = this;
    if (!m_editor->closeDown() && alive) {
        m_closing = false;
        event->ignore();
        return;
    }
    if (alive)
        app::SaveWindowPlacement(place, this);
    if (alive)
        Q_EMIT closed(m_editor->ActivePlaylist());
}

/// No shortcut: an open box of lines, which Esc closes first, would let it through to the window.
void frmImageViewPlaylistEditor::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Escape)
        QWidget::keyPressEvent(event);
    else if (!m_editor->leaveDefinePage())
        close();
}

void frmImageViewPlaylistEditor::resizeEvent(QResizeEvent*)
{
    m_editor->setGeometry(rect());
}

} // namespace quorvia::collections
