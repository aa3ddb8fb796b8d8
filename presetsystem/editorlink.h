// What an effect tells its editor.
#pragma once

// Implemented by the preset system's editor. The effect calls it on whatever
// thread it is entered on: an open editor acts at once on the thread that owns
// it and otherwise only leaves a mark for its next idle (no lock, no
// allocation, safe on the audio thread).
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
