// The navigator over the pages of a TIFF: a small panel with the page's number between two buttons.
#pragma once

#include <QFrame>
#include <QString>

class QLabel;
class QToolButton;

namespace quorvia::viewer {

/// True when `name` ends in "tif" or "tiff", without case; no point is needed before it.
bool isTiffName(const QString& name);
/// "PAGE of COUNT".
QString pageCaption(int page, int count);
/// The count that a caption made by pageCaption ends in; 0 when it spells none.
int totalFromCaption(const QString& caption);

class PageNavigator : public QFrame
{
    Q_OBJECT

  public:
    explicit PageNavigator(QWidget* parent);

    /// Shows "PAGE of COUNT".
    void showPage(int page, int count);
    /// Stands at the upper edge of its pane and ends at `right`, in pixels of the pane.
    void place(int right);
    /// The count on show.
    int total() const;
    /// Hidden with the focus within, it leaves that to its window.
    void setVisible(bool visible) override;

  Q_SIGNALS:
    void nextClicked();
    void previousClicked();

  private:
    QLabel* m_lTiffImg;
    int m_right = 0; ///< where it ends
};

} // namespace quorvia::viewer
