#pragma once

#include <sys/resource.h>

#include <csignal>

/** A limit of the process while this exists: RLIMIT_FSIZE, beyond which no file grows, as on a full disk, or
    RLIMIT_NOFILE. */
class ResourceLimit
{
public:
    ResourceLimit (__rlimit_resource_t kindToUse, rlim_t limit) : kind (kindToUse)
    {
        getrlimit (kind, &previous);
        const rlimit smaller { limit, previous.rlim_max };
        setrlimit (kind, &smaller);
    }

    ~ResourceLimit()
    {
        setrlimit (kind, &previous);
        std::signal (SIGXFSZ, previousHandler);
    }

    ResourceLimit (const ResourceLimit&) = delete;
    ResourceLimit& operator= (const ResourceLimit&) = delete;

private:
    const __rlimit_resource_t kind;
    void (*previousHandler) (int) = std::signal (SIGXFSZ, SIG_IGN);
    rlimit previous {};
};
