// A queue of the print server, CUPS. Each connection is one of our own and waits a few seconds for an answer,
// never longer: a server that is stopped would hold the window for ever otherwise.
#pragma once

#include "platform/CupsLibrary.h"
#include "platform/Printer.h"

#include <QFileDevice>

namespace quorvia::platform {

struct CupsFree
{
    void operator()(http_t* connection) const;
    void operator()(cups_dest_t* queue) const;
    void operator()(cups_dinfo_t* facts) const;
};

/// How long a server is waited for.
struct CupsPatience
{
    int connect = 2000;  ///< milliseconds
    double answer = 4.0; ///< seconds without a byte
};

class CupsPrinter : public Printer
{
  public:
    /// Asks the server for the queue that the user or the server names as default, else for the first one.
    explicit CupsPrinter(const CupsPatience& patience = {});

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
    bool send(QFileDevice& document, const QString& title, QString* why) const;
    bool create(http_t* connection, const QByteArray& name, int* job) const;
    QString failure(http_t* connection) const;

    CupsPatience m_patience;

    std::unique_ptr<cups_dest_t, CupsFree> m_queue; ///< null: there is none
    std::unique_ptr<cups_dinfo_t, CupsFree> m_facts;
    QByteArray m_media; ///< what to ask for; empty when the user did that, or it is unknown
    QSize m_paper;      ///< twips, upright
    int m_resolution;
    PageOrientation m_orientation = PageOrientation::Portrait;
    int m_copies = 1;
};

} // namespace quorvia::platform
