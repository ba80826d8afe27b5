#include "output/PrintButtons.h"

#include "app/Twips.h"
#include "output/FlatButton.h"
#include "platform/OneLine.h"

#include <QHBoxLayout>
#include <QLabel>

namespace quorvia::output {

PrintButtons::PrintButtons(QWidget* parent) : QWidget(parent), m_lPrinter(new QLabel(this))
{
    constexpr int gap = 300; // twips
    setAccessibleName(QStringLiteral("Printing"));
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    const auto add = [this, row](const char* name, const QString& text, void (PrintButtons::*wanted)()) {
        auto* const button = new FlatButton(name, text, this);
        connect(button, &FlatButton::clicked, this, wanted);
        row->addWidget(button);
    };
    add("lAccept", QStringLiteral("Print"), &PrintButtons::printWanted);
    add("lClose", QStringLiteral("Close"), &PrintButtons::closeWanted);
    add("lSelectPrinter", QStringLiteral("Copies..."), &PrintButtons::copiesWanted);
    m_lPrinter->setObjectName(QStringLiteral("lPrinter"));
    m_lPrinter->setTextFormat(Qt::PlainText);
    m_lPrinter->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // a name may be long
    row->addSpacing(app::toPixels(gap));
    row->addWidget(m_lPrinter, 1);
}

void PrintButtons::sayPrinter(const QString& text)
{
    m_lPrinter->setText(text);
    m_lPrinter->setAccessibleName(text);
    m_lPrinter->setToolTip(platform::plainToolTip(text.trimmed()));
}

} // namespace quorvia::output
