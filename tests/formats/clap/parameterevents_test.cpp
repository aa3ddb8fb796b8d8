// Which of a host's events set a parameter.
#include "formats/clap/parameterevents.h"

#include <array>
#include <gtest/gtest.h>
#include <vector>

namespace mirelon::clap {
namespace {

clap_event_param_value settingOf(clap_id parameter) {
    clap_event_param_value event{};
    event.header = {sizeof event, 7, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_PARAM_VALUE, 0};
    event.param_id = parameter;
    event.value = 0.25;
    return event;
}

TEST(ClapParameterEvent, SaysWhenWhichParameterIsToBeWhat) {
    const auto event = settingOf(kNumParams - 1);
    const auto found = parameterEventIn(&event.header);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->time, 7U);
    EXPECT_EQ(found->index, kNumParams - 1);
    EXPECT_EQ(found->value, 0.25);
}

TEST(ClapParameterEvent, IsNoneForAParameterThatThereIsNot) {
    for (const clap_id parameter : {clap_id{kNumParams}, CLAP_INVALID_ID}) {
        const auto event = settingOf(parameter);
        EXPECT_FALSE(parameterEventIn(&event.header)) << parameter;
    }
}

TEST(ClapParameterEvent, IsNoneOfAnotherKindSpaceOrSize) {
    auto event = settingOf(0);
    event.header.type = CLAP_EVENT_PARAM_MOD;
    EXPECT_FALSE(parameterEventIn(&event.header)) << "kind";
    event = settingOf(0);
    event.header.space_id = 1;
    EXPECT_FALSE(parameterEventIn(&event.header)) << "space";
    event = settingOf(0);
    --event.header.size;
    EXPECT_FALSE(parameterEventIn(&event.header)) << "size";
    EXPECT_FALSE(parameterEventIn(nullptr));
}

TEST(ClapParameterEvent, IsTakenFromAllThatTheHostHasAndFromNothingBeyond) {
    struct Events {
        std::array<clap_event_param_value, 2> all{settingOf(3), settingOf(5)};
        std::vector<std::uint32_t> asked;
    } events;
    const clap_input_events list{
        .ctx = &events,
        .size = [](const clap_input_events* self) -> std::uint32_t {
            return static_cast<std::uint32_t>(static_cast<Events*>(self->ctx)->all.size());
        },
        .get = [](const clap_input_events* self, std::uint32_t i) -> const clap_event_header* {
            auto& events = *static_cast<Events*>(self->ctx);
            events.asked.push_back(i);
            return i < events.all.size() ? &events.all.at(i).header : nullptr;
        }};
    std::vector<int> found;
    forEachParameterEvent(&list,
                          [&](const ParameterEvent& event) { found.push_back(event.index); });
    EXPECT_EQ(found, (std::vector{3, 5}));
    EXPECT_EQ(events.asked, (std::vector<std::uint32_t>{0, 1}));
}

} // namespace
} // namespace mirelon::clap
