// What the tests of the store look into it with.
#pragma once

#include "platform/SettingsStore.h"

#include <QProcess>

namespace quorvia::test {

inline const QString settingsKey = QStringLiteral("Software\\Halvexa\\Quorvia\\Settings");

/// What the sqlite3 tool prints for `sql`.
inline QByteArray asked(const QString& file, const QString& sql)
{
    QProcess tool;
    tool.start(QStringLiteral("sqlite3"), {file, sql});
    if (!tool.waitForFinished(20000) || tool.exitCode() != 0)
        return "the sqlite3 tool failed: " + tool.readAllStandardError() + tool.errorString().toUtf8();
    return tool.readAllStandardOutput().trimmed();
}

/// The text of a value; "absent" when there is none.
inline QString stored(const platform::SettingsStore& store, const QString& key, const QString& name)
{
    const auto value = store.read(key, name);
    return value ? value->value.toString() : QStringLiteral("absent");
}

} // namespace quorvia::test
