// Paints the tabs of a strip with what TabLook says. Cheap: a few boxes and a text each.
#pragma once

#include "controls/TabLook.h"

class QFont;
class QPainter;
class QPalette;

namespace quorvia::controls {

/// What all tabs of a strip are painted with.
struct TabPaint
{
    const TabProperties& properties;
    const QPalette& palette; ///< for the desktop's colours
    const QFont& font;
    int height = 0;         ///< of the surface, in pixels
    bool showFocus = false; ///< the selected tab wears a frame
};

/// The width of a caption in the bold form of `font`, in whole pixels.
int captionWidth(const QString& caption, const QFont& font);

/// Paints all tabs, the selected one last; the surface has its back colour already.
void paintTabs(QPainter& painter, const TabList& tabs, const TabPaint& paint);

/// `color` with `part` (0 to 1) of `other` in it.
QColor mixed(const QColor& color, const QColor& other, double part);

} // namespace quorvia::controls
