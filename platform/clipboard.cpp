#include "platform/clipboard.h"

#include "platform/runloop.h"
#include "platform/serverconnection.h"

#include <array>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace mirelon {

namespace {

constexpr std::uint8_t sentByAProgram = 0x80; // in the type of an event
constexpr std::uint32_t longestInWords = 0x4000;

using Event = ReplyPtr<xcb_generic_event_t>;

template <typename Kind>
const Kind& as(const xcb_generic_event_t& event) {
    return reinterpret_cast<const Kind&>(event);
}

// STRING is ISO 8859-1: the first 256 characters, one byte each.
std::string utf8OfLatin1(std::string_view latin1) {
    std::string utf8;
    for (const char c : latin1) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80U) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0U | (byte >> 6U));
            utf8 += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
    return utf8;
}

// With a question mark for every character that is not in it.
std::string latin1OfUtf8(std::string_view utf8) {
    const auto byteAt = [utf8](std::size_t at) {
        return at < utf8.size() ? static_cast<unsigned char>(utf8[at]) : 0U;
    };
    std::string latin1;
    for (std::size_t at = 0; at < utf8.size(); ++at) {
        const unsigned byte = byteAt(at);
        const bool inLatin1 = byte == 0xC2U || byte == 0xC3U;
        if (byte < 0x80U)
            latin1 += static_cast<char>(byte);
        else if (byte >= 0xC0U)
            latin1 += inLatin1
                          ? static_cast<char>(((byte & 0x03U) << 6U) | (byteAt(at + 1) & 0x3FU))
                          : '?';
    }
    return latin1;
}

} // namespace

// The connection, and the window that owns the selection and is sent others'.
class Clipboard::Selection {
  public:
    // Null without a display.
    static std::unique_ptr<Selection> connect();
    ~Selection();
    Selection(const Selection&) = delete;
    Selection& operator=(const Selection&) = delete;

    void own(const std::string& text);
    const std::optional<std::string>& owned() const { return text; }
    void request(Receiver receiver);
    void cancelRequest() { receive = nullptr; }
    // What has come, and what has come unseen while a reply was waited for.
    void serve();

  private:
    explicit Selection(ServerConnection connection);

    xcb_connection_t* server() const { return connection.get(); }
    xcb_atom_t atomNamed(std::string_view name);
    [[nodiscard]] xcb_window_t makeWindow();
    xcb_timestamp_t now();
    void convertTo(xcb_atom_t target);

    void handle(const xcb_generic_event_t& event);
    void answer(const xcb_selection_request_event_t& request);
    bool answerWith(const xcb_selection_request_event_t& request, xcb_atom_t property);
    void receiveAnswer(const xcb_selection_notify_event_t& answer);
    std::optional<std::string> takeProperty();

    ServerConnection connection;
    RunLoop& loop = RunLoop::instance();
    xcb_window_t window = makeWindow();

    xcb_atom_t clipboard = atomNamed("CLIPBOARD");
    xcb_atom_t targets = atomNamed("TARGETS");
    xcb_atom_t timestamp = atomNamed("TIMESTAMP");
    xcb_atom_t utf8 = atomNamed("UTF8_STRING");
    xcb_atom_t inPieces = atomNamed("INCR");
    xcb_atom_t property = atomNamed("MIRELON_CLIPBOARD");

    std::optional<std::string> text; // while we own the selection
    xcb_timestamp_t ownedSince = 0;
    Receiver receive; // while text is awaited
    xcb_timestamp_t requestedAt = 0;

    // Last: it is for all of the above.
    const DescriptorWatches::Id watch =
        loop.watchDescriptor(xcb_get_file_descriptor(server()), [this] { serve(); });
};

std::unique_ptr<Clipboard::Selection> Clipboard::Selection::connect() {
    ServerConnection connection = connectToServer();
    if (connection == nullptr)
        return nullptr;
    return std::unique_ptr<Selection>(new Selection(std::move(connection)));
}

Clipboard::Selection::Selection(ServerConnection connection_)
    : connection(std::move(connection_)) {}

Clipboard::Selection::~Selection() {
    loop.unwatchDescriptor(watch);
}

xcb_atom_t Clipboard::Selection::atomNamed(std::string_view name) {
    const auto cookie =
        xcb_intern_atom(server(), 0, static_cast<std::uint16_t>(name.size()), name.data());
    const ReplyPtr<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(server(), cookie, nullptr));
    return reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

// Never on show.
xcb_window_t Clipboard::Selection::makeWindow() {
    constexpr std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    const xcb_window_t made = xcb_generate_id(server());
    xcb_create_window(server(), XCB_COPY_FROM_PARENT, made, firstScreen(server()).root, 0, 0, 1, 1,
                      0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    return made;
}

// The server's time, by which it orders what several programs ask for at once. It is
// told by the change of a property that changes nothing.
xcb_timestamp_t Clipboard::Selection::now() {
    xcb_change_property(server(), XCB_PROP_MODE_APPEND, window, timestamp, XCB_ATOM_INTEGER, 32, 0,
                        nullptr);
    xcb_flush(server());
    while (const Event event{xcb_wait_for_event(server())}) {
        if ((event->response_type & ~sentByAProgram) == XCB_PROPERTY_NOTIFY)
            if (const auto& change = as<xcb_property_notify_event_t>(*event);
                change.atom == timestamp)
                return change.time;
        handle(*event);
    }
    return XCB_CURRENT_TIME; // the server has gone
}

void Clipboard::Selection::own(const std::string& copied) {
    ownedSince = now();
    xcb_set_selection_owner(server(), window, clipboard, ownedSince);
    const ReplyPtr<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        server(), xcb_get_selection_owner(server(), clipboard), nullptr));
    text.reset();
    if (reply != nullptr && reply->owner == window)
        text = copied;
    serve();
}

