#include "tests/editor/standindialog.h"

#include <algorithm>
#include <cstring>
#include <dlfcn.h>
#include <spawn.h>
#include <sstream>

namespace mirelon::test {

namespace {

// Where the plug-in looks first; here it finds `program` instead.
constexpr std::string_view wantedProgram = "/usr/bin/zenity";
constexpr std::string_view otherProgram = "/usr/bin/kdialog";
std::string program;

const char* redirected(const char* path) {
    if (path == wantedProgram)
        return program.empty() ? "/nowhere" : program.c_str();
    return path == otherProgram ? "/nowhere" : path;
}

template <typename Function>
Function* original(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

StandInDialog::StandInDialog(const std::string& answer, double seconds) {
    const auto script = folder / "dialog";
    writeFile(script, "#!/bin/sh\n"
                      "cd '" +
                          folder.path.string() +
                          "'\n"
                          "echo x >> starts\n"
                          "printf '%s\\n' \"$@\" > arguments\n"
                          "echo \"$LD_PRELOAD$LD_LIBRARY_PATH\" > linker\n"
                          "sleep " +
                          std::to_string(seconds) +
                          "\n"
                          "printf '%s' '" +
                          answer + "'\n");
    std::filesystem::permissions(script, std::filesystem::perms(0755));
    program = script;
}

StandInDialog::~StandInDialog() {
    program.clear();
}

int StandInDialog::starts() const {
    const std::string marks = contentsOf(folder / "starts");
    return static_cast<int>(std::count(marks.begin(), marks.end(), 'x'));
}

std::vector<std::string> StandInDialog::arguments() const {
    std::istringstream lines(contentsOf(folder / "arguments"));
    std::vector<std::string> result;
    for (std::string line; std::getline(lines, line);)
        result.push_back(line);
    return result;
}

bool StandInDialog::argumentsContain(const std::string& text) const {
    const auto all = arguments();
    return std::find(all.begin(), all.end(), text) != all.end();
}

std::string StandInDialog::linkerVariables() const {
    return contentsOf(folder / "linker");
}

} // namespace mirelon::test

// The program's own symbols come before the system's, for the plug-in as well.
extern "C" __attribute__((visibility("default"))) int access(const char* path, int mode) noexcept {
    return mirelon::test::original<int(const char*, int)>("access")(mirelon::test::redirected(path),
                                                                    mode);
}

extern "C" __attribute__((visibility("default"))) int
posix_spawn(pid_t* child, const char* path, const posix_spawn_file_actions_t* files,
            const posix_spawnattr_t* attributes, char* const arguments[],
            char* const environment[]) {
    return mirelon::test::original<int(pid_t*, const char*, const posix_spawn_file_actions_t*,
                                       const posix_spawnattr_t*, char* const[], char* const[])>(
        "posix_spawn")(child, mirelon::test::redirected(path), files, attributes, arguments,
                       environment);
}
