#include "viewer/DescriptionField.h"

#include <QFocusEvent>
#include <QScopedValueRollback>

#include <utility>

namespace quorvia::viewer {

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
    setPlainText(text);
}

QString DescriptionField::text() const
{
    // The plain text of the box would have common blanks in place of those that do not break.
    QString text = document()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    return text;
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
