// A line of help: one line of plain text that ends in dots where it has no room.
#pragma once

#include <QLabel>

namespace quorvia::collections {

class HelpLine : public QLabel
{
    Q_OBJECT

  public:
    explicit HelpLine(QWidget* parent = nullptr);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quorvia::collections
