// The window that composes one printed page from an image and prints it. Most changes compose the page anew,
// a few tenths of a second for a large image.
#pragma once

#include "output/PageSurface.h"
#include "output/PrintSettings.h"
#include "platform/Printer.h"

#include <QDialog>
#include <QImage>
#include <QTimer>

#include <memory>

namespace quorvia::output {

class PreviewBox;
class PrintButtons;
class PrintOptions;

/// The image that is to be printed.
struct PrintedImage
{
    QImage picture; ///< sRGB; may be null
    QSize size;     ///< at its natural size, in twips
    QString path;   ///< of its file; may be empty
};

class frmImagePrint : public QDialog
{
    Q_OBJECT

  public:
    /// Shows what was chosen last time for `image` on `printer`, which is not null, and gets the orientation.
    /// The page is composed when it is shown.
    frmImagePrint(std::shared_ptr<platform::Printer> printer, PrintedImage image, QWidget* owner = nullptr);
    ~frmImagePrint() override;

    /// Composes the page and shows the window modally until it is closed.
    void ShowX();
    /// Composes the page from what is chosen now and shows it.
    void UpdatePage();
    /// Composes the page; nothing while the window loads or composes already.
    void LoadPrint();
    /// Shows the page as it is.
    void GenPreview();
    /// The page as it is composed.
    const PageSurface& page() const { return m_pPrinter; }

    void done(int result) override;
    void reject() override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void connectParts();
    void applySettings();
    void saveSettings();
    void layOut();
    void turnPage();
    void takeDrawn(const QRectF& drawn);
    void askCopies();
    void chooseFont();
    void print();
    QString printPage();
    void sayPrinter();
    PageContent content() const;
    /// Of a device pixel of the screen, in which the boxes count.
    QSizeF twipsPerPixel() const;

    std::shared_ptr<platform::Printer> m_printer;
    PrintedImage m_pImage;
    PageSurface m_pPrinter;
    PrintSettings m_settings; ///< of these, font and colour are kept up to date
    bool m_loading = true;
    bool m_readyToDraw = false;
    bool m_printed = false;
    bool m_saved = true; ///< until it is shown
    QTimer m_tUpdate;

    PrintOptions* m_fPrintOptions;
    PreviewBox* m_pBox;
    PrintButtons* m_buttons;
};

} // namespace quorvia::output
