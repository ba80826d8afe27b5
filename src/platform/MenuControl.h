// The menu and docking control: a client area with bands that dock around it or float over it. A widget among
// others, not a window. Bands cost nothing until they are shown.
#pragma once

#include "platform/Band.h"

#include <QMainWindow>

#include <memory>
#include <vector>

namespace quorvia::platform {

class MenuControl : public QMainWindow
{
    Q_OBJECT

  public:
    explicit MenuControl(QWidget* parent = nullptr);
    ~MenuControl() override;

    /// Makes a band, hidden, without a client, at the side `area` (a number of dockingArea; left for one that
    /// is no side). `toolName` is the tool that hosts the client, `caption` what its title bar says.
    Band* addBand(const QString& name, const QString& toolName, const QString& caption,
                  int area = dockingArea::left);
    /// The band of that name, or null.
    Band* band(const QString& name) const;

    /// The widget between the bands; taken over. One that was there before is hidden and is the caller's
    /// again.
    void setClientArea(QWidget* widget);

    /// Places client area and bands for the present size at once. Until the control is first shown this does
    /// not happen by itself.
    void recalcLayout();

    QMenu* createPopupMenu() override;

  protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    friend class Band;

    Qt::DockWidgetArea sideOf(QDockWidget* dock) const { return dockWidgetArea(dock); }
    bool isClientAreaShown() const;
    bool isWindowClosing() const { return m_windowClosing; }
    /// The bands at one side share its extent: the others take over what `band` wants.
    void shareExtent(const Band* band);
    /// `band`, dropped by the user at a side, takes over what stands there.
    void takeSharedExtent(Band* band);
    std::vector<Band*> bandsAt(int area) const;
    void resizeSides(int near, int far, int available);
    int resizeSide(int area, int available);
    void noteExtents();
    void adoptExtents();
    void watchWindow();
    void noteWindowCloses();

    std::vector<std::unique_ptr<Band>> m_bands;
    std::vector<std::pair<Band*, int>> m_extentsAtPress;
    QPointer<QWidget> m_window;
    bool m_separatorHeld = false;
    bool m_windowClosing = false;
};

} // namespace quorvia::platform
