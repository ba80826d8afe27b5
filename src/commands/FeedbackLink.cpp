#include "commands/FeedbackLink.h"

#include "app/WebPages.h"
#include "platform/OneLine.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace quorvia::commands {

namespace {

struct Question
{
    const char* caption;
    int preview;
    app::WebPage page;
};

constexpr Question questions[] = {
    {"Suggest a Feature?", 1, app::WebPage::Support}, {"Comments?", 2, app::WebPage::Support},
    {"Report Errors?", 3, app::WebPage::Report},      {"Send Feedback?", 4, app::WebPage::Support},
    {"Report Bugs?", 5, app::WebPage::Report},
};

/// The number that the digits at the beginning of `piece` spell; so many that none of ours is larger.
int leadingNumber(const QString& piece)
{
    constexpr int most = 999'999'999;
    qint64 number = 0;
    for (const QChar letter : piece.trimmed()) {
        if (letter < u'0' || letter > u'9')
            break;
        number = std::min<qint64>(number * 10 + (letter.unicode() - u'0'), most);
    }
    return int(number);
}

/// The support pages have a query of their own before this one, and take that.
QString feedbackAddress(app::WebPage page, const app::Version& running)
{
    return app::webAddress(page) + QStringLiteral("?app=") + app::productTitle().remove(u' ') +
           QStringLiteral("Feedback&version=") + app::versionText(running, QStringLiteral("."));
}

LinkText upgradeText(const QString& version)
{
    constexpr qsizetype most = 40; // letters; the label has to stay within the window
    QString text = platform::oneLine(version);
    text.removeIf(
        [](QChar each) { return each.category() == QChar::Other_Format; }); // they turn letters round
    const QString shown = text.size() <= most ? text : text.left(most - 1) + QChar(0x2026);
    return {QStringLiteral("Upgrade to version: ") + shown, app::webAddress(app::WebPage::Download)};
}

} // namespace

bool isNewerVersion(const QString& text, const app::Version& running)
{
    const std::array<int, 3> present = {running.major, running.minor, running.revision};
    const QStringList pieces = text.split(u'.');
    std::array<int, 3> offered = {};
    for (size_t i = 0; i < offered.size() && qsizetype(i) < pieces.size(); ++i)
        offered[i] = leadingNumber(pieces.at(qsizetype(i)));
    return offered > present;
}

int nextLinkPreview(int preview)
{
    constexpr int last = 6; // from here on it has only one step to go
    return preview > last ? 0 : preview + 1;
}

FeedbackLink feedbackLink(const LinkFacts& facts)
{
    if (isNewerVersion(facts.latestVersion, facts.running))
        return {.shown = upgradeText(facts.latestVersion), .nextPreview = {}};
    if (facts.dynamicLink != 1)
        return {};
    FeedbackLink link{.shown = {}, .nextPreview = nextLinkPreview(facts.linkPreview)};
    const auto* const question =
        std::find_if(std::begin(questions), std::end(questions),
                     [&](const auto& each) { return each.preview == facts.linkPreview; });
    if (question != std::end(questions))
        link.shown =
            LinkText{QLatin1String(question->caption), feedbackAddress(question->page, facts.running)};
    return link;
}

} // namespace quorvia::commands
