// A text field that nobody types into, without a display.
#include "editor/textentry.h"
#include "platform/toolkitconnection.h"

#include <gtest/gtest.h>
#include <string>

using namespace VSTGUI;

namespace {

const UTF8String longText("a text that is much longer than its field");

class TextEntryTest : public testing::Test {
  protected:
    TextEntryTest() {
        mirelon::setUpToolkit();
        frame = makeOwned<CFrame>(CRect(0, 0, 200, 100), nullptr);
        entry = new TextEntry(CRect(0, 0, 80, 14), nullptr, -1, nullptr);
        frame->addView(entry);
    }
    static std::string tooltip(const CView& view) {
        uint32_t size = 0;
        if (!view.getAttributeSize(kCViewTooltipAttribute, size))
            return {};
        std::string text(size, '\0');
        view.getAttribute(kCViewTooltipAttribute, size, text.data(), size);
        return text.substr(0, text.find('\0'));
    }

    SharedPointer<CFrame> frame;
    TextEntry* entry = nullptr; // owned by the frame
};

TEST_F(TextEntryTest, ShowsATextThatFitsAsItIs) {
    entry->setText("short");
    EXPECT_EQ(entry->getTruncatedText(), UTF8String());
    EXPECT_EQ(tooltip(*entry), "");
}

TEST_F(TextEntryTest, EndsATextThatDoesNotFitInAnEllipsis) {
    entry->setText(longText);
    const std::string shown = entry->getTruncatedText().getString();
    EXPECT_TRUE(shown.ends_with("\u2026")) << shown;
    EXPECT_TRUE(longText.getString().starts_with(shown.substr(0, shown.size() - 3))) << shown;
    EXPECT_EQ(entry->getText(), longText);
}

TEST_F(TextEntryTest, HasTheWholeOfSuchATextAsItsTooltip) {
    entry->setText(longText);
    EXPECT_EQ(tooltip(*entry), longText.getString());
    entry->setText("short");
    EXPECT_EQ(tooltip(*entry), "");
}

} // namespace
