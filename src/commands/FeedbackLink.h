// What the link at the top right of the main window says at this start: of a newer version when one is known,
// else one of five questions for feedback, another at each start. Plain values; nothing is read or stored
// here.
#pragma once

#include "app/Product.h"

#include <QString>

#include <optional>

namespace quorvia::commands {

struct LinkFacts
{
    QString latestVersion; ///< `Latest Version`
    int dynamicLink = 1;   ///< `DynamicLink`
    int linkPreview = 2;   ///< `LinkPreview`
    app::Version running = {};
};

/// A caption and the address that it leads to.
struct LinkText
{
    QString caption;
    QString address;
    bool operator==(const LinkText&) const = default;
};

struct FeedbackLink
{
    std::optional<LinkText> shown;  ///< none: the label stays as it stands
    std::optional<int> nextPreview; ///< to be stored as `LinkPreview`; none: it keeps its value
    bool operator==(const FeedbackLink&) const = default;
};

FeedbackLink feedbackLink(const LinkFacts& facts);

/// Whether the version that `text` spells is greater than `running`: by major, minor and revision, each as a
/// number. A piece counts by the digits it begins with, one without any as 0, a missing one too; what follows
/// the third does not count.
bool isNewerVersion(const QString& text, const app::Version& running);

/// The `LinkPreview` of the next start: one more, and 0 after 7.
int nextLinkPreview(int preview);

} // namespace quorvia::commands
