#include "editor/titletext.h"

#include <utility>

namespace mirelon {

void TitleText::pointAt(std::optional<Subject> pointed, Time now) {
    if (subject == pointed)
        return;
    subject = pointed;
    pointedSince = now;
    rested = false;
    spent = false;
}

// What has caused a message needs no explanation after it.
void TitleText::tell(Message message, Time now) {
    told = std::move(message);
    toldAt = now;
    rested = false;
    spent = true;
}

void TitleText::advance(Time now) {
    if (toldAt && now - *toldAt >= messageTime)
        toldAt.reset();
    rested = subject && !spent && now - pointedSince >= restTime;
    if (rested)
        toldAt.reset();
}

} // namespace mirelon
