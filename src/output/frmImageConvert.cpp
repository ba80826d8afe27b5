#include "output/frmImageConvert.h"

#include "app/JpegSaves.h"
#include "app/Log.h"
#include "app/mFile.h"
#include "app/Paths.h"
#include "app/PendingEvents.h"
#include "app/Product.h"
#include "engine/ImageEngine.h"
#include "engine/ImagePlacement.h"
#include "engine/WholeFile.h"
#include "output/ConversionFiles.h"
#include "platform/Dialogs.h"
#include "platform/FileStatus.h"

#include <QCheckBox>
#include <QEvent>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace quorvia::output {

using engine::ImageEngine;

namespace {

constexpr QSize smallest(560, 360); // pixels
constexpr QSize usual(900, 600);
constexpr auto tag = "tag";

constexpr QLatin1String yes("Yes");
constexpr QLatin1String yesToAllWord("Yes to all");
constexpr QLatin1String no("No");
constexpr QLatin1String cancel("Cancel");

QString notWritten()
{
    return QStringLiteral("Conversion not written");
}

void log(const QString& what, const QString& path, const QString& why)
{
    app::WriteLog(QStringLiteral("%1: %2: ").arg(what, path) + why);
}

/// A zero character would end the path before its end, at another file.
bool isPath(const QString& text)
{
    return !text.isEmpty() && !text.contains(QChar(u'\0'));
}

ImageEngine* makeEngine(const char* name, const std::shared_ptr<engine::ImageLoader>& loader, QWidget* parent)
{
    auto* const made = new ImageEngine(loader, parent);
    made->setObjectName(QLatin1String(name));
    made->SetScaleMode(engine::scaleToControl);
    made->SetScaleOption(0);
    return made;
}

} // namespace

frmImageConvert::frmImageConvert(std::shared_ptr<engine::ImageLoader> loader, QWidget* parent)
    : QDialog(parent), m_loader(std::move(loader)),
      m_scratch(app::InstallPath() + QStringLiteral("Conversion/")),
      m_ixOri(makeEngine("ixOri", m_loader, this)), m_ixPreview(makeEngine("ixPreview", m_loader, this))
{
    setObjectName(QStringLiteral("frmImageConvert"));
    setMinimumSize(smallest);
    resize(usual);
    m_ixOri->SetSaveIsScratch(true);

    auto* const question = new QLabel(
        QStringLiteral("Do you want to convert the above original image the above preview image?"), this);
    question->setObjectName(QStringLiteral("lblQuestion"));
    question->setWordWrap(true);
    auto* const pictures = new QHBoxLayout;
    pictures->addWidget(buildPicture(m_ixOri, QStringLiteral("Original:")));
    pictures->addWidget(buildPicture(m_ixPreview, QStringLiteral("Preview:")));
    auto* const rows = new QVBoxLayout(this);
    rows->addLayout(pictures, 1);
    rows->addWidget(question);
    rows->addWidget(buildAnswers());
    takeDesktopColors();
}

frmImageConvert::~frmImageConvert() = default;

// --- building

QWidget* frmImageConvert::buildPicture(ImageEngine* engine, const QString& title)
{
    auto* const column = new QWidget(this);
    auto* const label = new QLabel(title, column);
    engine->setAccessibleName(title.chopped(1));
    engine->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    auto* const rows = new QVBoxLayout(column);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->addWidget(label);
    rows->addWidget(engine, 1);
    return column;
}

QWidget* frmImageConvert::buildAnswers()
{
    auto* const line = new QWidget(this);
    m_chkDelete = new QCheckBox(QStringLiteral("Delete original file after conversion"), line);
    m_chkDelete->setObjectName(QStringLiteral("chkDelete"));
    m_chkDelete->setAccessibleName(m_chkDelete->text());
    auto* const row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_chkDelete);
    row->addStretch();
    m_answers = {addAnswer("cmdYes", QStringLiteral("Yes"), Qt::Key_Y, yes, true),
                 addAnswer("cmdYesToAll", QStringLiteral("Yes to All"), Qt::Key_A, yesToAllWord, true),
                 addAnswer("cmdNo", QStringLiteral("No"), Qt::Key_N, no, false),
                 addAnswer("cmdCancel", QStringLiteral("Cancel"), 0, cancel, false)};
    for (QPushButton* const button : m_answers)
        row->addWidget(button);
    m_answers.front()->setDefault(true);
    return line;
}

