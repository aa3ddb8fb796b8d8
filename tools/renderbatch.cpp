#include "tools/renderbatch.h"

#include "tools/commanderror.h"
#include "tools/renderreport.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <set>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace mirelon::tools {

namespace {

using Json = nlohmann::ordered_json;

Json failure(const RenderJob& job, const std::string& why) {
    return {
        {"input", {{"file", job.pass.input}}}, {"output", {{"file", job.output}}}, {"error", why}};
}

Json attempt(const RenderJob& job) {
    try {
        return toJson(job, render(job, false));
    } catch (const std::exception& error) {
        return failure(job, error.what());
    }
}

// A child that renders one job and writes its object into a pipe.
struct Worker {
    std::size_t job = 0;
    pid_t process = -1;
    int pipe = -1;
    std::string text;
};

[[noreturn]] void work(const RenderJob& job, int pipe) {
    // Should the parent be ended, so are its children, which clean up after themselves.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const std::string text = attempt(job).dump(-1, ' ', false, Json::error_handler_t::replace);
    for (std::size_t sent = 0; sent < text.size();) {
        const ssize_t count = write(pipe, text.data() + sent, text.size() - sent);
        if (count <= 0)
            break;
        sent += static_cast<std::size_t>(count);
    }
    std::exit(0);
}

Worker start(std::span<const RenderJob> jobs, std::size_t number) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw CommandError(std::string("no process can be started (") + std::strerror(errno) + ")");
    // What is in its buffers would come out of the child again.
    std::fflush(nullptr);
    const pid_t process = fork();
    if (process == 0) {
        close(ends[0]);
        work(jobs[number], ends[1]);
    }
    close(ends[1]);
    if (process < 0) {
        close(ends[0]);
        throw CommandError(std::string("no process can be started (") + std::strerror(errno) + ")");
    }
    return {number, process, ends[0], {}};
}

// Takes what a worker has to say; false at its end.
bool listen(Worker& worker) {
    std::array<char, 4096> block{};
    const ssize_t got = read(worker.pipe, block.data(), block.size());
    if (got > 0)
        worker.text.append(block.data(), static_cast<std::size_t>(got));
    return got > 0 || (got < 0 && errno == EINTR);
}

Json resultOf(const Worker& worker, const RenderJob& job) {
    close(worker.pipe);
    int status = 0;
    while (waitpid(worker.process, &status, 0) < 0 && errno == EINTR) {
    }
    Json result = Json::parse(worker.text, nullptr, false);
    if (!result.is_discarded())
        return result;
    return failure(job, job.pass.input + (WIFSIGNALED(status)
                                              ? std::string(": the plug-in crashed (") +
                                                    strsignal(WTERMSIG(status)) + ")"
                                              : std::string(": the plug-in ended the program")));
}

} // namespace

std::vector<RenderJob> jobsInto(const std::string& folder, const std::vector<std::string>& inputs,
                                const RenderJob& like) {
    std::vector<RenderJob> jobs;
    std::set<std::filesystem::path> taken;
    for (const std::string& input : inputs) {
        std::filesystem::path name = std::filesystem::path(input).filename();
        if (!like.format.kind.empty())
            name.replace_extension(like.format.kind);
        if (!taken.insert(name).second)
            throw CommandError(input + ": another IN goes to " + name.string() + " as well");
        jobs.push_back(like);
        jobs.back().pass.input = input;
        jobs.back().output = (folder / name).string();
    }
    return jobs;
}

std::vector<Json> renderAll(std::span<const RenderJob> jobs, std::size_t parallel,
                            const std::function<void(const Json&)>& finished) {
    std::vector<Json> results(jobs.size());
    std::vector<Worker> workers;
    for (std::size_t next = 0; next < jobs.size() || !workers.empty();) {
        while (next < jobs.size() && workers.size() < std::max<std::size_t>(parallel, 1))
            workers.push_back(start(jobs, next++));
        std::vector<pollfd> waiting;
        waiting.reserve(workers.size());
        for (const Worker& worker : workers)
            waiting.push_back({worker.pipe, POLLIN, 0});
        if (poll(waiting.data(), waiting.size(), -1) < 0)
            continue;
        for (std::size_t i = workers.size(); i-- > 0;) {
            if (waiting[i].revents == 0 || listen(workers[i]))
                continue;
            const Worker ended = std::move(workers[i]);
            workers.erase(workers.begin() + static_cast<std::ptrdiff_t>(i));
            results[ended.job] = resultOf(ended, jobs[ended.job]);
            finished(results[ended.job]);
        }
    }
    return results;
}

} // namespace mirelon::tools
