// Counts how often a widget is painted.
#pragma once

#include <QEvent>
#include <QWidget>

namespace quorvia::test {

class PaintCount : public QObject
{
  public:
    explicit PaintCount(QWidget* watched) { watched->installEventFilter(this); }
    int paints = 0;

  protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

} // namespace quorvia::test
