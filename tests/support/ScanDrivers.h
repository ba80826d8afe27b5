// The scanner drivers' configuration for a test: the library's own pretended scanners and no others, with
// their settings as a test wants them. Both processes that look at it find it by the environment.
#pragma once

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

namespace quorvia::test {

/// Settings with which a scan of 600 pixels an inch takes a minute and more.
inline QStringList slowScan()
{
    return {"br_x 150.0", "br_y 150.0", "read-delay true", "read-delay-duration 200000"};
}

class ScanDrivers
{
  public:
    ScanDrivers() : m_before(qgetenv(variable))
    {
        qputenv(variable, QFile::encodeName(m_folder.path()));
        install();
        pretend();
    }
    ~ScanDrivers()
    {
        qputenv(variable, m_before);
        qunsetenv("LD_LIBRARY_PATH");
        qunsetenv("QUORVIA_ODD_DRIVER");
    }
    ScanDrivers(const ScanDrivers&) = delete;
    ScanDrivers& operator=(const ScanDrivers&) = delete;

    /// The driver of the pretended scanners is the only one.
    void install() const { write("dll.conf", "# drivers\ntest\n"); }
    /// No driver is installed.
    void remove() const { write("dll.conf", "# no drivers\n"); }
    /// The driver in `directory` that fails where `fault` says, by its own words, is the only one. For as
    /// long as this lives.
    void installOdd(const char* directory, const char* fault)
    {
        write("dll.conf", "odd\n");
        qputenv("LD_LIBRARY_PATH", directory);
        qputenv("QUORVIA_ODD_DRIVER", fault);
    }
    /// There are two pretended scanners, with `settings` in the words of the driver on top of a picture of
    /// many colours, 40 x 30 mm.
    void pretend(const QStringList& settings = {}) const
    {
        QStringList lines{"number_of_devices 2",
                          "mode Gray",
                          "depth 8",
                          "resolution_min 1.0",
                          "resolution_max 1200.0",
                          "resolution_quant 1.0",
                          "resolution 50.0",
                          "geometry_min 0.0",
                          "geometry_max 200.0",
                          "geometry_quant 1.0",
                          "br_x 40.0",
                          "br_y 30.0",
                          "test-picture \"Color pattern\""};
        lines.append(settings);
        write("test.conf", lines.join(QLatin1Char('\n')).toUtf8() + '\n');
    }

  private:
    static constexpr char variable[] = "SANE_CONFIG_DIR";

    void write(const char* name, const QByteArray& text) const
    {
        QFile file(m_folder.filePath(QLatin1String(name)));
        const bool isOpen = file.open(QIODevice::WriteOnly);
        Q_ASSERT(isOpen);
        Q_UNUSED(isOpen);
        file.write(text);
    }

    QTemporaryDir m_folder;
    QByteArray m_before;
};

} // namespace quorvia::test
