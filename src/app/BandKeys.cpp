#include "app/BandKeys.h"

#include "app/KeyCodes.h"
#include "app/MainWindow.h"
#include "platform/MenuKeys.h"

#include <QKeyEvent>
#include <QWidget>

namespace quorvia::app {

void takeBandKey(const QWidget& client, const QKeyEvent& key, MainWindow& main)
{
    if (platform::isMenuKey(key))
        platform::askForMenu(*client.window());
    else if (const int code = virtualKeyCode(key.key(), key.nativeScanCode()); code != 0)
        main.GlobalKeyPress(code, modifierMask(key.modifiers()));
}

} // namespace quorvia::app
