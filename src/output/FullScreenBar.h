// The bar of the full-screen window, `iFull`: its picture buttons, and the name of the picture. It knows no
// commands; it says which part was used. Keys stay with the window.
#pragma once

#include "output/FullScreenLayout.h"

#include <QAbstractButton>
#include <QSize>
#include <QString>

class QLabel;

namespace quorvia::output {

/// A button that is one of our drawings. Takes every mouse event over it, and no keys.
class PictureButton : public QAbstractButton
{
    Q_OBJECT

  public:
    PictureButton(const char* name, const QString& tip, const QString& picture, QWidget* parent);

    /// Shows the drawing `name`.
    void setPicture(const QString& name);
    QString picture() const { return m_picture; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QString m_picture;
};

class FullScreenBar : public QWidget
{
    Q_OBJECT

  public:
    explicit FullScreenBar(QWidget* parent);

    /// Takes the upper edge of a window that is `windowWidth` pixels wide.
    void layOut(int windowWidth);
    /// The tag of `iPlay`, "playing" or "stopped"; the picture goes with it.
    bool isTaggedPlaying() const { return m_playing; }
    void tagPlaying(bool playing);
    void showPlayPicture(bool playing);
    /// The picture of `iSize`.
    void showMode(FitMode mode);
    /// Shows the name of the picture, with its size in pixels where there is room, and `path` as a tip.
    void showName(const QString& name, QSize imagePixels, const QString& path);
    /// The button that stands for a step on (`Image2`) or back (`Image1`).
    QWidget* stepButton(bool forward) const;

  Q_SIGNALS:
    /// A button, or the bar itself, asks for what a key does too.
    void asked(FullScreenAction action);
    /// `iPlay` was clicked.
    void playClicked();

  protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    PictureButton* addButton(const char* name, const QString& tip, const QString& picture, int left);
    void fitName();

    PictureButton* m_image1 = nullptr;
    PictureButton* m_image2 = nullptr;
    PictureButton* m_iPlay = nullptr;
    PictureButton* m_iSize = nullptr;
    PictureButton* m_iClose = nullptr;
    QLabel* m_lImage = nullptr;
    QString m_name;
    QString m_longName;
    bool m_playing = false;
};

} // namespace quorvia::output
