#include "viewer/PreferencesCommand.h"

#include "app/Colors.h"
#include "app/EraseSettings.h"
#include "collections/ThumbnailTally.h"
#include "system/frmImageViewOptions.h"
#include "system/mAssociation.h"
#include "system/OtherViewer.h"
#include "viewer/frmImageView.h"

#include <QPointer>

namespace quorvia::viewer {

namespace {

system::OptionSinks sinksOf(frmImageView& window, collections::ThumbnailTally& tally)
{
    using collections::ThumbnailCount;
    return {.backColor = [&window] { return app::paneColor(window.pContain()); },
            .setBackColor =
                [&window](const QColor& color) {
                    app::setPaneColor(window.pContain(), color);
                    window.ix1()->SetBackColor(color);
                },
            .applyAssociations = &system::ApplyAssociations,
            .associateOther = [&window](const QString& program) { system::associateOther(&window, program); },
            .countThumbnails =
                [&tally](const std::function<void(const system::ThumbnailStatistics&)>& told) {
                    tally.begin(collections::thumbnailDirectory(), [told](const ThumbnailCount& count) {
                        told({count.files.size(), count.megabytes});
                    });
                },
            .clearThumbnails = [&tally](QWidget* owner) { tally.clear(owner); },
            .endProcess = &app::endProcess};
}

} // namespace

void miPref(frmImageView& window)
{
    if (auto* const open = window.findChild<system::frmImageViewOptions*>()) {
        open->raise();
        open->activateWindow();
        return;
    }
    collections::ThumbnailTally tally;
    // On the heap and watched: the program may end, and the window with it, while it waits.
    const QPointer<system::frmImageViewOptions> options =
        new system::frmImageViewOptions(sinksOf(window, tally), &window);
    options->exec();
    delete options.data();
}

} // namespace quorvia::viewer
