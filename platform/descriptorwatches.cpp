#include "platform/descriptorwatches.h"

#include <algorithm>
#include <poll.h>

namespace mirelon {

DescriptorWatches::Id DescriptorWatches::add(int descriptor, std::function<void()> onReadable) {
    watches.push_back(
        {++lastId, descriptor, std::make_shared<std::function<void()>>(std::move(onReadable))});
    return lastId;
}

void DescriptorWatches::remove(Id id) {
    std::erase_if(watches, [id](const Watch& watch) { return watch.id == id; });
}

std::vector<int> DescriptorWatches::descriptors() const {
    std::vector<int> all;
    all.reserve(watches.size());
    for (const Watch& watch : watches)
        all.push_back(watch.descriptor);
    return all;
}

bool DescriptorWatches::serve() {
    std::vector<pollfd> states;
    std::vector<Id> ids;
    for (const Watch& watch : watches) {
        states.push_back({watch.descriptor, POLLIN, 0});
        ids.push_back(watch.id);
    }
    if (states.empty() || poll(states.data(), states.size(), 0) <= 0)
        return false;
    bool called = false;
    for (std::size_t i = 0; i < states.size(); ++i) {
        if ((states[i].revents & POLLNVAL) != 0)
            remove(ids[i]);
        if (states[i].revents == 0)
            continue;
        const auto watch = std::find_if(watches.begin(), watches.end(),
                                        [id = ids[i]](const Watch& w) { return w.id == id; });
        if (watch == watches.end())
            continue;
        const auto onReadable = watch->onReadable;
        (*onReadable)();
        called = true;
    }
    return called;
}

} // namespace mirelon
