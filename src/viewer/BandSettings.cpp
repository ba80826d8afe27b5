#include "viewer/BandSettings.h"

#include "app/Settings.h"
#include "app/Twips.h"

#include <limits>

namespace quorvia::viewer {

namespace {

constexpr int shown = -1; // as the store spells a visible band
constexpr int hidden = 0;

constexpr int absent = std::numeric_limits<int>::min(); // no place that a window has

int pixels(const app::OpenNumberKey& key, int present)
{
    return app::toPixels(app::read(key, app::toTwips(present)));
}

} // namespace

platform::BandState storedBand(const platform::BandState& present)
{
    using namespace app::setting;
    platform::BandState state = present;
    state.visible = app::read(cLayoutFiles) != hidden;
    state.area = app::read(cLayoutFilesAlign, present.area);
    state.width = pixels(cLayoutFilesWidth, present.width);
    state.height = pixels(cLayoutFilesVHeight, present.height);
    const int left = app::read(cLayoutFilesfLeft, absent);
    const int top = app::read(cLayoutFilesfTop, absent);
    if (left != absent && top != absent)
        state.floatingPosition = QPoint(app::toPixels(left), app::toPixels(top));
    state.floatingSize = QSize(pixels(cLayoutFilesfWidth, present.floatingSize.width()),
                               pixels(cLayoutFilesfHeight, present.floatingSize.height()));
    return state;
}

void storeBand(const platform::BandState& state)
{
    using namespace app::setting;
    if (state.area == platform::dockingArea::floating && state.floatingPosition) {
        app::save(cLayoutFilesfTop, app::toTwips(state.floatingPosition->y()));
        app::save(cLayoutFilesfLeft, app::toTwips(state.floatingPosition->x()));
        app::save(cLayoutFilesfWidth, app::toTwips(state.floatingSize.width()));
        app::save(cLayoutFilesfHeight, app::toTwips(state.floatingSize.height()));
    }
    app::save(cLayoutFiles, state.visible ? shown : hidden);
    app::save(cLayoutFilesAlign, state.area);
    app::save(cLayoutFilesWidth, app::toTwips(state.width));
    app::save(cLayoutFilesVHeight, app::toTwips(state.height));
}

} // namespace quorvia::viewer
