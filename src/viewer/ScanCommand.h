// `miScan` in the main window: the devices behind the image control, and what the acquisition asks for.
#pragma once

#include "platform/ScanSource.h"

#include <QImage>

namespace quorvia::system {
struct AcquisitionSinks;
}

namespace quorvia::viewer {

class frmImageView;

class ScanCommand
{
  public:
    /// Works on `window`, which it is a part of; nothing of it is touched yet.
    explicit ScanCommand(frmImageView& window) : m_window(window) {}

    /// Takes one picture from a device that the user chooses, and opens its file. Nothing happens while it
    /// does already.
    void run();
    /// True while that goes on: nothing else may change the current image by itself.
    bool isBusy() const { return m_isBusy; }

  private:
    system::AcquisitionSinks sinks();
    void select();
    QImage acquire();

    frmImageView& m_window;
    platform::ScanChoice m_choice; ///< without a device: none was chosen
    QString m_caption;             ///< of the window before
    bool m_isBusy = false;
};

} // namespace quorvia::viewer
