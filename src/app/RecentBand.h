// The menu of the recent directories, which the main menu and the panel of the list of pictures both have.
#pragma once

#include "platform/ToolModel.h"

#include <QStringList>

#include <functional>

namespace quorvia::app {

/// The name of the band that fillRecentDirectories() fills.
inline constexpr char recentDirectoriesBand[] = "bRecent";

/// Fills the band, where `model` has one: the directories as tools `tRecent0` and on, up to the first empty
/// entry behind the first, without those that `exists` denies, and the tool that clears the list. "(none)"
/// when there is no entry. The icons are those of the tools `tFolderI` and `clearTool` of the model. `exists`
/// is asked once a directory.
void fillRecentDirectories(platform::ToolModel& model, const QStringList& directories,
                           const std::function<bool(const QString& directory)>& exists,
                           const QString& clearTool);

} // namespace quorvia::app
