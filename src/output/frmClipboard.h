// The window that shows what the clipboard holds before it is pasted as a new image. Text becomes a picture
// here, so that a picture is what is pasted. Making the window reads the clipboard.
#pragma once

#include "platform/Clipboard.h"

#include <QDialog>
#include <QImage>

#include <functional>

class QAction;
class QLabel;
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

    explicit frmClipboard(Caller caller, platform::ClipboardReader clipboard = platform::desktopClipboard());
    ~frmClipboard() override;

    /// Shows a window of its own for `caller`, modally, until it is closed. What is pasted goes to
    /// Caller::PasteImage, at the natural size, before that.
    static void ShowClipboard(const Caller& caller);

    /// Reads the clipboard anew and shows it.
    void GeneratePreview();

    void reject() override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    void buildMenu();
    void buildToolbar();
    void buildArea();
    void setAspectResize(bool aspect);
    void changeMode();
    void layOut();
    void placeParts(const ClipboardView& view);
    void finish();
    controls::ScrollBar* barFor(Qt::Orientation orientation) const;

    Caller m_caller;
    platform::ClipboardReader m_clipboard;
    QImage m_picture;   ///< in device pixels
    double m_ratio = 0; ///< that the text was printed for
    bool m_finished = false;

    QLabel* m_lblTitle;
    QWidget* m_pToolbar;
    QPushButton* m_lblRepaste;
    QPushButton* m_lblCancel;
    QPushButton* m_cmdFinish;
    QWidget* m_holder; ///< the room of area and bars
    ClipSurface* m_picBG;
    ClipSurface* m_pClip;
    QWidget* m_pTextP;
    controls::ScrollBar* m_sbH;
    controls::ScrollBar* m_sbV;
    QAction* m_mnuAspectResize;
    QAction* m_mnuScrollbars;
};

} // namespace quorvia::output
