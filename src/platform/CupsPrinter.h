// A queue of the print server, CUPS. Each connection is one of our own and waits a few seconds for an answer,
// never longer: a server that is stopped would hold the window for ever otherwise.
#pragma once

#include "platform/CupsLibrary.h"
#include "platform/Printer.h"

#include <QList>
#include <QLocale>

namespace quorvia::platform {

struct CupsFree
{
    void operator()(http_t* connection) const;
    void operator()(cups_dest_t* queue) const;
    void operator()(cups_dinfo_t* facts) const;
};

class CupsPrinter : public Printer
{
  public:
    /// Asks the server for the queue that the user or the server names as default, else for the first one.
    CupsPrinter();

    QString deviceName() const override;
    QSize pageSize() const override;
    int resolution() const override { return m_resolution; }
    PageOrientation orientation() const override { return m_orientation; }
    void setOrientation(PageOrientation orientation) override { m_orientation = orientation; }
    int copies() const override { return m_copies; }
    void setCopies(int copies) override;
    bool printPage(const QImage& picture, const QRect& target, const QString& title, QString* why) override;

  private:
    void readFacts(http_t* connection);
    bool send(QIODevice& document, const QString& title, QString* why) const;

    std::unique_ptr<cups_dest_t, CupsFree> m_queue; ///< null: there is none
    std::unique_ptr<cups_dinfo_t, CupsFree> m_facts;
    QByteArray m_media; ///< what to ask for; empty when the user did that, or it is unknown
    QSize m_paper;      ///< twips, upright
    int m_resolution;
    PageOrientation m_orientation = PageOrientation::Portrait;
    int m_copies = 1;
};

/// The resolution for composing a page on a printer with these, pixels to the inch: the highest that is not
/// above 300, else 300. More would take memory that a photo gains nothing from.
int pageResolution(const QList<int>& supported);

/// Width and height in twips of paper measured in hundredths of a millimetre, as the server does.
QSize paperTwips(const QSize& hundredths);

/// The paper of a printer that tells none, in twips: Letter where inches are used, else A4.
QSize usualPaper(const QLocale& locale);

} // namespace quorvia::platform
