// A button that looks like a label on a pale grey ground. Enter presses it as the space bar does.
#pragma once

#include <QPushButton>

namespace quorvia::output {

class FlatButton : public QPushButton
{
  public:
    /// `name` is the object's; readers are told the text, which has no mnemonic.
    FlatButton(const char* name, const QString& text, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quorvia::output
