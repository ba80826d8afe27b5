// The window that shows what the clipboard holds before it is pasted as a new image. Text becomes a picture
// here, so that a picture is what is pasted. Making the window reads the clipboard.
#pragma once

#include "platform/Clipboard.h"

#include <QDialog>
#include <QImage>

#include <functional>

class QAction;
class QKeyEvent;
class QLabel;
class QMenuBar;
class QPushButton;

namespace quorvia::controls {
class ScrollBar;
}

namespace quorvia::output {

class ClipSurface;
struct ClipboardView;

class frmClipboard : public QDialog
{
    Q_OBJECT

  public:
    struct Caller
    {
        QWidget* window = nullptr;                     ///< owns the preview; may be null
        std::function<void(const QImage&)> PasteImage; ///< gets the picture, null for an empty clipboard
    };

    /// Reads what is in `clipboard` and shows it once it is shown itself.
    explicit frmClipboard(Caller caller, platform::ClipboardReader clipboard);
    ~frmClipboard() override;

    /// Shows a window of its own for `caller`, modally, until it is closed. What is pasted goes to
    /// Caller::PasteImage, at the natural size, before that.
    static void ShowClipboard(const Caller& caller);

    /// Reads the clipboard anew and shows it.
    void GeneratePreview();

    void reject() override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    void buildMenu();
    void buildToolbar();
    void buildArea();
    void buildWindow();
    bool scrollByKey(QKeyEvent* event);
    void setAspectResize(bool aspect);
    void changeMode();
    void layOut();
    void placeParts(const ClipboardView& view, QSize clip);
    void scrollPicture();
    void finish();

    Caller m_caller;
    platform::ClipboardReader m_clipboard;
    QImage m_picture;     ///< in device pixels
    double m_ratio = 0;   ///< that the text was printed for
    bool m_aspect = true; ///< else scroll bars
    bool m_finished = false;

    QMenuBar* m_menuBar = nullptr;
    QLabel* m_lblTitle;
    QWidget* m_pToolbar;
    QPushButton* m_lblRepaste = nullptr;
    QPushButton* m_lblCancel = nullptr;
    QPushButton* m_cmdFinish = nullptr;
    QWidget* m_holder; ///< the room of area and bars
    ClipSurface* m_picBG = nullptr;
    ClipSurface* m_pClip = nullptr;
    QWidget* m_pTextP = nullptr;
    controls::ScrollBar* m_sbH = nullptr;
    controls::ScrollBar* m_sbV = nullptr;
    QAction* m_mnuAspectResize = nullptr;
    QAction* m_mnuScrollbars = nullptr;
};

} // namespace quorvia::output
