// The panel below the picture: path, facts and description of the current image. While it is hidden nothing
// is asked of disk or image. Counting colours is dear and so waits until an image stays for a moment.
//
// What is typed as a description is saved half a second after the last key, or as soon as another image
// comes: always under the image that was shown when it was typed. What cannot be saved stays in the box, and
// the next key and the next image try again.
#pragma once

#include "app/ImageFacts.h"

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
        QWidget* pInformation;             ///< the pane; hidden while the panel is not wanted
        QWidget* pShowInfo;                ///< the pane inside it, which the panel fills
        std::function<QString()> fileName; ///< of the current image, native path; empty when it has none
        app::ImageQuestions image;
        std::function<void(const QString& directory)> openFolder; ///< shows it with the desktop's program
    };

    /// Lives in `parts.pShowInfo`.
    explicit InformationPanel(Parts parts);
    /// Saves what waits to be saved.
    ~InformationPanel() override;

    /// Shows the image that is current now, unless the pane is hidden. Saves first what was typed for the one
    /// before.
    void showCurrent();
    /// True while a changed description waits for its delay to go by.
    bool isDescriptionUnsaved() const { return m_tSaveDes->isActive(); }
    /// Saves the description that waits, if one does; also one that could not be saved before.
    void saveDescriptionNow();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    struct Target
    {
        QString image;
        QString sidecar; ///< of the state that the image had at the first key
    };

    void makeFields();
    void layOut();
    void takeColors();
    void takeFont();
    void placeColumns();
    void showImageFacts(std::optional<int> colors);
    void countColors();
    void showDescription();
    void noteEdit();
    void openFolder() const;

    Parts m_parts;
    QLineEdit* m_tPath;
    QPlainTextEdit* m_tFileInfo;
    QPlainTextEdit* m_tImageInfo;
    DescriptionField* m_tDes;
    QTimer* m_tSaveDes;
    int m_fileFactsWidth = 0; ///< pixels, as below
    int m_imageFactsWidth = 0;
    QTimer m_rest{this}; ///< runs while the colours of the image shown are not counted
    QString m_path;      ///< of the image that is shown
    Target m_target;     ///< where the description that waits is saved to; empty while none does
    QString m_stored;    ///< what tDes held when it was last like its file
};

} // namespace quorvia::viewer
