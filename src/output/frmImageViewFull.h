// The full-screen window: the current image alone, with a bar that shows itself when the pointer comes near.
// It loads nothing; it composes what the imaging control of the main window holds, and keeps the pixels of
// that, so that repainting is a blit. Dear is a composition: one pass over the picture.
#pragma once

#include "app/WaitingInput.h"
#include "output/FullScreenLayout.h"
#include "platform/ScreenSaverGuard.h"

#include <QColor>
#include <QImage>
#include <QPointer>
#include <QWidget>

#include <functional>

namespace quorvia::engine {
class ImageEngine;
}

namespace quorvia::output {

class FullScreenBar;

class frmImageViewFull : public QWidget
{
    Q_OBJECT

  public:
    /// What the window asks of the program. All functions are called.
    struct Sinks
    {
        std::function<void(const QString& name)> runTool;
        std::function<bool()> isSlideRunning; ///< `tSlide` is enabled
        std::function<bool()> isSlideShowOnly;
        std::function<void()> showMain;  ///< shows the main window, without giving it the keys
        std::function<void()> closeMain; ///< ends the program
        bool startedHidden = false;      ///< the command line holds "/miHide"
        bool startedForShow = false;     ///< the command line holds "xSlideShow"
    };

    explicit frmImageViewFull(Sinks sinks, QWidget* parent = nullptr);
    ~frmImageViewFull() override;

    /// Makes the window ready and shows it with what `image` holds; `parentView` is the main window, over
    /// which it lies. While it shows it is made ready anew. Lets pending events run, but no input.
    void LoadX(engine::ImageEngine* image, QWidget* parentView);
    /// Composes the window from `image` and paints it before it returns. Without an image, or where that
    /// fails, the background shows.
    void GenImage(engine::ImageEngine* image);
    /// The name of the file is drawn on the picture.
    bool ShowCaption() const { return m_showCaption; }
    /// Where the pointer was first while the slideshow ran alone, in twips; 0 when that is not known.
    int ExitMouseX() const { return m_exitMouseX; }
    /// What the first picture of a load has to cover for the present mode, in device pixels.
    QSize loadBox() const;

  Q_SIGNALS:
    /// The window was opened or closed, or has got another mode or size: loadBox() or its use may be another.
    void composingChanged();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    class Step;

    static FitMode presentMode();
    void follow(QWidget* parentView);
    void place();
    void composeAnew();
    void compose(engine::ImageEngine* image);
    void showTexts(const engine::ImageEngine* image, const QString& path);
    void paintCaption(QPainter& painter) const;
    void coverMain();
    void uncoverMain();
    void closingStep();
    QSize deviceSize() const;

    void perform(FullScreenAction action);
    void performOfBar(FullScreenAction action);
    void performSlowly(FullScreenAction action);
    void pressAndRun(bool forward);
    void leaveProgram();
    void changeMode();
    void toggleCaption();
    void clickPlay();
    void beginStep();
    void endStep();
    bool isDropped(bool isRepeat, FullScreenAction action) const;

    Sinks m_sinks;
    platform::ScreenSaverGuard m_saver;
    FullScreenBar* m_iFull;
    QPointer<QWidget> m_parentView;
    QPointer<engine::ImageEngine> m_viewedImage;
    QPointer<engine::ImageEngine> m_covered; ///< paints nothing, as this window hides it
    bool m_showCaption = false;
    int m_exitMouseX = 0; ///< twips
    bool m_open = false;  ///< the closing step has to come yet
    bool m_placing = false;

    QColor m_back = Qt::black;
    QImage m_pixels; ///< the visible part of the picture
    QPoint m_at;     ///< where that lies, device pixels
    QString m_name;
    double m_ratio = 0;                        ///< that it was composed for
    QPointer<engine::ImageEngine> m_unpainted; ///< whose composition has not been on the screen yet

    app::WaitingInput m_waiting; ///< after a step: the keys that came while it ran
    int m_steps = 0;             ///< that are running
};

} // namespace quorvia::output
