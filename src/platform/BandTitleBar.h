// The title bar of a band, docked or floating: the caption, a button that floats or docks it, a button that
// closes it. Painted from the palette alone; drags are the dock widget's business.
#pragma once

#include <QWidget>

class QAbstractButton;

namespace quorvia::platform {

class BandTitleBar : public QWidget
{
    Q_OBJECT

  public:
    BandTitleBar(const QString& caption, QWidget* parent);

    /// Names the first button after what it does next: it docks a floating band.
    void setFloating(bool floating);

    /// What the bar is painted with.
    static QColor faceColor(const QPalette& palette);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  Q_SIGNALS:
    /// The user wants a docked band to float, or a floating one docked.
    void floatingToggled();
    void closeClicked();
    /// One of the buttons has the focus and no use for the key. Whoever takes it accepts the event; else it
    /// goes up as ever.
    void keyPressed(QKeyEvent* event);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    QString m_caption;
    QAbstractButton* m_float;
    QAbstractButton* m_close;
};

} // namespace quorvia::platform
