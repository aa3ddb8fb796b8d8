// What an effect's window asks of the X server that it does not grant.
#pragma once

#include <string>

namespace mirelon::validator {

// Notes errors from now on instead of ending the process, as Xlib would. Any number
// of times.
void noteXErrors();

// Nothing that was noted: empty. Else the first error and the request that it is of.
std::string notedXErrors();

// Whether each error that was noted is one of OpenGL itself where it has no graphics card to
// draw with: only then does it carry pictures to and from the display, and chooses them so
// that the display may refuse them.
bool areXErrorsOfSoftwareOpenGl();

// Whether a window manager serves the process's display. Editors may rely on one:
// with none, an error need not be theirs.
bool hasWindowManager();

} // namespace mirelon::validator
