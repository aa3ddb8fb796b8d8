// The preset system's editor over a recording effect: no window, and a user
// who answers file dialogs from a list.
#pragma once

#include "platform/toolkitconnection.h"
#include "presetsystem/cpresetsystemeditor.h"

#include "tests/presetsystem/recordingeffect.h"
#include "tests/support/temporaryfolder.h"

#include <cstdlib>
#include <deque>
#include <functional>
#include <gtest/gtest.h>

namespace mirelon::test {

class ScriptedEditor : public CPresetSystemEditor {
  public:
    using CPresetSystemEditor::currentBankName;
    using CPresetSystemEditor::currentDir;
    using CPresetSystemEditor::currentPresetName;
    using CPresetSystemEditor::nameField;
    using CPresetSystemEditor::PathBuffer;
    using CPresetSystemEditor::presetMenu;

    explicit ScriptedEditor(RecordingEffect& effect)
        : CPresetSystemEditor(&effect) {}
    ~ScriptedEditor() override { dropFrame(); }

    // A frame that is on no screen, as between an editor's opening and closing.
    void makeFrame() {
        setUpToolkit();
        frame = new VSTGUI::CFrame(VSTGUI::CRect(0, 0, 10, 10), this);
    }
    // The panel's controls, in that frame.
    void makePanel() {
        makeFrame();
        EXPECT_TRUE(open(nullptr));
    }
    void dropFrame() {
        if (presetMenu != nullptr)
            close();
        if (frame != nullptr)
            std::exchange(frame, nullptr)->forget();
    }

    using CPresetSystemEditor::setParameter;
    void setParameter(long /*index*/, float /*value*/) override {}

    void setDir(const std::string& dir) { dir.copy(currentDir.data(), currentDir.size() - 1); }

    std::vector<FileQuestion> questions;
    std::deque<std::optional<std::string>> answers; // none left: dismissed
    std::function<void()> meanwhile;                // happens while the user thinks

  private:
    std::optional<std::string> askForFile(const FileQuestion& question) override {
        questions.push_back(question);
        std::optional<std::string> answer;
        if (!answers.empty()) {
            answer = answers.front();
            answers.pop_front();
        }
        if (meanwhile)
            std::exchange(meanwhile, nullptr)(); // may end this editor
        return answer;
    }
};

// An effect with such an editor; preferences in a folder of their own.
class ScriptedInstance {
  public:
    explicit ScriptedInstance(const std::filesystem::path& configuration) {
        setenv("XDG_CONFIG_HOME", configuration.c_str(), 1);
        editor = new ScriptedEditor(effect);
    }

    RecordingEffect effect;
    ScriptedEditor* editor = nullptr; // owned by the effect
};

} // namespace mirelon::test
