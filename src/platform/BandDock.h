// The window of one band: a dock widget with our title bar around the client. Made when the band is first
// shown.
#pragma once

#include <QDockWidget>

namespace quorvia::platform {

class Band;
class BandTitleBar;

class BandDock : public QDockWidget
{
    Q_OBJECT

  public:
    BandDock(Band* band, QWidget* parent);

    /// Shows `client` in the band; null leaves it empty. The client that stood there before is hidden and
    /// belongs to nobody.
    void setClient(QWidget* client);

    /// Floats it, shown, with this geometry on the desktop.
    void floatAt(const QRect& rect);

    BandTitleBar* titleBar() const { return m_titleBar; }

  Q_SIGNALS:
    void geometryChanged();
    /// The user begins to drag or resize.
    void pressed();
    /// Something closed the window of a floating band.
    void windowClosed();

  protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    QWidget* client() const;
    void focusClient();
    void passKeyOn(QKeyEvent* event);

    BandTitleBar* m_titleBar;
};

} // namespace quorvia::platform
