#include "output/PrintSettings.h"

#include "app/Colors.h"
#include "app/Settings.h"

namespace quorvia::output {

namespace setting = app::setting;

namespace {

constexpr int usualPoints = 12;
constexpr int mostPoints = 1000;

/// `number` when it is one of `count` lines, else the one that is designed.
int line(int number, int count, int designed)
{
    return number >= 0 && number < count ? number : designed;
}

QFont readFont(QFont font)
{
    const QString name = app::read(setting::PrintFontName, font.family());
    if (name != font.family())
        font.setFamilies({name});
    const double points = app::read(setting::PrintFontSize, QString()).toDouble();
    if (points >= 1 && points <= mostPoints)
        font.setPointSizeF(points);
    font.setBold(app::read(setting::PrintFontBold, font.bold()) != 0);
    font.setItalic(app::read(setting::PrintFontItalic, font.italic()) != 0);
    font.setStrikeOut(app::read(setting::PrintFontStrike, font.strikeOut()) != 0);
    font.setUnderline(app::read(setting::PrintFontUnderline, font.underline()) != 0);
    return font;
}

} // namespace

PrintSettings designedPrintSettings()
{
    PrintSettings designed;
    designed.font.setFamilies({QStringLiteral("Verdana"), QStringLiteral("DejaVu Sans")});
    designed.font.setPointSize(usualPoints);
    return designed;
}

PrintSettings readPrintSettings()
{
    PrintSettings settings = designedPrintSettings();
    settings.font = readFont(settings.font);
    settings.color =
        app::fromColorNumber(app::read(setting::PrintFontColor, app::toColorNumber(settings.color)));
    settings.layout = line(app::read(setting::PrintLayout), 2, settings.layout);
    settings.area = line(app::read(setting::PrintArea), areaModes, settings.area);
    settings.titleAlign = line(app::read(setting::PrintTitleA), titleAligns, settings.titleAlign);
    settings.zoom = line(app::read(setting::PrintZoom), int(zoomTexts().size()), settings.zoom);
    settings.withName = app::read(setting::PrintFilename) != 0;
    settings.withDirectory = app::read(setting::PrintPath) != 0;
    return settings;
}

void savePrintSettings(const PrintSettings& settings)
{
    const QFont& font = settings.font;
    app::save(setting::PrintFontName, font.family());
    app::save(setting::PrintFontSize, QString::number(font.pointSizeF()));
    app::save(setting::PrintFontBold, font.bold());
    app::save(setting::PrintFontItalic, font.italic());
    app::save(setting::PrintFontStrike, font.strikeOut());
    app::save(setting::PrintFontUnderline, font.underline());
    app::save(setting::PrintFontColor, app::toColorNumber(settings.color));
    app::save(setting::PrintLayout, settings.layout);
    app::save(setting::PrintArea, settings.area);
    app::save(setting::PrintTitleA, settings.titleAlign);
    app::save(setting::PrintZoom, settings.zoom);
    app::save(setting::PrintFilename, settings.withName);
    app::save(setting::PrintPath, settings.withDirectory);
}

} // namespace quorvia::output
