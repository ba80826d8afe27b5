#include "platform/ScanSource.h"

#include "platform/Answerers.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace quorvia::platform {

template class Answerer<ScanSourceQuestion, std::optional<ScanChoice>>;

namespace {

constexpr int fieldsOfLine = 4;
constexpr int listLetters = 56; ///< width of the list
constexpr int listLines = 6;

QString unescaped(const QByteArray& field)
{
    QByteArray text;
    for (qsizetype i = 0; i < field.size(); ++i) {
        char c = field[i];
        if (c == '\\' && i + 1 < field.size()) {
            c = field[++i];
            c = c == 't' ? '\t' : c == 'n' ? '\n' : c == 'r' ? '\r' : c;
        }
        text.append(c);
    }
    return QString::fromUtf8(text);
}

class SourceDialog : public QDialog
{
  public:
    SourceDialog(QWidget* owner, const ScanSourceQuestion& question)
        : QDialog(owner), m_devices(new QListWidget(this)), m_mode(new QComboBox(this)),
          m_resolution(new QComboBox(this))
    {
        setObjectName(QStringLiteral("ScanSource"));
        setWindowTitle(tr("Select Source"));
        setAccessibleName(windowTitle());
        fillDevices(question);
        fillModes(question.start);
        auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
        buttons->button(QDialogButtonBox::Ok)->setEnabled(!question.devices.isEmpty());
        connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        if (!question.devices.isEmpty())
            connect(m_devices, &QListWidget::itemDoubleClicked, this, &QDialog::accept);

        auto* const label = new QLabel(tr("&Sources:"), this);
        label->setBuddy(m_devices);
        auto* const fields = new QFormLayout;
        fields->addRow(tr("&Mode:"), m_mode);
        fields->addRow(tr("&Resolution:"), m_resolution);
        auto* const rows = new QVBoxLayout(this);
        rows->addWidget(label);
        rows->addWidget(m_devices, 1);
        rows->addLayout(fields);
        rows->addWidget(buttons);
        m_devices->setFocus();
    }

    std::optional<ScanChoice> chosen() const
    {
        const QListWidgetItem* const item = m_devices->currentItem();
        const QString device = item ? item->data(Qt::UserRole).toString() : QString();
        if (device.isEmpty())
            return {};
        return ScanChoice{device, ScanMode(m_mode->currentData().toInt()),
                          m_resolution->currentData().toInt()};
    }

  private:
    static QString tr(const char* text) { return QDialog::tr(text); }

    void fillDevices(const ScanSourceQuestion& question)
    {
        m_devices->setObjectName(QStringLiteral("Devices"));
        m_devices->setAccessibleName(tr("Sources"));
        m_devices->setMinimumWidth(m_devices->fontMetrics().averageCharWidth() * listLetters);
        m_devices->setMinimumHeight(m_devices->fontMetrics().lineSpacing() * listLines);
        for (const ScanDevice& device : question.devices) {
            auto* const item = new QListWidgetItem(scanDeviceText(device), m_devices);
            item->setData(Qt::UserRole, device.name);
            if (device.name == question.start.device || m_devices->count() == 1)
                m_devices->setCurrentItem(item);
        }
        if (question.devices.isEmpty()) {
            auto* const none = new QListWidgetItem(tr("No scanner or camera was found."), m_devices);
            none->setFlags(Qt::NoItemFlags);
        }
    }

    void fillModes(const ScanChoice& start)
    {
        m_mode->setObjectName(QStringLiteral("Mode"));
        m_mode->setAccessibleName(tr("Mode"));
        m_mode->addItem(tr("Color"), int(ScanMode::Color));
        m_mode->addItem(tr("Gray"), int(ScanMode::Gray));
        m_mode->setCurrentIndex(m_mode->findData(int(start.mode)));
        m_resolution->setObjectName(QStringLiteral("Resolution"));
        m_resolution->setAccessibleName(tr("Resolution"));
        for (const int resolution : scanResolutions())
            m_resolution->addItem(tr("%1 dpi").arg(resolution), resolution);
        const bool isOffered = scanResolutions().contains(start.resolution);
        m_resolution->setCurrentIndex(
            m_resolution->findData(isOffered ? start.resolution : ScanChoice().resolution));
    }

    QListWidget* m_devices;
    QComboBox* m_mode;
    QComboBox* m_resolution;
};

} // namespace

QList<ScanDevice> scanDevices(const QByteArray& list)
{
    QList<ScanDevice> devices;
    for (const QByteArray& line : list.split('\n')) {
        const QList<QByteArray> fields = line.split('\t');
        if (fields.size() == fieldsOfLine && !fields[0].isEmpty())
            devices.append(
                {unescaped(fields[0]), unescaped(fields[1]), unescaped(fields[2]), unescaped(fields[3])});
    }
    return devices;
}

QString scanDeviceText(const ScanDevice& device)
{
    const QString maker = (device.vendor + u' ' + device.model).simplified();
    const QString text = maker.isEmpty() ? device.type : maker;
    return QStringLiteral("%1 (%2)").arg(text, device.name).simplified();
}

const QList<int>& scanResolutions()
{
    static const QList<int> all{75, 100, 150, 200, 300, 600, 1200};
    return all;
}

std::optional<ScanChoice> askScanSource(QWidget* owner, const ScanSourceQuestion& question)
{
    if (const auto answer = Answerers<ScanSourceQuestion, std::optional<ScanChoice>>::newest())
        return answer(question);
    // Watched: the owner may be destroyed, and the dialog with it, while the dialog waits.
    auto* const dialog = new SourceDialog(owner, question);
    const QPointer<QDialog> watched = dialog;
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (watched.isNull())
        return {};
    const std::optional<ScanChoice> chosen = dialog->chosen();
    delete dialog;
    return accepted ? chosen : std::nullopt;
}

} // namespace quorvia::platform
