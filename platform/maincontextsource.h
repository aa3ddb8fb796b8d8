// The source by which GLib's default main context serves the editors' loop.
#pragma once

#include <chrono>
#include <optional>
#include <vector>

struct _GSource;

namespace mirelon {

// Sleeps in the context's own poll until there is something to serve. A host may
// iterate the default context on any thread, and on several: on one that the
// client cannot be served on, the source polls no descriptor and has no deadline,
// so that what is pending neither fires there nor keeps that thread awake.
class MainContextSource final {
  public:
    using Clock = std::chrono::steady_clock;

    // What the client waits for, whichever comes first.
    struct Wait {
        Clock::time_point until;      // max(): no deadline
        std::vector<int> descriptors; // until one of them can be read or has been hung up
    };

    class Client {
      public:
        // Whether `serve` has any effect on the calling thread at this moment. Any
        // thread.
        virtual bool isServable() const noexcept = 0;
        // On a servable thread. Nothing when that cannot be said without waiting
        // for another thread; it is asked again soon.
        virtual std::optional<Wait> nextWait() = 0;
        // On a servable thread. What it throws is dropped.
        virtual void serve() = 0;

      protected:
        ~Client() = default;
    };

    // `client` outlives the source and every iteration of the context that began
    // before `stop`.
    explicit MainContextSource(Client& client)
        : client(client) {}
    ~MainContextSource() { stop(); }
    MainContextSource(const MainContextSource&) = delete;
    MainContextSource& operator=(const MainContextSource&) = delete;

    // Both do nothing when there is nothing to do. Any thread, one at a time.
    void start();
    void stop() noexcept;

    // Makes the context look at what the client waits for anew. Any thread.
    static void wake() noexcept;

  private:
    Client& client;
    _GSource* source = nullptr;
};

} // namespace mirelon
