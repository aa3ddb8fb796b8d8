#include "tests/editor/standindialog.h"

#include "tests/support/processes.h"

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

// Ends by itself once the test has gone and its folder with it.
constexpr std::string_view waitingScript =
    "while [ -e numbers ] && [ ! -e answer.$$ ]; do sleep 0.02; done\n"
    "cat answer.$$\n";

} // namespace

StandInDialog::StandInDialog(const Script& script) {
    const auto file = folder / "dialog";
    writeFile(file, "#!/bin/sh\n"
                    "cd '" +
                        folder.path.string() +
                        "'\n"
                        "printf '%s\\n' \"$@\" > arguments\n"
                        "echo \"$LD_PRELOAD$LD_LIBRARY_PATH\" > linker\n"
                        "echo $$ >> numbers\n" +
                        script.text + "\n");
    std::filesystem::permissions(file, std::filesystem::perms(0755));
    program = file;
}

StandInDialog::StandInDialog(const std::string& answer)
    : StandInDialog(Script{"printf '%s' '" + answer + "'"}) {}

StandInDialog::StandInDialog()
    : StandInDialog(Script{std::string(waitingScript)}) {}

StandInDialog::~StandInDialog() {
    program.clear();
}

void StandInDialog::answer(const std::string& text, std::size_t start) const {
    writeFile(folder / "answer", text);
    rename(folder / "answer", folder / ("answer." + std::to_string(processes().at(start))));
}

std::vector<pid_t> StandInDialog::processes() const {
    std::istringstream numbers(contentsOf(folder / "numbers"));
    std::vector<pid_t> result;
    for (pid_t number = 0; numbers >> number && numbers.get() == '\n';)
        result.push_back(number);
    return result;
}

bool StandInDialog::isOpen() const {
    return std::ranges::any_of(processes(), processExists);
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
