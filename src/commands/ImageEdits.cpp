#include "commands/ImageEdits.h"

#include "app/Log.h"
#include "app/mFile.h"
#include "app/Paths.h"
#include "app/Product.h"
#include "engine/ImageEngine.h"

#include <QFileInfo>

#include <array>

namespace quorvia::commands {

std::span<const FixedSize> fixedSizes()
{
    static constexpr std::array sizes{
        FixedSize{"miThumb80x80", 80, 80},     FixedSize{"miThumb120x120", 120, 120},
        FixedSize{"miThumb240x240", 240, 240}, FixedSize{"miThumb320x320", 320, 320},
        FixedSize{"miThumb480x480", 480, 480}, FixedSize{"miThumb480x360", 480, 360},
        FixedSize{"miThumb320x240", 320, 240}, FixedSize{"miThumb240x180", 240, 180},
        FixedSize{"miThumb120x90", 120, 90},   FixedSize{"miThumb80x60", 80, 60},
    };
    return sizes;
}

QString editedCaption(const QString& name, QSize pixels, int colors)
{
    return name +
           QStringLiteral(" [%1x%2] - %3 Colors | ")
               .arg(QString::number(pixels.width()), QString::number(pixels.height()),
                    QString::number(colors)) +
           app::productTitle() + QStringLiteral(" v") +
           app::versionText(app::productVersion(), QStringLiteral("."));
}

bool ImageEdits::hasImage() const
{
    return m_sinks.ix1->ImagePixelWidth() > 0;
}

/// Runs a transform. False, with a line in the log, when it has failed.
bool ImageEdits::transform(const std::function<void()>& step) const
{
    step();
    const QString error = m_sinks.ix1->LastError(); // empty after a transform that was made
    if (error.isEmpty() || !hasImage())
        return error.isEmpty();
    app::WriteLog(QStringLiteral("Not changed: %1: %2").arg(m_sinks.ix1->FileName(), error));
    return false;
}

/// Runs what may leave the control's error as it was. A line in the log when there is a new one.
void ImageEdits::attempt(const std::function<void()>& step) const
{
    const QString before = m_sinks.ix1->LastError();
    step();
    const QString error = m_sinks.ix1->LastError();
    if (!error.isEmpty() && error != before)
        app::WriteLog(QStringLiteral("Image operation failed: %1: %2").arg(m_sinks.ix1->FileName(), error));
}

void ImageEdits::showEdited()
{
    m_sinks.imageFileChanged();
    m_sinks.updateStatus();
    EnableEditing();
}

void ImageEdits::rotate(double degrees)
{
    engine::ImageEngine* const ix1 = m_sinks.ix1;
    if (!hasImage())
        return;
    const bool isTurned = transform([&] { ix1->Rotate(degrees); });
    const QString file = ix1->FileName();
    const bool isWhole = ix1->IsComplete();
    if (!isWhole) // a file that is still on its way, maybe
        app::WriteLog(QStringLiteral("Turned on the screen only, since its file is not whole: ") + file);
    if (!isWhole || !engine::encoderFor(QFileInfo(file).suffix())) {
        m_sinks.redraw();
        showEdited();
        return;
    }
    if (isTurned) // else the file would lose quality for nothing
        m_sinks.saveImage(file, false);
    m_sinks.runTool(QStringLiteral("miRefresh"));
}

void ImageEdits::bevel()
{
    constexpr int raised = 1;
    constexpr int width = 10;     // pixels
    constexpr int intensity = 10; // of 25
    transform([this] { m_sinks.ix1->Bevel(raised, width, intensity); });
    showEdited();
}

void ImageEdits::resize(const FixedSize& size)
{
    transform([&] { m_sinks.ix1->Resize(size.width, size.height); });
    m_sinks.redraw();
    showEdited();
}

void ImageEdits::customResize()
{
    attempt(m_sinks.askForSize);
    m_sinks.redraw();
    m_sinks.updateStatus();
    m_sinks.updateToolbar();
    EnableEditing();
}

void ImageEdits::copy()
{
    attempt([this] { m_sinks.ix1->CopyToClipboard(); });
}

void ImageEdits::PasteImage(const QImage& picture)
{
    if (picture.isNull())
        return;
    engine::ImageEngine* const ix1 = m_sinks.ix1;
    ix1->SetFileName(QString());
    ix1->SetPaintEnabled(true);
    ix1->SetPicture(picture);
    ix1->Refresh();
    app::MakePath(app::InstallPath());
    m_sinks.saveImage(app::InstallPath() + QStringLiteral("untitled.bmp"), true);
    EnableEditing();
}

void ImageEdits::EnableEditing()
{
    if (!hasImage())
        return;
    engine::ImageEngine* const ix1 = m_sinks.ix1;
    const int colors = ix1->UniqueColors(); // first: it may turn out that there are no pixels
    m_sinks.setCaption(editedCaption(app::SplitPathName(ix1->FileName(), 2),
                                     QSize(ix1->ImagePixelWidth(), ix1->ImagePixelHeight()), colors));
}

} // namespace quorvia::commands
