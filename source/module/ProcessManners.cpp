// A plug-in is a guest in the host's process. JUCE, which serves whole programs too, changes some things that belong
// to the process: the working folder and the environment (file dialogs), the locale (each key), and how many files
// may be open (when it is loaded). The programs that it starts inherit whatever the host has open, and one that shows
// a document is never asked how it ended. Of a system with many fonts it reads them all.
//
// The module is linked so that the calls in question, from JUCE or anything else in the module, arrive here instead of
// in the C library ("--wrap"). Nothing outside the module is concerned. Threads: any.

#include "WindowSystem.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <clocale>
#include <csignal>
#include <cstring>
#include <utility>

extern "C"
{
    int __real_fork();
    int __real_access (const char*, int);
    int __real_chdir (const char*);
    void* __real_dlsym (void*, const char*);
    char* __real_getenv (const char*);
    int __real_execv (const char*, char* const*);
    int __real_execvp (const char*, char* const*);
    int __real_kill (int, int);
    char* __real_setlocale (int, const char*);

    int __wrap_fork();
    int __wrap_access (const char*, int);
    int __wrap_chdir (const char*);
    void* __wrap_dlsym (void*, const char*);
    char* __wrap_getenv (const char*);
    int __wrap_execv (const char*, char* const*);
    int __wrap_execvp (const char*, char* const*);
    int __wrap_kill (int, int);
    int __wrap_pipe (int*);
    int __wrap_setenv (const char*, const char*, int);
    char* __wrap_setlocale (int, const char*);
    int __wrap_setrlimit (int, const rlimit*);
}

namespace
{
/** Where the next child of this thread begins; empty for the host's folder. An object with a destructor would keep the
    module loaded for as long as the thread lives. */
thread_local std::array<char, PATH_MAX> childsFolder {};

/** Whether the next child of this thread talks to us through a pipe; it is then waited for, too. */
thread_local bool childTalks = false;

/** In a child, before it becomes another program: it takes along neither the host's files, devices and locks, nor a
    stream that somebody waits to see closed, nor the signals that the host blocks or ignores. */
void leaveHost (bool keepsOutput)
{
    if (childsFolder[0] != 0) [[maybe_unused]]
        const auto entered = __real_chdir (childsFolder.data());

    const auto nothing = open ("/dev/null", O_RDWR);
    dup2 (nothing, STDIN_FILENO);

    if (! keepsOutput)
    {
        dup2 (nothing, STDOUT_FILENO);
        dup2 (nothing, STDERR_FILENO);
    }

    constexpr auto first = STDERR_FILENO + 1;
    constexpr auto mostFilesBeforeLinux5_11 = 4096;

    if (close_range (first, UINT_MAX, CLOSE_RANGE_CLOEXEC) != 0)
        for (auto file = first; file < mostFilesBeforeLinux5_11; ++file)
            fcntl (file, F_SETFD, FD_CLOEXEC);

    for (auto number = 1; number < NSIG; ++number)
        std::signal (number, SIG_DFL);

    sigset_t none;
    sigemptyset (&none);
    sigprocmask (SIG_SETMASK, &none, nullptr);
}
} // namespace

/** The locale stays; the answer is the one that is in force. */
char* __wrap_setlocale (int category, const char*)
{
    return __real_setlocale (category, nullptr);
}

/** The environment stays. JUCE would tell a file dialog of a window of ours on top, and a plug-in has none. */
int __wrap_setenv (const char*, const char*, int)
{
    return 0;
}

/** JUCE opens each font that is installed, thousands on some machines, when the first window asks for the font that
    we bring. It is told of a folder without any; letters that ours lacks come from fontconfig, which knows where they
    are. */
char* __wrap_getenv (const char* name)
{
    static char noFolder[] = "/dev/null";
    auto* value = __real_getenv (name);
    return value == nullptr && std::strcmp (name, "JUCE_FONT_PATH") == 0 ? noFolder : value;
}

/** JUCE asks programs of GNOME's for the scale of each screen, which it heeds in programs alone, and for the name of the
    desktop's theme, by which a program could be dark or light. It has the first window wait until each has answered,
    which takes longer than to build the window. It finds no such programs here. */
int __wrap_access (const char* path, int mode)
{
    for (const auto* program : { "/usr/bin/dconf", "/usr/bin/gsettings" })
        if (std::strcmp (path, program) == 0)
        {
            errno = ENOENT;
            return -1;
        }

    return __real_access (path, mode);
}

/** The working folder stays; the next child begins in this one. */
int __wrap_chdir (const char* folder)
{
    struct stat status = {};

    if (stat (folder, &status) != 0)
        return -1;

    if (! S_ISDIR (status.st_mode) || std::strlen (folder) >= childsFolder.size())
    {
        errno = S_ISDIR (status.st_mode) ? ENAMETOOLONG : ENOTDIR;
        return -1;
    }

    std::strcpy (childsFolder.data(), folder);
    return 0;
}

/** Another child, such as one of the host's, does not keep the pipe open. */
int __wrap_pipe (int* ends)
{
    const auto result = pipe2 (ends, O_CLOEXEC);
    childTalks = result == 0;
    return result;
}

/** JUCE looks up the window system in this way. */
void* __wrap_dlsym (void* library, const char* name)
{
    auto* found = __real_dlsym (library, name);
    return found != nullptr ? tessarin::inPlaceOf (name, found) : nullptr;
}

/** The limits stay. JUCE would set that of open files, also the one up to which the host may ask for more. */
int __wrap_setrlimit (int, const rlimit*)
{
    return 0;
}

/** JUCE ends a dialog in this way and does not wait for it, also one that is gone, whose number may be somebody else's
    by now. */
int __wrap_kill (int process, int number)
{
    if (number != SIGKILL)
        return __real_kill (process, number);

    if (waitpid (process, nullptr, WNOHANG) != 0)
        return 0;

    const auto result = __real_kill (process, number);

    while (waitpid (process, nullptr, 0) < 0 && errno == EINTR)
    {
    }

    return result;
}

/** A child that nobody waits for has none of our processes for a parent, and leaves no trace when it ends. */
int __wrap_fork()
{
    const auto isWaitedFor = std::exchange (childTalks, false);
    const auto child = __real_fork();

    if (child == 0 && ! isWaitedFor)
        if (const auto grandchild = __real_fork(); grandchild != 0)
            _exit (grandchild > 0 ? 0 : 1);

    if (child > 0)
        childsFolder[0] = 0;

    if (child <= 0 || isWaitedFor)
        return child;

    auto status = 0;

    while (waitpid (child, &status, 0) < 0 && errno == EINTR)
    {
    }

    return status == 0 ? child : -1;
}

/** JUCE shows documents and folders through this one. */
int __wrap_execv (const char* program, char* const* arguments)
{
    leaveHost (false);
    __real_execv (program, arguments);
    _exit (127);
}

/** JUCE asks programs through this one and reads what they print. */
int __wrap_execvp (const char* program, char* const* arguments)
{
    leaveHost (true);
    __real_execvp (program, arguments);
    _exit (127);
}