void Clipboard::Selection::request(Receiver receiver) {
    requestedAt = now();
    receive = std::move(receiver);
    convertTo(utf8);
    serve();
}

void Clipboard::Selection::convertTo(xcb_atom_t target) {
    xcb_convert_selection(server(), window, clipboard, target, property, requestedAt);
}

void Clipboard::Selection::serve() {
    while (const Event event{xcb_poll_for_event(server())})
        handle(*event);
    xcb_flush(server());
    if (xcb_connection_has_error(server()) != 0)
        loop.unwatchDescriptor(watch);
}

void Clipboard::Selection::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & ~sentByAProgram) {
    case XCB_SELECTION_REQUEST:
        return answer(as<xcb_selection_request_event_t>(event));
    case XCB_SELECTION_CLEAR:
        // One that we have taken again meanwhile is ours.
        if (as<xcb_selection_clear_event_t>(event).time >= ownedSince)
            text.reset();
        return;
    case XCB_SELECTION_NOTIFY:
        return receiveAnswer(as<xcb_selection_notify_event_t>(event));
    default:
        return;
    }
}

// --- What others want of us ---

void Clipboard::Selection::answer(const xcb_selection_request_event_t& request) {
    // Old programs name no property and look into the one of the target's name.
    const xcb_atom_t into = request.property != XCB_ATOM_NONE ? request.property : request.target;
    xcb_selection_notify_event_t notice{};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.time = request.time;
    notice.requestor = request.requestor;
    notice.selection = request.selection;
    notice.target = request.target;
    notice.property = answerWith(request, into) ? into : xcb_atom_t{XCB_ATOM_NONE};
    // As long as every event is on the wire.
    std::array<char, 32> bytes{};
    static_assert(sizeof notice <= bytes.size());
    std::copy_n(reinterpret_cast<const char*>(&notice), sizeof notice, bytes.begin());
    xcb_send_event(server(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, bytes.data());
}

// False for what we do not have.
bool Clipboard::Selection::answerWith(const xcb_selection_request_event_t& request,
                                      xcb_atom_t into) {
    if (!text || request.selection != clipboard ||
        (request.time != XCB_CURRENT_TIME && request.time < ownedSince))
        return false;
    const auto put = [&](xcb_atom_t type, std::uint8_t bits, std::size_t count, const void* data) {
        xcb_change_property(server(), XCB_PROP_MODE_REPLACE, request.requestor, into, type, bits,
                            static_cast<std::uint32_t>(count), data);
        return true;
    };
    const auto putText = [&](const std::string& bytes) {
        return put(request.target, 8, bytes.size(), bytes.data());
    };
    if (request.target == targets) {
        const std::array<xcb_atom_t, 4> offered{targets, timestamp, utf8, XCB_ATOM_STRING};
        return put(XCB_ATOM_ATOM, 32, offered.size(), offered.data());
    }
    if (request.target == timestamp)
        return put(XCB_ATOM_INTEGER, 32, 1, &ownedSince);
    if (request.target == utf8)
        return putText(*text);
    if (request.target == XCB_ATOM_STRING)
        return putText(latin1OfUtf8(*text));
    return false;
}

// --- What we want of others ---

void Clipboard::Selection::receiveAnswer(const xcb_selection_notify_event_t& answer) {
    if (answer.selection != clipboard || answer.time != requestedAt)
        return;
    if (answer.property == XCB_ATOM_NONE) {
        if (answer.target == utf8)
            convertTo(XCB_ATOM_STRING);
        return;
    }
    const auto received = takeProperty();
    const Receiver receiver = std::exchange(receive, nullptr);
    if (received && receiver != nullptr)
        receiver(answer.target == utf8 ? *received : utf8OfLatin1(*received));
}

std::optional<std::string> Clipboard::Selection::takeProperty() {
    const auto cookie = xcb_get_property(server(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY,
                                         0, longestInWords);
    const ReplyPtr<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(server(), cookie, nullptr));
    if (reply == nullptr || reply->type == inPieces) {
        // To delete the property would ask for the first piece. The sender sees the
        // window go.
        xcb_destroy_window(server(), window);
        window = makeWindow();
        return {};
    }
    xcb_delete_property(server(), window, property);
    return std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                       static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
}

// --- Clipboard ---

Clipboard::Clipboard() = default;
Clipboard::~Clipboard() = default;

Clipboard::Selection* Clipboard::selection() {
    if (connected == nullptr)
        connected = Selection::connect();
    return connected.get();
}

void Clipboard::copy(const std::string& text) {
    if (Selection* const shared = selection())
        shared->own(text);
}

void Clipboard::paste(Receiver receive) {
    Selection* const shared = selection();
    if (shared == nullptr)
        return;
    shared->serve(); // whether another has taken it
    if (const auto own = shared->owned())
        receive(*own);
    else
        shared->request(std::move(receive));
}

void Clipboard::cancelPaste() {
    if (connected != nullptr)
        connected->cancelRequest();
}

} // namespace mirelon
