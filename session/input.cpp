// session/input.cpp -- buffered character input.
//
// One read fills the buffer. Around a read that may block, the interrupt signal is held back except inside
// ppoll, so that an interrupt which comes just before the wait is not slept through.
#include "session/input.h"
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <unistd.h>
#include "session/output.h"
#include "session/report.h"

namespace kelmar {

static constexpr std::size_t input_room = 65536;

// Wait until fd can be read, answering interrupts meanwhile.
static void await_input(int fd)
{
    sigset_t held;
    sigset_t before;
    sigemptyset(&held);
    sigaddset(&held, SIGINT);
    for (;;) {
        poll_interrupt();
        pthread_sigmask(SIG_BLOCK, &held, &before);
        int ready = 0;
        if (!interrupt_flag) {
            struct pollfd waited = {fd, POLLIN, 0};
            ready = ppoll(&waited, 1, nullptr, &before);
        }
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        if (ready > 0 || (ready < 0 && errno != EINTR)) return;
    }
}

int fill_input(input_stream *in)
{
    if (in->at_end) return end_of_input;
    if (in->fd < 0) {
        in->at_end = 1;
        return end_of_input;
    }
    std::fflush(Output);
    await_input(in->fd);
    if (in->pos < in->end) return in->buf[in->pos];  // a level pushed by await_input read ahead
    if (in->at_end) return end_of_input;
    const ssize_t n = read(in->fd, in->buf, input_room);
    if (n <= 0) {
        in->at_end = 1;
        return end_of_input;
    }
    in->pos = 0;
    in->end = static_cast<std::size_t>(n);
    return in->buf[0];
}

void drop_line(input_stream *in)
{
    int c = get_char(in);
    while (c != '\n' && c != end_of_input) c = get_char(in);
}

void open_input(input_stream *in, int fd)
{
    *in = {fd, 0, static_cast<unsigned char *>(std::malloc(input_room)), 0, 0};
    if (!in->buf) in->at_end = 1;
}

void open_text(input_stream *in, const unsigned char *bytes, std::size_t n)
{
    *in = {-1, 0, const_cast<unsigned char *>(bytes), 0, n};
}

void close_input(input_stream *in)
{
    if (in->fd >= 0) {
        close(in->fd);
        std::free(in->buf);
    }
    *in = {-1, 1, nullptr, 0, 0};
}

}  // namespace kelmar
