#include "system/OptionRows.h"

#include <cmath>
#include <limits>

namespace quorvia::system {

namespace {

using enum OptionControl;
using enum OptionReading;
namespace setting = app::setting;

/// Its default is the colour of the viewport, and so is what is shown.
constexpr app::NumberKey mainBackColor{setting::MainBackColor, 0};

constexpr OptionRow rows[] = {
    {setting::cView, "cView", List, Plain},         {setting::cFView, "cFView", List, Plain},
    {setting::cSlide, "cSlide", Check, Plain},      {setting::cLoad, "cLoad", Check, Plain},
    {setting::cFull, "cFull", Check, Plain},        {setting::cLayout, "cLayout", Check, Plain},
    {mainBackColor, "pBack", Color, Elsewhere},     {setting::FullBackColor, "pFullBack", Color, Plain},
    {setting::cBorder, "chkBorder", Check, Plain},  {setting::JPEGSampling, "cboSample", List, Int16},
    {setting::JPEGLum, "lLum", Slider, Int16},      {setting::JPEGChrome, "lChrome", Slider, Int16},
    {setting::JPEGGray, "chkGray", Check, Int16},   {setting::imgAutoLoad, "chkLoadFileAvail", Check, Int16},
    {setting::DynamicLink, "chkDyn", Check, Int16}, {setting::ShowBetaFeatures, "chkBeta", Check, Int16},
};

} // namespace

std::span<const OptionRow> optionRows()
{
    return rows;
}

std::optional<int> int16Of(const QString& text)
{
    bool isNumber = false;
    const double value = text.trimmed().toDouble(&isNumber);
    if (!isNumber)
        return std::nullopt;
    const double whole = std::nearbyint(value);
    using Limits = std::numeric_limits<qint16>;
    if (!(whole >= Limits::min() && whole <= Limits::max()))
        return std::nullopt;
    return int(whole);
}

std::optional<int> readOption(const OptionRow& row)
{
    switch (row.reading) {
    case Plain:
        return app::read(row.key);
    case Int16:
        return int16Of(app::readAsText(row.key));
    case Elsewhere:
        break;
    }
    return std::nullopt;
}

bool saveOption(const OptionRow& row, int value)
{
    return app::save(row.key, value);
}

} // namespace quorvia::system
