// The scanners that there are, and the dialog in which one is chosen; with the seam of Dialogs.h, so that a
// test can answer it.
#pragma once

#include "platform/Dialogs.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace quorvia::platform {

struct ScanDevice
{
    QString name;   ///< by which it is opened
    QString vendor; ///< this and the others are for people
    QString model;
    QString type;
    bool operator==(const ScanDevice&) const = default;
};

enum class ScanMode { Color, Gray };

/// What is scanned, and how.
struct ScanChoice
{
    QString device; ///< its name; empty: none
    ScanMode mode = ScanMode::Color;
    int resolution = 300; ///< pixels an inch; the device takes the nearest that it has
    bool operator==(const ScanChoice&) const = default;
};

/// The devices in what the helper lists: a line each, four fields apart by tabs, with "\\", "\t", "\n" and
/// "\r" for what cannot stand in one. Lines of any other kind are passed over.
QList<ScanDevice> scanDevices(const QByteArray& list);
/// What people read of `device`, on one line.
QString scanDeviceText(const ScanDevice& device);
/// The resolutions that are offered, ascending.
const QList<int>& scanResolutions();

/// A dialog in which a device is chosen.
struct ScanSourceQuestion
{
    QList<ScanDevice> devices = {};
    ScanChoice start = {}; ///< selected at first, as far as it is there
};

/// Shows `question` modally over `owner` (may be null) and waits. Nothing when it was not accepted.
std::optional<ScanChoice> askScanSource(QWidget* owner, const ScanSourceQuestion& question);

using ScanSourceAnswerer = Answerer<ScanSourceQuestion, std::optional<ScanChoice>>;

} // namespace quorvia::platform
