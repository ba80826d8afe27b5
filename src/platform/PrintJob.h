// What a job is asked with, reckoned without a server: its name, the options that go along, the pixels of its
// page.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QLocale>
#include <QSize>
#include <QString>

namespace quorvia::platform {

/// The name of a job for what is called `title`, in UTF-8: on one line, cut between two characters so that it
/// has 255 bytes at most, which is all that a server takes (RFC 8011, 5.1.3).
QByteArray jobName(const QString& title);

/// Whether an option that the user keeps for a queue goes along with a job. What would lay the page out
/// otherwise than it was shown does not, nor does the number of copies, which is asked. Names in either case.
bool isKeptOption(QByteArrayView name);

/// How many copies the value of that option says; 1 when it is no positive number, or null.
int firstCopies(const char* value);

/// The resolution for composing a page on a printer with these, pixels to the inch, on `paper`, twips: the
/// highest that is not above 300, else 300, since more would take memory that a photo gains nothing from.
/// Lowered for large paper, so that it never has more than 72 million pixels; at least 1.
int pageResolution(const QList<int>& supported, const QSize& paper);

/// Width and height in twips of paper measured in hundredths of a millimetre, as the server does.
QSize paperTwips(const QSize& hundredths);

/// The paper of a printer that tells none, in twips: Letter where inches are used, else A4.
QSize usualPaper(const QLocale& locale);

} // namespace quorvia::platform
