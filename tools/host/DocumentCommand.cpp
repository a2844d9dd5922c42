#include "Commands.h"
#include "Failure.h"
#include "Usage.h"

#include <iostream>

// The manual page and the shell's completion, from the table that "--help" prints.

namespace
{
/** As it stands in a line of a page: neither an escape nor, at the line's start, a request; hyphens to be copied. */
juce::String inPage (const juce::String& text)
{
    const auto escaped = text.replace ("\\", "\\e").replace ("-", "\\-");
    return escaped.startsWithChar ('.') || escaped.startsWithChar ('\'') ? "\\&" + escaped : escaped;
}

/** What the command does, and then the rest of its help. */
juce::String helpInPage (const Command& command)
{
    auto text = inPage (summaryOf (command)) + "\n";
    auto lines = juce::StringArray::fromLines (command.help);
    lines.remove (0);

    if (! lines.isEmpty())
        text << ".PP\n";
    for (const auto& line : lines)
        text << inPage (line) << '\n';

    return text;
}

juce::String commandInPage (const Command& command)
{
    auto text = ".SS "
                + inPage ("\"" + (juce::String (command.name) + " " + command.operands).trimEnd() + "\"")
                + "\n" + helpInPage (command);

    for (const auto& option : command.options)
    {
        text << ".TP\n.B " << inPage (option.name);
        if (option.value != nullptr)
            text << " \\fI" << inPage (option.value) << "\\fR";

        text << '\n' << inPage (option.help) << '\n';
    }

    return text;
}

juce::String manualPage()
{
    auto page =
        juce::String (".TH ORVO\\-HOST 1 \"\" \"Orvo " ORVO_VERSION "\" \"User Commands\"\n"
                      ".SH NAME\norvo\\-host \\- the Orvo clipper as a program for files\n"
                      ".SH SYNOPSIS\n.B orvo\\-host\n.I COMMAND\n[\\fIOPTIONS\\fR] [\\fIOPERANDS\\fR]\n"
                      ".br\n.B orvo\\-host\n[\\fICOMMAND\\fR] \\fB\\-\\-help\\fR\n"
                      ".SH DESCRIPTION\nLoads the module as any host of plug\\-ins does, so that files "
                      "sound as they would in a project.\n"
                      "Options may stand anywhere among the operands; \\fB\\-\\-\\fR ends them.\n"
                      ".SH COMMANDS\n");

    for (const auto& command : allCommands())
        page << commandInPage (command);

    page << ".SH EXIT STATUS\n";
    for (const auto& [status, meaning] :
         { std::pair { 0, "all was done" },
           { Failure::failed, "something could not be done; a line on the error stream says what and why" },
           { Failure::wrongUsage, "the command line was not understood; nothing was done" },
           { Failure::targetMissed, "a loudness could not be reached; all else was done" },
           { Failure::interrupted, "a batch was interrupted; what is written is whole" } })
        page << ".TP\n.B " << status << '\n' << meaning << '\n';

    return page
           + ".SH FILES\n.TP\n.I ~/.config/Tessarin/Orvo\npresets, settings and the log; below\n"
             ".B XDG_CONFIG_HOME\nif that is set\n"
             ".SH EXAMPLES\n.nf\norvo\\-host render mix.wav clipped.wav \\-\\-set threshold_single=\\-3 "
             "\\-\\-set oversampling=4x\norvo\\-host render stems/*.wav processed/ \\-\\-preset "
             "\"Factory/Mastering/Gentle Master\"\n"
             "orvo\\-host master album/*.wav release/ \\-\\-album \\-\\-loudness \\-9 \\-\\-peak \\-1\n.fi\n";
}

/** The words that an option's value or a command's operand can be, or nothing if it is no choice. */
juce::String wordsOf (juce::StringRef form)
{
    const auto first = juce::String (form).upToFirstOccurrenceOf (" ", false, false);
    return first.containsChar ('|') ? first.replaceCharacter ('|', ' ') : juce::String();
}

bool namesFile (const char* value)
{
    return juce::String (value).startsWith ("FILE") || juce::String (value) == "PATH";
}

/** What may follow each option of a command, and then the command's own words. */
juce::String branchFor (const Command& command)
{
    juce::String branch, options;

    for (const auto& option : command.options)
    {
        options << option.name << ' ';
        if (option.value == nullptr)
            continue;

        branch << "        " << command.name << '/' << option.name << ") ";
        if (const auto words = wordsOf (option.value); words.isNotEmpty())
            branch << "words='" << words << "' ;;\n";
        else
            branch << (namesFile (option.value) ? "files=yes ;;\n" : ";;\n");
    }

    branch << "        " << command.name << "/*) words='"
           << (wordsOf (command.operands) + " " + options).trimStart() << "--help'";
    return branch + (juce::String (command.operands).containsChar (' ') ? "; files=yes ;;\n" : " ;;\n");
}

juce::String completion()
{
    juce::String names, branches;

    for (const auto& command : allCommands())
    {
        names << command.name << ' ';
        branches << branchFor (command);
    }

    return "# Completion for orvo-host in bash.\n"
           "_orvo_host()\n{\n"
           "    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} words='' files=''\n"
           "    case $([ \"$COMP_CWORD\" -gt 1 ] && echo \"${COMP_WORDS[1]}/$before\") in\n"
           "        '') words='"
           + names + "--help' ;;\n" + branches
           + "    esac\n"
             "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$word\"\n"
             "                             if [ -n \"$files\" ]; then compgen -f -- \"$word\"; fi)\n"
             "}\n"
             "complete -o filenames -F _orvo_host orvo-host\n";
}

void runDocument (const Arguments& arguments)
{
    const auto& operands = arguments.operands;

    if (operands == juce::StringArray { "man" })
        std::cout << manualPage();
    else if (operands == juce::StringArray { "bash" })
        std::cout << completion();
    else
        throw Failure ("document takes \"man\" or \"bash\"", Failure::wrongUsage);
}
} // namespace

Command documentCommand()
{
    return { "document",
             "man|bash",
             "prints this program's manual page, or its completion for bash",
             {},
             runDocument };
}
