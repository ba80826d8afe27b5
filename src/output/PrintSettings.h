// What the print window keeps from one print to the next. Reading and writing cost some hundred microseconds.
#pragma once

#include "output/PageLayout.h"
#include "output/PreviewLayout.h"

#include <QColor>
#include <QFont>

namespace quorvia::output {

struct PrintSettings
{
    QFont font; ///< of title and footer
    QColor color = Qt::black;
    int layout = 0; ///< line of the list, as the next ones: 0 upright, 1 lying
    int area = 0;
    int titleAlign = 1;
    int zoom = usualZoom;
    bool withName = false;
    bool withDirectory = false;
};

/// As the window is designed.
PrintSettings designedPrintSettings();
/// What is stored; a value that is absent, or none that the window has, stays as it is designed.
PrintSettings readPrintSettings();
void savePrintSettings(const PrintSettings& settings);

} // namespace quorvia::output
