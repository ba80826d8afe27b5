// The window of the side bar that sums up the current file. Making it and changing its file are cheap; the
// colours are counted only while it shows, and only when an image has stayed for a moment.
#pragma once

#include "app/ImageFacts.h"
#include "output/ExifPanes.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <optional>

namespace quorvia::app {
class MainWindow;
}

namespace quorvia::output {

class frmImageEXIF : public QWidget
{
    Q_OBJECT

  public:
    struct Sinks
    {
        app::ImageQuestions image;
        std::function<void()> focusImage; ///< gives the keys back to the image
    };

    /// `main` outlives the window and gets the keys. The bar begins without a file.
    frmImageEXIF(app::MainWindow& main, Sinks sinks, QWidget* parent = nullptr);

    /// Shows the panes for the current image, whose file is at `path` (native path). Only the first pane when
    /// there is no such file.
    void InitBar(const QString& path);

    platform::PaneBar* barEXIF() const { return m_barEXIF; }

  protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void showPhoto();
    void countColors();
    void takeDesktopColors();

    app::MainWindow& m_main;
    Sinks m_sinks;
    platform::PaneBar* m_barEXIF;
    QTimer m_rest{this}; ///< runs while the bar shows a file whose colours are not counted
    QString m_path;
    std::optional<PhotoFacts> m_photo;
};

} // namespace quorvia::output
