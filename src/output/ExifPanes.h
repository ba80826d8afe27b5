// What the side bar says of a photograph: panes and rows, as values. Costs nothing.
#pragma once

#include "app/ImageFacts.h"
#include "platform/PaneBar.h"

#include <QList>
#include <QString>

#include <optional>

namespace quorvia::output {

struct PhotoFacts
{
    QString name; ///< of the file, without its directory
    qint64 bytes = 0;
    app::ImageFacts image = {};
    std::optional<int> colors = {}; ///< none while they are not counted yet
};

/// The panes from top to bottom; without a photograph only the first.
QList<platform::Pane> exifPanes(const std::optional<PhotoFacts>& photo);

} // namespace quorvia::output
