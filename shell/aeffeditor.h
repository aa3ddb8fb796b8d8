// The editor as the effect's dispatcher sees it.
#pragma once

#include "shell/vst24.h"

class AudioEffect;

// Base class of every editor. The effect to which it is attached owns it.
// Every operation is called on the thread from which the host sends editor
// commands; the base answers nothing everywhere.
class AEffEditor {
  public:
    explicit AEffEditor(AudioEffect* effect = nullptr)
        : effect(effect) {}
    // Detaches itself from the effect, so that an editor whose construction
    // fails half-way leaves no pointer behind.
    virtual ~AEffEditor();

    AEffEditor(const AEffEditor&) = delete;
    AEffEditor& operator=(const AEffEditor&) = delete;

    // Stores the address of the editor's rectangle in *rect.
    virtual bool getRect(ERect** /*rect*/) { return false; }
    // `parent` is the host's window: an X11 window id in a pointer.
    virtual bool open(void* parent) {
        systemWindow = parent;
        return true;
    }
    virtual void close() { systemWindow = nullptr; }
    virtual bool isOpen() { return systemWindow != nullptr; }
    virtual void idle() {}

    virtual bool onKeyDown(VstKeyCode& /*keyCode*/) { return false; }
    virtual bool onKeyUp(VstKeyCode& /*keyCode*/) { return false; }
    virtual bool onWheel(float /*distance*/) { return false; }
    virtual bool setKnobMode(VstInt32 /*mode*/) { return false; }

    // Commands of older hosts.
    virtual void draw(ERect* /*rect*/) {}
    virtual VstInt32 mouse(VstInt32 /*x*/, VstInt32 /*y*/) { return 0; }
    virtual VstInt32 key(VstInt32 /*keyCode*/) { return 0; }
    virtual void top() {}
    virtual void sleep() {}

  protected:
    AudioEffect* effect = nullptr; // not owned
    void* systemWindow = nullptr;  // null while the editor is closed
};
