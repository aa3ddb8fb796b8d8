// File descriptors, and what is called when one of them can be read.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace mirelon {

// One thread. A callback may add and remove watches, its own among them.
class DescriptorWatches {
  public:
    using Id = std::uint64_t; // never reused

    // `onReadable` is called as long as there is something to read or the other
    // end has hung up: it reads, or removes its watch at the end of the data.
    Id add(int descriptor, std::function<void()> onReadable);
    // Unknown ids do nothing. The callback is not called afterwards.
    void remove(Id id);

    // In the order of their adding.
    std::vector<int> descriptors() const;

    // Calls, without waiting, those that are ready, each once. A descriptor that
    // has been closed meanwhile is dropped. Whether any was called.
    bool serve();

  private:
    struct Watch {
        Id id;
        int descriptor;
        std::shared_ptr<std::function<void()>> onReadable;
    };
    std::vector<Watch> watches;
    Id lastId = 0;
};

} // namespace mirelon
