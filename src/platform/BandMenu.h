// A band as a native menu, with the bands that open from its tools as sub-menus. Made when it opens and
// filled after the listeners of BandOpen have had their say; follows the model while it is open.
#pragma once

#include "platform/ToolModel.h"

#include <QMenu>
#include <QPointer>
#include <QRect>

#include <limits>

class QHelpEvent;

namespace quorvia::platform {

class MenuCombo;

class BandMenu : public QMenu
{
    Q_OBJECT

  public:
    BandMenu(ToolModel* model, ToolBand* band, QWidget* parent);
    ~BandMenu() override;

    /// Asks the listeners of BandOpen and makes the rows; false when one cancelled. A sub-menu does this by
    /// itself. BandClose follows when the menu hides.
    bool prepare();

    /// Makes rows of `count` tools from the one at `first`, 0-based, on; of all from there when that is less.
    /// That opens no band, and nothing is asked or told.
    void preparePart(int first, int count);

    /// The global rectangle from which the menu was opened: a press there closes it and does no more.
    void setAnchor(const QRect& anchor) { m_anchor = anchor; }

    /// Closes a root menu. While one of its sub-menus asks whether it may open, the bands close at once, and
    /// the windows only after that: the toolkit needs them until then.
    void closeSafely();

    /// Ends a root menu that has closed: soon, but never while one of its windows handles an event. What a
    /// chosen row runs may let events be handled, among them the end of the menu that it was chosen in.
    void retire();

    void setVisible(bool visible) override;

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    enum class State { Closed, Cancelled, Open, Part };

    bool showTip(const QHelpEvent* help);
    void openAsSubMenu();
    void closeBand();
    void followBand();
    void fill();
    void addGroup(int first, int count);
    void addRow(Tool* tool);
    void addComboRow(Tool* tool);
    void follow(Tool* tool, QAction* row);
    void showTool(const ToolValues& values, QAction* row);
    QMenu* subMenuFor(const ToolValues& values);
    bool isOpenAbove(const ToolBand* band) const;
    BandMenu* parentMenu() const;
    BandMenu* rootMenu();
    MenuCombo* comboForKeys() const;

    QPointer<ToolModel> m_model;
    QPointer<ToolBand> m_band;
    State m_state = State::Closed;
    int m_first = 0;
    int m_count = std::numeric_limits<int>::max();
    bool m_group = false; ///< a part of the band that the menu above shows
    bool m_refillQueued = false;
    bool m_openingBelow = false;
    bool m_retired = false;
    int m_eventDepth = 0; ///< of the root menu: events that it and its sub-menus are handling
    QRect m_anchor;
};

} // namespace quorvia::platform
