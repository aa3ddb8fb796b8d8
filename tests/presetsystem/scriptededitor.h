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
#include <memory>
#include <utility>
#include <vector>

namespace mirelon::test {

// A user who answers from a list.
class ScriptedDialog final : public FileDialog {
  public:
    // What the user was asked, and does; outlives the dialog, which may end while
    // the user thinks.
    struct Script {
        std::vector<FileQuestion> questions;
        std::deque<std::optional<std::string>> answers; // none left: dismissed
        std::function<void()> meanwhile;                // happens while the user thinks
        int dismissals = 0;
        bool available = true;
    };

    explicit ScriptedDialog(std::shared_ptr<Script> script)
        : script(std::move(script)) {}

    bool isAvailable() const override { return script->available; }
    void ask(const FileQuestion& question, Answer answered) override {
        const auto played = script;
        played->questions.push_back(question);
        std::optional<std::string> answer;
        if (!played->answers.empty()) {
            answer = played->answers.front();
            played->answers.pop_front();
        }
        if (played->meanwhile)
            std::exchange(played->meanwhile, nullptr)();
        answered(std::move(answer));
    }
    void dismiss() override { ++script->dismissals; }

  private:
    std::shared_ptr<Script> script;
};

// Counts how often all of it is to be drawn anew.
class WatchedFrame final : public VSTGUI::CFrame {
  public:
    using CFrame::CFrame;
    void invalid() override {
        ++redraws;
        CFrame::invalid();
    }
    int redraws = 0;
};

class ScriptedEditor : public CPresetSystemEditor {
  public:
    using CPresetSystemEditor::lastFiles;
    using Script = ScriptedDialog::Script;

    explicit ScriptedEditor(AudioEffect* effect,
                            std::shared_ptr<Script> user = std::make_shared<Script>())
        : CPresetSystemEditor(effect, std::make_unique<ScriptedDialog>(user))
        , user(std::move(user)) {}
    ~ScriptedEditor() override { dropFrame(); }

    // A frame that is on no screen, as between an editor's opening and closing.
    void makeFrame() {
        setUpToolkit();
        frame = new WatchedFrame(VSTGUI::CRect(0, 0, 10, 10), this);
    }
    // The panel's controls, in that frame.
    void makePanel() {
        makeFrame();
        EXPECT_TRUE(open(nullptr));
    }
    void dropFrame() {
        close();
        if (frame != nullptr)
            std::exchange(frame, nullptr)->forget();
    }

    int redraws() const { return dynamic_cast<WatchedFrame&>(*frame).redraws; }
    // A control of the panel; null without one.
    VSTGUI::CControl* control(std::int32_t tag) const {
        VSTGUI::CControl* found = nullptr;
        frame->forEachChild([&](VSTGUI::CView* view) {
            if (auto* candidate = dynamic_cast<VSTGUI::CControl*>(view))
                if (candidate->getTag() == tag)
                    found = candidate;
        });
        return found;
    }
    VSTGUI::CTextEdit& nameField() const {
        return dynamic_cast<VSTGUI::CTextEdit&>(*control(1000));
    }
    VSTGUI::COptionMenu& presetMenu() const {
        return dynamic_cast<VSTGUI::COptionMenu&>(*control(1012));
    }

    using CPresetSystemEditor::setParameter;
    void setParameter(long /*index*/, float /*value*/) override {}

    void setDir(const std::string& dir) {
        dir.copy(lastFiles.currentDir.data(), lastFiles.currentDir.size() - 1);
    }

    const std::shared_ptr<Script> user;
    std::vector<std::string> told; // to the user, oldest first

  protected:
    void tell(const Message& message) override { told.push_back(message.text); }
};

// An effect with such an editor; preferences in a folder of their own.
class ScriptedInstance {
  public:
    explicit ScriptedInstance(const std::filesystem::path& configuration) {
        setenv("XDG_CONFIG_HOME", configuration.c_str(), 1);
        editor = new ScriptedEditor(&effect);
    }

    RecordingEffect effect;
    ScriptedEditor* editor = nullptr; // owned by the effect
};

} // namespace mirelon::test
