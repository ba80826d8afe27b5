#include "app/EraseSettings.h"

#include "app/mWindowsAPI.h"
#include "app/Product.h"
#include "app/Settings.h"

#include <cstdlib>

namespace quorvia::app {

platform::MessageBox eraseBox()
{
    return {platform::BoxKind::Question, platform::BoxButtons::YesNoCancel, productTitle(),
            QStringLiteral("Are your sure you want to purge your registry settings for ") + productTitle() +
                QStringLiteral("?\n\nNote: Selecting yes will cause all settings to be erased and exit the "
                               "program.")};
}

bool askToErase(QWidget* owner)
{
    if (platform::showMessage(owner, eraseBox()) != platform::BoxAnswer::Yes)
        return false;
    for (const char* section : {section::Settings, section::PrintSettings, section::SettingsNet})
        DeleteAppSection(QLatin1String(section));
    return true;
}

void endProcess()
{
    closeSettings();
    std::_Exit(EXIT_SUCCESS);
}

} // namespace quorvia::app
