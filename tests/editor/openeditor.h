// The effect with its editor open in a host's window, in this program itself: what the
// views hold can be read, and what they show seen.
#pragma once

#include "editor/adeditor.h"
#include "processor/mirelon.h"
#include "tests/support/pumping.h"
#include "tests/support/temporaryfolder.h"
#include "tests/support/xwindow.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace mirelon::test {

class OpenEditor : public testing::Test {
  protected:
    OpenEditor() {
        VirtualDisplay::start();
        unsetenv("MIRELON_SCALE");
        setenv("XDG_CONFIG_HOME", folder.path.c_str(), 1);
        effect = std::make_unique<Mirelon>(&host);
        window = std::make_unique<XWindow>(400, 400);
        EXPECT_EQ(dispatch(effEditOpen, 0, window->asParent()), 1);
    }
    ~OpenEditor() override { dispatch(effEditClose); }

    VstIntPtr dispatch(VstInt32 opcode, VstIntPtr value = 0, void* ptr = nullptr) {
        return effect->dispatcher(opcode, 0, value, ptr, 0.0F);
    }
    std::vector<VSTGUI::CControl*> controls() const {
        std::vector<VSTGUI::CControl*> all;
        dynamic_cast<ADEditor&>(*effect->getEditor())
            .getFrame()
            ->forEachChild([&](VSTGUI::CView* view) {
                if (auto* const control = dynamic_cast<VSTGUI::CControl*>(view))
                    all.push_back(control);
            });
        return all;
    }

    const TemporaryFolder folder;
    std::unique_ptr<Mirelon> effect;
    std::unique_ptr<XWindow> window;

  private:
    static VstIntPtr host(AEffect* /*effect*/, VstInt32 opcode, VstInt32 /*index*/,
                          VstIntPtr /*value*/, void* /*ptr*/, float /*opt*/) {
        return opcode == audioMasterVersion ? kVstVersion : 0;
    }
};

} // namespace mirelon::test
