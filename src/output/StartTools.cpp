#include "output/StartTools.h"

namespace quorvia::output {

QStringList startTools(const StartFacts& facts)
{
    QStringList tools;
    if (facts.lineHoldsSwitch)
        return tools;
    if (facts.cView == 1)
        tools.append(QStringLiteral("miActualSize"));
    if (facts.cSlide == 1)
        tools.append(QStringLiteral("miSlideShow"));
    if (facts.cFull == 1 && facts.imageOpen)
        tools.append(QStringLiteral("miFullScreen"));
    return tools;
}

} // namespace quorvia::output
