#include "platform/editorthread.h"

namespace mirelon {

EditorThread& EditorThread::instance() {
    static auto* const thread = new EditorThread;
    return *thread;
}

bool EditorThread::addUser() {
    const auto held = lock();
    if (users > 0 && !isOwnThread())
        return false;
    if (users++ == 0)
        owner.store(std::this_thread::get_id(), std::memory_order_release);
    return true;
}

bool EditorThread::removeUser() {
    const auto held = lock();
    if (--users > 0)
        return false;
    owner.store(std::thread::id{}, std::memory_order_release);
    return true;
}

} // namespace mirelon