QPushButton* frmImageConvert::addAnswer(const char* name, const QString& text, int key, QLatin1String word,
                                        bool writes)
{
    auto* const button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(text);
    if (key != 0)
        button->setShortcut(key); // its text, with a letter underlined, would be another one
    connect(button, &QPushButton::clicked, this, [this, word, writes] { answer(word, writes); });
    return button;
}

void frmImageConvert::takeDesktopColors()
{
    for (ImageEngine* const engine : {m_ixOri, m_ixPreview})
        engine->SetBackColor(palette().color(QPalette::Window));
}

void frmImageConvert::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_ixPreview)
        takeDesktopColors();
}

// --- one conversion

void frmImageConvert::beginBatch()
{
    m_chkDelete->setChecked(false);
    m_stopped = false;
}

void frmImageConvert::endBatch()
{
    m_next.clear();
    m_loader->expect(m_next, QSize()); // nothing is kept for a batch that was broken off
    if (isVisible())
        done(Accepted);
}

void frmImageConvert::stop()
{
    m_isOver = true;
    if (isVisible())
        reject();
}

QString frmImageConvert::LoadConversion(const QString& source, const QString& target, bool yesToAll)
{
    const bool stopped = std::exchange(m_stopped, false) && yesToAll;
    if (stopped || m_isOver || m_busy) // the last from an event that ran in the middle of a conversion
        return cancel;
    m_busy = true;
    m_answer = cancel;
    const QPointer<frmImageConvert> alive = this;
    m_heldKeys.watch();
    convert(source, target, yesToAll);
    if (!alive)
        return cancel;
    m_heldKeys.rest();
    letGo();
    m_busy = false;
    return m_answer;
}

void frmImageConvert::convert(const QString& source, const QString& target, bool yesToAll)
{
    const QPointer<frmImageConvert> alive = this;
    preview(source, target);
    if (!alive || m_isOver)
        return;
    setWindowTitle(conversionCaption(source, target));
    for (QPushButton* const button : m_answers)
        button->setEnabled(!yesToAll);
    if (yesToAll)
        goOnAlone();
    else
        ask();
}

/// Both pictures, or two empty ones: never one of the conversion before.
void frmImageConvert::preview(const QString& source, const QString& target)
{
    const QPointer<frmImageConvert> alive = this;
    letGo();
    m_ixOri->setProperty(tag, source);
    const bool saved = saveScratch(source, target);
    m_ixPreview->setProperty(tag, target);
    app::letPendingEventsRunButInput(); // keys and clicks are meant for what is asked next
    if (!alive || !saved)
        return;
    m_ixPreview->SetFileName(m_scratchFile);
    if (m_ixPreview->FileName() == m_scratchFile)
        return;
    log(QStringLiteral("Conversion without a preview"), source, m_ixPreview->LastError());
    m_scratchFile.clear();
}

bool frmImageConvert::saveScratch(const QString& source, const QString& target)
{
    m_read = engine::PageKey::of(source, 1);
    if (isPath(source) && isPath(target))
        m_ixOri->SetFileName(source);
    bool saved = false;
    if (!m_ixOri->FileName().isEmpty()) {
        m_scratchFile = m_scratch.fileFor(app::GetExtension(target));
        if (app::isJpegName(target))
            app::takeJpegSettings(*m_ixOri);
        m_ixOri->SetSaveFileName(m_scratchFile);
        saved = m_ixOri->SaveFile();
    }
    if (!saved) {
        log(QStringLiteral("Conversion without a preview"), source, m_ixOri->LastError());
        m_scratchFile.clear();
    }
    return saved;
}

/// The window of the next image comes where that of the last one was: left to the window manager, each would
/// stand lower than the one before.
void frmImageConvert::takePlace()
{
    if (m_place)
        move(*m_place);
}

void frmImageConvert::done(int result)
{
    if (isVisible())
        m_place = pos();
    QDialog::done(result);
}

void frmImageConvert::ask()
{
    takePlace();
    m_answers.front()->setFocus();
    exec();
}

