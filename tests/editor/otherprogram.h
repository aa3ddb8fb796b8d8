// Another program of the desktop, with which texts are exchanged.
#pragma once

#include "tests/editor/editorhost.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct _XDisplay;

namespace mirelon::test {

// Copies and pastes by the CLIPBOARD selection, over an X connection of its own.
// While it waits the host's loop goes on.
class OtherProgram {
  public:
    enum class Offers {
        everything,
        latin1Only, // STRING alone
        pieces,     // announces the text in pieces, and waits to be asked for them
    };

    explicit OtherProgram(EditorHost& editor);

    void copy(std::string text, Offers offers = Offers::everything);
    // Gives up what it has copied.
    void clear();
    // Answers those who paste, and lets the host's loop run.
    void serve();
    // Tells the owner that it lost the selection at that time of the server's.
    void tellOwnerOfLoss(unsigned long time);
    // How many of the texts that it has sent have been taken or, in pieces, refused.
    std::size_t settled() const { return answersSettled; }
    bool owns() const;
    // Whether anybody does.
    bool anyoneOwns() const;

    // What it gets for this target; nothing when it is refused, or when what comes is no
    // answer to that.
    std::optional<std::string> paste(std::string_view target = "UTF8_STRING");
    // As a user's key at that time of the server's.
    std::optional<std::string> pasteAt(unsigned long time);
    // As programs do that do not say where they want it.
    std::optional<std::string> pasteAnywhere();
    // Of what it has got last.
    const std::string& typeOfAnswer() const { return answerType; }
    // The names of what the owner offers.
    std::vector<std::string> targets();

  private:
    struct CloseDisplay {
        void operator()(_XDisplay* display) const;
    };
    unsigned long atom(std::string_view name) const;
    bool answerNext();
    bool hearNext();
    std::optional<std::string> ask(std::string_view target, const char* into, unsigned long time);

    EditorHost& editor;
    std::unique_ptr<_XDisplay, CloseDisplay> display;
    unsigned long window = 0;
    std::string copied;
    Offers offering = Offers::everything;
    std::size_t answersSettled = 0;
    std::string answerType;
};

} // namespace mirelon::test
