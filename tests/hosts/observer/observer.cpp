// A plug-in that stands between a host and the real one and writes down every
// call, in both directions, as it is made.
//
// The real plug-in is the file named by MIRELON_OBSERVED, the record goes to the
// file named by MIRELON_OBSERVATIONS, which is added to. A line is
//     <thread> <kind> <opcode or index> ... = <result>
// with the thread's id or "main"; tests/hosts/observations.h reads them.
#include "shell/vst24.h"
#include "tests/hosts/observer/log.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <memory>
#include <string>

using mirelon::test::log;

namespace {

// What the host holds: a record whose functions write down and pass on.
struct Observed {
    AEffect record{}; // first: the host's pointer is ours
    AEffect* real = nullptr;
    audioMasterCallback host = nullptr;
};

Observed& of(AEffect* record) {
    return *reinterpret_cast<Observed*>(record);
}

// The real plug-in hands out its own record; the instance is found again by it.
// Before the entry point returns there is one instance in the making.
std::atomic<Observed*> instances[64];
thread_local Observed* inTheMaking = nullptr;

Observed* byReal(const AEffect* real) {
    for (const auto& slot : instances) {
        Observed* instance = slot;
        if (instance != nullptr && instance->real == real)
            return instance;
    }
    return inTheMaking;
}

VstIntPtr fromPlugin(AEffect* real, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                     float opt) {
    Observed* instance = byReal(real);
    if (instance == nullptr)
        return 0;
    log().line("tells %d %d %ld %.9g", opcode, index, static_cast<long>(value),
               static_cast<double>(opt));
    return instance->host(&instance->record, opcode, index, value, ptr, opt);
}

VstIntPtr dispatcher(AEffect* record, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                     float opt) {
    Observed& instance = of(record);
    if (opcode == effClose)
        log().line("asks %d %d %ld %.9g = 0", opcode, index, static_cast<long>(value),
                   static_cast<double>(opt));
    const VstIntPtr result =
        instance.real->dispatcher(instance.real, opcode, index, value, ptr, opt);
    if (opcode == effClose) {
        for (auto& slot : instances)
            if (slot == &instance)
                slot = nullptr;
        delete &instance;
        return result;
    }
    std::string extra;
    if (opcode == effEditGetRect && ptr != nullptr && *static_cast<ERect**>(ptr) != nullptr) {
        const ERect& rect = **static_cast<ERect**>(ptr);
        extra = ' ' + std::to_string(rect.right - rect.left) + 'x' +
                std::to_string(rect.bottom - rect.top);
    }
    log().line("asks %d %d %ld %.9g = %ld%s", opcode, index, static_cast<long>(value),
               static_cast<double>(opt), static_cast<long>(result), extra.c_str());
    return result;
}

void setParameter(AEffect* record, VstInt32 index, float value) {
    log().line("sets %d %.9g", index, static_cast<double>(value));
    of(record).real->setParameter(of(record).real, index, value);
}

float getParameter(AEffect* record, VstInt32 index) {
    return of(record).real->getParameter(of(record).real, index);
}

void processReplacing(AEffect* record, float** inputs, float** outputs, VstInt32 frames) {
    log().line("plays %d", frames);
    of(record).real->processReplacing(of(record).real, inputs, outputs, frames);
}

void processDoubleReplacing(AEffect* record, double** inputs, double** outputs, VstInt32 frames) {
    log().line("plays-double %d", frames);
    of(record).real->processDoubleReplacing(of(record).real, inputs, outputs, frames);
}

} // namespace

extern "C" [[gnu::visibility("default")]] AEffect* VSTPluginMain(audioMasterCallback host) {
    const char* file = std::getenv("MIRELON_OBSERVED");
    void* module = file == nullptr ? nullptr : dlopen(file, RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr)
        return nullptr;
    using Entry = AEffect* (*)(audioMasterCallback);
    const auto entry = reinterpret_cast<Entry>(dlsym(module, "VSTPluginMain"));
    auto instance = std::make_unique<Observed>();
    instance->host = host;
    inTheMaking = instance.get();
    instance->real = entry(fromPlugin);
    inTheMaking = nullptr;
    if (instance->real == nullptr)
        return nullptr;
    AEffect& record = instance->record;
    record = *instance->real;
    record.dispatcher = dispatcher;
    record.setParameter = setParameter;
    record.getParameter = getParameter;
    record.processReplacing = processReplacing;
    record.processDoubleReplacing = processDoubleReplacing;
    for (auto& slot : instances) {
        Observed* none = nullptr;
        if (slot.compare_exchange_strong(none, instance.get()))
            return &instance.release()->record;
    }
    return nullptr;
}
