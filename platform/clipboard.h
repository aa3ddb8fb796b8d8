// The clipboard of the desktop, for text.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace mirelon {

// What other programs copy and paste, by the X server's selection CLIPBOARD. Text is
// UTF-8 on this side; there it goes as UTF8_STRING, or as STRING to and from programs
// that know no other.
//
// Connects to the server when it is first used, and is served by the run loop: answers
// come and go while that pumps. Without a display nothing is copied or pasted. The
// editors' thread.
class Clipboard final {
  public:
    using Receiver = std::function<void(const std::string& text)>;

    Clipboard();
    // What has been copied goes with it.
    ~Clipboard();
    Clipboard(const Clipboard&) = delete;
    Clipboard& operator=(const Clipboard&) = delete;

    // Until another program, or another clipboard, copies something.
    void copy(const std::string& text);
    // `receive` gets the text, at once or when it comes. It never comes when nobody
    // has any, nor when it is sent in pieces: such texts are too long for a field. A
    // second paste takes the place of the first.
    void paste(Receiver receive);
    void cancelPaste();

  private:
    class Selection;

    Selection* selection();

    std::unique_ptr<Selection> connected; // from the first use on
};

} // namespace mirelon
