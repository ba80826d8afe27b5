// The dialog for a font of Dialogs.h: the toolkit's, which knows no colour, in one that does.
#include "platform/Answerers.h"
#include "platform/Dialogs.h"
#include "platform/FontStyles.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QFontDialog>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPixmap>
#include <QPointer>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include <vector>

namespace quorvia::platform {

template class Answerer<FontQuestion, std::optional<ColoredFont>>;

namespace {

/// `font` with the name that its family has for this weight and slope, or for the nearest ones. Without one
/// the toolkit's dialog takes the first style of a family that does not call it "Normal".
QFont withStyleName(QFont font)
{
    const QString family = QFontInfo(font).family();
    std::vector<FontStyle> styles;
    for (const QString& name : QFontDatabase::styles(family)) {
        const QFont styled = QFontDatabase::font(family, name, font.pointSize());
        styles.push_back({name, styled.weight(), styled.italic()});
    }
    const QString name = nearestStyle(styles, font.weight(), font.italic());
    if (!name.isEmpty()) {
        font.setFamilies({family});
        font.setStyleName(name);
    }
    return font;
}

/// What a program keeps of `font`: a style's own name would win over the rest.
QFont withoutStyleName(const QFont& font)
{
    QFont plain(font.family());
    plain.setPointSize(font.pointSize());
    plain.setBold(font.bold());
    plain.setItalic(font.italic());
    plain.setUnderline(font.underline());
    plain.setStrikeOut(font.strikeOut());
    return plain;
}

class FontDialog : public QDialog
{
  public:
    FontDialog(QWidget* owner, const FontQuestion& question)
        : QDialog(owner), m_start(question.start.font), m_fonts(new QFontDialog(this)),
          m_color(new QPushButton(this))
    {
        setObjectName(QStringLiteral("FontQuestion"));
        setWindowTitle(question.title);
        setAccessibleName(question.title);
        m_fonts->setWindowFlags(Qt::Widget);
        m_fonts->setOptions(QFontDialog::NoButtons | QFontDialog::DontUseNativeDialog);
        m_fonts->setSizeGripEnabled(false);
        m_fonts->setAccessibleName(question.title); // it is told as a dialog within the dialog
        m_fonts->setCurrentFont(withStyleName(question.start.font));
        m_shown = m_fonts->currentFont();
        connect(m_fonts, &QFontDialog::currentFontChanged, this, &FontDialog::seeStyle);
        m_color->setObjectName(QStringLiteral("Color"));
        m_color->setAccessibleName(tr("Color of the text"));
        m_color->setAutoDefault(false);
        connect(m_color, &QPushButton::clicked, this, &FontDialog::askColor);
        connect(m_fonts, &QDialog::rejected, this, &QDialog::reject); // Escape within it
        connect(m_fonts, &QDialog::accepted, this, &QDialog::accept); // Enter in two of its lists
        m_fonts->installEventFilter(this);
        setColor(question.start.color);

        auto* const colorRow = new QHBoxLayout;
        auto* const label = new QLabel(tr("Color:"), this);
        label->setBuddy(m_color);
        colorRow->addWidget(label);
        colorRow->addWidget(m_color);
        colorRow->addStretch();
        auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
        connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        auto* const rows = new QVBoxLayout(this);
        rows->addWidget(m_fonts, 1);
        rows->addLayout(colorRow);
        rows->addWidget(buttons);
        m_fonts->show();
    }

    ColoredFont chosen() const
    {
        QFont font = withoutStyleName(m_fonts->currentFont());
        if (!m_styleChosen) {
            font.setBold(m_start.bold());
            font.setItalic(m_start.italic());
        }
        return {font, m_chosen};
    }

  protected:
    /// Enter elsewhere within it, which it would keep: it has no button of its own.
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == m_fonts && event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (key == Qt::Key_Return || key == Qt::Key_Enter) {
                accept();
                return true;
            }
        }
        return QDialog::eventFilter(watched, event);
    }

  private:
    static QString tr(const char* text) { return QDialog::tr(text); }

    /// A family may lack the style asked for, and then shows another: only one that the user chose counts.
    void seeStyle(const QFont& font)
    {
        if (font.family() != m_shown.family() || font.styleName() != m_shown.styleName())
            m_styleChosen = true;
    }

    void setColor(const QColor& color)
    {
        m_chosen = color;
        const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
        QPixmap swatch(side, side);
        swatch.fill(color);
        m_color->setIcon(swatch);
        m_color->setText(color.name());
    }

    void askColor()
    {
        const QPointer<QDialog> alive = this;
        const std::optional<QColor> color = platform::askColor(this, {tr("Color"), m_chosen});
        if (alive && color)
            setColor(*color);
    }

    const QFont m_start;
    QFont m_shown; ///< with the style that stands in the dialog for the start's
    bool m_styleChosen = false;
    QFontDialog* m_fonts;
    QPushButton* m_color;
    QColor m_chosen;
};

} // namespace

std::optional<ColoredFont> askFont(QWidget* owner, const FontQuestion& question)
{
    if (const auto answer = Answerers<FontQuestion, std::optional<ColoredFont>>::newest())
        return answer(question);
    // Watched: the owner may be destroyed, and the dialog with it, while the dialog waits.
    auto* const dialog = new FontDialog(owner, question);
    const QPointer<QDialog> watched = dialog;
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (watched.isNull())
        return {};
    const ColoredFont chosen = dialog->chosen();
    delete dialog;
    return accepted ? std::optional(chosen) : std::nullopt;
}

} // namespace quorvia::platform
