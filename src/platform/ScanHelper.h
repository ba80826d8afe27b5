// One run of the scanner helper, as a process that is never left behind.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

class QWidget;

namespace quorvia::platform {

/// How far a scan is by a line of the helper: thousandths; 0 when it does not know; below 0 when the line
/// says nothing about it.
int scanProgress(const QByteArray& line);

struct HelperRun
{
    QString program = {};
    QStringList arguments = {};
    QString text = {}; ///< what is being done, for the box
    int silence = 0;   ///< milliseconds without a word until it counts as hanging
    int ending = 0;    ///< milliseconds from being told to end until it is killed
};

struct HelperEnd
{
    bool isDone = false;       ///< it ended by itself and well
    bool wasCancelled = false; ///< by the user, or with the program, before it said that the picture stands
    QByteArray output = {};    ///< what it wrote on the standard output
    QString why = {};          ///< one line; empty when done or cancelled
};

/// True when `line` of the helper says that the picture is in its file, whole.
bool saysPictureStands(const QByteArray& line);

/// Runs the helper to its end, with a box over `owner` (may be null) as LongWork shows it. The process, and
/// what it started, is gone afterwards. Once it has said that the picture stands, nothing cancels it any
/// more; it has `ending` then to close the device.
HelperEnd runScanHelper(QWidget* owner, const HelperRun& run);

} // namespace quorvia::platform
