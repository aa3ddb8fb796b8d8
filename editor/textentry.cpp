#include "editor/textentry.h"

#include "editor/myframe.h"
#include "platform/clipboard.h"

#include <algorithm>
#include <cmath>

using namespace VSTGUI;
using mirelon::EditableLine;

namespace {

constexpr std::uint32_t blinkMilliseconds = 500;
constexpr CCoord caretWidth = 1;
constexpr const char* ellipsis = "\xE2\x80\xA6";

// The toolkit gives the keys of the number block no characters.
char32_t characterOf(const KeyboardEvent& event) {
    switch (event.virt) {
    case VirtualKey::None:
        return event.character;
    case VirtualKey::Space:
        return U' ';
    case VirtualKey::Add:
        return U'+';
    case VirtualKey::Subtract:
        return U'-';
    case VirtualKey::Multiply:
        return U'*';
    case VirtualKey::Divide:
        return U'/';
    case VirtualKey::Decimal:
        return U'.';
    case VirtualKey::Separator:
        return U',';
    default:
        return 0;
    }
}

// With the control key a letter arrives as the letter or as its control character.
char32_t shortcutLetter(char32_t character) {
    constexpr char32_t firstPrintable = 0x20;
    constexpr char32_t toLowerCase = 0x60;
    return character < firstPrintable ? character + toLowerCase : character;
}

} // namespace

// What the toolkit takes for its own editor.
class TextEntry::Typed final : public IPlatformTextEdit {
  public:
    explicit Typed(TextEntry& entry)
        : IPlatformTextEdit(&entry)
        , entry(entry) {}

    UTF8String getText() override { return UTF8String(entry.line.text()); }
    bool setText(const UTF8String& /*text*/) override {
        entry.shownTextChanged();
        return true;
    }
    bool updateSize() override { return true; }
    bool drawsPlaceholder() const override { return true; }

  private:
    TextEntry& entry;
};

TextEntry::TextEntry(const CRect& rect, IControlListener* listener, std::int32_t tag,
                     CBitmap* background, std::int32_t style)
    : CTextEdit(rect, listener, tag, nullptr, background, style) {
    setFont(kNormalFontSmall);
    setFontColor(inkColor);
}

// --- The text that is shown ---

void TextEntry::setText(const UTF8String& shown) {
    CTextEdit::setText(shown);
    truncatedText = withEllipsis(shown);
    setTooltipText(truncatedText.empty() ? nullptr : shown.data());
}

// Empty for a text that fits.
UTF8String TextEntry::withEllipsis(const UTF8String& whole) const {
    const CCoord room = textArea().getWidth();
    if (widthOf(whole.getString()) <= room)
        return {};
    EditableLine beginning;
    beginning.assign(whole.getString());
    std::string shortened;
    for (std::size_t length = beginning.size(); length > 0; --length) {
        shortened = beginning.textBetween(0, length - 1) + ellipsis;
        if (widthOf(shortened) <= room)
            break;
    }
    return UTF8String(shortened);
}

CRect TextEntry::textArea() const {
    CRect area(getViewSize());
    return area.inset(getTextInset());
}

CCoord TextEntry::widthOf(const std::string& part) const {
    const auto font = getFont() != nullptr ? getFont()->getPlatformFont() : nullptr;
    if (part.empty() || font == nullptr || font->getPainter() == nullptr)
        return 0;
    return font->getPainter()->getStringWidth(nullptr, UTF8String(part).getPlatformString(), true);
}

// --- Begin and end of typing ---

void TextEntry::takeFocus() {
    if (getFrame() == nullptr)
        return;
    if (!isEditing()) {
        platformControl = makeOwned<Typed>(*this);
        end = Ending::left;
        selecting = false;
        scroll.reset();
        setTypedText(getText());
        getFrame()->registerMouseObserver(this);
    }
    CTextEdit::takeFocus();
}

