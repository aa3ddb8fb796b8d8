// A MIDI sequencer with nothing connected to it, in place of the kernel's.
//
// Qtractor starts its audio only together with the kernel's sequencer
// (/dev/snd/seq), which virtual machines and containers rarely have. Loaded in
// front of ALSA's library, this answers the calls that would talk to the kernel;
// everything else stays ALSA's. What the calls take is told apart by position
// only, so ALSA's headers are not needed.
#include <cerrno>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

constexpr int ourClient = 128; // the first number that the kernel gives to programs
int ports = 0;
int neverReady = -1;

} // namespace

extern "C" {
#pragma GCC visibility push(default)

int snd_seq_open(void** sequencer, const char* /*name*/, int /*streams*/, int /*mode*/) {
    neverReady = eventfd(0, EFD_CLOEXEC);
    *sequencer = &neverReady;
    return neverReady < 0 ? -errno : 0;
}

int snd_seq_close(void* /*sequencer*/) {
    return close(neverReady);
}

int snd_seq_client_id(void* /*sequencer*/) {
    return ourClient;
}

int snd_seq_set_client_name(void* /*sequencer*/, const char* /*name*/) {
    return 0;
}

// Other clients and connections: there are none.
int snd_seq_get_any_client_info(void* /*sequencer*/, int /*client*/, void* /*info*/) {
    return -ENOENT;
}

int snd_seq_get_any_port_info(void* /*sequencer*/, int /*client*/, int /*port*/, void* /*info*/) {
    return -ENOENT;
}

int snd_seq_query_next_client(void* /*sequencer*/, void* /*info*/) {
    return -ENOENT;
}

int snd_seq_query_next_port(void* /*sequencer*/, void* /*info*/) {
    return -ENOENT;
}

int snd_seq_query_port_subscribers(void* /*sequencer*/, void* /*query*/) {
    return -ENOENT;
}

int snd_seq_subscribe_port(void* /*sequencer*/, void* /*subscription*/) {
    return -ENOENT;
}

int snd_seq_unsubscribe_port(void* /*sequencer*/, void* /*subscription*/) {
    return -ENOENT;
}

// The program's own ports and its queue.
int snd_seq_create_simple_port(void* /*sequencer*/, const char* /*name*/, unsigned /*abilities*/,
                               unsigned /*type*/) {
    return ports++;
}

int snd_seq_delete_simple_port(void* /*sequencer*/, int /*port*/) {
    return 0;
}

int snd_seq_get_port_info(void* /*sequencer*/, int /*port*/, void* /*info*/) {
    return 0;
}

int snd_seq_set_port_info(void* /*sequencer*/, int /*port*/, void* /*info*/) {
    return 0;
}

int snd_seq_alloc_queue(void* /*sequencer*/) {
    return 0;
}

int snd_seq_free_queue(void* /*sequencer*/, int /*queue*/) {
    return 0;
}

int snd_seq_control_queue(void* /*sequencer*/, int /*queue*/, int /*type*/, int /*value*/,
                          void* /*event*/) {
    return 0;
}

int snd_seq_get_queue_status(void* /*sequencer*/, int /*queue*/, void* /*status*/) {
    return 0;
}

int snd_seq_get_queue_tempo(void* /*sequencer*/, int /*queue*/, void* /*tempo*/) {
    return 0;
}

int snd_seq_set_queue_tempo(void* /*sequencer*/, int /*queue*/, void* /*tempo*/) {
    return 0;
}

int snd_seq_set_queue_timer(void* /*sequencer*/, int /*queue*/, void* /*timer*/) {
    return 0;
}

// Nothing ever arrives; what is sent is gone.
int snd_seq_poll_descriptors_count(void* /*sequencer*/, short /*events*/) {
    return 1;
}

int snd_seq_poll_descriptors(void* /*sequencer*/, pollfd* descriptors, unsigned space,
                             short events) {
    if (space == 0)
        return 0;
    descriptors[0] = {neverReady, static_cast<short>(events & POLLIN), 0};
    return 1;
}

int snd_seq_event_input(void* /*sequencer*/, void** event) {
    *event = nullptr;
    return -EAGAIN;
}

int snd_seq_event_input_pending(void* /*sequencer*/, int /*fetch*/) {
    return 0;
}

int snd_seq_event_output(void* /*sequencer*/, void* /*event*/) {
    return 0;
}

int snd_seq_event_output_direct(void* /*sequencer*/, void* /*event*/) {
    return 0;
}

int snd_seq_drain_output(void* /*sequencer*/) {
    return 0;
}

int snd_seq_drop_input(void* /*sequencer*/) {
    return 0;
}

int snd_seq_drop_output(void* /*sequencer*/) {
    return 0;
}

int snd_seq_remove_events(void* /*sequencer*/, void* /*filter*/) {
    return 0;
}

#pragma GCC visibility pop
}
