// The manual page, in the macros of man(7).
#include "commands/CommandHelp.h"

#include <array>

namespace quorvia::commands {

namespace {

struct Entry
{
    const char* word;
    const char* text;
};

constexpr std::array files = {
    Entry{"~/.config/halvexa/user.db", "The settings, a SQLite file. A damaged one is set aside under a new "
                                       "name, never deleted."},
    Entry{"/var/lib/halvexa/machine.db",
          "Settings that all users of the machine and the maker's other tools share, when that file can be "
          "written; else they are kept in ~/.config/halvexa/machine.db."},
    Entry{"~/.local/share/quorvia/",
          "Thumbnails, playlists and descriptions. Beside the program instead, when "
          "a file named portable lies there."},
    Entry{"~/.local/state/quorvia/qolog.log", "The log."},
};

constexpr std::array variables = {
    Entry{"QUORVIA_ROOT", "The directory for thumbnails, playlists and descriptions."},
    Entry{"HALVEXA_MACHINE_STORE", "The file of the settings that all users share."},
    Entry{"XDG_CONFIG_HOME, XDG_DATA_HOME, XDG_STATE_HOME",
          "What stands for ~/.config, ~/.local/share and ~/.local/state above."},
    Entry{"PRINTER", "The printer to use in place of the default one."},
};

/// `text` in lines of seventy bytes at most, each sentence from the start of one, as readers of the source
/// want it.
QByteArray inLines(const QByteArray& text)
{
    constexpr qsizetype widest = 70;
    QByteArray out;
    qsizetype length = 0;
    for (const QByteArray& word : text.split(' ')) {
        const bool breaks = out.endsWith('.') || length + word.size() >= widest;
        if (!out.isEmpty())
            out += breaks ? '\n' : ' ';
        length = breaks ? word.size() : length + word.size() + 1;
        out += word;
    }
    return out;
}

/// `text` with all that troff would take for its own made plain.
QByteArray plain(const QByteArray& text)
{
    QByteArray out = text;
    out.replace('\\', "\\e").replace('-', "\\-").replace('~', "\\(ti");
    return out.startsWith('.') || out.startsWith('\'') ? "\\&" + out : out;
}

/// A sentence of a phrase of the catalog.
QByteArray sentence(QByteArray phrase)
{
    if (!phrase.isEmpty() && phrase.at(0) >= 'a' && phrase.at(0) <= 'z')
        phrase[0] = char(phrase.at(0) - 'a' + 'A');
    return inLines(plain(phrase)) + ".\n";
}

QByteArray entry(const QByteArray& word, const QByteArray& text)
{
    return ".TP\n.B " + plain(word) + '\n' + text;
}

QByteArray entries(std::span<const Entry> rows)
{
    QByteArray out;
    for (const Entry& row : rows)
        out += entry(row.word, inLines(plain(row.text)) + '\n');
    return out;
}

QByteArray head(const QByteArray& version, const QByteArray& date)
{
    return ".TH QUORVIA 1 " + date + " \"Quorvia " + version +
           "\" \"User Commands\"\n"
           ".SH NAME\n"
           "quorvia \\- view, sort and print images\n"
           ".SH SYNOPSIS\n"
           ".B quorvia\n"
           "[\\fIPATH\\fR] [\\fB/\\fICOMMAND\\fR ...]\n"
           ".SH DESCRIPTION\n"
           "Shows the image at\n"
           ".IR PATH ,\n"
           "or the images of the folder\n"
           ".IR PATH ,\n"
           "in a window, and runs the named commands in order.\n"
           "What a file is, its content decides, not its name.\n"
           "A path with blanks needs no quotes.\n"
           ".PP\n"
           "A command is an argument that begins with \"/\", holds no further \"/\" and\nnames no file.\n"
           "The keys of the window are listed by\n"
           ".BR quorvia\\ /miHelpShortcuts .\n";
}

QByteArray optionEntries()
{
    QByteArray out;
    for (const LineOption& option : lineOptions())
        out += entry(option.word, sentence(option.text));
    return out + entry(messageOption().word, sentence(messageOption().text));
}

QByteArray commandEntries()
{
    QByteArray out;
    for (const CommandLineGroup& group : commandLineGroups()) {
        out += QByteArray(".SS ") + headingOf(group.group) + '\n';
        for (const CommandText& command : group.commands)
            out += entry(QByteArray("/") + command.name, sentence(phraseOf(command)));
    }
    return out;
}

} // namespace

QByteArray manualPage(const QByteArray& version, const QByteArray& date)
{
    return head(version, date) + ".SH OPTIONS\n" + optionEntries() + ".SH COMMANDS\n" + commandEntries() +
           ".SH ENVIRONMENT\n" + entries(variables) + ".SH FILES\n" + entries(files) + ".SH EXIT STATUS\n" +
           entry("0", "The program has ended as it was asked to.\n") +
           entry("other", "It could not start, as without a display or without settings that it\nmay write, "
                          "or was broken off.\n") +
           ".SH SEE ALSO\n"
           ".BR lpoptions (1),\n"
           ".BR scanimage (1),\n"
           ".BR xdg\\-email (1),\n"
           ".BR xdg\\-mime (1)\n";
}

} // namespace quorvia::commands
