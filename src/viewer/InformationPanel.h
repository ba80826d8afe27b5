// The panel below the picture: path, facts and description of the current image. While it is hidden nothing
// is asked of disk or image. Counting colours is dear and so waits until an image stays for a moment.
#pragma once

#include "app/ImageFacts.h"
#include "viewer/DescriptionKeeper.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <optional>

class QLineEdit;
class QPlainTextEdit;

namespace quorvia::viewer {

class DescriptionField;

class InformationPanel : public QWidget
{
    Q_OBJECT

  public:
    struct Parts
    {
        QWidget* pShowInfo;                ///< the pane that the panel fills
        std::function<bool()> isShown;     ///< whether the panel can be seen
        std::function<QString()> fileName; ///< of the current image, native path; empty when it has none
        app::ImageQuestions image;
        std::function<void(const QString& directory)> openFolder; ///< shows it with the desktop's program
    };

    /// Lives in `parts.pShowInfo`.
    explicit InformationPanel(Parts parts);
    /// Saves what waits to be saved.
    ~InformationPanel() override;

    /// Shows the image that is current now, unless the panel cannot be seen. Saves first what was typed for
    /// the one before.
    void showCurrent();
    /// True while a changed description waits for its delay to go by.
    bool isDescriptionUnsaved() const { return m_keeper.isUnsaved(); }
    /// Saves the description that waits, if one does; also those that could not be saved before.
    void saveDescriptionNow() { m_keeper.saveNow(); }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void makeFields();
    void layOut();
    void takeColors();
    void takeFont();
    void placeColumns();
    void showImageFacts(std::optional<int> colors);
    void countColors();
    void openFolder() const;

    Parts m_parts;
    QLineEdit* m_tPath;
    QPlainTextEdit* m_tFileInfo;
    QPlainTextEdit* m_tImageInfo;
    DescriptionField* m_tDes;
    DescriptionKeeper m_keeper;
    int m_fileFactsWidth = 0; ///< pixels, as below
    int m_imageFactsWidth = 0;
    QTimer m_rest{this}; ///< runs while the colours of the image shown are not counted
    QString m_path;      ///< of the image that is shown
};

} // namespace quorvia::viewer
