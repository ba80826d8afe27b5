// A scanner driver for tests that fails where it is told to, by $QUORVIA_ODD_DRIVER: "no device", "list
// hangs", "start hangs", "read fails", "read crashes" (both amid the picture), "close hangs" or "close
// crashes". Else it has one device, whose picture has 40 x 30 greys.
#include <sane/sane.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>

namespace {

constexpr SANE_Int width = 40;
constexpr SANE_Int height = 30;
int linesLeft = 0;

bool isTold(const char* fault)
{
    const char* const told = std::getenv("QUORVIA_ODD_DRIVER");
    return told && std::strcmp(told, fault) == 0;
}

[[noreturn]] void hang()
{
    for (;;)
        pause(); // whatever signals come
}

} // namespace

extern "C" {

SANE_Status sane_odd_init(SANE_Int* version, SANE_Auth_Callback)
{
    if (version)
        *version = SANE_VERSION_CODE(1, 0, 0);
    return SANE_STATUS_GOOD;
}

void sane_odd_exit() {}

SANE_Status sane_odd_get_devices(const SANE_Device*** list, SANE_Bool)
{
    if (isTold("list hangs"))
        hang();
    static const SANE_Device device{"one", "Odd", "Scanner", "flatbed scanner"};
    static std::array<const SANE_Device*, 2> devices{&device, nullptr};
    static std::array<const SANE_Device*, 1> none{nullptr};
    *list = isTold("no device") ? none.data() : devices.data();
    return SANE_STATUS_GOOD;
}

SANE_Status sane_odd_open(SANE_String_Const, SANE_Handle* handle)
{
    *handle = &linesLeft;
    return SANE_STATUS_GOOD;
}

void sane_odd_close(SANE_Handle)
{
    if (isTold("close hangs"))
        hang();
    if (isTold("close crashes"))
        std::abort();
}

const SANE_Option_Descriptor* sane_odd_get_option_descriptor(SANE_Handle, SANE_Int)
{
    return nullptr;
}

SANE_Status sane_odd_control_option(SANE_Handle, SANE_Int, SANE_Action, void*, SANE_Int*)
{
    return SANE_STATUS_UNSUPPORTED;
}

SANE_Status sane_odd_get_parameters(SANE_Handle, SANE_Parameters* parameters)
{
    *parameters = {SANE_FRAME_GRAY, SANE_TRUE, width, width, height, 8};
    return SANE_STATUS_GOOD;
}

SANE_Status sane_odd_start(SANE_Handle)
{
    if (isTold("start hangs"))
        hang();
    linesLeft = height;
    return SANE_STATUS_GOOD;
}

SANE_Status sane_odd_read(SANE_Handle, SANE_Byte* bytes, SANE_Int, SANE_Int* length)
{
    *length = 0;
    if (linesLeft == 0)
        return SANE_STATUS_EOF;
    if (linesLeft == height / 2 && isTold("read fails"))
        return SANE_STATUS_IO_ERROR;
    if (linesLeft == height / 2 && isTold("read crashes"))
        std::abort();
    for (SANE_Int x = 0; x < width; ++x)
        bytes[x] = SANE_Byte(x * 6);
    *length = width;
    --linesLeft;
    return SANE_STATUS_GOOD;
}

void sane_odd_cancel(SANE_Handle) {}

SANE_Status sane_odd_set_io_mode(SANE_Handle, SANE_Bool)
{
    return SANE_STATUS_GOOD;
}

SANE_Status sane_odd_get_select_fd(SANE_Handle, SANE_Int*)
{
    return SANE_STATUS_UNSUPPORTED;
}

} // extern "C"
