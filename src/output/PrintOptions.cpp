#include "output/PrintOptions.h"

#include "output/EffectsMenu.h"
#include "output/FlatButton.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

namespace quorvia::output {

namespace {

QLabel* captionOf(QWidget* parent, const QString& text, QWidget* buddy = nullptr)
{
    auto* const label = new QLabel(text, parent);
    label->setBuddy(buddy);
    return label;
}

/// The tabulator comes to the chosen one, also before any of them has had the focus.
void leadToChosen(const QButtonGroup& group)
{
    for (QAbstractButton* const button : group.buttons())
        button->setFocusPolicy(button->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
}

/// Buttons of which one is chosen, named `name` and the number of each, the first one chosen.
QButtonGroup* addChoices(QWidget* parent, QBoxLayout& box, const char* name, const QStringList& texts)
{
    auto* const group = new QButtonGroup(parent);
    for (const QString& text : texts) {
        auto* const choice = new QRadioButton(text, parent);
        const int line = int(group->buttons().size());
        choice->setObjectName(QLatin1String(name) + QString::number(line));
        choice->setAccessibleName(text);
        group->addButton(choice, line);
        box.addWidget(choice);
    }
    QObject::connect(group, &QButtonGroup::idToggled, group, [group] { leadToChosen(*group); });
    group->button(0)->setChecked(true);
    return group;
}

void choose(const QButtonGroup& group, int line)
{
    group.button(line)->setChecked(true);
}

} // namespace

PrintOptions::PrintOptions(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("fPrintOptions"));
    setAccessibleName(tr("Print options"));
    auto* const rows = new QVBoxLayout(this);
    addTitle(*rows);
    addFooter(*rows);
    addLayout(*rows);
    addAreas(*rows);
    addBoxes(*rows);
    addLooks(*rows);
    rows->addStretch();
}

// --- building, from top to bottom, which is the way of the tabulator

void PrintOptions::addTitle(QBoxLayout& rows)
{
    m_txtTitle = new QLineEdit(this);
    m_txtTitle->setObjectName(QStringLiteral("txtTitle"));
    m_txtTitle->setAccessibleName(QStringLiteral("Page Title"));
    rows.addWidget(captionOf(this, QStringLiteral("Page Title:"), m_txtTitle));
    rows.addWidget(m_txtTitle);
    m_cboTitle = addList("cboTitle", QStringLiteral("Title Align"),
                         {QStringLiteral("Left"), QStringLiteral("Center"), QStringLiteral("Right")});
    m_cboTitle->setCurrentIndex(int(TitleAlign::Center));
    auto* const row = new QHBoxLayout;
    row->addWidget(captionOf(this, QStringLiteral("Title Align:"), m_cboTitle));
    row->addWidget(m_cboTitle, 1);
    rows.addLayout(row);
    connect(m_txtTitle, &QLineEdit::textChanged, this, &PrintOptions::titleTyped);
    connect(m_cboTitle, &QComboBox::currentIndexChanged, this, &PrintOptions::changed);
}

void PrintOptions::addFooter(QBoxLayout& rows)
{
    rows.addWidget(captionOf(this, QStringLiteral("Footer Info:")));
    m_chkFilename = addCheck("chkFilename", QStringLiteral("Include Filename"));
    m_chkPath = addCheck("chkPath", tr("Include Path"));
    auto* const row = new QHBoxLayout;
    row->addWidget(m_chkFilename);
    row->addWidget(m_chkPath);
    row->addStretch();
    rows.addLayout(row);
}

void PrintOptions::addLayout(QBoxLayout& rows)
{
    auto* const row = new QHBoxLayout;
    row->addWidget(captionOf(this, tr("Layout:")));
    m_oLayout = addChoices(this, *row, "oLayout", {QStringLiteral("Portrait"), QStringLiteral("Landscape")});
    row->addStretch();
    rows.addLayout(row);
    connect(m_oLayout, &QButtonGroup::idToggled, this, [this](int, bool on) {
        if (on)
            Q_EMIT layoutChanged();
    });
}

void PrintOptions::addAreas(QBoxLayout& rows)
{
    rows.addWidget(captionOf(this, tr("Alignment:")));
    m_oA = addChoices(
        this, rows, "oA",
        {QStringLiteral("Center Image and Resize"), QStringLiteral("Align Top-Center and Resize"),
         QStringLiteral("Align Top-Left and Resize"), QStringLiteral("Align Top-Left (Without Rezize)"),
         QStringLiteral("Custom Alignment"), QStringLiteral("Center Image (Without Resize)")});
    connect(m_oA, &QButtonGroup::idToggled, this, [this](int, bool on) {
        if (on)
            Q_EMIT changed();
    });
}

void PrintOptions::addBoxes(QBoxLayout& rows)
{
    auto* const grid = new QGridLayout;
    m_boxes = {addBox(*grid, 0, "txtLeft", QStringLiteral("Left:")),
               addBox(*grid, 1, "txtTop", QStringLiteral("Top:")),
               addBox(*grid, 2, "txtWidth", QStringLiteral("Width:")),
               addBox(*grid, 3, "txtHeight", QStringLiteral("Height:"))};
    rows.addLayout(grid);
}

/// Two boxes a line, each with its caption before it.
QLineEdit* PrintOptions::addBox(QGridLayout& grid, int place, const char* name, const QString& caption)
{
    constexpr int mostLetters = 20;
    constexpr int shownLetters = 9;
    auto* const box = new QLineEdit(this);
    box->setObjectName(QLatin1String(name));
    box->setAccessibleName(caption.chopped(1));
    box->setMaxLength(mostLetters);
    box->setMinimumWidth(box->fontMetrics().averageCharWidth() * shownLetters);
    const int line = place / 2;
    const int column = place % 2 * 2;
    grid.addWidget(captionOf(this, caption, box), line, column);
    grid.addWidget(box, line, column + 1);
    connect(box, &QLineEdit::textChanged, this, &PrintOptions::boxTyped);
    return box;
}

void PrintOptions::addLooks(QBoxLayout& rows)
{
    auto* const lFont = new FlatButton("lFont", QStringLiteral("Font..."), this);
    connect(lFont, &FlatButton::clicked, this, &PrintOptions::fontWanted);
    m_effects = new FlatButton("FXButton", QStringLiteral("FX Features >"), this);
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(lFont);
    buttons->addWidget(m_effects);
    rows.addLayout(buttons);
    m_FXFeatures = new EffectsMenu(this);
    connect(m_FXFeatures, &EffectsMenu::changed, this, &PrintOptions::changed);
    connect(m_effects, &FlatButton::clicked, this,
            [this] { m_FXFeatures->popup(m_effects->mapToGlobal(m_effects->rect().topRight())); });

    m_cboZoom = addList("cboZoom", tr("Zoom"), zoomTexts());
    m_cboZoom->setCurrentIndex(usualZoom);
    auto* const row = new QHBoxLayout;
    row->addWidget(captionOf(this, tr("Zoom:"), m_cboZoom));
    row->addWidget(m_cboZoom, 1);
    rows.addLayout(row);
    connect(m_cboZoom, &QComboBox::currentIndexChanged, this, &PrintOptions::zoomChanged);

    m_lPage = new QLabel(this);
    m_lPage->setObjectName(QStringLiteral("lPage"));
    m_lPage->setTextFormat(Qt::PlainText);
    rows.addWidget(m_lPage);
}

QCheckBox* PrintOptions::addCheck(const char* name, const QString& text)
{
    auto* const check = new QCheckBox(text, this);
    check->setObjectName(QLatin1String(name));
    check->setAccessibleName(text);
    connect(check, &QCheckBox::toggled, this, &PrintOptions::changed);
    return check;
}

QComboBox* PrintOptions::addList(const char* name, const QString& accessible, const QStringList& lines)
{
    auto* const list = new QComboBox(this);
    list->setObjectName(QLatin1String(name));
    list->setAccessibleName(accessible);
    list->addItems(lines);
    return list;
}

// --- what is chosen

QString PrintOptions::title() const
{
    return m_txtTitle->text();
}

TitleAlign PrintOptions::titleAlign() const
{
    return TitleAlign(m_cboTitle->currentIndex());
}

bool PrintOptions::withName() const
{
    return m_chkFilename->isChecked();
}

bool PrintOptions::withDirectory() const
{
    return m_chkPath->isChecked();
}

AreaMode PrintOptions::area() const
{
    return AreaMode(m_oA->checkedId());
}

void PrintOptions::chooseArea(AreaMode area)
{
    choose(*m_oA, int(area));
}

PageBoxes PrintOptions::boxes() const
{
    return {m_boxes[0]->text(), m_boxes[1]->text(), m_boxes[2]->text(), m_boxes[3]->text()};
}

void PrintOptions::setBoxes(const PageBoxes& boxes)
{
    m_boxes[0]->setText(boxes.left);
    m_boxes[1]->setText(boxes.top);
    m_boxes[2]->setText(boxes.width);
    m_boxes[3]->setText(boxes.height);
}

int PrintOptions::layoutLine() const
{
    return m_oLayout->checkedId();
}

double PrintOptions::zoom() const
{
    return zoomOf(m_cboZoom->currentText());
}

Decorations PrintOptions::decorations() const
{
    return m_FXFeatures->chosen();
}

void PrintOptions::show(const PrintSettings& settings)
{
    choose(*m_oLayout, settings.layout);
    choose(*m_oA, settings.area);
    m_cboTitle->setCurrentIndex(settings.titleAlign);
    m_cboZoom->setCurrentIndex(settings.zoom);
    m_chkFilename->setChecked(settings.withName);
    m_chkPath->setChecked(settings.withDirectory);
}

void PrintOptions::put(PrintSettings& settings) const
{
    settings.layout = layoutLine();
    settings.area = int(area());
    settings.titleAlign = int(titleAlign());
    settings.zoom = m_cboZoom->currentIndex();
    settings.withName = withName();
    settings.withDirectory = withDirectory();
}

void PrintOptions::sayPage(const QString& text)
{
    m_lPage->setText(text);
    m_lPage->setAccessibleName(text);
}

} // namespace quorvia::output
