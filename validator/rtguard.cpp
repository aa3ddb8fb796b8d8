// A library to be preloaded: takes the place of the C library's allocating,
// locking and file functions, notes who calls them inside a guarded section and
// passes the call on. Where the kernel can, it also catches every system call
// of the section, however it is made.
//
// Nothing in here allocates or locks: it runs inside malloc.
#include "validator/rtguard.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#define RTGUARD_API extern "C" __attribute__((visibility("default"), noinline))

namespace {

// Initial-exec: reaching the variable must never call the loader.
__attribute__((tls_model("initial-exec"))) thread_local bool guarded = false;

constexpr std::size_t mostOffences = 64;
std::array<RtGuardOffence, mostOffences> offences{};
std::atomic<unsigned> offenceCount{0};

void note(const char* function, const void* caller, long number = 0) {
    const unsigned known = offenceCount.load();
    for (unsigned i = 0; i < known && i < mostOffences; ++i) {
        if (offences[i].function == function && offences[i].number == number) {
            ++offences[i].count;
            return;
        }
    }
    if (known < mostOffences) {
        offences[known] = {function, caller, number, 1};
        offenceCount.store(known + 1);
    }
}

// Switches the guard off while the C library does its own work, so that one
// call is noted once.
class PassOn {
  public:
    PassOn(const char* function, const void* caller);
    ~PassOn();
    PassOn(const PassOn&) = delete;
    PassOn& operator=(const PassOn&) = delete;

  private:
    bool was;
};

// --- System calls, by the kernel's per-thread dispatch to user space.

#if defined(__x86_64__)
constexpr int setSyscallUserDispatch = 59; // PR_SET_SYSCALL_USER_DISPATCH
__attribute__((tls_model("initial-exec"))) thread_local char selector = 0; // 0 allow, 1 block
__attribute__((tls_model("initial-exec"))) thread_local bool dispatching = false;

long rawSyscall(long number, long a, long b, long c, long d, long e, long f) {
    long result = 0;
    register long r10 asm("r10") = d;
    register long r8 asm("r8") = e;
    register long r9 asm("r9") = f;
    asm volatile("syscall"
                 : "=a"(result)
                 : "a"(number), "D"(a), "S"(b), "d"(c), "r"(r10), "r"(r8), "r"(r9)
                 : "rcx", "r11", "memory");
    return result;
}

// Carries the caught call out in its place. The rest of the section then runs
// unwatched: returning from here is a system call too.
void onSystemCall(int /*signal*/, siginfo_t* info, void* context) {
    selector = 0;
    auto* const registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    note("system call", info->si_call_addr, info->si_syscall);
    registers[REG_RAX] =
        rawSyscall(info->si_syscall, registers[REG_RDI], registers[REG_RSI], registers[REG_RDX],
                   registers[REG_R10], registers[REG_R8], registers[REG_R9]);
}

void prepareThread() {
    if (dispatching)
        return;
    struct sigaction action {};
    action.sa_sigaction = onSystemCall;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    sigaction(SIGSYS, &action, nullptr);
    dispatching = prctl(setSyscallUserDispatch, 1, 0, 0, &selector) == 0;
}

void block(bool on) {
    if (dispatching)
        selector = on ? 1 : 0;
}
#else
void prepareThread() {}
void block(bool) {}
#endif

PassOn::PassOn(const char* function, const void* caller)
    : was(guarded) {
    if (!was)
        return;
    guarded = false;
    block(false);
    note(function, caller);
}

PassOn::~PassOn() {
    if (!was)
        return;
    block(true);
    guarded = true;
}

// The C library's own function of that name.
template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

RTGUARD_API void mirelon_rtguard_enter() {
    prepareThread();
    guarded = true;
    block(true);
}

RTGUARD_API void mirelon_rtguard_leave() {
    block(false);
    guarded = false;
}

RTGUARD_API unsigned mirelon_rtguard_offences(const RtGuardOffence** list) {
    *list = offences.data();
    return offenceCount.load();
}

#define PASS_ON(name) const PassOn passing(name, __builtin_return_address(0))

// --- Allocation. The C library keeps second names for these, so that they work
// before the loader can look anything up.

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void __libc_free(void* memory);
}

RTGUARD_API void* malloc(size_t size) noexcept {
    PASS_ON("malloc");
    return __libc_malloc(size);
}
RTGUARD_API void* calloc(size_t count, size_t size) noexcept {
    PASS_ON("calloc");
    return __libc_calloc(count, size);
}
RTGUARD_API void* realloc(void* memory, size_t size) noexcept {
    PASS_ON("realloc");
    return __libc_realloc(memory, size);
}
RTGUARD_API void free(void* memory) noexcept {
    PASS_ON("free");
    __libc_free(memory);
}
RTGUARD_API void* memalign(size_t alignment, size_t size) noexcept {
    PASS_ON("memalign");
    return __libc_memalign(alignment, size);
}
RTGUARD_API void* aligned_alloc(size_t alignment, size_t size) noexcept {
    PASS_ON("aligned_alloc");
    return __libc_memalign(alignment, size);
}
RTGUARD_API int posix_memalign(void** memory, size_t alignment, size_t size) noexcept {
    PASS_ON("posix_memalign");
    *memory = __libc_memalign(alignment, size);
    return *memory != nullptr ? 0 : ENOMEM;
}

