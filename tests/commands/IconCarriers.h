// The carriers of icons in a model, by their category.
#pragma once

#include "platform/ToolModel.h"

#include <QStringList>

namespace quorvia::test {

/// Their names, as in "#open", in the order of adding.
inline QStringList iconCarriers(const platform::ToolModel& model)
{
    QStringList names;
    for (int index = 0; index < model.toolCount(); ++index) {
        const platform::Tool* const tool = model.toolAt(index);
        if (tool->values().category == QLatin1String("Images"))
            names.append(tool->name());
    }
    return names;
}

} // namespace quorvia::test
