#include "platform/PrintJob.h"

#include "platform/OneLine.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quorvia::platform {

namespace {

constexpr int usualResolution = 300;

/// What turns, scales, moves, mirrors or divides the page, and what is asked anew with each job.
constexpr std::array droppedOptions = {"booklet",
                                       "copies",
                                       "crop-to-fit",
                                       "fit-to-page",
                                       "fitplot",
                                       "landscape",
                                       "mirror",
                                       "natural-scaling",
                                       "number-up",
                                       "number-up-layout",
                                       "orientation-requested",
                                       "page-border",
                                       "page-bottom",
                                       "page-left",
                                       "page-ranges",
                                       "page-right",
                                       "page-set",
                                       "page-top",
                                       "position",
                                       "ppi",
                                       "print-scaling",
                                       "scaling"};

/// The highest resolution at which `paper` has no more pixels than a page may have.
int highestResolution(const QSize& paper)
{
    constexpr double mostPixels = 72e6;
    constexpr double twipsPerInch = 1440;
    const double area = double(paper.width()) * paper.height() / (twipsPerInch * twipsPerInch);
    return std::max(int(std::min(std::sqrt(mostPixels / area), double(usualResolution))), 1);
}

} // namespace

QByteArray jobName(const QString& title)
{
    constexpr qsizetype most = 255;
    constexpr int following = 0x80; // of a character's bytes in UTF-8, all but the first: 10xxxxxx
    constexpr int mask = 0xC0;
    QByteArray name = oneLine(title.left(most + 1)).toUtf8();
    if (name.size() <= most)
        return name;
    qsizetype end = most;
    while (end > 0 && (name.at(end) & mask) == following)
        --end;
    return name.left(end);
}

bool isKeptOption(QByteArrayView name)
{
    return std::none_of(droppedOptions.begin(), droppedOptions.end(), [name](QByteArrayView dropped) {
        return name.compare(dropped, Qt::CaseInsensitive) == 0;
    });
}

int firstCopies(const char* value)
{
    return std::max(QByteArray(value).toInt(), 1);
}

int pageResolution(const QList<int>& supported, const QSize& paper)
{
    int best = 0;
    for (const int resolution : supported) {
        if (resolution <= usualResolution)
            best = std::max(best, resolution);
    }
    const int wanted = best > 0 ? best : usualResolution;
    return paper.isEmpty() ? wanted : std::min(wanted, highestResolution(paper));
}

QSize paperTwips(const QSize& hundredths)
{
    constexpr double twips = 1440.0 / 2540;
    return {int(std::lround(hundredths.width() * twips)), int(std::lround(hundredths.height() * twips))};
}

QSize usualPaper(const QLocale& locale)
{
    const bool isLetter = locale.measurementSystem() == QLocale::ImperialUSSystem;
    return paperTwips(isLetter ? QSize(21590, 27940) : QSize(21000, 29700));
}

} // namespace quorvia::platform
