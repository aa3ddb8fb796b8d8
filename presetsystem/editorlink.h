// What an effect tells its editor.
#pragma once

// Implemented by the editor; EffectLink is the other direction. Called on any
// thread: an open editor shows the change at once on the thread that owns its
// window; on every other thread it only sets a flag for its next idle (no lock, no
// allocation, safe for audio).
class EditorLink {
  public:
    EditorLink() = default;
    EditorLink(const EditorLink&) = delete;
    EditorLink& operator=(const EditorLink&) = delete;

    // A parameter has a new value; any index.
    virtual void setParameter(long index, float value) = 0;
    // The host has renamed the current preset to the terminated text `name`.
    virtual void nameChangedExternal(char* name) = 0;
    // Load the stored defaults into the effect (works without a window).
    virtual void loadDefaults() = 0;
    // The whole bank, and perhaps the current preset, has been replaced.
    virtual void bankReplaced() = 0;

  protected:
    ~EditorLink() = default;
};