void TextEntry::looseFocus() {
    if (!isEditing())
        return;
    const auto alive = shared(this);
    if (CFrame* const frame = getFrame()) {
        frame->unregisterMouseObserver(this);
        frame->setCursor(kCursorDefault);
    }
    if (mirelon::Clipboard* const shared = clipboard())
        shared->cancelPaste();
    blinking = nullptr;
    CTextEdit::looseFocus();
}

void TextEntry::endTyping(Ending how) {
    end = how;
    if (how == Ending::dismissed)
        setTypedText(getText());
    const auto alive = shared(this);
    getFrame()->setFocusView(nullptr);
    looseFocus(); // where the frame has the focus elsewhere already
}

void TextEntry::setTypedText(const UTF8String& text) {
    line.assign(text.getString());
    edited = false;
    lineChanged();
}

// --- Keys ---

void TextEntry::onKeyboardEvent(KeyboardEvent& event) {
    if (!isEditing() || event.type != EventType::KeyDown)
        return;
    event.consumed = true;
    switch (event.virt) {
    case VirtualKey::Return:
    case VirtualKey::Enter:
        return endTyping(Ending::confirmed);
    case VirtualKey::Escape:
        return endTyping(Ending::dismissed);
    case VirtualKey::Tab: // the frame goes on to the next control
        end = Ending::confirmed;
        event.consumed = false;
        return;
    default:
        event.consumed = onMovement(event) || onTextKey(event);
    }
}

bool TextEntry::onMovement(const KeyboardEvent& event) {
    using enum EditableLine::Direction;
    using Step = EditableLine::Step;
    const bool extend = event.modifiers.has(ModifierKey::Shift);
    const auto step = event.modifiers.has(ModifierKey::Control) ? Step::word : Step::character;
    switch (event.virt) {
    case VirtualKey::Left:
        line.move(back, step, extend);
        break;
    case VirtualKey::Right:
        line.move(forward, step, extend);
        break;
    case VirtualKey::Home:
    case VirtualKey::Up:
        line.move(back, Step::end, extend);
        break;
    case VirtualKey::End:
    case VirtualKey::Down:
        line.move(forward, Step::end, extend);
        break;
    default:
        return false;
    }
    caretMoved();
    return true;
}

bool TextEntry::onTextKey(const KeyboardEvent& event) {
    using enum EditableLine::Direction;
    const bool control = event.modifiers.has(ModifierKey::Control);
    const auto step = control ? EditableLine::Step::word : EditableLine::Step::character;
    const char32_t character = characterOf(event);
    if (event.virt == VirtualKey::Back)
        line.erase(back, step);
    else if (event.virt == VirtualKey::Delete)
        line.erase(forward, step);
    else if (character == 0)
        return false;
    else if (control)
        return onShortcut(shortcutLetter(character));
    else
        line.insert(character);
    lineEdited();
    return true;
}

bool TextEntry::onShortcut(char32_t letter) {
    mirelon::Clipboard* const desktops = clipboard();
    switch (letter) {
    case U'a':
        line.selectAll();
        caretMoved();
        return true;
    case U'c':
    case U'x':
        if (desktops == nullptr || !line.hasSelection())
            return true;
        desktops->copy(line.selectedText());
        if (letter == U'x') {
            line.insert("");
            lineEdited();
        }
        return true;
    case U'v':
        paste();
        return true;
    default:
        return false;
    }
}

// --- The clipboard ---

mirelon::Clipboard* TextEntry::clipboard() const {
    auto* const frame = dynamic_cast<MyFrame*>(getFrame());
    return frame != nullptr ? &frame->clipboard() : nullptr;
}

void TextEntry::paste() {
    mirelon::Clipboard* const desktops = clipboard();
    if (desktops == nullptr)
        return;
    // Cancelled when the typing ends, and so never after this object.
    desktops->paste([this](const std::string& text) {
        line.insert(text);
        lineEdited();
    });
}

// --- Mouse ---

