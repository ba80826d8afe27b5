// A desktop of a test's own inside a scratch home: file types, applications that record how they were
// started, and the user's choice among them. Make all of it before the first call that reaches GIO: GIO looks
// once.
#pragma once

#include "ScratchHome.h"

#include <QString>
#include <QStringList>

#include <map>

namespace quorvia::test {

/// From now on nothing of the machine's own desktop is seen: its data is in `home`, below "share" and "etc".
void leaveDesktop(const ScratchHome& home);

class ScratchDesktop
{
  public:
    explicit ScratchDesktop(const ScratchHome& home);

    /// Makes a program file that writes its working directory and then its arguments, one a line; gives its
    /// path.
    QString makeProgram(const QString& name) const;
    /// What that program wrote, the working directory first; empty until it has run to its end.
    QStringList record(const QString& name) const;
    /// Forgets what it wrote.
    void forget(const QString& name) const;

    /// Files that match `pattern` are of `type` from now on.
    void addType(const QString& type, const QString& pattern);
    /// Installs the desktop entry "<name>.desktop", run by the program of that name, for `types`. It takes a
    /// path, or with `argument` "%u" an address.
    void addApplication(const QString& name, const QStringList& types, const QString& categories,
                        const QString& argument = QStringLiteral("%f"));
    /// The user's choice for `type` is "<name>.desktop".
    void setDefault(const QString& type, const QString& name);

  private:
    const ScratchHome& m_home;
    QByteArray m_globs;
    QByteArray m_defaults = "[Default Applications]\n";
    std::map<QString, QStringList> m_associations; ///< type to desktop ids, in the order they were installed
};

} // namespace quorvia::test
