#include "FolderLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

namespace tessarin
{

FolderLock::FolderLock (std::filesystem::path folderToLock, const std::function<bool()>& isWorthWaiting)
    : folder (std::move (folderToLock)), path (folder / "lock")
{
    constexpr auto pause = std::chrono::milliseconds (5);
    constexpr auto mostAttempts = 400;

    for (auto attempt = 0; attempt < mostAttempts; ++attempt)
    {
        if (tryToLock() != Attempt::othersWork || ! isWorthWaiting())
            return;

        std::this_thread::sleep_for (pause);
    }
}

FolderLock::Attempt FolderLock::tryToLock()
{
    std::error_code failure;
    std::filesystem::create_directories (folder, failure);

    if (failure)
        return Attempt::impossible;

    // Whoever was here before us may take folder and file away at any moment.
    const auto opened = open (path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644);

    if (opened < 0)
    {
        const auto isGone = errno == ENOENT;
        rmdir (folder.c_str());
        return isGone ? Attempt::othersWork : Attempt::impossible;
    }

    const auto isLocked = flock (opened, LOCK_EX | LOCK_NB) == 0;
    const auto isRefused = ! isLocked && errno != EWOULDBLOCK && errno != EINTR;
    struct stat own = {}, named = {};

    if (isLocked && fstat (opened, &own) == 0 && stat (path.c_str(), &named) == 0
        && own.st_dev == named.st_dev && own.st_ino == named.st_ino)
    {
        file = opened;
        return Attempt::held;
    }

    close (opened);
    return isRefused ? Attempt::impossible : Attempt::othersWork;
}

FolderLock::~FolderLock()
{
    if (! isHeld())
        return;

    unlink (path.c_str());
    rmdir (folder.c_str());
    close (file);
}

} // namespace tessarin
