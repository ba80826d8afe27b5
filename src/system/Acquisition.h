// `miScan`: one picture from a scanner or camera, kept under the date of its coming and opened from there. As
// dear as the scan and the save.
#pragma once

#include <QDateTime>
#include <QString>

#include <functional>

class QWidget;

namespace quorvia::engine {
class ImageEngine;
}

namespace quorvia::system {

/// True when the drivers of scanners and cameras are installed. Asks no device.
bool TwainPresent();

/// The name of the file for a picture that was acquired at `time` (local); two within a second have the same.
QString acquiredName(const QDateTime& time);
/// The folder of these files, ending in "/". Need not exist.
QString acquiredFolder();

/// What an acquisition asks of the main window. All of the functions are called.
struct AcquisitionSinks
{
    QWidget* owner = nullptr; ///< of the boxes; may be null
    engine::ImageEngine* ix1 = nullptr;
    std::function<bool()> driversPresent;
    std::function<QDateTime()> now;
    std::function<void(const QString& caption)> setCaption;
    std::function<void()> restoreCaption; ///< to what it was before setCaption
    std::function<void()> place;          ///< lays the picture that ix1 holds out, or the view without one
    std::function<void(const QString& path, bool force)> saveImage;
    std::function<void()> saveElsewhere; ///< asks for a name and saves what ix1 holds
    std::function<void(const QString& path)> openX;
    std::function<void()> editIsBack; ///< ix1 holds an edit again that is in no file
    std::function<bool()> isEnding;   ///< the program ends: nothing is shown or opened any more
    std::function<bool()> isGone;     ///< the window, and ix1 with it
};

/// Acquires a picture, saves it and opens its file; the boxes for missing drivers, for no picture and for one
/// that could not be saved there. A picture that has come when the program ends is saved all the same.
void miScan(const AcquisitionSinks& sinks);

} // namespace quorvia::system
