#include "system/OptionRows.h"

#include <QRegularExpression>

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
    {setting::cView, "cView", List, Plain},
    {setting::cFView, "cFView", List, Plain},
    {setting::cSlide, "cSlide", Check, Plain},
    {setting::cLoad, "cLoad", Check, Plain},
    {setting::cFull, "cFull", Check, Plain},
    {setting::cLayout, "cLayout", Check, Plain},
    {mainBackColor, "pBack", Color, Elsewhere},
    {setting::FullBackColor, "pFullBack", Color, Plain},
    {setting::cBorder, "chkBorder", Check, Plain},
    {setting::JPEGSampling, "cboSample", List, Leading},
    {setting::JPEGLum, "lLum", Slider, Leading},
    {setting::JPEGChrome, "lChrome", Slider, Leading},
    {setting::JPEGGray, "chkGray", Check, Leading},
    {setting::imgAutoLoad, "chkLoadFileAvail", Check, Leading},
    {setting::DynamicLink, "chkDyn", Check, Leading},
    {setting::ShowBetaFeatures, "chkBeta", Check, Leading},
};

} // namespace

std::span<const OptionRow> optionRows()
{
    return rows;
}

std::optional<int> leadingInt16(const QString& text)
{
    static const QRegularExpression leading(
        QStringLiteral("^\\s*([+-]?(?:\\d+(?:\\.\\d*)?|\\.\\d+)(?:[eE][+-]?\\d+)?)"));
    // The blank ends a number that stands alone, and makes a text of none.
    const QString number = leading.match(text + u' ').captured(1);
    bool isNumber = false;
    const double value = number.toDouble(&isNumber);
    if (!isNumber) // too large for any number
        return number.isEmpty() ? std::optional(0) : std::nullopt;
    const double whole = std::nearbyint(value);
    using Limits = std::numeric_limits<qint16>;
    if (whole < Limits::min() || whole > Limits::max())
        return std::nullopt;
    return int(whole);
}

std::optional<int> readOption(const OptionRow& row)
{
    switch (row.reading) {
    case Plain:
        return app::read(row.key);
    case Leading:
        return leadingInt16(app::readAsText(row.key));
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
