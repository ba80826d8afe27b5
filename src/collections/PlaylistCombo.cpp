#include "collections/PlaylistCombo.h"

#include "platform/OneLine.h"

#include <QWheelEvent>

namespace quorvia::collections {

namespace {

constexpr int closingLines = 3; // below the playlists: an empty one, and the two commands

} // namespace

PlaylistCombo::PlaylistCombo(QWidget* parent) : QComboBox(parent)
{
    setObjectName(QStringLiteral("cPlaylist"));
    setToolTip(QStringLiteral("Select, Edit and Create Playlist"));
    setAccessibleName(tr("Playlist"));
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMaxVisibleItems(20);
    fill({});
    connect(this, &QComboBox::activated, this, &PlaylistCombo::tell);
}

int PlaylistCombo::playlists() const
{
    return count() - closingLines;
}

void PlaylistCombo::fill(const QStringList& names)
{
    clear();
    for (const QString& name : names)
        addItem(platform::oneLine(name), name);
    addItems({QString(), QStringLiteral("(Define Playlist's)"), QStringLiteral("(Create New Playlist)")});
    setCurrentIndex(-1);
}

void PlaylistCombo::showName(const QString& name)
{
    const int line =
        name.isEmpty() ? -1 : findData(name, Qt::UserRole, Qt::MatchExactly | Qt::MatchCaseSensitive);
    setCurrentIndex(line < playlists() ? line : -1);
}

void PlaylistCombo::switchOff()
{
    if (!isEnabled())
        return;
    m_hadFocus = hasFocus();
    setEnabled(false);
    m_focusThen = window()->focusWidget();
}

void PlaylistCombo::switchOn()
{
    if (isEnabled())
        return;
    setEnabled(true);
    if (m_hadFocus && isVisible() && window()->focusWidget() == m_focusThen)
        setFocus(Qt::OtherFocusReason);
    m_hadFocus = false;
}

/// The closed box does not turn: a stray notch would save one playlist and load another.
void PlaylistCombo::wheelEvent(QWheelEvent* event)
{
    event->ignore();
}

void PlaylistCombo::tell(int line)
{
    if (line < playlists())
        Q_EMIT picked(itemData(line).toString());
    else if (line == count() - 1)
        Q_EMIT createPicked();
    else if (line == count() - 2)
        Q_EMIT definePicked();
    else
        Q_EMIT nothingPicked();
}

} // namespace quorvia::collections
