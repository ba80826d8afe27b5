// The other process of the tests: writes counted values and tells each one that was acknowledged, looks at a
// store as somebody without rights, or holds an instance guard.
#include "platform/InstanceGuard.h"
#include "platform/SettingsStore.h"

#include <QByteArray>
#include <QString>

#include <grp.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

using namespace quorvia::platform;

namespace {

const QString key = QStringLiteral("Software\\Halvexa\\Quorvia\\Settings");

/// One line to the parent, at once and in one piece.
void tell(const QByteArray& line)
{
    const QByteArray whole = line + '\n';
    if (::write(STDOUT_FILENO, whole.constData(), size_t(whole.size())) != whole.size())
        ::_exit(3);
}

/// Writes `count` values (0: without end) under names that begin with `prefix`, and the number under the name
/// `Shared`; tells each number when both are acknowledged.
int writeCounted(const QString& path, const QString& prefix, int count)
{
    SettingsStore store(path);
    for (int n = 0; count == 0 || n < count; ++n) {
        if (store.write(key, prefix + QString::number(n), ValueType::Number, n) != WriteResult::Written)
            return 1;
        if (store.write(key, QStringLiteral("Shared"), ValueType::Text, prefix + QString::number(n)) !=
            WriteResult::Written)
            return 2;
        tell(QByteArray::number(n));
    }
    return 0;
}

/// Gives up the rights of the administrator, where it has them.
bool becomeNobody()
{
    constexpr uid_t nobody = 65534;
    return ::geteuid() != 0 ||
           (::setgroups(0, nullptr) == 0 && ::setgid(nobody) == 0 && ::setuid(nobody) == 0);
}

/// Opens the store without rights; tells what was found, a value, and how two writes end.
int lookWithoutRights(const QString& path)
{
    if (!becomeNobody())
        return 1;
    SettingsStore store(path);
    const auto value = store.read(key, QStringLiteral("cView"));
    tell(QByteArray::number(int(store.openResult())));
    tell(value ? value->value.toString().toUtf8() : QByteArray("absent"));
    tell(QByteArray::number(int(store.write(key, QStringLiteral("cView"), ValueType::Number, 7))));
    tell(QByteArray::number(int(store.write(key, QStringLiteral("cView"), ValueType::Number, 1))));
    return 0;
}

/// Tells where the machine-wide store would lie for somebody without rights.
int placeWithoutRights(const QString& sharedDirectory)
{
    if (!becomeNobody())
        return 1;
    tell(machineStorePathBelow(sharedDirectory).toUtf8());
    return 0;
}

/// Holds a guard until standard input ends; tells whether others were running.
int holdGuard(const QString& path)
{
    const InstanceGuard guard(path);
    tell(guard.othersWereRunning() ? "others" : "alone");
    char byte = 0;
    while (::read(STDIN_FILENO, &byte, 1) > 0) {
    }
    return 0;
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 3)
        return 64;
    const QString path = QString::fromLocal8Bit(arguments[2]);
    if (std::strcmp(arguments[1], "write") == 0 && count == 5)
        return writeCounted(path, QString::fromLocal8Bit(arguments[3]), std::atoi(arguments[4]));
    if (std::strcmp(arguments[1], "look") == 0)
        return lookWithoutRights(path);
    if (std::strcmp(arguments[1], "place") == 0)
        return placeWithoutRights(path);
    if (std::strcmp(arguments[1], "guard") == 0)
        return holdGuard(path);
    return 64;
}
