#include "tests/editor/otherprogram.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <stdexcept>
#include <utility>

namespace mirelon::test {

void OtherProgram::CloseDisplay::operator()(_XDisplay* opened) const {
    XCloseDisplay(opened);
}

OtherProgram::OtherProgram(EditorHost& editor_)
    : editor(editor_)
    , display(XOpenDisplay(nullptr)) {
    if (display == nullptr)
        throw std::runtime_error("no display");
    window =
        XCreateSimpleWindow(display.get(), DefaultRootWindow(display.get()), 0, 0, 1, 1, 0, 0, 0);
}

unsigned long OtherProgram::atom(std::string_view name) const {
    return XInternAtom(display.get(), std::string(name).c_str(), False);
}

void OtherProgram::copy(std::string text, Offers offers) {
    copied = std::move(text);
    offering = offers;
    XSetSelectionOwner(display.get(), atom("CLIPBOARD"), window, CurrentTime);
    XSync(display.get(), False);
}

void OtherProgram::clear() {
    XSetSelectionOwner(display.get(), atom("CLIPBOARD"), None, CurrentTime);
    XSync(display.get(), False);
}

void OtherProgram::tellOwnerOfLoss(unsigned long time) {
    const Window owner = XGetSelectionOwner(display.get(), atom("CLIPBOARD"));
    XEvent loss{};
    loss.xselectionclear.type = SelectionClear;
    loss.xselectionclear.window = owner;
    loss.xselectionclear.selection = atom("CLIPBOARD");
    loss.xselectionclear.time = time;
    XSendEvent(display.get(), owner, False, NoEventMask, &loss);
    XSync(display.get(), False);
}

bool OtherProgram::owns() const {
    return XGetSelectionOwner(display.get(), atom("CLIPBOARD")) == window;
}

bool OtherProgram::anyoneOwns() const {
    return XGetSelectionOwner(display.get(), atom("CLIPBOARD")) != None;
}

void OtherProgram::serve() {
    editor.run(std::chrono::milliseconds(8));
    while (answerNext() || hearNext()) {
    }
    XFlush(display.get());
}

bool OtherProgram::answerNext() {
    XEvent event{};
    if (XCheckTypedWindowEvent(display.get(), window, SelectionRequest, &event) == 0)
        return false;
    const XSelectionRequestEvent& request = event.xselectionrequest;
    XSelectInput(display.get(), request.requestor, PropertyChangeMask | StructureNotifyMask);
    const Atom utf8 = atom("UTF8_STRING");
    const bool refused = request.target != utf8 && request.target != XA_STRING;
    const bool notThat = offering == Offers::latin1Only && request.target == utf8;
    XEvent answer{};
    answer.xselection.type = SelectionNotify;
    answer.xselection.requestor = request.requestor;
    answer.xselection.selection = request.selection;
    answer.xselection.target = request.target;
    answer.xselection.time = request.time;
    answer.xselection.property = refused || notThat ? None : request.property;
    if (offering == Offers::pieces) {
        const long length = static_cast<long>(copied.size());
        XChangeProperty(display.get(), request.requestor, request.property, atom("INCR"), 32,
                        PropModeReplace, reinterpret_cast<const unsigned char*>(&length), 1);
    } else if (answer.xselection.property != None) {
        XChangeProperty(display.get(), request.requestor, request.property, request.target, 8,
                        PropModeReplace, reinterpret_cast<const unsigned char*>(copied.data()),
                        static_cast<int>(copied.size()));
    }
    XSendEvent(display.get(), request.requestor, False, NoEventMask, &answer);
    return true;
}

// Who has taken a text deletes the property; who will not, takes the window away.
bool OtherProgram::hearNext() {
    XEvent event{};
    if (XCheckMaskEvent(display.get(), PropertyChangeMask | StructureNotifyMask, &event) == 0)
        return false;
    const bool taken = event.type == PropertyNotify && event.xproperty.state == PropertyDelete;
    if (taken || event.type == DestroyNotify)
        ++answersSettled;
    return true;
}

std::optional<std::string> OtherProgram::paste(std::string_view target) {
    return ask(target, "PASTED", CurrentTime);
}

std::optional<std::string> OtherProgram::pasteAt(unsigned long time) {
    return ask("UTF8_STRING", "PASTED", time);
}

std::optional<std::string> OtherProgram::pasteAnywhere() {
    return ask("UTF8_STRING", nullptr, CurrentTime);
}

std::optional<std::string> OtherProgram::ask(std::string_view target, const char* into,
                                             unsigned long time) {
    XConvertSelection(display.get(), atom("CLIPBOARD"), atom(target),
                      into != nullptr ? atom(into) : None, window, time);
    XFlush(display.get());
    XEvent event{};
    const bool came = editor.runUntil([&] {
        return XCheckTypedWindowEvent(display.get(), window, SelectionNotify, &event) != 0;
    });
    const XSelectionEvent& answer = event.xselection;
    if (!came || answer.property == None || answer.selection != atom("CLIPBOARD") ||
        answer.target != atom(target) || answer.time != time)
        return std::nullopt;
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* data = nullptr;
    XGetWindowProperty(display.get(), window, answer.property, 0, 1000, True, AnyPropertyType,
                       &type, &format, &count, &rest, &data);
    char* const typeName = XGetAtomName(display.get(), type);
    answerType = typeName;
    XFree(typeName);
    // Xlib holds 32-bit words as longs.
    const std::size_t size = format == 32 ? count * sizeof(long) : count;
    std::string bytes(reinterpret_cast<const char*>(data), size);
    XFree(data);
    return bytes;
}

std::vector<std::string> OtherProgram::targets() {
    const auto bytes = paste("TARGETS");
    std::vector<std::string> names;
    for (std::size_t at = 0; bytes && at + sizeof(Atom) <= bytes->size(); at += sizeof(Atom)) {
        Atom offered = 0;
        bytes->copy(reinterpret_cast<char*>(&offered), sizeof offered, at);
        char* const name = XGetAtomName(display.get(), offered);
        names.emplace_back(name);
        XFree(name);
    }
    return names;
}

} // namespace mirelon::test
