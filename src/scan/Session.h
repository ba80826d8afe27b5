// The scanner library from its start to its end. Opening it loads the backends; asking for the devices may
// search the network for some seconds.
#pragma once

#include "scan/FrameRows.h"
#include "scan/Wishes.h"

#include <sane/sane.h>

#include <optional>
#include <string>
#include <vector>

namespace quorvia::scan {

/// How it ended, as the exit codes of the helper.
enum class Outcome { Done = 0, BadUse = 2, NoDevice = 3, Cancelled = 4, Failed = 5 };

struct Result
{
    Outcome outcome = Outcome::Done;
    std::string why; ///< one line; empty when done
};

struct Device
{
    std::string name;
    std::string vendor;
    std::string model;
    std::string type;
};

/// What is asked of a device; what is not named stays as the device has it.
struct Settings
{
    std::optional<Mode> mode;
    std::optional<double> resolution; ///< pixels an inch
};

class Session
{
  public:
    Session();
    /// Cancels what goes on, closes the device and lets the library end.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// The devices that there are, those of the network too.
    Result devices(std::vector<Device>& found);
    /// Opens the device `name` and brings it near to `settings`.
    Result open(const std::string& name, const Settings& settings);
    /// Takes one picture of at most `budget` bytes. `progress` is told from time to time how much is there, 0
    /// to 1, below 0 when that is not known.
    Result acquire(std::int64_t budget, void (*progress)(double), RawPicture& picture);

  private:
    Result readFrame(PictureBuilder& builder, void (*progress)(double));

    SANE_Status m_init;
    SANE_Handle m_device = nullptr;
};

} // namespace quorvia::scan
