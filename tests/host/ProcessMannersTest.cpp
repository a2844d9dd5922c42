#include "BareHost.h"
#include "BareHostSupport.h"

#include <dlfcn.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

/** The process's calls, which the module finds before those of the C library. They go on to it. */
namespace
{
std::vector<std::string> calls;

int* const numQuestionsToDesktop = static_cast<int*> (
    mmap (nullptr, sizeof (int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));

template <typename Function>
Function* next (const char* name)
{
    return reinterpret_cast<Function*> (dlsym (RTLD_NEXT, name));
}
} // namespace

#define ORVO_EXPORTED extern "C" __attribute__ ((visibility ("default")))

ORVO_EXPORTED char* setlocale (int category, const char* name) noexcept
{
    if (name != nullptr)
        calls.push_back (std::string ("setlocale ") + name);

    return next<char*(int, const char*)> ("setlocale") (category, name);
}

ORVO_EXPORTED int chdir (const char* folder) noexcept
{
    calls.push_back (std::string ("chdir ") + folder);
    return next<int (const char*)> ("chdir") (folder);
}

ORVO_EXPORTED int setenv (const char* name, const char* value, int overwrite) noexcept
{
    calls.push_back (std::string ("setenv ") + name);
    return next<int (const char*, const char*, int)> ("setenv") (name, value, overwrite);
}

/** Whether a program is there that knows the desktop's settings. */
ORVO_EXPORTED int access (const char* path, int mode) noexcept
{
    if (const std::string_view file (path); file.ends_with ("/gsettings") || file.ends_with ("/dconf"))
        calls.push_back (std::string ("access ") + path);

    return next<int (const char*, int)> ("access") (path, mode);
}

/** In a child, whose memory is its own. */
ORVO_EXPORTED int execvp (const char* program, char* const* arguments) noexcept
{
    if (std::string_view (program).ends_with ("/gsettings"))
        ++*numQuestionsToDesktop;

    return next<int (const char*, char* const*)> ("execvp") (program, arguments);
}

/** Of the library that reads fonts, which comes with the module. As if there were no such file. */
ORVO_EXPORTED int FT_New_Face (void*, const char* file, long, void**) noexcept
{
    constexpr auto cannotOpen = 1;
    calls.push_back (std::string ("FT_New_Face ") + file);
    return cannotOpen;
}

namespace
{
using Words = std::vector<std::string>;

/** A program that the plug-in finds first on the path. It tells, a line each, where it is, whether its parent is this
    process, and what it has open, and answers with a line. */
class Program
{
public:
    Program (const std::string& name, const std::string& answer)
        : file (folder.path / name), told (folder.path / "told")
    {
        std::ofstream script (file);
        script << "#!/usr/bin/python3\nimport os\n"
               << "def opened(n): return os.path.lexists(f'/proc/self/fd/{n}')\n"
               << "words = [os.getcwd(), 'child' if os.getppid() == " << getpid() << " else 'stranger']\n"
               << "words += [os.readlink(f'/proc/self/fd/{n}') for n in range(64) if opened(n)]\n"
               << "open('" << told.string() << ".new', 'w').write('\\n'.join(words))\n"
               << "os.rename('" << told.string() << ".new', '" << told.string() << "')\nprint('" << answer
               << "')\n";
        script.close();
        std::filesystem::permissions (file, std::filesystem::perms::owner_all);
        path = getenv ("PATH");
        setenv ("PATH", (folder.path.string() + ":" + path).c_str(), 1);
    }

    ~Program() { setenv ("PATH", path.c_str(), 1); }

    Program (const Program&) = delete;
    Program& operator= (const Program&) = delete;

    [[nodiscard]] bool hasRun() const { return std::filesystem::exists (told); }

