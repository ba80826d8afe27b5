#include "platform/MenuCombo.h"

#include "platform/ToolCombo.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

namespace quorvia::platform {

namespace {

constexpr int textIndent = 28; // where the captions of the other rows begin, behind their icons

} // namespace

MenuCombo::MenuCombo(ToolModel* model, Tool* tool, QWidget* parent)
    : QWidgetAction(parent), m_label(new QLabel), m_combo(new ToolCombo(model, tool))
{
    auto* const box = new QWidget(parent);
    auto* const row = new QHBoxLayout(box);
    row->setContentsMargins(textIndent, 2, 6, 2);
    row->addWidget(m_label);
    row->addStretch();
    row->addWidget(m_combo);
    m_label->setBuddy(m_combo);
    box->setFocusPolicy(Qt::TabFocus);
    box->setFocusProxy(m_combo);
    setDefaultWidget(box);
    connect(m_combo, &ToolCombo::entered, this, &MenuCombo::entered);
    connect(this, &QAction::changed, m_label, [this] {
        if (m_label->text() != text())
            m_label->setText(text());
    });
}

bool MenuCombo::takeKey(QKeyEvent* event)
{
    ToolCombo* const combo = m_combo;
    if (!combo || !combo->isEnabled() || event->text().isEmpty() || !event->text().at(0).isPrint())
        return false;
    combo->setFocus(Qt::TabFocusReason);
    QCoreApplication::sendEvent(combo->lineEdit(), event);
    return true;
}

} // namespace quorvia::platform
