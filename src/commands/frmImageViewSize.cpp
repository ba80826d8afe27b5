#include "commands/frmImageViewSize.h"

#include "engine/ImageEngine.h"
#include "platform/Icons.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QVBoxLayout>

#include <utility>

namespace quorvia::commands {

namespace {

constexpr int lockSide = 16;     // device-independent pixels
constexpr int mostLetters = 12;  // of a number, with room for a slip
constexpr int shownLetters = 10; // of the field's width

} // namespace

frmImageViewSize::frmImageViewSize(std::shared_ptr<engine::ImageLoader> loader, QWidget* parent)
    : QDialog(parent), m_ixOri(new engine::ImageEngine(std::move(loader), this)),
      m_width(makeRow("W", tr("Width"))), m_height(makeRow("H", tr("Height"))),
      m_Check1(new QCheckBox(QStringLiteral("Constrain Aspects"), this)), m_iLock(new QLabel(this))
{
    setObjectName(QStringLiteral("frmImageViewSize"));
    setWindowTitle(tr("Custom Resize"));
    setAccessibleName(windowTitle());
    m_ixOri->setObjectName(QStringLiteral("ixOri"));
    m_ixOri->hide();
    m_Check1->setObjectName(QStringLiteral("Check1"));
    m_Check1->setAccessibleName(m_Check1->text());
    m_iLock->setObjectName(QStringLiteral("iLock"));
    m_iLock->setAccessibleName(tr("Aspects are constrained"));
    drawLock();

    auto* const buttons = new QDialogButtonBox(this);
    auto* const cmdApply = buttons->addButton(QStringLiteral("Apply"), QDialogButtonBox::AcceptRole);
    auto* const cmdCancel = buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    cmdApply->setObjectName(QStringLiteral("cmdApply"));
    cmdApply->setAccessibleName(cmdApply->text());
    cmdApply->setDefault(true);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setAccessibleName(cmdCancel->text());
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* const rows = new QVBoxLayout(this);
    rows->setSizeConstraint(QLayout::SetFixedSize);
    rows->addWidget(makeDimensions());
    rows->addWidget(m_Check1);
    rows->addWidget(buttons);

    connectRow(m_width, m_fields.width, &SizeFields::takeWidth);
    connectRow(m_height, m_fields.height, &SizeFields::takeHeight);
    connect(m_Check1, &QCheckBox::toggled, this, [this](bool on) {
        m_fields.constrain(on);
        m_iLock->setVisible(on);
        Display();
    });
    addKey("Alt+W", m_width.text);
    addKey("Alt+H", m_height.text);
    connect(new QShortcut(QKeySequence(QStringLiteral("Alt+C")), this), &QShortcut::activated, m_Check1,
            &QCheckBox::click);
    connect(new QShortcut(QKeySequence(QStringLiteral("Alt+A")), this), &QShortcut::activated, cmdApply,
            &QPushButton::click);
}

/// Field and list of one length; their names begin with "t" and "c" before `letter`.
frmImageViewSize::Row frmImageViewSize::makeRow(const char* letter, const QString& length)
{
    auto* const text = new QLineEdit(this);
    text->setObjectName(QStringLiteral("t") + QLatin1String(letter));
    text->setAccessibleName(length);
    text->setMaxLength(mostLetters);
    text->setFixedWidth(text->fontMetrics().averageCharWidth() * shownLetters);
    text->setAlignment(Qt::AlignRight);
    auto* const unit = new QComboBox(this);
    unit->setObjectName(QStringLiteral("c") + QLatin1String(letter));
    unit->setAccessibleName(tr("Unit of the %1").arg(length.toLower()));
    unit->addItems({QStringLiteral("Pixels"), QStringLiteral("Precent %")});
    return {text, unit};
}

/// The frame with both rows, the lock between their fields.
QGroupBox* frmImageViewSize::makeDimensions()
{
    auto* const frame = new QGroupBox(QStringLiteral("Dimensions"), this);
    frame->setObjectName(QStringLiteral("Dimensions"));
    frame->setAccessibleName(frame->title());
    auto* const grid = new QGridLayout(frame);
    const auto add = [grid, frame](int line, const QString& caption, const Row& row) {
        auto* const label = new QLabel(caption, frame);
        label->setBuddy(row.text);
        grid->addWidget(label, line, 0);
        grid->addWidget(row.text, line, 1);
        grid->addWidget(row.unit, line, 2);
    };
    add(0, QStringLiteral("Width:"), m_width);
    grid->addWidget(m_iLock, 1, 1, Qt::AlignHCenter);
    add(2, QStringLiteral("Height:"), m_height);
    QSizePolicy policy = m_iLock->sizePolicy();
    policy.setRetainSizeWhenHidden(true); // the fields stay where they are
    m_iLock->setSizePolicy(policy);
    m_iLock->hide();
    for (const Row& row : {m_width, m_height}) // the tabulator goes through them line by line
        QWidget::setTabOrder(row.text, row.unit);
    QWidget::setTabOrder(m_width.unit, m_height.text);
    QWidget::setTabOrder(m_height.unit, m_Check1);
    return frame;
}

void frmImageViewSize::connectRow(const Row& row, SizeField& field,
                                  void (SizeFields::*take)(const QString&, bool))
{
    QLineEdit* const edit = row.text;
    connect(edit, &QLineEdit::textChanged, this, [this, edit, take](const QString& text) {
        if (const QString whole = QString::number(wholeNumber(text)); whole != text) {
            edit->setText(whole); // comes here again
            if (whole == QLatin1String("0"))
                edit->selectAll(); // the next digit takes its place
            return;
        }
        const bool leads = edit->hasFocus() && !m_displaying;
        (m_fields.*take)(text, leads);
        if (leads && m_fields.constrained)
            Display();
    });
    connect(row.unit, &QComboBox::currentIndexChanged, this, [this, &field](int index) {
        field.unit = SizeUnit(index);
        Display();
    });
}

void frmImageViewSize::addKey(const char* key, QWidget* field)
{
    auto* const shortcut = new QShortcut(QKeySequence(QLatin1String(key)), this);
    connect(shortcut, &QShortcut::activated, field, [field] { field->setFocus(Qt::ShortcutFocusReason); });
}

void frmImageViewSize::Display()
{
    const QScopedValueRollback displaying(m_displaying, true);
    const QString width = m_fields.width.text();
    const QString height = m_fields.height.text();
    for (const auto& [edit, text] : {std::pair(m_width.text, width), std::pair(m_height.text, height)}) {
        if (edit->text() != text) // else a selection would go
            edit->setText(text);
    }
}

void frmImageViewSize::LoadX(engine::ImageEngine& ix1)
{
    const QPointer<engine::ImageEngine> image = &ix1;
    m_ixOri->SetPicture(ix1.Picture());
    const SizeFields fields = SizeFields::of(QSize(ix1.ImagePixelWidth(), ix1.ImagePixelHeight()));
    m_fields.width.target = fields.width.target;
    m_fields.width.original = fields.width.original;
    m_fields.height.target = fields.height.target;
    m_fields.height.original = fields.height.original;
    Display();
    m_width.text->setFocus();
    m_width.text->selectAll();
    const QPointer<frmImageViewSize> self = this;
    const QString name = ix1.FileName();
    if (exec() != Accepted || !self || !image || image->FileName() != name) // the size was for that one
        return;
    const QSize target = m_fields.target();
    image->Resample(target.width(), target.height());
}

void frmImageViewSize::drawLock()
{
    const qreal ratio = devicePixelRatioF();
    QPixmap picture = platform::drawing(QStringLiteral("lock"), qRound(lockSide * ratio),
                                        palette().color(QPalette::WindowText));
    picture.setDevicePixelRatio(ratio);
    m_iLock->setPixmap(picture);
}

void frmImageViewSize::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        drawLock();
}

bool frmImageViewSize::event(QEvent* event)
{
    if (event->type() == QEvent::ScreenChangeInternal)
        drawLock(); // the other screen may have other pixels
    return QDialog::event(event);
}

void askForSize(QWidget* owner, std::shared_ptr<engine::ImageLoader> loader, engine::ImageEngine& ix1)
{
    // On the heap and watched: the owner may be destroyed, and the dialog with it, while the dialog waits.
    const QPointer<frmImageViewSize> dialog = new frmImageViewSize(std::move(loader), owner);
    dialog->LoadX(ix1);
    delete dialog.data();
}

} // namespace quorvia::commands
