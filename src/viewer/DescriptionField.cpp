#include "viewer/DescriptionField.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace quorvia::viewer {

namespace {

/// Whether so many characters of `text` follow each other without a blank or line end that the search for a
/// place to break the line, begun anew for each line of the box, would take minutes.
bool hasEndlessWord(const QString& text)
{
    constexpr qsizetype longest = 1000;
    qsizetype length = 0;
    return std::any_of(text.begin(), text.end(), [&length](QChar character) {
        length = character.isSpace() ? 0 : length + 1;
        return length > longest;
    });
}

bool wouldType(const QKeyEvent& key)
{
    const bool plain =
        (key.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier | Qt::GroupSwitchModifier)) ==
        Qt::NoModifier;
    const QString text = key.text();
    return plain && key.key() != Qt::Key_Escape && !text.isEmpty() && !text.at(0).isNull();
}

} // namespace

DescriptionField::DescriptionField(QWidget* parent) : QPlainTextEdit(parent)
{
    setTabChangesFocus(true);
    connect(this, &QPlainTextEdit::textChanged, this, [this] {
        if (!m_showing)
            Q_EMIT edited();
    });
}

void DescriptionField::showText(const QString& text)
{
    const QScopedValueRollback showing(m_showing, true);
    clear(); // else what stands here would be laid out once more, the new way
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    wrapFor(text);
    setPlainText(text);
}

void DescriptionField::wrapFor(const QString& text)
{
    if (hasEndlessWord(text))
        setWordWrapMode(QTextOption::WrapAnywhere);
}

void DescriptionField::insertFromMimeData(const QMimeData* source)
{
    wrapFor(source->text());
    QPlainTextEdit::insertFromMimeData(source);
}

QString DescriptionField::text() const
{
    // The plain text of the box would have common blanks in place of those that do not break.
    QString text = document()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    return text;
}

void DescriptionField::keyPressEvent(QKeyEvent* event)
{
    if (!isReadOnly() && event->matches(QKeySequence::InsertLineSeparator)) {
        textCursor().insertBlock(); // a line end like any other, so that other programs know it
        ensureCursorVisible();
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
    if (isReadOnly() && wouldType(*event))
        event->accept(); // whoever writes here does not mean the window's commands
}

void DescriptionField::focusInEvent(QFocusEvent* event)
{
    QPlainTextEdit::focusInEvent(event);
    // Back from a menu or another window the user goes on where he was.
    if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason)
        return;
    m_enteredByMouse = event->reason() == Qt::MouseFocusReason;
    selectAll();
}

void DescriptionField::mouseReleaseEvent(QMouseEvent* event)
{
    QPlainTextEdit::mouseReleaseEvent(event);
    // The press has put the caret somewhere. Whoever drew a selection wants that one.
    if (std::exchange(m_enteredByMouse, false) && !textCursor().hasSelection())
        selectAll();
}

} // namespace quorvia::viewer
