#include "viewer/ImageCommands.h"

#include "app/mFile.h"
#include "app/Product.h"
#include "commands/frmImageViewSize.h"
#include "output/frmClipboard.h"
#include "output/frmImageConvert.h"
#include "system/ToolPaths.h"
#include "viewer/frmImageView.h"

#include <utility>

namespace quorvia::viewer {

namespace {

QString mailTool()
{
    return system::GetToolPath(QStringLiteral("postrel"), false);
}

} // namespace

ImageCommands::ImageCommands(frmImageView& window, std::shared_ptr<engine::ImageLoader> loader)
    : m_window(window), m_loader(std::move(loader)), m_saver(saverSinks()), m_edits(editSinks()),
      m_files(fileSinks()), m_mail(mailSinks())
{
}

commands::ImageSaver::Sinks ImageCommands::saverSinks()
{
    frmImageView* const w = &m_window;
    return {.owner = w,
            .ix1 = w->ix1(),
            .redraw = [w] { w->viewport()->layout(); },
            .openX = [w](const QString& path) { w->OpenX(path); },
            .written = [w](const QString& path) { w->filmstrip()->refreshEntry(path); },
            .setCaption = [this](const QString& caption) { setCaption(caption); },
            .updateToolbar = [w] { w->UpdateToolbar(); }};
}

commands::ImageEdits::Sinks ImageCommands::editSinks()
{
    frmImageView* const w = &m_window;
    return {.ix1 = w->ix1(),
            .redraw = [w] { w->viewport()->layout(); },
            .imageFileChanged = [w] { Q_EMIT w->opening()->ImageFileChanged(); },
            .updateStatus = [w] { w->UpdateStatus(); },
            .updateToolbar = [w] { w->UpdateToolbar(); },
            .setCaption = [this](const QString& caption) { setCaption(caption); },
            .saveImage = [this](const QString& path, bool force) { m_saver.SaveImage(path, force); },
            .runTool = [w](const QString& name) { w->RunTool(name); },
            .askForSize = [this] { commands::askForSize(&m_window, m_loader, *m_window.ix1()); }};
}

commands::FileOperations::Sinks ImageCommands::fileSinks()
{
    frmImageView* const w = &m_window;
    return {.owner = w,
            .currentFile = [w] { return w->currentFile(); },
            .fileOfMenu = [w] { return w->interfaceTools()->imageOfMenu(); },
            .closeImage = [this] { closeImage(); },
            .refresh = [w] { w->RunTool(QStringLiteral("miRefresh")); },
            .next = [this] { openNext(); },
            .openX = [w](const QString& path) { w->OpenX(path); },
            .renamed = [w](const QString& before,
                           const QString& after) { w->playlist()->RenamePlaylist(before, after); },
            .refreshStripEntry =
                [w](const QString& path) {
                    w->list()->finishRebuild(); // which the strip follows
                    w->filmstrip()->refreshEntry(path);
                }};
}

commands::ImageMail::Sinks ImageCommands::mailSinks()
{
    return {.owner = &m_window,
            .ix1 = m_window.ix1(),
            .toolPath = mailTool,
            .start = [](const QString& program, const QStringList& arguments) {
                return platform::startProgram(program, arguments, QString());
            }};
}

void ImageCommands::paste()
{
    output::frmClipboard::ShowClipboard(
        {.window = &m_window, .PasteImage = [this](const QImage& picture) { m_edits.PasteImage(picture); }});
}

collections::BatchServices ImageCommands::batchServices()
{
    frmImageView* const w = &m_window;
    return {.loadConversion =
                [this](const QString& source, const QString& target, bool yesToAll) {
                    return converter()->LoadConversion(source, target, yesToAll);
                },
            .beginBatch = [this] { converter()->beginBatch(); },
            .endBatch = [this] { converter()->endBatch(); },
            .expectNext = [this](const QString& source) { converter()->expectNext(source); },
            .setUpdate = [w](bool visible) { w->SetUpdate(visible, 0); },
            .releaseImage = [w] { w->ix1()->SetFileName(QString()); },
            .mailTool = mailTool};
}

void ImageCommands::stopConversion()
{
    if (m_converter)
        m_converter->stop();
}

output::frmImageConvert* ImageCommands::converter()
{
    if (!m_converter)
        m_converter = new output::frmImageConvert(m_loader, &m_window);
    return m_converter;
}

void ImageCommands::setCaption(const QString& caption)
{
    if (!m_window.panes()->isViewShown()) // hidden from a glance, the name as well
        return;
    m_caption = QString(caption).replace(QLatin1String("[*]"), QLatin1String("[*][*]")); // else it is a mark
    m_window.setWindowTitle(m_caption);
}

void ImageCommands::restoreCaption()
{
    if (m_caption.isEmpty())
        return;
    m_window.setWindowTitle(m_window.windowTitle().replace(m_caption, app::GetAppDisplayName()));
    m_caption.clear();
}

void ImageCommands::closeImage()
{
    m_window.ix1()->SetFileName(QString());
    m_window.opening()->CheckTiff();
    m_window.UpdateStatus();
    m_window.layoutPanes();
}

/// To the next image of the list as it is without the file that has just gone. A playlist keeps its entry: it
/// is passed over, since nobody has to be told that the file is not there.
void ImageCommands::openNext()
{
    collections::PictureList* const list = m_window.list();
    list->finishRebuild();
    for (int first = 0; first < list->ListCount(); ++first) {
        if (!app::FileExists(list->ListFile(first)))
            continue;
        if (first == 0)
            m_window.RunTool(QStringLiteral("miNext"));
        else
            list->SetListIndex(first);
        return;
    }
}

} // namespace quorvia::viewer
