#include "collections/HelpLine.h"

#include "platform/OneLine.h"

#include <QPainter>

namespace quorvia::collections {

HelpLine::HelpLine(QWidget* parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

void HelpLine::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    const QString line = platform::oneLine(text());
    painter.drawText(contentsRect(), int(Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine),
                     fontMetrics().elidedText(line, Qt::ElideRight, contentsRect().width()));
}

} // namespace quorvia::collections