    [[nodiscard]] Words getWords() const
    {
        std::ifstream lines (told);
        Words words;

        for (std::string line; std::getline (lines, line);)
            words.push_back (line);

        return words;
    }

private:
    TemporaryFolder folder;
    const std::filesystem::path file, told;
    std::string path;
};

// Of the first window.
constexpr std::pair manualButton (659, 19), saveButton (621, 19), dialogsSaveButton (660, 340);

/** Of the process: all that its environment says, and its limits. */
Words surroundings()
{
    Words words;

    for (auto** entry = environ; *entry != nullptr; ++entry)
        words.emplace_back (*entry);

    for (auto kind = 0; kind < RLIM_NLIMITS; ++kind)
    {
        rlimit limit {};
        getrlimit (static_cast<__rlimit_resource_t> (kind), &limit);
        words.push_back (std::to_string (limit.rlim_cur) + " of " + std::to_string (limit.rlim_max));
    }

    return words;
}

std::array<void*, 32> signalHandlers()
{
    std::array<void*, 32> handlers {};

    for (auto number = 1; number < 32; ++number)
    {
        struct sigaction action = {};
        sigaction (number, nullptr, &action);
        handlers[static_cast<size_t> (number)] = reinterpret_cast<void*> (action.sa_handler);
    }

    return handlers;
}

TEST (ProcessManners, NothingThatIsTheHostsIsChangedAndNothingOfItsGoesToOtherPrograms)
{
    // Other than what JUCE finds right for a program.
    rlimit files {};
    getrlimit (RLIMIT_NOFILE, &files);
    files.rlim_cur = 500;
    setrlimit (RLIMIT_NOFILE, &files);

    const TemporaryFolder answers;
    const auto chosen = answers.path / "Loud.tpre";
    const Program dialog ("zenity", chosen.string()), viewer ("xdg-open", "");
    setenv ("LC_ALL", "C.UTF-8", 1);
    const auto before = surroundings();

    const LoadedModule module (builtLibrary());
    const HostsErrors errors;
    EventLoop loop;
    BareHost host (module, errors.display, &loop);
    const auto manual = configFolder() / "Orvo Manual 1.0.1.pdf";
    std::ofstream (manual) << "%PDF";

    // Something that a child would keep open, and that it would be stopped by.
    const auto hostsFile = fopen ((answers.path / "session").c_str(), "w");
    sigset_t blocked, unblocked;
    sigemptyset (&blocked);
    sigaddset (&blocked, SIGTERM);
    sigprocmask (SIG_BLOCK, &blocked, &unblocked);
    const auto handlers = signalHandlers();
    const auto folder = std::filesystem::current_path();
    calls.clear();

    host.openWindow();
    ASSERT_TRUE (loop.serveUntil ([&] { return isDrawn (errors.display, host.getPluginsWindow()); }));
    press (errors.display, host.getPluginsWindow(), "a");
    click (errors.display, host.getPluginsWindow(), manualButton);
    EXPECT_TRUE (loop.serveUntil ([&] { return viewer.hasRun(); }));
    click (errors.display, host.getPluginsWindow(), saveButton);
    click (errors.display, host.getPluginsWindow(), dialogsSaveButton);
    EXPECT_TRUE (loop.serveUntil ([&] { return std::filesystem::exists (chosen); }));
    host.closeWindow();

    EXPECT_EQ (calls, Words {});
    EXPECT_EQ (*numQuestionsToDesktop, 0) << "the first window waits for programs";
    EXPECT_EQ (std::filesystem::current_path(), folder);
    EXPECT_STREQ (setlocale (LC_ALL, nullptr), "C");
    EXPECT_EQ (signalHandlers(), handlers);
    EXPECT_EQ (surroundings(), before);

    const std::string nothing = "/dev/null";
    EXPECT_EQ (viewer.getWords(), (Words { folder.string(), "stranger", nothing, nothing, nothing }));

    // JUCE reads what the dialog prints, and has it begin where the presets are.
    auto words = dialog.getWords();
    const Words expected { (configFolder() / "Presets/User").string(), "child", nothing, "pipe", nothing };
    ASSERT_EQ (words.size(), expected.size());
    words[3].resize (4);
    EXPECT_EQ (words, expected);

    EXPECT_EQ (waitpid (-1, nullptr, WNOHANG), -1) << "a child is left";
    sigprocmask (SIG_SETMASK, &unblocked, nullptr);
    fclose (hostsFile);
}
} // namespace
