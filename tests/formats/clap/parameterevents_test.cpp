// Which of a host's events set a parameter.
#include "formats/clap/parameterevents.h"

#include <gtest/gtest.h>

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

} // namespace
} // namespace mirelon::clap
