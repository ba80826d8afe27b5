// Sends the current image by the sister tool for mail, as the file that it is or as a JPEG of what is on
// show.
#pragma once

#include "platform/Shell.h"

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

namespace quorvia::engine {
class ImageEngine;
}

namespace quorvia::commands {

/// What stands below a mail: two line breaks as the tool reads them, a dash, and where the program is from.
QString promotionalLine();

class ImageMail
{
  public:
    /// All of the functions are called.
    struct Sinks
    {
        QWidget* owner = nullptr; ///< of the boxes; may be null
        engine::ImageEngine* ix1 = nullptr;
        std::function<QString()> toolPath; ///< of the tool for mail; empty when it is missing
        std::function<platform::ShellCode(const QString& program, const QStringList& arguments)> start;
    };

    explicit ImageMail(Sinks sinks);

    /// Hands the current image to the tool (`miEmailImage`), after a question when it is no JPEG. Nothing
    /// happens without a file. The JPEG that is made of it stays, for the user alone, until the next one.
    void send();

  private:
    QString attachment(const QString& file);
    bool convertTo(const QString& path);

    Sinks m_sinks;
};

} // namespace quorvia::commands
