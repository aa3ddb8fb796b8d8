// A picture that the display refuses.
#pragma once

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XShm.h>
#include <sys/ipc.h>
#include <sys/shm.h>

namespace mirelon::test::brokeneffects {

// Puts a picture of another depth than the window's out of shared memory, as OpenGL does
// where it draws without a graphics card, and waits for the answer.
inline void putWrongPicture(Display* display, Window window) {
    constexpr unsigned side = 8;
    constexpr unsigned wrongDepth = 8;
    XShmSegmentInfo segment{};
    XImage* const image = XShmCreateImage(display, DefaultVisual(display, DefaultScreen(display)),
                                          wrongDepth, ZPixmap, nullptr, &segment, side, side);
    segment.shmid = shmget(IPC_PRIVATE, 4096, IPC_CREAT | 0600);
    segment.shmaddr = image->data = static_cast<char*>(shmat(segment.shmid, nullptr, 0));
    XShmAttach(display, &segment);
    XSync(display, False);
    shmctl(segment.shmid, IPC_RMID, nullptr);
    const GC context = XCreateGC(display, window, 0, nullptr);
    XShmPutImage(display, window, context, image, 0, 0, 0, 0, side, side, False);
    XSync(display, False);
    XFreeGC(display, context);
    XShmDetach(display, &segment);
    XDestroyImage(image);
    shmdt(segment.shmaddr);
}

} // namespace mirelon::test::brokeneffects
