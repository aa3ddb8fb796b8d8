#include "presetsystem/fileprompt.h"

#include "platform/files.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <strings.h>
#include <sys/stat.h>

namespace mirelon {

namespace {

bool hasExtension(std::string_view path, std::string_view extension) {
    const std::size_t dot = path.rfind('.');
    return dot != std::string_view::npos && path.size() - dot - 1 == extension.size() &&
           strncasecmp(&path[dot + 1], extension.data(), extension.size()) == 0;
}

bool exists(const std::string& path) {
    struct stat info {};
    return lstat(path.c_str(), &info) == 0;
}

// False when `text` does not fit.
bool copyText(const char* text, PathBuffer& buffer) {
    const std::size_t size = std::strlen(text) + 1;
    if (size > buffer.size())
        return false;
    std::copy_n(text, size, buffer.begin());
    return true;
}

// Nothing for a path that names no file or whose parts are too long.
std::optional<ChosenFile> fileAt(const std::string& path) {
    if (path.size() >= kXPlatPathSize)
        return std::nullopt;
    std::array<char, kXPlatPathSize> name{};
    std::array<char, kXPlatPathSize> directory{};
    XPlatGetFileNameAndDir(path.c_str(), name.data(), directory.data());
    ChosenFile file;
    if (name.front() == '\0' || !copyText(name.data(), file.name) ||
        !copyText(directory.data(), file.directory))
        return std::nullopt;
    return file;
}

} // namespace

void FilePrompt::ask(const FileQuestion& question, Continuation proceed) {
    if (isAsking())
        return;
    open = std::make_shared<OpenQuestion>(OpenQuestion{question, std::move(proceed)});
    openDialog();
}

void FilePrompt::cancel() {
    if (!isAsking())
        return;
    end();
    dialog->dismiss();
}

void FilePrompt::openDialog() {
    // A copy, which outlives this object when that goes while the user thinks.
    const FileQuestion question = open->question;
    dialog->ask(question, [this, asked = std::weak_ptr<const OpenQuestion>(open)](
                              std::optional<std::string> path) {
        if (!asked.expired())
            take(std::move(path));
    });
}

void FilePrompt::take(std::optional<std::string> path) {
    FileQuestion& question = open->question;
    if (!path)
        return end();
    const bool extend = question.save && !hasExtension(*path, question.type.extension);
    if (extend) {
        if (open->repeated)
            return end();
        path->append(".").append(question.type.extension);
    }
    const std::optional<ChosenFile> file = fileAt(*path);
    if (!file)
        return end();
    if (extend && exists(*path)) {
        question.directory = file->directory.data();
        question.name = file->name.data();
        open->repeated = true;
        return openDialog();
    }
    // What follows may ask anew, and may end this object.
    const Continuation proceed = std::move(open->proceed);
    end();
    proceed(*file);
}

} // namespace mirelon
