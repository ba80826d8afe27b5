// Which files a playlist takes in. Costs a look at each file.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

class QWidget;

namespace quorvia::collections {

/// Whether `file` exists and can stand in a playlist file; the log has which one only exists.
bool canBeAdded(const QString& file);

/// Those of `files` that can be added, in their order; nothing when the user broke off. Many files show how
/// far it is in a box over `owner` (may be null). Events may run meanwhile.
std::optional<QStringList> addable(QStringList files, QWidget* owner);

} // namespace quorvia::collections
