// The text box of an image's description: typing after entering it replaces what stands there. It tells of
// what the user changes, never of what it is given. A text of a mebibyte costs when it is shown (some 50 ms),
// not when it is typed into.
#pragma once

#include "app/WaitingInput.h"

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
    /// Whether `word` is all of the text. Cheap, however long the text is.
    bool holds(QLatin1String word) const;

    /// Whether an input method has letters here that still change; text() is without them.
    bool isComposing() const { return !composed().isEmpty(); }
    /// Takes such letters into the text as they are, and has the input method begin anew.
    void endComposition();
    /// Drops the keys that wait now: they were meant for the text shown before.
    void dropWaitingInput() { m_waiting.letPass(); }

  Q_SIGNALS:
    /// The focus comes, and not from a menu of the box's own. Whoever listens may show another text before
    /// the user reads this one.
    void entered();
    /// The user is about to do what may change the text. Whoever listens may show another one before.
    void aboutToEdit();
    void edited();

  protected:
    QMimeData* createMimeDataFromSelection() const override;
    bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    QString composed() const;
    void selectAfterEntering();
    void pasteOverAll();
    void stepOverJoint(const QKeyEvent& key);

    app::WaitingInput m_waiting{this}; ///< passes while keys are dropped
    bool m_showing = false;
    bool m_enteredByMouse = false;             ///< the press that brought the focus has not come yet
    Qt::MouseButton m_entering = Qt::NoButton; ///< of that press, until it is let go
    bool m_moving = false;                     ///< the mouse, which may drag text out
};

} // namespace quorvia::viewer
