#include "output/ClipboardLayout.h"

#include "app/Twips.h"

#include <cmath>

namespace quorvia::output {

namespace {

constexpr int beyondTheEnd = 200; // twips

int upwards(double length)
{
    constexpr double noise = 1e-6; // of a ratio that is no binary fraction
    return int(std::ceil(length - noise));
}

} // namespace

ClipboardView scrollBarView(QSize clip, QSize room, int thickness)
{
    ClipboardView view;
    view.hasAcross = clip.width() > room.width();
    view.hasDown = clip.height() > room.height() - (view.hasAcross ? thickness : 0);
    view.hasAcross = clip.width() > room.width() - (view.hasDown ? thickness : 0);
    view.area =
        (room - QSize(view.hasDown ? thickness : 0, view.hasAcross ? thickness : 0)).expandedTo({0, 0});
    if (view.hasAcross)
        view.maxAcross = clip.width() - view.area.width() + beyondTheEnd;
    if (view.hasDown)
        view.maxDown = clip.height() - view.area.height() + beyondTheEnd;
    return view;
}

ClipboardView aspectResizeView(QSize clip, QSize room)
{
    return {.area = room, .stretched = clip.width() > room.width() || clip.height() > room.height()};
}

QSize clipSize(QSize pixels, double ratio)
{
    const auto twips = [ratio](int length) { return upwards(length * app::twipsPerPixel / ratio); };
    return {twips(pixels.width()), twips(pixels.height())};
}

QSize devicePixels(QSize twips, double ratio)
{
    const auto pixels = [ratio](int length) { return upwards(length * ratio / app::twipsPerPixel); };
    return {pixels(twips.width()), pixels(twips.height())};
}

} // namespace quorvia::output
