// The places of the secondary windows, kept between their showings.
#pragma once

#include "app/Settings.h"

#include <QList>
#include <QRect>
#include <QString>

class QWidget;

namespace quorvia::app {

/// The screens of the desktop, twips.
QList<QRect> screensInTwips();

/// Writes state, place and size of `window` under `stem`. A maximised or minimised window is set back to
/// normal first, so that its usual place is kept.
void SaveWindowPlacement(const QString& stem, QWidget* window);

/// Gives `window` what was kept under `stem`; what was not stays as the window has it. With
/// `useDefaultPosition` its place stays in any case. A place off all screens becomes the middle of the
/// window's own.
void LoadWindowPlacement(const QString& stem, QWidget* window, bool useDefaultPosition);

/// The keys of a window whose place has names of its own.
struct PlacementKeys
{
    NumberKey state;
    OpenNumberKey left;
    OpenNumberKey top;
    OpenNumberKey width;
    OpenNumberKey height;
};

/// The same two under `keys`.
void SaveWindowPlacement(const PlacementKeys& keys, QWidget* window);
void LoadWindowPlacement(const PlacementKeys& keys, QWidget* window);

} // namespace quorvia::app