/// What follows "Yes to all": shown, but not asking.
void frmImageConvert::goOnAlone()
{
    const QPointer<frmImageConvert> alive = this;
    if (!isVisible()) { // else from the image before: a batch has one window, and takes the keys once
        setModal(false);
        takePlace();
        show();
    }
    m_loader->expect(m_next, QSize());
    app::letPendingEventsRunButInput();
    if (alive && isVisible()) // nobody has closed it
        write(yesToAllWord);
}

void frmImageConvert::answer(QLatin1String word, bool writes)
{
    if (m_writing)
        return;
    m_answer = word;
    const QPointer<frmImageConvert> alive = this;
    if (writes)
        write(word);
    if (alive)
        accept();
}

void frmImageConvert::write(QLatin1String word)
{
    m_answer = word;
    const QPointer<frmImageConvert> alive = this;
    m_writing = true;
    writeTarget();
    if (alive)
        m_writing = false;
}

/// The answer becomes "No" whenever nothing was written: what stands at the target then is not the result.
void frmImageConvert::writeTarget()
{
    const QPointer<frmImageConvert> alive = this;
    const bool written = !m_scratchFile.isEmpty() && mayReplace() && alive && !m_isOver && saveTarget();
    if (!alive)
        return;
    if (!written)
        m_answer = no;
    app::letPendingEventsRunButInput();
    if (!alive || !written || m_isOver) // whose list is closed: it would go on naming the original
        return;
    if (m_chkDelete->isChecked() && source() != target() && platform::isFile(target())) {
        trashSource(m_read, m_ixOri->PageCount(source()), target());
        app::letPendingEventsRunButInput();
    }
}

bool frmImageConvert::mayReplace()
{
    if (source() == target() || !platform::isFile(target()))
        return true;
    const platform::MessageBox box{.kind = platform::BoxKind::Question,
                                   .buttons = platform::BoxButtons::YesNo,
                                   .title = app::productTitle(),
                                   .text = overwriteQuestion(target())};
    return platform::showMessage(this, box) == platform::BoxAnswer::Yes;
}

/// True when the target was written; else the log has why.
bool frmImageConvert::saveTarget()
{
    const bool isCopy = writesTheSameAgain(app::GetExtension(target()), m_ixPreview->BitsPerPixel());
    const bool isNothingNew = isCopy && hasSameContent(m_scratchFile, target());
    if (platform::isReadOnly(target())) {
        log(notWritten(), target(), QStringLiteral("it is read-only"));
        return false;
    }
    if (!isNothingNew && !keepReplaced(target()) && isOneFile(source(), target()) &&
        m_ixOri->PageCount(source()) > 1) {
        log(notWritten(), target(), QStringLiteral("its other pages would be lost"));
        return false;
    }
    QString why;
    const bool written = isCopy ? copyScratch(why) : savePreview(why);
    if (!written)
        log(notWritten(), target(), why);
    return written;
}

bool frmImageConvert::copyScratch(QString& why)
{
    const engine::Status written = engine::writeFromScratch(m_scratchFile, target());
    if (written)
        m_loader->forget(target()); // as a save of the engine does
    else
        why = written.error().text;
    return bool(written);
}

bool frmImageConvert::savePreview(QString& why)
{
    if (app::isJpegName(target()))
        app::takeJpegSettings(*m_ixPreview);
    m_ixPreview->SetSaveFileName(target());
    const bool saved = m_ixPreview->SaveFile();
    why = m_ixPreview->LastError();
    return saved;
}

void frmImageConvert::reject()
{
    if (m_writing) { // what has begun comes to its end
        m_stopped = true;
        return;
    }
    m_answer = cancel;
    QDialog::reject();
}

/// The pictures are large, and the next ones may be long in coming.
void frmImageConvert::letGo()
{
    m_ixPreview->SetFileName({});
    m_ixOri->SetFileName({});
    m_scratch.remove();
    m_scratchFile.clear();
}

QString frmImageConvert::source() const
{
    return m_ixOri->property(tag).toString();
}

QString frmImageConvert::target() const
{
    return m_ixPreview->property(tag).toString();
}

} // namespace quorvia::output
