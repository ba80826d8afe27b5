// A tab of the list's panel: an icon and a caption in the shape that the desktop gives to tabs.
#pragma once

#include <QWidget>

class QIcon;
class QLabel;

namespace quorvia::collections {

class PanelTab : public QWidget
{
    Q_OBJECT

  public:
    /// `number` (1 or 2) completes the names of the tab, its caption and its icon.
    PanelTab(int number, const QString& caption, const QIcon& icon, QWidget* parent);

    QString caption() const;
    /// As high as its caption needs.
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    QLabel* m_icon;
    QLabel* m_caption;
};

} // namespace quorvia::collections
