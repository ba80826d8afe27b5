// What the print window writes on its page, in its boxes and about them. Texts and numbers only.
#pragma once

#include <QRectF>
#include <QSize>
#include <QString>

#include <optional>

namespace quorvia::output {

/// The footer for the file at `path`: its name, its directory, or both; nothing when neither is wanted.
std::optional<QString> footerText(bool withName, bool withDirectory, const QString& path);

/// The caption of the window once the page names the file at `path`.
QString captionText(const QString& path);

/// What the window says of the page's size: screen pixels of `page`.
QString pageText(QSize page, QSizeF twipsPerPixel);

/// What the four boxes hold.
struct PageBoxes
{
    QString left, top, width, height;
    bool operator==(const PageBoxes&) const = default;
};

/// `boxes` with something in each: where one is empty, the picture's natural length in pixels, or 0 for a
/// place.
PageBoxes withDefaults(PageBoxes boxes, QSize image, QSizeF twipsPerPixel);

/// The rectangle that the boxes spell, in pixels; a text that begins with no number counts as 0.
QRectF boxesRect(const PageBoxes& boxes);

/// Whether a box that was changed to `text` lets the page be composed anew.
bool composesWith(const QString& text);

/// `number` without an exponent, with as many of four decimals as it needs.
QString plainDecimal(double number);

} // namespace quorvia::output
