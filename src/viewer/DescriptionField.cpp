#include "viewer/DescriptionField.h"

#include "viewer/BarRoom.h"
#include "viewer/LongLines.h"

#include <QClipboard>
#include <QDrag>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QTextBlock>
#include <QTextLayout>

#include <utility>

namespace quorvia::viewer {

namespace {

bool wouldType(const QKeyEvent& key)
{
    const bool plain =
        (key.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier | Qt::GroupSwitchModifier)) ==
        Qt::NoModifier;
    const QString text = key.text();
    return plain && key.key() != Qt::Key_Escape && !text.isEmpty() && !text.at(0).isNull();
}

/// Also true of some that change nothing.
bool mayEdit(const QKeyEvent& key)
{
    const bool deletes = key.key() == Qt::Key_Delete || key.key() == Qt::Key_Backspace;
    return (deletes || !key.text().isEmpty() || key.matches(QKeySequence::Paste)) &&
           !key.matches(QKeySequence::Copy);
}

} // namespace

DescriptionField::DescriptionField(QWidget* parent) : QPlainTextEdit(parent)
{
    setTabChangesFocus(true);
    new BarRoom(this);
    connect(this, &QPlainTextEdit::textChanged, this, [this] {
        if (!m_showing)
            Q_EMIT edited();
    });
}

void DescriptionField::showText(const QString& text)
{
    if (m_moving)
        QDrag::cancel(); // what is dragged is gone
    const QScopedValueRollback showing(m_showing, true);
    clear();
    setUndoRedoEnabled(false);
    insertLines(textCursor(), text);
    setUndoRedoEnabled(true);
    moveCursor(QTextCursor::Start);
}

QMimeData* DescriptionField::createMimeDataFromSelection() const
{
    auto* const selection = new QMimeData;
    selection->setText(selectedLines(textCursor()));
    return selection;
}

bool DescriptionField::canInsertFromMimeData(const QMimeData* source) const
{
    return source->hasText() &&
           !source->hasUrls(); // a file that is dropped here opens, as all over the window
}

void DescriptionField::insertFromMimeData(const QMimeData* source)
{
    if (isReadOnly() || !source->hasText())
        return;
    QString text = source->text();
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(u'\r', u'\n');
    text.replace(QChar::ParagraphSeparator, u'\n');
    insertLines(textCursor(), text);
    ensureCursorVisible();
}

QString DescriptionField::text() const
{
    // The plain text of the box would have common blanks in place of those that do not break.
    QTextCursor all(document());
    all.select(QTextCursor::Document);
    return selectedLines(all);
}

bool DescriptionField::holds(QLatin1String word) const
{
    return document()->characterCount() == word.size() + 1 && text() == word;
}

/// Takes the caret to the other side of a place where a long line goes on in the next block, so that `key`
/// deletes a letter of the text.
void DescriptionField::stepOverJoint(const QKeyEvent& key)
{
    QTextCursor cursor = textCursor();
    const bool back =
        key.key() == Qt::Key_Backspace && cursor.atBlockStart() && continuesLine(cursor.block());
    const bool forward =
        key.key() == Qt::Key_Delete && cursor.atBlockEnd() && continuesLine(cursor.block().next());
    if (cursor.hasSelection() || back == forward)
        return;
    cursor.movePosition(back ? QTextCursor::PreviousCharacter : QTextCursor::NextCharacter);
    setTextCursor(cursor);
}

void DescriptionField::keyPressEvent(QKeyEvent* event)
{
    if (mayEdit(*event))
        Q_EMIT aboutToEdit();
    if (m_waiting.isPassing()) { // nor must it run the window's commands; Esc is never lost there
        event->setAccepted(event->key() != Qt::Key_Escape);
        return;
    }
    const bool endsLine = event->matches(QKeySequence::InsertParagraphSeparator) ||
                          event->matches(QKeySequence::InsertLineSeparator);
    if (!isReadOnly() && endsLine) { // all alike, so that other programs know them
        insertLines(textCursor(), QStringLiteral("\n"));
        ensureCursorVisible();
        return;
    }
    if (!isReadOnly())
        stepOverJoint(*event);
    QPlainTextEdit::keyPressEvent(event);
    if (isReadOnly() && wouldType(*event))
        event->accept(); // whoever writes here does not mean the window's commands
}

