// Answers the dialogs for files and folders: the toolkit's own would lead a random walk out of the home, and
// delete there for good. Some answers come from a modal window that waits for input as they do.
#pragma once

#include "platform/Dialogs.h"
#include "RandomActions.h"

#include <functional>

class QWidget;

namespace quorvia::test {

class FileAnswers
{
  public:
    /// `random` gives new numbers; `owner` the window over which a modal one is shown, maybe null; the files
    /// are those in `folder`.
    FileAnswers(std::function<StepRandom()> random, std::function<QWidget*()> owner, QString folder);

  private:
    bool isCancelled(StepRandom& random) const;
    QString existing(StepRandom& random) const;
    QStringList several(StepRandom& random) const;
    QString folder(StepRandom& random) const;
    QString target(StepRandom& random) const;

    std::function<StepRandom()> m_random;
    std::function<QWidget*()> m_owner;
    QString m_folder;
    platform::FileChooserAnswerer m_file;
    platform::FilesChooserAnswerer m_files;
    platform::FolderBrowserAnswerer m_folders;
    platform::SaveChooserAnswerer m_save;
};

} // namespace quorvia::test
