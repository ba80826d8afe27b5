#include "platform/ToolCombo.h"

#include "platform/ToolLook.h"
#include "platform/ToolModel.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace quorvia::platform {

namespace {

QStringList choicesOf(const QComboBox& box)
{
    QStringList choices;
    for (int index = 0; index < box.count(); ++index)
        choices.append(box.itemText(index));
    return choices;
}

} // namespace

ToolCombo::ToolCombo(ToolModel* model, Tool* tool, QWidget* parent)
    : QComboBox(parent), m_model(model), m_tool(tool)
{
    setObjectName(tool->name());
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr); // it would write more than was typed
    setMinimumContentsLength(5);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    // To leave the box is no end of an edit: only Enter and a choice are.
    disconnect(lineEdit(), &QLineEdit::editingFinished, this, nullptr);
    lineEdit()->installEventFilter(this);
    showTool();
    connect(tool, &Tool::changed, this, &ToolCombo::showTool);
    connect(lineEdit(), &QLineEdit::textEdited, this,
            [this](const QString& text) { report(text, &ToolModel::TextChange); });
    connect(this, &QComboBox::textActivated, this,
            [this](const QString& text) { report(text, &ToolModel::SelectionChange); });
}

void ToolCombo::showTool()
{
    const ToolValues& values = m_tool->values();
    if (choicesOf(*this) != values.choices) {
        clear();
        addItems(values.choices);
    }
    showText(values.text);
    setEnabled(values.enabled);
    setToolTip(tipOf(values));
    setAccessibleName(plainCaption(values));
}

void ToolCombo::showText(const QString& text)
{
    const int cursor = currentText() == text ? lineEdit()->cursorPosition() : int(text.size());
    if (currentIndex() != findText(text))
        setCurrentIndex(findText(text)); // from where Up and Down go on
    if (currentText() != text)
        setEditText(text);
    if (!lineEdit()->hasSelectedText())
        lineEdit()->setCursorPosition(cursor);
}

void ToolCombo::report(const QString& text, void (ToolModel::*signal)(Tool*))
{
    Tool* const tool = m_tool.data();
    if (!tool)
        return;
    tool->set(&ToolValues::text, text);
    ToolModel* const model = m_model.data();
    if (model && m_tool)
        Q_EMIT(model->*signal)(tool);
}

bool ToolCombo::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == lineEdit() && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            const QPointer<ToolCombo> self(this); // a listener may take the band apart
            report(currentText(), &ToolModel::SelectionChange);
            if (self)
                Q_EMIT entered();
            return true;
        }
    }
    return QComboBox::eventFilter(watched, event);
}

} // namespace quorvia::platform
