#include "commands/WelcomePanes.h"

#include "app/Product.h"
#include "commands/CommandState.h"

namespace quorvia::commands {

namespace {

using platform::Pane;
using platform::PaneItem;
using platform::PaneItemKind;

PaneItem link(const char* key, const QString& text, const char* command, const char* icon)
{
    return {
        .key = QLatin1String(key), .text = text, .tag = QLatin1String(command), .icon = QLatin1String(icon)};
}

PaneItem line(const char* key, const QString& text, PaneItemKind kind = PaneItemKind::Text)
{
    return {.key = QLatin1String(key), .text = text, .kind = kind};
}

Pane welcomePane()
{
    return {
        .key = QStringLiteral("Welcome"),
        .title = QStringLiteral("  - Welcome to ") + app::productTitle(),
        .items = {link("OPEN", QStringLiteral("Open Image"), "miOpen", "open"),
                  line("OPENTIP", QStringLiteral("          Open a image for viewing.")),
                  link("Playlist", QStringLiteral("Create Playlist"), "miPlaylistEditor", "playlist"),
                  line("PlaylistTIP", QStringLiteral("          Create a playlist of images.")),
                  link("WEBSITE", QStringLiteral("Visit Website"), "miWebsite", "website"),
                  line("WEBSITETIP", QStringLiteral("          Visit our company website.")),
                  link("HELP", QStringLiteral("Help Documentation"), "miHelp", "help"),
                  line("HELPTIP", QStringLiteral("          View the HTML help manual for this product."))}};
}

Pane productPane(const WelcomeFacts& facts)
{
    const QString version = app::versionText(app::productVersion(), QStringLiteral("."));
    return {.key = QStringLiteral("Information"),
            .title = QStringLiteral("Product Information"),
            .items = {line("INFO", app::productTitle(), PaneItemKind::Header),
                      line("INFO2", QStringLiteral("Version: ") + version),
                      line("DEVL", QStringLiteral("Developed By:")),
                      link("DEVL2", app::makerName(), "miHVXAWebsite", ""),
                      line(viewedItem, viewedText(facts.imagesOpened))}};
}

Pane resourcePane()
{
    return {.key = QStringLiteral("Resource"),
            .title = QStringLiteral("  - ") + app::productTitle() + QStringLiteral(" Resources"),
            .items = {
                link("MEDIA", QStringLiteral("Lindora Center"), "miLindoraCenter", "lindora"),
                line("MEDIATIP", QStringLiteral("Find Images and Imaging Information at the Lindora Center")),
                link("HVXAGALLEY", QStringLiteral("HVXA Image Gallery"), "miHVXAImageGallery", "gallery"),
                line("HVXAGALLEYTIP", QStringLiteral("Halvexa's exclusive online image gallery."))}};
}

/// What is said of a sibling tool.
struct Sibling
{
    const char* title;
    const char* command;
    const char* keys[3]; ///< of name, description and "More Information"
    const char* description;
};

constexpr Sibling siblings[] = {
    {"Morphane",
     "miWebMorphane",
     {"MO", "MOTIP", "MOMORE"},
     "Retouch, recolour and combine your pictures: a whole darkroom in one window."},
    {"Tessary",
     "miWebTessary",
     {"TE", "TETIP", "TEMORE"},
     "Turn a folder of pictures into a mosaic, a contact sheet or a web album."},
    {"Nomalux",
     "miWebNomalux",
     {"NO", "NOTIP", "NOMORE"},
     "Bring order into thousands of photographs: rename, sort and tag them in one go."},
};

Pane softwarePane(const QStringList& missing)
{
    Pane pane{.key = QStringLiteral("Software"),
              .title = QStringLiteral("  - Halvexa - Addtional Software Titles"),
              .items = {}};
    for (const Sibling& tool : siblings) {
        if (!missing.contains(QLatin1String(tool.title)))
            continue;
        pane.items.append(link(tool.keys[0], QLatin1String(tool.title), tool.command, "software"));
        pane.items.append(line(tool.keys[1], QLatin1String(tool.description)));
        pane.items.append(link(tool.keys[2], QStringLiteral("More Information"), tool.command, ""));
    }
    return pane;
}

Pane tipsPane(const QStringList& tips)
{
    Pane pane{.key = QStringLiteral("TIPS"), .title = QStringLiteral("Random Tips of the Day"), .items = {}};
    for (int number = 1; number <= tips.size(); ++number) {
        const QString digits = QString::number(number);
        pane.items.append({.key = QStringLiteral("TIP") + (number == 1 ? QString() : digits),
                           .text = QStringLiteral("Tip %1: ").arg(digits) + tips.at(number - 1),
                           .kind = PaneItemKind::Text,
                           .icon = QStringLiteral("tip")});
    }
    return pane;
}

} // namespace

QList<Pane> welcomePanes(const WelcomeFacts& facts)
{
    return {welcomePane(), productPane(facts)};
}

QList<Pane> resourcePanes(const WelcomeFacts& facts)
{
    QList<Pane> panes = {resourcePane()};
    if (const Pane software = softwarePane(facts.missingTools); !software.items.isEmpty())
        panes.append(software);
    panes.append(tipsPane(facts.tips));
    return panes;
}

} // namespace quorvia::commands
