#include "tools/replacedfile.h"

#include "tools/commanderror.h"

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace mirelon::tools {

namespace fs = std::filesystem;

namespace {

// What the signal handler removes; it may only touch plain storage.
std::array<char, PATH_MAX> doomed{};
volatile std::sig_atomic_t armed = 0;

constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP};

// Keeps the ending signals waiting while it lives.
class EndingHeldBack {
  public:
    EndingHeldBack() {
        sigset_t ending;
        sigemptyset(&ending);
        for (const int signal : endingSignals)
            sigaddset(&ending, signal);
        pthread_sigmask(SIG_BLOCK, &ending, &before);
    }
    ~EndingHeldBack() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }
    EndingHeldBack(const EndingHeldBack&) = delete;
    EndingHeldBack& operator=(const EndingHeldBack&) = delete;

  private:
    sigset_t before{};
};

extern "C" void removeAndEnd(int signal) {
    if (armed != 0)
        unlink(doomed.data());
    // The default action was put back when this handler was called.
    raise(signal);
}

void arm(const fs::path& file) {
    if (file.native().size() >= doomed.size())
        return;
    std::memcpy(doomed.data(), file.c_str(), file.native().size() + 1);
    armed = 1;
    for (const int signal : endingSignals) {
        struct sigaction action {};
        // A signal that our parent has us ignore (nohup) stays ignored.
        if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            continue;
        action = {};
        action.sa_handler = removeAndEnd;
        action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
        sigaction(signal, &action, nullptr);
    }
}

fs::path linksFollowed(const fs::path& file) {
    std::error_code failure;
    fs::path real = fs::weakly_canonical(file, failure);
    return failure ? file : real;
}

// What a program that simply created or rewrote the file would leave.
mode_t permissionsFor(const fs::path& target) {
    struct stat status {};
    if (stat(target.c_str(), &status) == 0)
        return status.st_mode & 07777U;
    const mode_t mask = umask(0);
    umask(mask);
    return 0666U & ~mask;
}

} // namespace

ReplacedFile::ReplacedFile(const fs::path& target_)
    : target(linksFollowed(target_)) {
    std::error_code failure;
    const auto status = fs::status(target, failure);
    if (fs::is_directory(status))
        fail(EISDIR);
    if (fs::exists(status) && !fs::is_regular_file(status))
        throw CommandError(target.string() + ": not a regular file");

    // The extension stays, some writers go by it.
    const std::string extension = target.extension().string();
    fs::path pattern = target.parent_path() / ".";
    pattern += target.stem();
    pattern += ".XXXXXX";
    pattern += target.extension();
    std::string name = pattern.string();
    // A signal just now would leave a file that nobody removes.
    const EndingHeldBack untilArmed;
    file = mkostemps(name.data(), static_cast<int>(extension.size()), O_CLOEXEC);
    if (file < 0)
        fail(errno);
    unfinished = name;
    arm(unfinished);
}

ReplacedFile::~ReplacedFile() {
    if (file >= 0)
        close(file);
    if (!unfinished.empty())
        unlink(unfinished.c_str());
    armed = 0;
}

void ReplacedFile::fail(int reason) const {
    throw CommandError(target.string() + ": cannot be written (" + std::strerror(reason) + ")");
}

void ReplacedFile::write(const void* bytes, std::size_t count) {
    const auto* next = static_cast<const char*>(bytes);
    while (count > 0) {
        const ssize_t written = ::write(file, next, count);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            fail(written < 0 ? errno : ENOSPC);
        next += written;
        count -= static_cast<std::size_t>(written);
    }
}

void ReplacedFile::commit() {
    if (fchmod(file, permissionsFor(target)) != 0 || fsync(file) != 0)
        fail(errno);
    if (rename(unfinished.c_str(), target.c_str()) != 0)
        fail(errno);
    armed = 0;
    unfinished.clear();
}

} // namespace mirelon::tools
