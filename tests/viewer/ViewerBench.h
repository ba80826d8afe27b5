// A main window on the bench: a fresh home, pictures of one colour, message boxes written down instead of
// shown.
#pragma once

#include "platform/Dialogs.h"
#include "support/ScratchHome.h"
#include "viewer/frmImageView.h"

#include <QColor>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace quorvia::test {

class ViewerBench
{
  public:
    /// The windows load by `loader`.
    explicit ViewerBench(
        std::shared_ptr<engine::ImageLoader> loader = std::make_shared<engine::ImageLoader>());
    ~ViewerBench();

    ScratchHome home;
    std::vector<platform::MessageBox> boxes; ///< those that would have been shown

    /// Writes a picture of one colour; the format follows the name. Returns its full path.
    QString picture(const QString& name, const QColor& color, QSize size = {40, 30});
    /// Writes the folder "pics" with a.png (red), b.png (green) and "two words.png" (blue).
    void threePictures();
    /// Path of `name` inside the home directory.
    QString in(const char* name) const { return home.path(QLatin1String(name)); }
    /// Writes a TIFF with one page a colour.
    QString document(const QString& name, const std::vector<QColor>& pages);

    /// A main window for a command line, without its load step.
    viewer::frmImageView& make(const QStringList& arguments = {});
    /// The same with its load step run; its result is in `wentOn`.
    viewer::frmImageView& load(const QStringList& arguments = {});
    bool wentOn = false;
    /// The loader that the windows share.
    engine::ImageLoader& loader() { return *m_loader; }
    /// Ends the window, as closing it does.
    void close();
    /// Ends the window without closing it, as the end of the process does.
    void forget() { m_window.reset(); }

    /// The log's texts without date and time.
    QStringList logTexts() const;

    /// The colour in the middle of the viewport.
    QColor middle() const;

  private:
    platform::MessageBoxAnswerer m_answerer;
    std::shared_ptr<engine::ImageLoader> m_loader;
    std::unique_ptr<viewer::frmImageView> m_window;
};

} // namespace quorvia::test
