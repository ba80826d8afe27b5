#include "output/Slideshow.h"

#include "app/Settings.h"
#include "output/SlideDelay.h"

#include <QPointer>

#include <algorithm>
#include <array>

namespace quorvia::output {

namespace {

QString pausedText()
{
    return QStringLiteral(" (Slideshow Paused) ");
}

QString stepOf(app::SlideMode mode)
{
    switch (mode) {
    case app::SlideMode::Reverse:
        return QStringLiteral("miPrevious");
    case app::SlideMode::Random:
        return QStringLiteral("miRandom");
    case app::SlideMode::Advance:
        break;
    }
    return QStringLiteral("miNext");
}

} // namespace

bool isPausingBand(const QString& name)
{
    constexpr std::array names = {"NewImage", "bOpen", "bFiles", "bFilmStrip"};
    constexpr std::array parts = {"mnuOnline", "SlideShow", "Wallpaper"};
    return std::any_of(names.begin(), names.end(),
                       [&name](const char* each) { return name == QLatin1String(each); }) ||
           std::any_of(parts.begin(), parts.end(),
                       [&name](const char* each) { return name.contains(QLatin1String(each)); });
}

Slideshow::Slideshow(SlideshowSinks sinks, QObject* parent)
    : QObject(parent), m_sinks(std::move(sinks)), m_slidemode(app::slideModeText(app::SlideMode::Advance))
{
    m_tSlide.setObjectName(QStringLiteral("tSlide"));
    m_tSlide.setParent(this);
    m_tSlide.setInterval(app::setting::Interval.fallback);
    connect(&m_tSlide, &QTimer::timeout, this, &Slideshow::tick);
}

void Slideshow::readSettings()
{
    m_slidemode = app::read(app::setting::slidemode);
    const int interval = app::read(app::setting::Interval);
    m_tSlide.setInterval(interval > 0 ? interval : app::setting::Interval.fallback);
    m_settingsRead = true;
}

void Slideshow::toggle()
{
    setRunning(!isRunning());
    m_sinks.updateToolbar();
}

void Slideshow::choose(app::SlideMode mode)
{
    m_slidemode = app::slideModeText(mode);
    app::save(app::setting::slidemode, m_slidemode);
    if (isRunning())
        m_sinks.updateToolbar(); // the mark of the mode
    else
        m_sinks.runTool(QStringLiteral("miSlideShow"));
}

void Slideshow::startAlone()
{
    const QPointer<Slideshow> alive(this);
    m_sinks.hideMain();
    m_sinks.runTool(QStringLiteral("miFullScreen"));
    if (alive)
        m_sinks.runTool(QStringLiteral("miSlideShow"));
    if (alive)
        m_slideShowOnly = true;
}

void Slideshow::bandOpens(const QString& name)
{
    if (!m_pausedByBand.isEmpty() || !isPausingBand(name))
        return;
    m_pausedEnabledState = isRunning();
    if (m_pausedEnabledState)
        m_sinks.setCaption(m_sinks.caption() + pausedText());
    setRunning(false);
    m_pausedByBand = name;
}

void Slideshow::bandCloses(const QString& name)
{
    if (m_pausedByBand.isEmpty() || name != m_pausedByBand)
        return;
    setRunning(m_pausedEnabledState);
    if (m_pausedEnabledState)
        m_sinks.setCaption(m_sinks.caption().remove(pausedText()));
    m_pausedByBand.clear();
}

QString Slideshow::delayText() const
{
    return output::delayText(interval());
}

QString Slideshow::typeDelay(const QString& text)
{
    return text.isEmpty() ? text : chooseDelay(text);
}

QString Slideshow::chooseDelay(const QString& text)
{
    const SlideDelay delay = typedDelay(text);
    m_tSlide.setInterval(delay.milliseconds);
    app::save(app::setting::Interval, delay.milliseconds);
    return delay.text;
}

void Slideshow::setRunning(bool running)
{
    if (running == isRunning())
        return;
    if (running)
        m_tSlide.start();
    else
        m_tSlide.stop();
}

void Slideshow::tick()
{
    if (!m_settingsRead || m_ticking) // opening an image lets events run, while the window loads too
        return;
    if (m_sinks.isAsking()) // what is asked is about this image, and not about the next one
        return;
    m_ticking = true;
    const QPointer<Slideshow> alive(this); // a command may end the window
    m_sinks.runTool(stepOf(app::slideModeOf(m_slidemode)));
    if (!alive)
        return;
    m_ticking = false;
    if (!m_slideShowOnly || m_sinks.isFullVisible())
        return;
    setRunning(false);
    m_sinks.closeFull();
    if (alive)
        m_sinks.closeMain();
}

} // namespace quorvia::output
