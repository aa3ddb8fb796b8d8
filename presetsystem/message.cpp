#include "presetsystem/message.h"

#include "presetsystem/displayname.h"

#include <cerrno>
#include <system_error>

namespace mirelon {

namespace {

// Short enough for a line of the window.
std::string reasonOf(int error) {
    switch (error) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return "no space";
    case EACCES:
    case EPERM:
    case EROFS:
        return "no permission";
    case ENOENT:
    case ENOTDIR:
        return "no such file or folder";
    case EISDIR:
        return "it is a folder";
    case ENAMETOOLONG:
        return "its path is too long";
    default:
        return std::generic_category().message(error);
    }
}

std::string shown(std::string_view name) {
    return validUtf8(name);
}

} // namespace

Message savedMessage(std::string_view name, int error) {
    if (error == 0)
        return {"saved as " + shown(name)};
    return {"could not be written: " + reasonOf(error), true};
}

Message loadedMessage(std::string_view kind, std::string_view name, int error,
                      ImageVerdict verdict) {
    if (error != 0)
        return {"could not be read: " + reasonOf(error), true};
    switch (verdict) {
    case ImageVerdict::accepted:
        return {"loaded " + shown(name)};
    case ImageVerdict::outOfRange:
        return {"a value is out of range: of the other byte order?", true};
    case ImageVerdict::notOurs:
    case ImageVerdict::wrongType:
        break;
    }
    return {"not a " + std::string(kind) + ": " + shown(name), true};
}

Message storedMessage(std::string_view place, bool stored) {
    if (stored)
        return {"stored as " + std::string(place)};
    return {"could not be stored as " + std::string(place), true};
}

Message forgottenMessage(std::string_view place, bool forgotten) {
    if (forgotten)
        return {std::string(place) + " forgotten"};
    return {std::string(place) + " could not be forgotten", true};
}

Message recalledMessage(std::string_view place, ImageVerdict verdict) {
    if (verdict == ImageVerdict::accepted)
        return {"recalled " + std::string(place)};
    return {"nothing is stored as " + std::string(place), true};
}

Message noDialogMessage() {
    return {"to choose files, install zenity or kdialog", true};
}

} // namespace mirelon
