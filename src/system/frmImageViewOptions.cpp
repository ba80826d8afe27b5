#include "system/frmImageViewOptions.h"

#include "app/Colors.h"
#include "app/EraseSettings.h"
#include "app/Log.h"
#include "app/mFile.h"
#include "app/Product.h"
#include "controls/gnTab.h"
#include "system/OptionControls.h"
#include "system/OptionPages.h"
#include "system/OptionParts.h"

#include <QCheckBox>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QStyle>
#include <QVBoxLayout>

#include <utility>

namespace quorvia::system {

namespace {

bool saysYes(QWidget* owner, const platform::MessageBox& box)
{
    return platform::showMessage(owner, box) == platform::BoxAnswer::Yes;
}

/// A colour that lies `part` (0 to 1) of the way from one to the other.
QColor between(const QColor& from, const QColor& to, double part)
{
    const auto mix = [part](int one, int other) { return qRound(one + (other - one) * part); };
    return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

/// The selected tab joins the page below it; the others lie on a ground a little apart from it.
void colorTabs(controls::gnTab& tabs, const QPalette& palette)
{
    constexpr double ground = 0.15;
    constexpr double line = 0.5;
    const QColor page = palette.color(QPalette::Window);
    const QColor ink = palette.color(QPalette::WindowText);
    const auto number = [](const QColor& color) { return quint32(app::toColorNumber(color)); };
    controls::TabProperties colors = tabs.properties();
    colors.BackColor = colors.TabBackColor = number(between(page, ink, ground));
    colors.ActiveTabBackColor = colors.SelectedTabHoverColor = number(page);
    colors.TabTextColor = colors.ActiveTabTextColor = colors.HoverColour = number(ink);
    colors.SeperatorLineColor = number(between(page, ink, line));
    tabs.setProperties(colors);
}

} // namespace

frmImageViewOptions::frmImageViewOptions(OptionSinks sinks, QWidget* owner)
    : QDialog(owner), m_sinks(std::move(sinks)), m_gTab(new controls::gnTab(this)),
      m_pages(new QStackedWidget(this))
{
    setObjectName(QStringLiteral("frmImageViewOptions"));
    setWindowTitle(app::productTitle() + QStringLiteral(" Preferences"));
    setModal(true);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->setSpacing(0);
    rows->addWidget(m_gTab);
    rows->addWidget(m_pages, 1);
    addPages();
    addButtons();
    connectButtons();
    addKeys();
    loadOptions();
}

// --- building

void frmImageViewOptions::addPages()
{
    struct Tab
    {
        const char* caption;
        const char* key;
        QFrame* (*makePage)(QWidget*);
    };
    static constexpr Tab tabs[] = {{"General Settings", "General", &makeInterfacePage},
                                   {"Fullscreen Settings", "Fullscreen", &makeFullscreenPage},
                                   {"JPEG Settings", "JPEG", &makeJpegPage},
                                   {"Advanced", "Advanced", &makeAdvancedPage}};
    m_gTab->setObjectName(QStringLiteral("gTab"));
    m_gTab->setAccessibleName(tr("Pages"));
    colorTabs(*m_gTab, palette());
    connect(m_gTab, &controls::gnTab::TabSelected, m_pages,
            [this](const QString&, const QString&, int index) { m_pages->setCurrentIndex(index - 1); });
    for (const Tab& tab : tabs) {
        if (const auto added = m_gTab->AddTab(QLatin1String(tab.caption), QLatin1String(tab.key)); !added)
            app::WriteLog(QStringLiteral("No tab ") + QLatin1String(tab.key));
        m_pages->addWidget(tab.makePage(m_pages));
    }
    fitTabs();
}

/// So wide that all tabs are seen.
void frmImageViewOptions::fitTabs()
{
    m_gTab->setMinimumWidth(m_gTab->sizeHint().width());
}

void frmImageViewOptions::addButtons()
{
    auto* const row = new QHBoxLayout;
    const auto margin = [this](QStyle::PixelMetric side) { return style()->pixelMetric(side); };
    row->setContentsMargins(margin(QStyle::PM_LayoutLeftMargin), 0, margin(QStyle::PM_LayoutRightMargin),
                            margin(QStyle::PM_LayoutBottomMargin));
    row->setSpacing(margin(QStyle::PM_LayoutHorizontalSpacing));
    row->addStretch();
    for (const auto& [name, text] : {std::pair("Command2", "Accept"), std::pair("Command1", "Cancel")})
        row->addWidget(makeButton(name, QLatin1String(text), this));
    part<QPushButton>("Command2")->setDefault(true);
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void frmImageViewOptions::connectButtons()
{
    const auto connectTo = [this](const char* name, auto step) {
        connect(part<QPushButton>(name), &QPushButton::clicked, this, step);
    };
    connectTo("Command2", &frmImageViewOptions::accept);
    connectTo("Command1", &frmImageViewOptions::reject);
    connectTo("cmdColor", [this] { chooseColor("pBack"); });
    connectTo("cmdBackFullColor", [this] { chooseColor("pFullBack"); });
    connectTo("cmdAssociate", &frmImageViewOptions::associate);
    connectTo("cmdAssociateOther", &frmImageViewOptions::associateOther);
    connectTo("cmdClearThumbs", &frmImageViewOptions::clearThumbnails);
    connectTo("cmdPurge", &frmImageViewOptions::purge);
    connect(part<QCheckBox>("chkGray"), &QCheckBox::toggled, this, &frmImageViewOptions::sayGray);
}

void frmImageViewOptions::addKeys()
{
    const auto add = [this](const QKeySequence& keys, int step) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, [this, step] { stepTab(step); });
    };
    add(Qt::CTRL | Qt::Key_PageDown, 1); // the sliders would take them
    add(Qt::CTRL | Qt::Key_PageUp, -1);
}

/// Ctrl+Tab and, with Shift, the way back. No shortcuts: keyboards name the tabulator with Shift in two ways.
void frmImageViewOptions::keyPressEvent(QKeyEvent* event)
{
    const bool isTab = event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab;
    if (!isTab || !event->modifiers().testFlag(Qt::ControlModifier)) {
        QDialog::keyPressEvent(event);
        return;
    }
    const bool back = event->key() == Qt::Key_Backtab || event->modifiers().testFlag(Qt::ShiftModifier);
    stepTab(back ? -1 : 1);
}

// --- the options

void frmImageViewOptions::loadOptions()
{
    for (const OptionRow& row : optionRows()) {
        QWidget& control = *part(row.control);
        showValue(control, row.kind, row.key.fallback); // as it is designed
        if (const std::optional<int> stored = readOption(row))
            showValue(control, row.kind, *stored);
    }
    showColor(*part("pBack"), m_sinks.backColor());
    sayGray();
}

void frmImageViewOptions::saveOptions()
{
    for (const OptionRow& row : optionRows()) {
        if (!saveOption(row, shownValue(*part(row.control), row.kind)))
            app::WriteLog(QStringLiteral("Option not saved: ") + QLatin1String(row.key.name));
    }
}

void frmImageViewOptions::accept()
{
    saveOptions();
    m_sinks.setBackColor(app::paneColor(part("pBack")));
    QDialog::accept();
}

// --- the pages

void frmImageViewOptions::stepTab(int step)
{
    const int count = m_gTab->tabs().count();
    m_gTab->SetSelectedTab((m_gTab->SelectedTab() - 1 + step + count) % count + 1);
}

void frmImageViewOptions::chooseColor(const char* patch)
{
    const QPointer<frmImageViewOptions> alive = this;
    const auto chosen = platform::askColor(
        this, {.title = QStringLiteral("Background Color"), .start = app::paneColor(part(patch))});
    if (alive && chosen)
        showColor(*part(patch), *chosen);
}

void frmImageViewOptions::sayGray()
{
    auto* const check = part<QCheckBox>("chkGray");
    check->setText(check->isChecked() ? QStringLiteral("On") : QStringLiteral("Off"));
}

void frmImageViewOptions::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!std::exchange(m_isCounted, true))
        countThumbnails();
}

