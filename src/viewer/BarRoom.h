// Keeps the upright scroll bar of a box of text from coming and going without end, which would hold the whole
// program: beside a bar that leaves it no room a text does not wrap and needs no bar, and without the bar it
// has room again.
#pragma once

#include <QObject>

class QPlainTextEdit;

namespace quorvia::viewer {

class BarRoom : public QObject
{
    Q_OBJECT

  public:
    /// From now on `box` has that bar only while it is wide enough to show a letter beside it. Belongs to
    /// `box`.
    explicit BarRoom(QPlainTextEdit* box);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void setPolicy();

    QPlainTextEdit* m_box;
};

} // namespace quorvia::viewer
