#include "commands/CommandHelp.h"

#include "app/ImageTypes.h"
#include "engine/Codec.h"

#include <algorithm>
#include <array>

namespace quorvia::commands {

namespace {

constexpr std::array options = {
    LineOption{"--help", "say what can be typed here, and end"},
    LineOption{"--version", "say which version this is, and end"},
    LineOption{"/install", "register the program, and end (alone on the line)"},
    LineOption{"/uninstall",
               "give the file types back, remove the program's settings, and end (alone on the line)"},
};

constexpr int wordColumn = 22; // as wide as the longest word and two blanks

void appendRow(QByteArray& text, const QByteArray& word, const QByteArray& phrase)
{
    text += "  " + word.leftJustified(wordColumn) + phrase + '\n';
}

} // namespace

std::span<const LineOption> lineOptions()
{
    return options;
}

LineOption messageOption()
{
    return {"/miMsg_TEXT", "show TEXT, up to its first \"_\", in a message box"};
}

std::vector<CommandLineGroup> commandLineGroups()
{
    std::vector<CommandLineGroup> groups;
    for (const CommandText& command : commandCatalog()) {
        if (!isForCommandLine(command))
            continue;
        if (groups.empty() || groups.back().group != command.group)
            groups.push_back({command.group, {}});
        groups.back().commands.push_back(command);
    }
    return groups;
}

QByteArray phraseOf(const CommandText& command)
{
    return command.group == CommandGroup::OtherNames ? QByteArray("the same as ") + command.text
                                                     : QByteArray(command.text);
}

QList<QByteArray> openedEndings()
{
    QList<QByteArray> endings = QByteArray(app::ImageExtensionList).replace("*.", "").split(';');
    for (const engine::Codec* codec : engine::codecTable()) {
        for (const QString& extension : codec->extensions()) {
            if (const QByteArray ending = extension.toLatin1(); !endings.contains(ending))
                endings.append(ending);
        }
    }
    endings.append("qol");
    return endings;
}

QByteArray helpText()
{
    QByteArray text =
        "Usage: quorvia [PATH] [/COMMAND ...]\n"
        "Shows the image at PATH, or the images of the folder PATH, and runs the named commands "
        "in order.\n\nOptions:\n";
    for (const LineOption& option : lineOptions())
        appendRow(text, option.word, option.text);
    appendRow(text, messageOption().word, messageOption().text);
    for (const CommandLineGroup& group : commandLineGroups()) {
        text += QByteArray("\n") + headingOf(group.group) + ":\n";
        for (const CommandText& command : group.commands)
            appendRow(text, QByteArray("/") + command.name, phraseOf(command));
    }
    return text;
}

} // namespace quorvia::commands
