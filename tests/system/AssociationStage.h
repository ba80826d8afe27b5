// A home without a desktop, in which types are taken over and given back.
#pragma once

#include "app/Paths.h"
#include "app/Settings.h"
#include "app/SettingsHome.h"
#include "platform/MimeApps.h"
#include "support/FileContent.h"
#include "support/ScratchDesktop.h"
#include "system/mAssociation.h"

#include <memory>

namespace quorvia::test {

class AssociationStage
{
  public:
    /// Each test has a stage of its own: from the first to the last of these.
    void open()
    {
        m_home = std::make_unique<SettingsHome>();
        leaveDesktop(*m_home);
        m_home->write(".config/.keep", "");
    }
    void close() { m_home.reset(); }

    SettingsHome& home() const { return *m_home; }
    /// Writes a desktop entry that can be started, below the data directory `share`; gives its path.
    QString addEntry(const QString& name, const QString& share = "share") const
    {
        return m_home->write(share + "/applications/" + name,
                             "[Desktop Entry]\nType=Application\nName=A\nExec=true %f\n");
    }
    QString list() const { return m_home->path(".config/mimeapps.list"); }
    QString copy() const { return m_home->path(".local/share/applications/quorvia.desktop"); }
    static QByteArray log() { return contentOf(app::logPath()); }

    static QString used(const QString& extension, const QString& verb = "Open")
    {
        platform::MimeApps desktop;
        return system::GetAssociation(desktop, extension, verb);
    }
    static void takeOver()
    {
        app::save(app::setting::Associate, 1);
        system::ApplyAssociations();
    }

  private:
    std::unique_ptr<SettingsHome> m_home;
};

} // namespace quorvia::test
