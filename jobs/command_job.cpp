#include "jobs/command_job.hpp"

#include "ui/flags.hpp"

#include <cstring>

namespace vimbo
{

bool can_be_quoted(const char *tray_directory)
{
    if (std::strchr(tray_directory, '"') == nullptr)
        return true;
    std::fputs("error: the tray's path has a double quote.\n", stderr);
    return false;
}

bool is_idle(const command_job &job, std::uint32_t ui_flags, std::uint32_t running_bit)
{
    return job.pipe == nullptr && !has_flag(ui_flags, running_bit);
}

bool start_job_reader(command_job &job, reader_function reader, std::uint32_t &ui_flags,
                      std::uint32_t running_bit)
{
    if (!start_thread(job.thread, reader, job.pipe))
        return false;
    ui_flags |= running_bit;
    return true;
}

bool poll_job(const command_job &job, void *&result)
{
    result = nullptr;
    return try_join(job.thread, result);
}

} // namespace vimbo
