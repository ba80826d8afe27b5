#include "system/OptionPages.h"

#include "system/OptionParts.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QFormLayout>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace quorvia::system {

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("OptionPages", text);
}

/// Adds a list with its caption before it. A list is as wide as its lines want it.
void addList(QFormLayout& rows, const QString& caption, QComboBox* list)
{
    rows.setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    rows.addRow(caption, list); // the caption becomes the list's
}

/// A check that says by its own caption how it stands.
QCheckBox* makeSwitch(const char* name, const QString& accessible, QWidget* parent)
{
    QCheckBox* const check = makeCheck(name, QStringLiteral("Off"), parent);
    check->setAccessibleName(accessible);
    return check;
}

void addAssociation(QBoxLayout& rows, QWidget* page)
{
    QGroupBox* const group = makeGroup(QStringLiteral("Association"), page);
    auto* const column = new QVBoxLayout(group);
    column->addWidget(makeButton("cmdAssociate", QStringLiteral("Make Quorvia Default Viewer"), group));
    column->addWidget(
        makeButton("cmdAssociateOther", QStringLiteral("Select 'Program' For Default Viewer..."), group));
    rows.addWidget(group);
}

void addThumbnails(QBoxLayout& rows, QWidget* page)
{
    QGroupBox* const group = makeGroup(QStringLiteral("Thumbnail Settings"), page);
    auto* const column = new QVBoxLayout(group);
    QLabel* const statistics = makeNote(QStringLiteral("Current:"), group);
    statistics->setObjectName(QStringLiteral("lThumbstats"));
    statistics->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    constexpr int lines = 2;
    statistics->setMinimumHeight(lines * statistics->fontMetrics().lineSpacing());
    column->addWidget(statistics);
    column->addWidget(makeButton("cmdClearThumbs", QStringLiteral("Clear Thumbnails"), group));
    rows.addWidget(group);
}

} // namespace

QFrame* makeInterfacePage(QWidget* parent)
{
    QFrame* const page = makePage("fInterface", QStringLiteral("General Settings"), parent);
    auto* const rows = new QVBoxLayout(page);
    auto* const view = new QFormLayout;
    addList(*view, QStringLiteral("Defualt View:"),
            new OptionList("cView", QStringLiteral("Defualt View"),
                           {QStringLiteral("Best Fit"), QStringLiteral("Actual  Size")}, page));
    rows->addLayout(view);
    addColor(*rows, "pBack", "cmdColor", page);
    rows->addWidget(
        makeCheck("chkLoadFileAvail", QStringLiteral("Load Image on Startup When Available"), page));
    rows->addWidget(
        makeCheck("cLoad", QStringLiteral("Load Previous Directory / Playlist on Startup"), page));
    rows->addWidget(makeCheck("cLayout", QStringLiteral("Load Previous Layout"), page));
    addAssociation(*rows, page);
    rows->addStretch();
    return page;
}

QFrame* makeFullscreenPage(QWidget* parent)
{
    QFrame* const page = makePage("fFullscreen", QStringLiteral("Fullscreen Settings"), parent);
    auto* const rows = new QVBoxLayout(page);
    auto* const view = new QFormLayout;
    addList(
        *view, translated("View:"),
        new OptionList("cFView", translated("Fullscreen View"),
                       {QStringLiteral("Actual Size"), QStringLiteral("Best Fit"), QStringLiteral("Stretch")},
                       page));
    rows->addLayout(view);
    addColor(*rows, "pFullBack", "cmdBackFullColor", page);
    rows->addWidget(makeCheck("chkBorder", QStringLiteral("Enable Border"), page));
    rows->addWidget(makeCheck("cFull", QStringLiteral("Enable Full Screen on Startup"), page));
    rows->addWidget(makeCheck("cSlide", QStringLiteral("Enable Slide Show on Startup"), page));
    rows->addStretch();
    return page;
}

QFrame* makeJpegPage(QWidget* parent)
{
    QFrame* const page = makePage("fJpeg", QStringLiteral("JPEG Settings"), parent);
    auto* const rows = new QVBoxLayout(page);
    QGroupBox* const group = makeGroup(QStringLiteral("JPEG Settings (Save JPEG Settings)"), page);
    auto* const form = new QFormLayout(group);
    constexpr int betweenRows = 10; // pixels: sliders are low
    form->setVerticalSpacing(betweenRows);
    form->addRow(translated("Sampling:"),
                 new OptionList("cboSample", translated("Sampling"),
                                {QStringLiteral("1:1:1 - None"), QStringLiteral("2:1:1 - 2 to 1 Horizontal"),
                                 QStringLiteral("4:1:1 - 2 to 1 Horizontal and Vertical"),
                                 QStringLiteral("2:1:1 - 2 to 1 Vertical")},
                                group));
    addSlider(*form, QStringLiteral("Luminance Quality:"), "sLum", "lLum", group);
    addSlider(*form, QStringLiteral("Chrome Factor:"), "sChrome", "lChrome", group);
    form->addRow(QStringLiteral("Grayscale:"), makeSwitch("chkGray", QStringLiteral("Grayscale"), group));
    form->addRow(makeNote(QStringLiteral("Lower Value = Better Quality, Less Compression  "
                                         "Higher Value = Less Quality, Better Compression"),
                          group));
    rows->addWidget(group);
    rows->addStretch();
    return page;
}

QFrame* makeAdvancedPage(QWidget* parent)
{
    QFrame* const page = makePage("fAdvanced", QStringLiteral("Advanced"), parent);
    auto* const rows = new QVBoxLayout(page);
    rows->addWidget(makeCheck("chkDyn", QStringLiteral("Show Dynamic Links?"), page));
    rows->addWidget(makeCheck("chkBeta", QStringLiteral("Enable Beta Features"), page));
    rows->addWidget(
        makeNote(translated("Some features are hidden while they are being tested. Check \"Enable "
                            "Beta Features\" to unlock them."),
                 page));
    addThumbnails(*rows, page);
    rows->addWidget(makeButton("cmdPurge", QStringLiteral("Purge Applicaion Registry Settings..."), page));
    rows->addStretch();
    return page;
}

} // namespace quorvia::system
