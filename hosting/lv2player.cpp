#include "hosting/lv2player.h"

#include "hosting/lv2nodes.h"

#include <algorithm>

namespace mirelon::hosting {

Lv2Player::Lv2Player(const Lv2Bundle& bundle_, double rate_)
    : bundle(bundle_)
    , rate(rate_)
    , restoresBesideRun(lilv_plugin_has_feature(
          bundle.plugin(), lv2Uri(bundle.world(), LV2_STATE__threadSafeRestore).get()))
    , instance(std::make_unique<Lv2Instance>(bundle, rate))
    , outputCount(instance->audioOutputs())
    , numbers(instance->portCount())
    , nowhere(1)
    , nothing(std::max(instance->audioInputs(), outputCount), nowhere.data()) {
    for (std::uint32_t port = 0; port < instance->portCount(); ++port)
        setNumber(port, instance->control(port));
}

float Lv2Player::number(std::uint32_t port) const noexcept {
    return numbers[port].load(std::memory_order_relaxed);
}

void Lv2Player::setNumber(std::uint32_t port, float number) noexcept {
    numbers[port].store(number, std::memory_order_relaxed);
}

void Lv2Player::runCycle(float* const* inputs, float* const* outputs,
                         std::uint32_t frames) noexcept {
    for (std::uint32_t port = 0; port < instance->portCount(); ++port)
        if (instance->isControlInput(port))
            instance->control(port) = number(port);
    instance->cycle(inputs, outputs, frames);
    for (std::uint32_t port = 0; port < instance->portCount(); ++port)
        if (instance->isControlOutput(port))
            setNumber(port, instance->control(port));
}

void Lv2Player::process(float* const* inputs, float* const* outputs,
                        std::uint32_t frames) noexcept {
    const Turn turn(busy, Turn::Manner::tried);
    if (turn)
        return runCycle(inputs, outputs, frames);
    for (std::size_t i = 0; i < outputCount; ++i)
        std::fill_n(outputs[i], frames, 0.0F);
}

void Lv2Player::resume() {
    const Turn turn(busy, Turn::Manner::awaited);
    instance->restart();
    resumed = true;
}

void Lv2Player::suspend() {
    resumed = false;
}

void Lv2Player::settle() {
    if (resumed)
        return;
    const Turn turn(busy, Turn::Manner::awaited);
    runCycle(nothing.data(), nothing.data(), 0);
}

void Lv2Player::setRate(double rate_) {
    if (!(rate_ > 0.0) || rate_ == rate)
        return;
    rate = rate_;
    exchangeInstance();
}

void Lv2Player::setLargestBlock(std::int32_t frames) {
    if (frames <= largestBlock)
        return;
    largestBlock = frames;
    exchangeInstance();
}

void Lv2Player::exchangeInstance() {
    settle();
    auto fresh = std::make_unique<Lv2Instance>(bundle, rate, Lv2Features::all, largestBlock);
    if (instance->keepsState())
        fresh->restore(instance->save());
    const Turn turn(busy, Turn::Manner::awaited);
    instance.swap(fresh);
}

LV2_State_Status Lv2Player::restore(const Lv2State& state) {
    if (restoresBesideRun)
        return instance->restore(state);
    const Turn turn(busy, Turn::Manner::awaited);
    return instance->restore(state);
}

} // namespace mirelon::hosting
