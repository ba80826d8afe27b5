#include "viewer/PrintCommand.h"

#include "app/Log.h"
#include "app/Product.h"
#include "output/frmImagePrint.h"
#include "platform/Dialogs.h"
#include "platform/Printer.h"
#include "platform/WaitCursor.h"
#include "viewer/frmImageView.h"

#include <QPointer>

namespace quorvia::viewer {

namespace {

std::shared_ptr<platform::Printer> askForPrinter()
{
    const platform::WaitCursor waiting; // some seconds for a server that does not answer
    return platform::systemPrinter();
}

} // namespace

void miPrint(frmImageView& window)
{
    std::shared_ptr<platform::Printer> printer = askForPrinter();
    if (!platform::isUsablePrinter(*printer)) {
        const QString title = app::productTitle();
        platform::showMessage(&window,
                              {platform::BoxKind::Plain, platform::BoxButtons::Ok, title,
                               title + QStringLiteral(" could not find a printer, or does not support "
                                                      "your current default printer.")});
        return;
    }
    const engine::ImageEngine& ix1 = *window.ix1();
    output::PrintedImage image{.picture = ix1.Picture(),
                               .size = QSize(ix1.ImageWidthTwips(), ix1.ImageHeightTwips()),
                               .path = ix1.FileName()};
    if (image.picture.isNull()) {
        app::WriteLog(QStringLiteral("Nothing to print. %1").arg(ix1.LastError()));
        return;
    }
    // On the heap and watched: the program may end, and the window with it, while it waits.
    const QPointer<output::frmImagePrint> print =
        new output::frmImagePrint(std::move(printer), std::move(image), &window);
    print->ShowX();
    delete print.data();
}

} // namespace quorvia::viewer
