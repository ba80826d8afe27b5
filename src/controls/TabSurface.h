// What the tabs of a strip are painted on, and what the mouse and the keys do there. It is as wide as all
// tabs together and knows nothing of scrolling. To a screen reader it is a list of tabs.
#pragma once

#include "controls/TabList.h"
#include "controls/TabProperties.h"

#include <QWidget>

namespace quorvia::controls {

class TabSurface : public QWidget
{
    Q_OBJECT

  public:
    /// `tabs` and `properties` outlive the surface.
    TabSurface(const TabList& tabs, const TabProperties& properties, QWidget* parent);

    const TabList& tabs() const { return m_tabs; }
    /// The tab at `position`; 0 beside the tabs.
    int tabAtPosition(QPoint position) const;
    /// Tells screen readers that another tab is selected.
    void announceSelection();

  Q_SIGNALS:
    // None of these comes from a strip without tabs.
    /// The pointer has moved to `position` with `buttons` held.
    void pointerMoved(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers, QPoint position);
    void pointerLeft();
    /// The left button came up over tab `index`, or a screen reader has pressed it.
    void tabPressed(int index);
    /// A key asks for tab `index`.
    void tabKeyed(int index);

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    void setKeyed(bool keyed);

    const TabList& m_tabs;
    const TabProperties& m_properties;
    bool m_keyed = false; ///< the focus came by a key, or a key was used: it is shown
};

} // namespace quorvia::controls
