#include "platform/Printer.h"

#include "platform/CupsPrinter.h"

namespace quorvia::platform {

bool isUsablePrinter(int first, int second, const QString& deviceName)
{
    constexpr int least = 100;
    return first > least || (second > least && !deviceName.isEmpty());
}

bool isUsablePrinter(const Printer& printer)
{
    const QSize page = printer.pageSize();
    return isUsablePrinter(page.width(), page.height(), printer.deviceName());
}

std::unique_ptr<Printer> systemPrinter()
{
    return std::make_unique<CupsPrinter>();
}

} // namespace quorvia::platform
