#include "viewer/DescriptionKeeper.h"

#include "platform/FileStatus.h"
#include "viewer/DescriptionField.h"
#include "viewer/DescriptionFile.h"

#include <QTimer>

namespace quorvia::viewer {

namespace {

constexpr int saveDelay = 500;     // milliseconds
constexpr char ownWord[] = "auto"; // stands for a write of the program's own, and is never saved
constexpr char noDescription[] = "(none)";

} // namespace

DescriptionKeeper::DescriptionKeeper(DescriptionField* tDes, QObject* parent)
    : QObject(parent), m_tDes(tDes), m_tSaveDes(new QTimer(this))
{
    m_tSaveDes->setObjectName(QStringLiteral("tSaveDes"));
    m_tSaveDes->setInterval(saveDelay);
    connect(m_tSaveDes, &QTimer::timeout, this, [this] {
        if (!m_tDes->isComposing()) // else the text is half of what is meant
            saveNow();
    });
    connect(m_tDes, &DescriptionField::edited, this, &DescriptionKeeper::noteEdit);
    connect(m_tDes, &DescriptionField::aboutToEdit, this, &DescriptionKeeper::lookAgain);
}

bool DescriptionKeeper::isUnsaved() const
{
    return m_tSaveDes->isActive();
}

void DescriptionKeeper::show(const QString& image)
{
    saveNow();
    const bool another = image != m_image;
    m_image = image;
    m_sidecar = platform::isRegularFile(image) ? descriptionPath(image) : QString();
    const auto unsaved = m_unsaved.constFind(m_sidecar);
    const Description description = unsaved == m_unsaved.cend()
                                        ? readDescription(m_sidecar)
                                        : Description{.state = Description::State::Read, .text = *unsaved};
    m_stored =
        description.state == Description::State::Read ? description.text : QString::fromLatin1(noDescription);
    m_tDes->setReadOnly(description.state == Description::State::Unreadable);
    m_tDes->showText(m_stored);
    if (!m_tDes->hasFocus())
        return;
    m_tDes->selectAll();
    if (another)
        m_tDes->dropWaitingInput();
}

void DescriptionKeeper::noteEdit()
{
    if (!m_tDes->holds(QLatin1String(ownWord)))
        m_tSaveDes->start();
}

/// Nobody is to write about a picture that he has not seen. A file that is missing for a moment, as when
/// another program puts a new one in its place, is waited for.
void DescriptionKeeper::lookAgain()
{
    if (isUnsaved() || m_tDes->isComposing() || !platform::isRegularFile(m_image) ||
        descriptionPath(m_image) == m_sidecar)
        return;
    Q_EMIT outdated();
    if (m_stored != QLatin1String(noDescription))
        m_tDes->moveCursor(QTextCursor::End); // what is written now replaces nothing that nobody has read
}

void DescriptionKeeper::saveNow()
{
    m_tDes->endComposition();
    if (isUnsaved())
        takeText();
    m_unsaved.removeIf([](const auto& one) { return writeDescription(one.key(), one.value()); });
}

/// Takes what is typed to be saved under the state of the image that is shown; not when the image has gone.
void DescriptionKeeper::takeText()
{
    m_tSaveDes->stop();
    if (!platform::isRegularFile(m_image) || m_sidecar.isEmpty())
        return;
    const QString text = m_tDes->text();
    if (text == QLatin1String(ownWord) || text == m_stored)
        return;
    m_unsaved.insert(m_sidecar, text);
    m_stored = text;
}

} // namespace quorvia::viewer
