// How the print window shows its page, and what is drawn on it with the mouse: plain arithmetic in twips.
// Also the texts that are typed and said there.
#pragma once

#include "output/PageTexts.h"

#include <QRect>
#include <QStringList>

#include <optional>

namespace quorvia::output {

/// The lines of the list of zooms, and the one that is chosen at first.
QStringList zoomTexts();
inline constexpr int usualZoom = 2;
/// The factor that a text such as "50%" spells.
double zoomOf(const QString& text);

/// The size of the page as it is shown.
QSize previewSize(QSize page, double zoom);

/// What an axis of the preview had until now.
struct BarBefore
{
    bool shown = false;
    int value = 0;
};

/// How one axis of the preview stands.
struct PreviewAxis
{
    bool hasBar = false;
    int maximum = 0; ///< of the bar
    int value = 0;   ///< of the bar, within its maximum
    int place = 0;   ///< of the page in its frame
    bool operator==(const PreviewAxis&) const = default;
};

/// Lays out an axis: a page of `preview` in a frame of `frame`. A bar that was not shown `before` begins at
/// `start`.
PreviewAxis previewAxis(int preview, int frame, BarBefore before, int start);
inline constexpr int startAcross = 275;
inline constexpr int startDown = 2;

/// Where the page begins in its frame with a bar at `value`.
int previewOffset(int value);

/// The rectangle between the point where the mouse went down and the one where it is, in any direction.
QRectF drawnRect(QPoint anchor, QPointF pointer);
/// Whether it is so thin that it was a click.
bool isClick(const QRectF& drawn);
/// `drawn` with the size, in screen pixels, that the boxes have. The width's twips stand in both directions.
QRectF withBoxSize(const QRectF& drawn, const PageBoxes& boxes, QSizeF twipsPerPixel, double zoom);
/// What the boxes get of a rectangle that was drawn on the preview.
PageBoxes boxesOf(const QRectF& drawn, QSizeF twipsPerPixel, double zoom);

/// Where the parts of the window stand.
struct PrintWindowLayout
{
    QRect options;
    QRect frame;   ///< of the preview
    QRect buttons; ///< the row of buttons, with what is said of the printer
};

/// For a window of `window`, options of `options` and a row as high as `row`.
PrintWindowLayout printWindowLayout(QSize window, QSize options, int row);
/// The smallest window for them.
QSize smallestPrintWindow(QSize options, int row);

/// What comes of the number of copies that was typed.
struct CopiesAnswer
{
    std::optional<int> copies; ///< empty: the number stays
    bool isNumber = true;      ///< false: the log is told of the text
};
/// Numbers from 1 to 9999 are taken.
CopiesAnswer typedCopies(const QString& text);
/// What the window says of the printer.
QString printerText(const QString& device, int copies);

} // namespace quorvia::output
