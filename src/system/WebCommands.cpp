#include "system/WebCommands.h"

#include "app/Product.h"
#include "app/Settings.h"
#include "app/WebPages.h"
#include "system/Publishing.h"

#include <algorithm>
#include <array>

namespace quorvia::system {

namespace {

using app::WebPage;

/// Where an address is taken from.
enum class Source {
    Home,   ///< this program's own in the store, else its home page
    Front,  ///< the same, else the front page
    Maker,  ///< a page of the maker's, which is told who asks
    Sibling ///< another tool's own in the store, else its product page
};

struct Row
{
    const char* command;
    Source source;
    WebPage page;           ///< of Maker; of the others when the store has none
    const char* title = ""; ///< of a sibling
};

constexpr std::array rows = {
    Row{"miWebsite", Source::Home, WebPage::Product},
    Row{"miHVXAWebsite", Source::Front, WebPage::Front},
    Row{"miLindoraCenter", Source::Maker, WebPage::MediaPortal},
    Row{"miHVXAImageGallery", Source::Maker, WebPage::ImageGallery},
    Row{"miURLcomments", Source::Maker, WebPage::Support},
    Row{"miURLfeature", Source::Maker, WebPage::Support},
    Row{"miURLbugreport", Source::Maker, WebPage::Report},
    Row{"miWebMorphane", Source::Sibling, WebPage::ProductMorphane, "Morphane"},
    Row{"miWebTessary", Source::Sibling, WebPage::ProductTessary, "Tessary"},
    Row{"miWebNomalux", Source::Sibling, WebPage::ProductNomalux, "Nomalux"},
};

QString storedOr(const QString& title, const QString& fallback)
{
    const QString stored = app::readOfTool(app::common::WebSites, title);
    return stored.isEmpty() ? fallback : stored;
}

QString makersPage(WebPage page)
{
    if (app::read(app::common::QOCSInstall) == QLatin1String("yes"))
        return app::webAddress(WebPage::Partner);
    // "?" even behind a query of the page's own: the maker's pages take that.
    return app::webAddress(page) + u'?' + BuildToolQuery(QStringLiteral("AppMenuItem"));
}

} // namespace

std::vector<const char*> webCommands()
{
    std::vector<const char*> names;
    names.reserve(rows.size());
    for (const Row& row : rows)
        names.push_back(row.command);
    return names;
}

QString webAddressOf(const QString& command)
{
    const auto* const row = std::find_if(
        rows.begin(), rows.end(), [&](const Row& each) { return command == QLatin1String(each.command); });
    if (row == rows.end())
        return {};
    switch (row->source) {
    case Source::Home:
        return storedOr(app::productTitle(), GetHomeUrl());
    case Source::Front:
        return storedOr(app::productTitle(), app::webAddress(row->page) + BuildAppQuery());
    case Source::Sibling:
        return storedOr(QLatin1String(row->title), app::webAddress(row->page) + BuildAppQuery());
    case Source::Maker:
        break;
    }
    return makersPage(row->page);
}

} // namespace quorvia::system