// Before any view gets the event: the toolkit ends the typing at a press that has not
// been used.
void TextEntry::onMouseEvent(MouseEvent& event, CFrame* /*frame*/) {
    if (!isEditing())
        return;
    switch (event.type) {
    case EventType::MouseDown:
        return onPress(castMouseDownEvent(event));
    case EventType::MouseMove:
        getFrame()->setCursor(selecting || hitTest(event.mousePosition, event) ? kCursorIBeam
                                                                               : kCursorDefault);
        if (!selecting)
            return;
        line.moveTo(placeAt(event.mousePosition.x), true);
        caretMoved();
        break;
    case EventType::MouseUp:
        if (!selecting)
            return;
        selecting = false;
        break;
    default:
        return;
    }
    event.consumed = true;
}

void TextEntry::onPress(MouseDownEvent& event) {
    selecting = event.buttonState.isLeft() && hitTest(event.mousePosition, event);
    if (!selecting) {
        end = Ending::confirmed;
        return;
    }
    const std::size_t place = placeAt(event.mousePosition.x);
    if (event.clickCount > 1)
        line.selectWordAt(place);
    else
        line.moveTo(place, event.modifiers.has(ModifierKey::Shift));
    caretMoved();
    event.consumed = true;
}

std::size_t TextEntry::placeAt(CCoord x) const {
    const CCoord inText = x - textLeft();
    std::size_t place = 0;
    while (place + 1 < edges.size() && (edges[place] + edges[place + 1]) / 2 <= inText)
        ++place;
    return place;
}

// --- Drawing of what is typed ---

void TextEntry::lineEdited() {
    edited = true;
    lineChanged();
}

void TextEntry::lineChanged() {
    edges.resize(line.size() + 1);
    for (std::size_t place = 0; place < edges.size(); ++place)
        edges[place] = widthOf(line.textBetween(0, place));
    caretMoved();
}

void TextEntry::caretMoved() {
    scroll.follow(edges[line.caret()], edges.back(), textArea().getWidth() - caretWidth);
    caretShown = true;
    if (isAttached())
        blinking = makeOwned<CVSTGUITimer>([this](CVSTGUITimer*) { blink(); }, blinkMilliseconds);
    invalid();
}

void TextEntry::blink() {
    caretShown = !caretShown;
    if (!line.hasSelection())
        invalid();
}

// Where the text begins; outside of the field while its beginning is hidden.
CCoord TextEntry::textLeft() const {
    const CRect area = textArea();
    const CCoord free = area.getWidth() - caretWidth - edges.back();
    const CCoord indent = getHoriAlign() == kCenterText ? std::max(free / 2, 0.0) : 0.0;
    return area.left + indent - scroll.offset();
}

void TextEntry::draw(CDrawContext* context) {
    if (!isEditing())
        return CTextEdit::draw(context);
    drawEditBackground(context);
    const CRect area = textArea();
    const CCoord left = textLeft();
    const auto drawBlock = [&](CCoord from, CCoord to, const CColor& color) {
        // On whole pixels of the screen.
        const CCoord zoom = getFrame()->getZoom();
        const auto onPixel = [zoom](CCoord at) { return std::round(at * zoom) / zoom; };
        context->setFillColor(color);
        context->drawRect(CRect(onPixel(from), area.top + 1, onPixel(to), area.bottom - 1),
                          kDrawFilled);
    };
    drawClipped(context, area, [&] {
        context->setDrawMode(kAliasing);
        if (line.hasSelection())
            drawBlock(left + edges[line.selectionStart()], left + edges[line.selectionEnd()],
                      getFrame()->getFocusColor());
        context->setDrawMode(kAntiAliasing);
        context->setFont(getFont());
        context->setFontColor(inkColor);
        const CRect whole(left, area.top, left + edges.back() + caretWidth, area.bottom);
        context->drawString(UTF8String(line.text()).getPlatformString(), whole, kLeftText);
        context->setDrawMode(kAliasing);
        const CCoord caret = left + edges[line.caret()];
        if (caretShown && !line.hasSelection())
            drawBlock(caret, caret + caretWidth, inkColor);
    });
    setDirty(false);
}
