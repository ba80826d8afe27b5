// What shells complete behind the program's name: its options, its commands, the files that it opens and
// folders. Each script stands alone: none needs helpers beyond its shell's own.
#include "commands/CommandHelp.h"

namespace quorvia::commands {

namespace {

/// A word and what it does.
struct Word
{
    QByteArray word;
    QByteArray text;
};

QList<Word> optionWords()
{
    QList<Word> words;
    for (const LineOption& option : lineOptions())
        words.append(Word{option.word, option.text});
    return words;
}

QList<Word> commandWords()
{
    QList<Word> words;
    for (const CommandLineGroup& group : commandLineGroups()) {
        for (const CommandText& command : group.commands)
            words.append(Word{QByteArray("/") + command.name, phraseOf(command)});
    }
    return words;
}

/// In single quotes, for zsh.
QByteArray quoted(QByteArray text)
{
    return '\'' + text.replace('\'', "'\\''") + '\'';
}

/// In single quotes, for fish.
QByteArray fishQuoted(QByteArray text)
{
    return '\'' + text.replace('\\', "\\\\").replace('\'', "\\'") + '\'';
}

QByteArray zshRows(const QList<Word>& words)
{
    QByteArray out;
    for (const Word& each : words)
        out += "        " + quoted(QByteArray(each.word) + ':' + QByteArray(each.text).replace(':', "\\:")) +
               '\n';
    return out;
}

} // namespace

QByteArray bashCompletion()
{
    QByteArray words;
    for (const Word& each : optionWords() + commandWords())
        words += each.word + '\n';
    QByteArray patterns;
    for (const QByteArray& ending : openedEndings())
        patterns += (patterns.isEmpty() ? "*." : " | *.") + ending;
    return "# bash completion for quorvia\n"
           "_quorvia()\n"
           "{\n"
           "    local word=${COMP_WORDS[COMP_CWORD]} found\n"
           "    local words='" +
           words +
           "'\n"
           "    COMPREPLY=()\n"
           "    while IFS= read -r found; do\n"
           "        COMPREPLY+=(\"$found\")\n"
           "    done < <(IFS=$'\\n'; compgen -W \"$words\" -- \"$word\"; compgen -d -- \"$word\")\n"
           "    while IFS= read -r found; do\n"
           "        case ${found,,} in\n"
           "            " +
           patterns +
           ") COMPREPLY+=(\"$found\") ;;\n"
           "        esac\n"
           "    done < <(compgen -f -- \"$word\")\n"
           "} &&\n"
           "    complete -o filenames -o default -F _quorvia quorvia\n";
}

QByteArray zshCompletion()
{
    // Its shell offers what is called an option only behind a "-".
    QList<Word> dashed;
    QList<Word> slashed;
    for (const Word& each : optionWords() + commandWords())
        (each.word.startsWith('-') ? dashed : slashed).append(each);
    return "#compdef quorvia\n"
           "_quorvia() {\n"
           "    local -a options commands\n"
           "    local found=1\n"
           "    options=(\n" +
           zshRows(dashed) +
           "    )\n"
           "    commands=(\n" +
           zshRows(slashed) +
           "    )\n"
           "    _describe -o option options && found=0\n"
           "    _describe command commands && found=0\n"
           "    _files -g '(#i)*.(" +
           openedEndings().join('|') +
           ")(-.)' && found=0\n"
           "    return found\n"
           "}\n"
           "_quorvia \"$@\"\n";
}

QByteArray fishCompletion()
{
    QByteArray out = "# fish completion for quorvia\n"
                     "function __quorvia_paths\n"
                     "    complete -C \"__fish_command_without_completions \"(commandline -ct) |\n"
                     "        string match -ri '^[^\\t]*(?:/|\\.(?:" +
                     openedEndings().join('|') +
                     "))(?:\\t.*)?$'\n"
                     "end\n"
                     "complete -c quorvia -f -a '(__quorvia_paths)'\n";
    for (const Word& each : optionWords() + commandWords()) {
        const bool isLong = each.word.startsWith("--");
        out += "complete -c quorvia " + (isLong ? "-l " + each.word.mid(2) : "-a " + each.word) + " -d " +
               fishQuoted(each.text) + '\n';
    }
    return out;
}

} // namespace quorvia::commands
