#include "scan/Session.h"

#include "scan/Cancellation.h"
#include "scan/Options.h"

#include <array>
#include <chrono>
#include <thread>

namespace quorvia::scan {

namespace {

std::string textOf(SANE_String_Const text)
{
    return text ? text : "";
}

Result cancelled()
{
    return {Outcome::Cancelled, "cancelled"};
}

Result failedBy(const char* step, SANE_Status status)
{
    if (isCancelled() || status == SANE_STATUS_CANCELLED)
        return cancelled();
    return {Outcome::Failed, std::string(step) + ": " + textOf(sane_strstatus(status))};
}

std::optional<Channels> channelsOf(SANE_Frame frame)
{
    switch (frame) {
    case SANE_FRAME_GRAY:
        return Channels::Gray;
    case SANE_FRAME_RGB:
        return Channels::Rgb;
    case SANE_FRAME_RED:
        return Channels::Red;
    case SANE_FRAME_GREEN:
        return Channels::Green;
    case SANE_FRAME_BLUE:
        return Channels::Blue;
    default:
        return {};
    }
}

} // namespace

Session::Session() : m_init(sane_init(nullptr, nullptr)) {}

Session::~Session()
{
    setScanning(nullptr);
    if (m_device) {
        sane_cancel(m_device);
        sane_close(m_device);
    }
    if (m_init == SANE_STATUS_GOOD)
        sane_exit();
}

Result Session::devices(std::vector<Device>& found)
{
    if (m_init != SANE_STATUS_GOOD)
        return failedBy("start", m_init);
    const SANE_Device** list = nullptr;
    const SANE_Status status = sane_get_devices(&list, SANE_FALSE);
    if (status != SANE_STATUS_GOOD)
        return failedBy("devices", status);
    for (; list && *list; ++list) {
        const SANE_Device& one = **list;
        found.push_back({textOf(one.name), textOf(one.vendor), textOf(one.model), textOf(one.type)});
    }
    return isCancelled() ? cancelled() : Result{};
}

Result Session::open(const std::string& name, const Settings& settings)
{
    if (m_init != SANE_STATUS_GOOD)
        return failedBy("start", m_init);
    if (name.empty()) // the library would take any
        return {Outcome::NoDevice, "no device was named"};
    const SANE_Status status = sane_open(name.c_str(), &m_device);
    if (status == SANE_STATUS_GOOD) {
        applySettings(m_device, settings);
        return {};
    }
    m_device = nullptr;
    if (status == SANE_STATUS_INVAL || status == SANE_STATUS_UNSUPPORTED)
        return {Outcome::NoDevice, "no device " + name + ": " + textOf(sane_strstatus(status))};
    return failedBy("open", status);
}

Result Session::acquire(std::int64_t budget, void (*progress)(double), RawPicture& picture)
{
    PictureBuilder builder(budget);
    SANE_Parameters parameters = {};
    setScanning(m_device);
    do {
        if (isCancelled())
            return cancelled();
        if (const SANE_Status status = sane_start(m_device); status != SANE_STATUS_GOOD)
            return failedBy("begin", status);
        if (const SANE_Status status = sane_get_parameters(m_device, &parameters); status != SANE_STATUS_GOOD)
            return failedBy("parameters", status);
        const std::optional<Channels> channels = channelsOf(parameters.format);
        if (!channels)
            return {Outcome::Failed,
                    "frames of kind " + std::to_string(parameters.format) + " are not known"};
        const std::string why =
            builder.beginFrame({*channels, parameters.depth, parameters.pixels_per_line,
                                parameters.bytes_per_line, parameters.lines < 0 ? -1 : parameters.lines});
        if (!why.empty())
            return {Outcome::Failed, why};
        if (Result result = readFrame(builder, progress); result.outcome != Outcome::Done)
            return result;
    } while (!parameters.last_frame);
    setScanning(nullptr);
    Result result;
    picture = builder.take(result.why);
    if (!result.why.empty())
        result.outcome = Outcome::Failed;
    return result;
}

Result Session::readFrame(PictureBuilder& builder, void (*progress)(double))
{
    constexpr auto shortWait = std::chrono::milliseconds(10);
    std::array<SANE_Byte, 65536> bytes;
    while (!isCancelled()) {
        SANE_Int length = 0;
        const SANE_Status status = sane_read(m_device, bytes.data(), SANE_Int(bytes.size()), &length);
        if (status == SANE_STATUS_EOF)
            return {};
        if (status != SANE_STATUS_GOOD)
            return failedBy("read", status);
        if (length <= 0) {
            std::this_thread::sleep_for(shortWait);
            continue;
        }
        if (!builder.add(std::span<const std::uint8_t>(bytes).first(std::size_t(length))))
            return {Outcome::Failed, "the picture is too large"};
        progress(builder.progress());
    }
    return cancelled();
}

} // namespace quorvia::scan
