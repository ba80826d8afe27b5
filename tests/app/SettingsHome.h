// A fresh home in which the settings are open.
#pragma once

#include "app/mWindowsAPI.h"
#include "support/ScratchHome.h"

namespace quorvia::test {

class SettingsHome : public ScratchHome
{
  public:
    SettingsHome() { app::openSettings(); }
    ~SettingsHome() { app::closeSettings(); }
};

} // namespace quorvia::test
