#pragma once

#include <filesystem>
#include <functional>

namespace tessarin
{

/** A folder in which one process or thread works at a time. It is made with the lock, and goes with it if it is empty
    by then. The lock ends with its process, too. */
class FolderLock final
{
public:
    /** Waits for others for two seconds at most, and only while `isWorthWaiting`. Without the lock where the folder
        cannot be made. */
    FolderLock (std::filesystem::path folder, const std::function<bool()>& isWorthWaiting);
    ~FolderLock();

    FolderLock (const FolderLock&) = delete;
    FolderLock& operator= (const FolderLock&) = delete;

    [[nodiscard]] bool isHeld() const noexcept { return file >= 0; }

private:
    enum class Attempt
    {
        held,
        othersWork,
        impossible
    };

    Attempt tryToLock();

    const std::filesystem::path folder, path;
    int file = -1;
};

} // namespace tessarin