void DescriptionField::inputMethodEvent(QInputMethodEvent* event)
{
    Q_EMIT aboutToEdit();
    if (!m_waiting.isPassing())
        QPlainTextEdit::inputMethodEvent(event);
}

QString DescriptionField::composed() const
{
    return textCursor().block().layout()->preeditAreaText();
}

void DescriptionField::endComposition()
{
    if (!isComposing())
        return;
    QInputMethod* const method = QGuiApplication::inputMethod();
    if (hasFocus())
        method->commit();
    if (const QString left = composed(); !left.isEmpty()) { // it leaves that to the program
        QInputMethodEvent done;
        done.setCommitString(left);
        QPlainTextEdit::inputMethodEvent(&done);
    }
    if (hasFocus())
        method->reset();
}

void DescriptionField::contextMenuEvent(QContextMenuEvent* event)
{
    Q_EMIT aboutToEdit();
    QPlainTextEdit::contextMenuEvent(event);
}

void DescriptionField::dropEvent(QDropEvent* event)
{
    Q_EMIT aboutToEdit();
    QPlainTextEdit::dropEvent(event);
}

void DescriptionField::focusInEvent(QFocusEvent* event)
{
    QPlainTextEdit::focusInEvent(event);
    // Back from a menu or another window the user goes on where he was.
    if (event->reason() == Qt::PopupFocusReason)
        return;
    Q_EMIT entered();
    if (event->reason() == Qt::ActiveWindowFocusReason)
        return;
    if (event->reason() != Qt::MouseFocusReason) {
        selectAll();
        return;
    }
    // A press on a selection would begin to drag it.
    QTextCursor cursor = textCursor();
    cursor.clearSelection();
    setTextCursor(cursor);
    m_enteredByMouse = true;
    QMetaObject::invokeMethod(this, &DescriptionField::selectAfterEntering, Qt::QueuedConnection);
}

/// For a press beside the text, as on the scroll bar.
void DescriptionField::selectAfterEntering()
{
    if (std::exchange(m_enteredByMouse, false))
        selectAll();
}

void DescriptionField::mousePressEvent(QMouseEvent* event)
{
    m_entering = std::exchange(m_enteredByMouse, false) ? event->button() : Qt::NoButton;
    if (m_entering == Qt::RightButton)
        selectAll(); // for the menu
    QPlainTextEdit::mousePressEvent(event);
}

void DescriptionField::mouseMoveEvent(QMouseEvent* event)
{
    const QScopedValueRollback moving(m_moving, true);
    QPlainTextEdit::mouseMoveEvent(event);
}

void DescriptionField::mouseReleaseEvent(QMouseEvent* event)
{
    const bool entering = std::exchange(m_entering, Qt::NoButton) == event->button();
    if (event->button() == Qt::MiddleButton)
        Q_EMIT aboutToEdit();
    if (entering && event->button() == Qt::MiddleButton) {
        pasteOverAll();
        return;
    }
    QPlainTextEdit::mouseReleaseEvent(event);
    // The press has put the caret somewhere. Whoever drew a selection wants that one.
    if (entering && !textCursor().hasSelection())
        selectAll();
}

/// Like what is typed after entering, what is selected elsewhere replaces the text.
void DescriptionField::pasteOverAll()
{
    selectAll();
    const QClipboard* const clipboard = QGuiApplication::clipboard();
    if (!clipboard->supportsSelection())
        return;
    if (const QMimeData* const selected = clipboard->mimeData(QClipboard::Selection))
        insertFromMimeData(selected);
}

} // namespace quorvia::viewer
