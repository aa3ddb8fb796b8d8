// The editor's frame: draws in whole window scales, can give all events to one
// view, leaves the keys to the host, and outlives its editor while an event is
// under way.
#pragma once

#include "editor/hoverframe.h"
#include "platform/clipboard.h"
#include "platform/toolkit.h"
#include "platform/windowkeys.h"

#include <cstdint>
#include <optional>

// Lives from its construction to retire(), on the thread that opened it.
//
// A control has the keys only while it wears the ring that the tab key puts on
// it and passes on, until escape or a click; and a text while it is typed, and
// an open menu. All other keys are the host's.
class MyFrame : public VSTGUI::CFrame, private VSTGUI::IFocusViewObserver {
  public:
    // `rect` in the coordinates of scale 1, in which all views are laid out;
    // the window is `scale` times as large.
    MyFrame(const VSTGUI::CRect& rect, double scale, VSTGUI::VSTGUIEditorInterface* editor);

    // Puts the frame into the host's window and shows it. False when that
    // window does not exist.
    bool openIn(void* parent);
    // The end of the frame, which is released, and of its window: at once, or, when
    // the run loop is handing it an event, as soon as that has returned. Until
    // then no listener and no editor hears of it any more.
    void retire();

    // What is copied from here is gone when the window closes.
    mirelon::Clipboard& clipboard() { return textClipboard; }

    // --- One captured view: it gets every mouse event while it is held ---
    void makeModal(VSTGUI::CView* view) { captured = view; }
    void closeModal();
    virtual VSTGUI::CView* getModal() const { return captured; }

    // Where the pointer is, at scale 1; nothing outside of the window.
    std::optional<VSTGUI::CPoint> pointer() const { return lastPointer; }

    VSTGUI::CMouseEventResult onMouseDown(VSTGUI::CPoint& where,
                                          const VSTGUI::CButtonState& buttons) override;
    VSTGUI::CMouseEventResult onMouseUp(VSTGUI::CPoint& where,
                                        const VSTGUI::CButtonState& buttons) override;
    VSTGUI::CMouseEventResult onMouseMoved(VSTGUI::CPoint& where,
                                           const VSTGUI::CButtonState& buttons) override;
    void onMouseWheelEvent(VSTGUI::MouseWheelEvent& event) override;

    void drawRect(VSTGUI::CDrawContext* context, const VSTGUI::CRect& updateRect) override;
    void drawBackgroundRect(VSTGUI::CDrawContext* context,
                            const VSTGUI::CRect& updateRect) override;

  protected:
    void platformOnEvent(VSTGUI::Event& event) override;
    // The toolkit would put the keys on the first control of a window that comes
    // to the front.
    void platformOnActivate(bool active) override;

  private:
    // While the observers can still be taken off.
    void beforeDelete() override;
    void onFocusViewChanged(VSTGUI::CFrame* frame, VSTGUI::CView* now,
                            VSTGUI::CView* before) override;

    void onKey(VSTGUI::KeyboardEvent& event);
    bool isTyping() const;
    void endRing();
    void hideRing();
    void invalidRing(const VSTGUI::CView* view);
    void settleKeys();

    // The editor as the toolkit sees it: none any more once the frame has retired,
    // and one that never lets the toolkit resize the host's window.
    class DetachableEditor final : public VSTGUI::VSTGUIEditorInterface {
      public:
        explicit DetachableEditor(VSTGUI::VSTGUIEditorInterface* editor)
            : editor(editor) {}
        void detach() { editor = nullptr; }
        int32_t getKnobMode() const override;
        void beginEdit(int32_t index) override;
        void endEdit(int32_t index) override;
        bool beforeSizeChange(const VSTGUI::CRect&, const VSTGUI::CRect&) override { return true; }

      private:
        VSTGUI::VSTGUIEditorInterface* editor;
    };

    DetachableEditor detachableEditor;
    VSTGUI::CView* captured = nullptr;    // not owned
    std::optional<HoverFrame> hoverFrame; // until it retires
    std::optional<VSTGUI::CPoint> lastPointer;
    std::optional<mirelon::WindowKeys> keys; // while the window is open
    mirelon::Clipboard textClipboard;
    bool ringShown = false;
    bool handlingKey = false;
};
