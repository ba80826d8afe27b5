#include "viewer/DescriptionKeeper.h"

#include "platform/FileStatus.h"
#include "viewer/DescriptionField.h"

#include <QTimer>

namespace quorvia::viewer {

namespace {

constexpr int saveDelay = 500;     // milliseconds
constexpr char ownWord[] = "auto"; // stands for a write of the program's own, and is never saved
constexpr char noDescription[] = "(none)";

QString shownText(const Description& description)
{
    return description.state == Description::State::Read ? description.text
                                                         : QString::fromLatin1(noDescription);
}

bool isUnreadable(const Description& description)
{
    return description.state == Description::State::Unreadable;
}

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
    connect(m_tDes, &DescriptionField::entered, this, &DescriptionKeeper::enter);
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
    const Description found = description(m_sidecar);
    m_stored = shownText(found);
    m_tDes->setReadOnly(isUnreadable(found));
    m_tDes->showText(m_stored);
    if (!m_tDes->hasFocus())
        return;
    m_tDes->selectAll();
    if (another)
        m_tDes->dropWaitingInput();
}

Description DescriptionKeeper::description(const QString& sidecar) const
{
    const auto unsaved = m_unsaved.constFind(sidecar);
    return unsaved == m_unsaved.cend() ? readDescription(sidecar)
                                       : Description{.state = Description::State::Read, .text = *unsaved};
}

void DescriptionKeeper::noteEdit()
{
    if (!m_tDes->holds(QLatin1String(ownWord)))
        m_tSaveDes->start();
}

/// Another program may have written a description meanwhile.
void DescriptionKeeper::enter()
{
    if (!mayLook())
        return;
    const Description now = description(m_sidecar);
    if (isOutdated() || shownText(now) != m_stored || isUnreadable(now) != m_tDes->isReadOnly())
        showAgain();
}

/// Nobody is to write about a picture that he has not seen.
void DescriptionKeeper::lookAgain()
{
    if (mayLook() && isOutdated())
        showAgain();
}

/// Not while the box holds what is not saved. A file that is missing for a moment, as when another program
/// puts a new one in its place, is waited for.
bool DescriptionKeeper::mayLook() const
{
    return !isUnsaved() && !m_tDes->isComposing() && platform::isRegularFile(m_image);
}

bool DescriptionKeeper::isOutdated() const
{
    return descriptionPath(m_image) != m_sidecar;
}

void DescriptionKeeper::showAgain()
{
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
