// The head of the list's panel: its two tabs, and the way on which they change places. It shows which face is
// in front; who clicks on the tab behind only asks for it.
#pragma once

#include "collections/TabAnimation.h"

#include <QTimer>
#include <QWidget>

namespace quorvia::collections {

class PanelTab;

class PanelTabs : public QWidget
{
    Q_OBJECT

  public:
    /// The tabs of the folders (0) and of the playlist (1), with `face` in front.
    PanelTabs(int face, QWidget* parent);

    /// Brings the tab of `face` (0 or 1) to the front, `animated` on its way, from where the tabs stand now.
    void showFace(int face, bool animated);
    /// Shows or hides the tab behind.
    void setTab2Visible(bool visible);
    PanelTab* tab1() const { return m_tab1; }
    /// The one behind.
    PanelTab* tab2() const { return m_tab2; }
    /// As high as the captions need.
    QSize sizeHint() const override;

  Q_SIGNALS:
    /// The user wants `face` (0 or 1) in front.
    void faceWanted(int face);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void tick();
    void settle();
    void wear(int face);
    void place();

    PanelTab* m_tab1;
    PanelTab* m_tab2;
    QTimer m_tAni;
    TabAnimation m_animation;
    int m_face;     ///< that belongs in front
    int m_worn = 0; ///< that tab1 shows
};

} // namespace quorvia::collections
