// The commands that start another tool of the family.
#pragma once

#include "platform/Shell.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <span>

class QWidget;

namespace quorvia::system {

struct SiblingTool
{
    const char* title;
    const char* runCommand;
    const char* webCommand; ///< for who has not got it
    bool takesImage;        ///< is told the current file
};

/// All of them.
std::span<const SiblingTool> siblingTools();

/// The arguments for `tool` when `file` is the current one; empty when none is open.
QStringList siblingArguments(const SiblingTool& tool, const QString& file);

struct SiblingSinks
{
    QWidget* owner; ///< of the question
    std::function<QString()> currentFile;
    std::function<platform::ShellCode(const QString& program, const QStringList& arguments)> start;
    std::function<void(const QString& name)> runTool;
};

/// Starts `tool`, or asks whether to look at its page when it is not on this computer. A failed start leaves
/// a line in the log.
void runSibling(const SiblingTool& tool, const SiblingSinks& sinks);

} // namespace quorvia::system
