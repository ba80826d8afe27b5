// One band of the menu control: a window of the program's own (its client) that docks at a side of the client
// area or floats. While hidden it is a handful of numbers; its dock widget is made when it is first shown.
#pragma once

#include "platform/BandState.h"

#include <QObject>
#include <QPointer>
#include <QString>

class QWidget;

namespace quorvia::platform {

class BandDock;
class MenuControl;

/// Lengths are device-independent pixels. What is read back is what the user sees, after a drag of a splitter
/// too; of a hidden band it is what was seen or set last. A value that cannot be used is put right as by
/// usableState(), with the present state as the fallback.
class Band : public QObject
{
    Q_OBJECT

  public:
    ~Band() override;

    QString name() const { return m_name; }
    QString toolName() const { return m_toolName; }
    QString caption() const { return m_caption; }

    /// Hosts `client` in the band's tool and takes it over, a window too; null takes it out. A client that
    /// was there before is hidden and is the caller's again.
    void setClient(QWidget* client);
    QWidget* client() const { return m_client; }

    /// Whether the band is shown, as far as it goes: true also while the whole main window is not.
    bool visible() const { return m_state.visible; }
    void setVisible(bool visible);
    /// A number of dockingArea; other numbers are passed over.
    int dockingArea() const { return m_state.area; }
    void setDockingArea(int area);
    /// Width where it is docked left or right.
    int width() const { return state().width; }
    void setWidth(int width);
    /// Height where it is docked at the top or bottom.
    int height() const { return state().height; }
    /// Floats a docked band, docks a floating one where it was.
    void toggleFloating();

    /// All of it at once, to be stored.
    BandState state() const;
    /// The same as it was set, where there is too little room for it as well.
    const BandState& wantedState() const { return m_state; }
    /// Takes over what was stored, good or damaged.
    void apply(const BandState& state);

  Q_SIGNALS:
    void visibilityChanged(bool visible);
    void areaChanged(int area);
    /// The band is wider, higher or elsewhere than before. Comes with every step of a drag.
    void geometryChanged();

  private:
    friend class MenuControl;

    Band(MenuControl* control, const QString& name, const QString& toolName, const QString& caption,
         int area);

    void makeDock();
    void place();
    void placeFloating();
    void placeDocked();
    void change(const BandState& next);
    void noteArea();
    void noteClosed();
    void adoptFloatingRect();
    bool isFloating() const { return m_state.area == dockingArea::floating; }
    bool isDockedAt(int area) const { return m_state.visible && m_state.area == area; }

    // --- for the menu control
    BandDock* dock() const { return m_dock; }
    /// The width or height along which the side `area` grows, as wanted and as it is.
    int wantedExtent(int area) const;
    void setWantedExtent(int area, int extent);
    int actualExtent(int area) const;
    void showFloat();
    void hideFloat();
    void keepDespiteClose();

    MenuControl* m_control;
    QString m_name;
    QString m_toolName;
    QString m_caption;
    BandState m_state; ///< as wanted: what is on the screen can be less where there is no room
    int m_dockedArea;  ///< where it stands when it does not float, or stood last
    BandDock* m_dock = nullptr;
    QPointer<QWidget> m_client;
    bool m_placing = false;
    bool m_closePending = false;
};

} // namespace quorvia::platform
