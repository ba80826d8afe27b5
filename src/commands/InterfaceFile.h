// Reads menu and toolbar from the definition file interface.dat. One read of a small file a call.
#pragma once

#include <QString>

#include <optional>

class QWidget;

namespace quorvia::commands {

/// The section `name` of a definition: what follows the first line "----- StrData:<name>", whatever its case,
/// up to the next "----- " or the end, without its line ends. Lines end with CRLF or LF; the marker cannot
/// stand on the first line. Nothing when the marker is not there.
std::optional<QString> definitionSection(const QString& definition, const QString& name);

class InterfaceFile
{
  public:
    /// The definition file of the user, else the one that came with the program. Message boxes show over
    /// `owner`, which may be null.
    explicit InterfaceFile(QWidget* owner = nullptr);
    InterfaceFile(QWidget* owner, const QString& path) : m_owner(owner), m_path(path) {}

    /// The section of the context menu. Empty, after a message box, when there is no definition file; empty,
    /// with a line in the log, when it has no such section, cannot be read or is larger than a mebibyte.
    QString MenuString() const;
    /// The section of the toolbar, likewise.
    QString ToolbarString() const;

    /// Stores the text in the settings, from where nothing reads it back. True when written.
    static bool SetMenuString(const QString& text);
    static bool SetToolbarString(const QString& text);

  private:
    QString section(const QString& name) const;

    QWidget* m_owner;
    QString m_path;
};

} // namespace quorvia::commands
