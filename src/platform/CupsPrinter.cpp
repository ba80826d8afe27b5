#include "platform/CupsPrinter.h"

#include "platform/PrintDocument.h"
#include "platform/PrintJob.h"
#include "platform/Reason.h"

#include <QTemporaryFile>

#include <algorithm>
#include <cmath>

namespace quorvia::platform {

namespace {

/// Only with a connection to the server, or what came by one.
const CupsLibrary& cups()
{
    return *CupsLibrary::get();
}

using Connection = std::unique_ptr<http_t, CupsFree>;

/// The options of a job.
class Options
{
  public:
    explicit Options(const cups_dest_t& queue)
    {
        for (int i = 0; i < queue.num_options; ++i) { // the user's own for this queue among them
            if (isKeptOption(queue.options[i].name))
                add(queue.options[i].name, queue.options[i].value);
        }
    }
    ~Options() { cups().cupsFreeOptions(m_count, m_options); }
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;

    void add(const char* name, const char* value)
    {
        m_count = cups().cupsAddOption(name, value, m_count, &m_options);
    }
    int count() const { return m_count; }
    cups_option_t* list() const { return m_options; }

  private:
    int m_count = 0;
    cups_option_t* m_options = nullptr;
};

const char* noPassword(const char*, http_t*, const char*, const char*, void*)
{
    return nullptr;
}

/// Null when the server cannot be reached.
Connection connectToServer(const CupsPatience& patience)
{
    if (!CupsLibrary::get())
        return nullptr;
    // Else it asks for one on the terminal, and waits there.
    cups().cupsSetPasswordCB2(noPassword, nullptr);
    Connection connection(cups().httpConnect2(cups().cupsServer(), cups().ippPort(), nullptr, AF_UNSPEC,
                                              cups().cupsEncryption(), 1, patience.connect, nullptr));
    if (connection)
        cups().httpSetTimeout(connection.get(), patience.answer, nullptr, nullptr);
    return connection;
}

/// The default queue, else the first; null when there is none or the server does not answer.
cups_dest_t* findQueue(http_t* connection)
{
    // Never by a name: that one would look for it on a connection without an end.
    if (cups_dest_t* const named = cups().cupsGetNamedDest(connection, nullptr, nullptr))
        return named;
    if (cups().httpError(connection) != 0)
        return nullptr;
    cups_dest_t* queues = nullptr;
    const int count = cups().cupsGetDests2(connection, &queues);
    cups_dest_t* first = nullptr;
    if (count > 0)
        cups().cupsCopyDest(queues, 0, &first);
    cups().cupsFreeDests(count, queues);
    return first;
}

/// The paper that the user chose for this queue; empty when it is the queue's own.
QByteArray chosenMedia(const cups_dest_t& queue)
{
    for (const char* option : {CUPS_MEDIA, "PageSize"}) {
        if (const char* const value = cups().cupsGetOption(option, queue.num_options, queue.options))
            return QByteArray(value).split(',').constFirst(); // a tray may follow
    }
    return {};
}

QByteArray text(ipp_attribute_t* attribute)
{
    return {cups().ippGetString(attribute, 0, nullptr)};
}

/// The paper of that name, whichever of its names it is; null when it is unknown.
const pwg_media_t* mediaOf(const QByteArray& name)
{
    for (const auto look : {cups().pwgMediaForPWG, cups().pwgMediaForPPD, cups().pwgMediaForLegacy}) {
        if (const pwg_media_t* const media = look(name.constData()))
            return media;
    }
    return nullptr;
}

QList<int> resolutions(ipp_attribute_t* attribute)
{
    constexpr double centimetresPerInch = 2.54;
    QList<int> list;
    for (int i = 0; i < cups().ippGetCount(attribute); ++i) {
        int down = 0;
        ipp_res_t unit = IPP_RES_PER_INCH;
        const int across = cups().ippGetResolution(attribute, i, &down, &unit);
        const int least = std::min(across, down);
        list.append(unit == IPP_RES_PER_CM ? int(std::lround(least * centimetresPerInch)) : least);
    }
    return list;
}

bool writeAll(http_t* connection, QIODevice& document)
{
    constexpr qint64 step = 65536;
    if (!document.seek(0))
        return false;
    while (!document.atEnd()) {
        const QByteArray part = document.read(step);
        if (part.isEmpty() || cups().cupsWriteRequestData(connection, part.constData(),
                                                          size_t(part.size())) != HTTP_STATUS_CONTINUE)
            return false;
    }
    return true;
}

} // namespace

void CupsFree::operator()(http_t* connection) const
{
    cups().httpClose(connection);
}

void CupsFree::operator()(cups_dest_t* queue) const
{
    cups().cupsFreeDests(1, queue);
}

void CupsFree::operator()(cups_dinfo_t* facts) const
{
    cups().cupsFreeDestInfo(facts);
}

CupsPrinter::CupsPrinter(const CupsPatience& patience)
    : m_patience(patience), m_resolution(pageResolution({}, {}))
{
    const Connection connection = connectToServer(m_patience);
    if (connection)
        m_queue.reset(findQueue(connection.get()));
    if (!m_queue)
        return;
    m_paper = usualPaper(QLocale::system());
    m_copies = firstCopies(cups().cupsGetOption(CUPS_COPIES, m_queue->num_options, m_queue->options));
    if (cups().httpError(connection.get()) == 0)
        readFacts(connection.get());
}

void CupsPrinter::readFacts(http_t* connection)
{
    m_facts.reset(cups().cupsCopyDestInfo(connection, m_queue.get()));
    if (!m_facts)
        return;
    const QByteArray chosen = chosenMedia(*m_queue);
    const QByteArray usual =
        text(cups().cupsFindDestDefault(connection, m_queue.get(), m_facts.get(), CUPS_MEDIA));
    if (const pwg_media_t* const media = mediaOf(chosen.isEmpty() ? usual : chosen)) {
        m_paper = paperTwips({media->width, media->length});
        if (chosen.isEmpty())
            m_media = usual;
    }
    m_resolution = pageResolution(resolutions(cups().cupsFindDestSupported(
                                      connection, m_queue.get(), m_facts.get(), "printer-resolution")),
                                  m_paper);
}

QString CupsPrinter::deviceName() const
{
    if (!m_queue)
        return {};
    const QString name = QString::fromUtf8(m_queue->name);
    return m_queue->instance ? name + u'/' + QString::fromUtf8(m_queue->instance) : name;
}

QSize CupsPrinter::pageSize() const
{
    return m_orientation == PageOrientation::Landscape ? m_paper.transposed() : m_paper;
}

void CupsPrinter::setCopies(int copies)
{
    if (copies > 0)
        m_copies = copies;
}

bool CupsPrinter::printPage(const QImage& picture, const QRect& target, const QString& title, QString* why)
{
    if (!m_queue)
        return fail(why, QStringLiteral("there is no printer"));
    QTemporaryFile document;
    if (!document.open())
        return fail(why, QStringLiteral("no file for the page: ") + document.errorString().simplified());
    return writePdfPage(document, pageSize(), picture, target, title, why) && send(document, title, why);
}

/// Makes the job for a document; its number, above 0, into `job`. False when the server made none.
bool CupsPrinter::create(http_t* connection, const QByteArray& name, int* job) const
{
    Options options(*m_queue);
    options.add(CUPS_COPIES, QByteArray::number(m_copies).constData());
    if (!m_media.isEmpty())
        options.add(CUPS_MEDIA, m_media.constData());
    // Many a queue prints grey unless it is told otherwise, and many a printer fits a page into its margins.
    for (const auto& [option, value] : {std::pair(CUPS_PRINT_COLOR_MODE, CUPS_PRINT_COLOR_MODE_COLOR),
                                        std::pair("print-scaling", "none")}) {
        if (cups().cupsCheckDestSupported(connection, m_queue.get(), m_facts.get(), option, value))
            options.add(option, value);
    }
    return cups().cupsCreateDestJob(connection, m_queue.get(), m_facts.get(), job, name.constData(),
                                    options.count(), options.list()) <= IPP_STATUS_OK_CONFLICTING &&
           *job > 0;
}

/// One line about what failed last on this connection. The library has none for an answer that never came: it
/// then gives the text of the error number 0, or of another that tells the user nothing.
QString CupsPrinter::failure(http_t* connection) const
{
    const bool isAnswered =
        cups().httpError(connection) == 0 && cups().httpGetStatus(connection) >= HTTP_STATUS_OK;
    const QString said = QString::fromUtf8(cups().cupsLastErrorString()).simplified();
    const bool isRefused = isAnswered && cups().cupsLastError() > IPP_STATUS_OK_CONFLICTING;
    return deviceName() + QStringLiteral(": ") +
           (isRefused && !said.isEmpty() ? said : QStringLiteral("the print server did not answer"));
}

bool CupsPrinter::send(QFileDevice& document, const QString& title, QString* why) const
{
    const Connection connection = connectToServer(m_patience);
    if (!connection)
        return fail(why, deviceName() + QStringLiteral(": the print server cannot be reached"));
    if (!m_facts)
        return fail(why, deviceName() + QStringLiteral(": it told nothing about itself"));
    const QByteArray name = jobName(title);
    int job = 0;
    if (!create(connection.get(), name, &job))
        return fail(why, failure(connection.get()));
    const bool isTaken =
        cups().cupsStartDestDocument(connection.get(), m_queue.get(), m_facts.get(), job, name.constData(),
                                     CUPS_FORMAT_PDF, 0, nullptr, 1) == HTTP_STATUS_CONTINUE &&
        writeAll(connection.get(), document) &&
        cups().cupsFinishDestDocument(connection.get(), m_queue.get(), m_facts.get()) <=
            IPP_STATUS_OK_CONFLICTING;
    // The last one calls it a success when no answer came.
    if (isTaken && cups().httpGetStatus(connection.get()) == HTTP_STATUS_OK)
        return true;
    const bool isHeard = !isTaken && cups().httpError(connection.get()) == 0;
    fail(why, document.error() == QFileDevice::NoError
                  ? failure(connection.get())
                  : QStringLiteral("the page cannot be read: ") + document.errorString().simplified());
    if (isHeard)
        cups().cupsCancelDestJob(connection.get(), m_queue.get(), job);
    return false;
}

} // namespace quorvia::platform
