// What the window's top line says at a moment: a message for some seconds, else
// an explanation of what the pointer has rested on.
#pragma once

#include "editor/explanations.h"
#include "presetsystem/message.h"

#include <chrono>
#include <optional>

namespace mirelon {

// Told of the pointer and of messages, and asked at every idle; keeps time by what
// it is given.
class TitleText {
  public:
    using Time = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::milliseconds restTime{500};
    static constexpr std::chrono::milliseconds messageTime{5000};

    // Anything else than before begins the rest anew and ends a message that was
    // there before it.
    void pointAt(std::optional<Subject> subject, Time now);
    // Stays until its time is over or something else has been pointed at for the
    // rest time.
    void tell(Message message, Time now);

    void advance(Time now);
    // What there is to say since the last advance: at most one of the two.
    const Message* message() const { return toldAt ? &told : nullptr; }
    std::optional<Subject> explained() const { return rested ? subject : std::nullopt; }

  private:
    std::optional<Subject> subject;
    Time pointedSince{};
    bool rested = false;
    bool spent = false; // a message has taken the explanation's place

    Message told;
    std::optional<Time> toldAt;
};

} // namespace mirelon