// --- Everything else is passed on by name. Looking the name up once is the
// cost of the first call only.
#define INTERPOSE(result, name, parameters, arguments)                                             \
    RTGUARD_API result name parameters {                                                           \
        PASS_ON(#name);                                                                            \
        static auto* const real = next<result parameters>(#name);                                  \
        return real arguments;                                                                     \
    }

// Locks and waiting. Trying a lock and giving up is what an audio thread may do.
INTERPOSE(int, pthread_mutex_lock, (pthread_mutex_t * m) noexcept, (m))
INTERPOSE(int, pthread_mutex_timedlock, (pthread_mutex_t * m, const timespec* t) noexcept, (m, t))
INTERPOSE(int, pthread_rwlock_rdlock, (pthread_rwlock_t * l) noexcept, (l))
INTERPOSE(int, pthread_rwlock_wrlock, (pthread_rwlock_t * l) noexcept, (l))
INTERPOSE(int, pthread_spin_lock, (pthread_spinlock_t * l) noexcept, (l))
INTERPOSE(int, pthread_cond_wait, (pthread_cond_t * c, pthread_mutex_t* m), (c, m))
INTERPOSE(int, pthread_cond_timedwait, (pthread_cond_t * c, pthread_mutex_t* m, const timespec* t),
          (c, m, t))
INTERPOSE(int, pthread_cond_signal, (pthread_cond_t * c) noexcept, (c))
INTERPOSE(int, pthread_cond_broadcast, (pthread_cond_t * c) noexcept, (c))
INTERPOSE(int, sem_wait, (sem_t * s), (s))
INTERPOSE(int, sem_post, (sem_t * s) noexcept, (s))
INTERPOSE(int, usleep, (useconds_t t), (t))
INTERPOSE(unsigned, sleep, (unsigned t), (t))
INTERPOSE(int, nanosleep, (const timespec* t, timespec* left), (t, left))
INTERPOSE(int, poll, (pollfd * fds, nfds_t count, int timeout), (fds, count, timeout))

// Files and sockets.
INTERPOSE(FILE*, fopen, (const char* path, const char* mode), (path, mode))
INTERPOSE(int, fclose, (FILE * f), (f))
INTERPOSE(size_t, fread, (void* p, size_t size, size_t n, FILE* f), (p, size, n, f))
INTERPOSE(size_t, fwrite, (const void* p, size_t size, size_t n, FILE* f), (p, size, n, f))
INTERPOSE(int, fputs, (const char* text, FILE* f), (text, f))
INTERPOSE(int, fflush, (FILE * f), (f))
INTERPOSE(int, puts, (const char* text), (text))
INTERPOSE(int, close, (int fd), (fd))
INTERPOSE(ssize_t, read, (int fd, void* p, size_t n), (fd, p, n))
INTERPOSE(ssize_t, write, (int fd, const void* p, size_t n), (fd, p, n))
INTERPOSE(ssize_t, send, (int fd, const void* p, size_t n, int flags), (fd, p, n, flags))
INTERPOSE(ssize_t, recv, (int fd, void* p, size_t n, int flags), (fd, p, n, flags))
INTERPOSE(int, unlink, (const char* path) noexcept, (path))
INTERPOSE(int, stat, (const char* path, struct stat* s) noexcept, (path, s))

// Variable arguments: the mode is there when the flags ask for it, and passing
// one on that is not read does no harm.
#define INTERPOSE_OPEN(name)                                                                       \
    RTGUARD_API int name(const char* path, int flags, ...) {                                       \
        PASS_ON(#name);                                                                            \
        static auto* const real = next<int(const char*, int, ...)>(#name);                         \
        va_list list;                                                                              \
        va_start(list, flags);                                                                     \
        const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(list, mode_t) : 0;       \
        va_end(list);                                                                              \
        return real(path, flags, mode);                                                            \
    }
INTERPOSE_OPEN(open)
INTERPOSE_OPEN(open64)

RTGUARD_API int printf(const char* format, ...) {
    PASS_ON("printf");
    va_list list;
    va_start(list, format);
    const int written = vprintf(format, list);
    va_end(list);
    return written;
}
RTGUARD_API int fprintf(FILE* f, const char* format, ...) {
    PASS_ON("fprintf");
    va_list list;
    va_start(list, format);
    const int written = vfprintf(f, format, list);
    va_end(list);
    return written;
}
