#include "tests/hosts/gesture.h"

#include <chrono>
#include <gtest/gtest.h>

namespace mirelon::test {

Observations gestureOn(VstInt32 parameter, const Observations& all, std::size_t from) {
    Observations gesture;
    for (std::size_t i = from; i < all.size(); ++i) {
        const Observation& call = all[i];
        if (call.kind == Observation::Kind::tells && call.index == parameter &&
            (call.opcode == audioMasterBeginEdit || call.opcode == audioMasterAutomate ||
             call.opcode == audioMasterEndEdit))
            gesture.push_back(call);
    }
    return gesture;
}

Observations finishedGestureOn(VstInt32 parameter, const std::filesystem::path& record,
                               std::size_t from) {
    Observations gesture;
    eventually(std::chrono::seconds(20), [&] {
        gesture = gestureOn(parameter, observationsIn(record), from);
        return !gesture.empty() && gesture.back().opcode == audioMasterEndEdit;
    });
    return gesture;
}

float lastOfRisingGesture(const Observations& gesture, const std::string& thread) {
    EXPECT_GE(gesture.size(), 4U);
    float last = 0.0F;
    for (std::size_t i = 0; i < gesture.size(); ++i) {
        EXPECT_EQ(gesture[i].thread, thread);
        const bool first = i == 0;
        const bool end = i + 1 == gesture.size();
        EXPECT_EQ(gesture[i].opcode, first ? audioMasterBeginEdit
                                     : end ? audioMasterEndEdit
                                           : audioMasterAutomate);
        if (first || end)
            continue;
        EXPECT_GE(gesture[i].opt, last);
        last = gesture[i].opt;
    }
    return last;
}

} // namespace mirelon::test
