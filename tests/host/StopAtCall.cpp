// A library to be loaded before a program's own, with LD_PRELOAD: of the calls that change the factory presets'
// folder or the one beside it, the one with the number in ORVO_STOP_AT ends the process, or fails with the error in
// ORVO_STOP_BY. A minus before the error lets all that follow fail too. That it came to this call tells the file
// named in ORVO_STOP_FLAG.

#include <dlfcn.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string>

namespace
{
/** Of the module's one thread that writes there. */
int calls = 0;

bool isConcerned (const std::string& path)
{
    return path.find ("/Presets/Factory") != std::string::npos
           || path.find ("/Presets/.Factory") != std::string::npos;
}

std::string nameOf (int file)
{
    char name[4096];
    const auto length = readlink (("/proc/self/fd/" + std::to_string (file)).c_str(), name, sizeof (name));
    return { name, static_cast<size_t> (length > 0 ? length : 0) };
}

/** Whether the call fails. */
bool stops (const std::string& path)
{
    const auto *at = getenv ("ORVO_STOP_AT"), *by = getenv ("ORVO_STOP_BY"),
               *flag = getenv ("ORVO_STOP_FLAG");

    if (at == nullptr || ! isConcerned (path))
        return false;

    const auto error = atoi (by);
    const auto number = ++calls;

    if (number == atoi (at))
        close (creat (flag, 0644));

    if (number < atoi (at) || (number > atoi (at) && error >= 0))
        return false;

    if (error == 0)
        raise (SIGKILL);

    errno = abs (error);
    return true;
}

template <typename Function, typename... Arguments>
auto callNext (Function*, const char* name, Arguments... arguments)
{
    return reinterpret_cast<Function*> (dlsym (RTLD_NEXT, name)) (arguments...);
}
} // namespace

#define ORVO_NEXT(name, failure, path, ...)                                                                  \
    return stops (path) ? failure : callNext (name, #name, __VA_ARGS__)

extern "C"
{
    int rename (const char* from, const char* to) noexcept
    {
        ORVO_NEXT (rename, -1, to, from, to);
    }

    int link (const char* from, const char* to) noexcept
    {
        ORVO_NEXT (link, -1, to, from, to);
    }

    int unlink (const char* path) noexcept
    {
        ORVO_NEXT (unlink, -1, path, path);
    }

    int mkdir (const char* path, mode_t mode) noexcept
    {
        ORVO_NEXT (mkdir, -1, path, path, mode);
    }

    int rmdir (const char* path) noexcept
    {
        ORVO_NEXT (rmdir, -1, path, path);
    }

    FILE* fopen (const char* path, const char* mode)
    {
        ORVO_NEXT (fopen, nullptr, mode[0] == 'w' ? path : "", path, mode);
    }

    FILE* fopen64 (const char* path, const char* mode)
    {
        ORVO_NEXT (fopen64, nullptr, mode[0] == 'w' ? path : "", path, mode);
    }

    ssize_t write (int file, const void* data, size_t size)
    {
        ORVO_NEXT (write, -1, nameOf (file), file, data, size);
    }

    ssize_t writev (int file, const iovec* parts, int count)
    {
        ORVO_NEXT (writev, -1, nameOf (file), file, parts, count);
    }

    ssize_t sendfile (int to, int from, off_t* at, size_t size) noexcept
    {
        ORVO_NEXT (sendfile, -1, nameOf (to), to, from, at, size);
    }

    int unlinkat (int folder, const char* path, int flags) noexcept
    {
        ORVO_NEXT (unlinkat, -1, nameOf (folder) + "/" + path, folder, path, flags);
    }

    int renameat2 (int from, const char* fromPath, int to, const char* toPath, unsigned int flags) noexcept
    {
        ORVO_NEXT (renameat2, -1, toPath, from, fromPath, to, toPath, flags);
    }
}