void frmImageViewOptions::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        colorTabs(*m_gTab, palette());
    else if (event->type() == QEvent::FontChange)
        fitTabs();
}

void frmImageViewOptions::countThumbnails()
{
    m_sinks.countThumbnails([label = QPointer(part<QLabel>("lThumbstats"))](const ThumbnailStatistics& now) {
        if (label)
            label->setText(statisticsText(now));
    });
}

// --- what is done at once

void frmImageViewOptions::associate()
{
    const QPointer<frmImageViewOptions> alive = this;
    if (!saysYes(this, associateBox()) || !alive)
        return;
    app::save(app::setting::Associate, 1);
    m_sinks.applyAssociations();
}

void frmImageViewOptions::associateOther()
{
    const QPointer<frmImageViewOptions> alive = this;
    const QString program = platform::chooseFile(this, programChooser());
    if (alive && app::FileExists(program))
        m_sinks.associateOther(program);
}

void frmImageViewOptions::clearThumbnails()
{
    const QPointer<frmImageViewOptions> alive = this;
    if (saysYes(this, clearThumbnailsBox()) && alive)
        m_sinks.clearThumbnails(this);
    if (alive)
        countThumbnails();
}

void frmImageViewOptions::purge()
{
    const QPointer<frmImageViewOptions> alive = this;
    if (app::askToErase(this) && alive)
        m_sinks.endProcess();
}

} // namespace quorvia::system
