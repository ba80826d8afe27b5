// The text box of an image's description: typing after entering it replaces what stands there. It tells of
// what the user changes, never of what it is given. Long texts cost when they are shown, not when typed into.
#pragma once

#include <QPlainTextEdit>

namespace quorvia::viewer {

class DescriptionField : public QPlainTextEdit
{
    Q_OBJECT

  public:
    explicit DescriptionField(QWidget* parent = nullptr);

    /// Shows `text`; what was typed before cannot be taken back into it.
    void showText(const QString& text);
    /// The text character by character as it was typed or given, lines ending in "\n".
    QString text() const;

  Q_SIGNALS:
    void edited();

  protected:
    void insertFromMimeData(const QMimeData* source) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    void wrapFor(const QString& text);

    bool m_showing = false;
    bool m_enteredByMouse = false; ///< the click that brought the focus is not over
};

} // namespace quorvia::viewer
