// Message ports between the tasks of this process. A message is handed over whole: it belongs to
// whoever holds it, and comes back to its sender through its reply port.
#pragma once

#include "platform/exec/Tasks.h"

#include <deque>
#include <memory>
#include <mutex>

namespace exec {

// Messages derive from this and add their fields.
struct Message {
    Message() = default;
    Message(const Message&) = default;
    Message& operator=(const Message&) = default;
    virtual ~Message() = default;

    MsgPort* ReplyPort = nullptr; // where ReplyMsg sends it; must live until then. Null: nowhere
};

// A queue that belongs to the task that makes it and holds one of its signals. Messages still in it
// at its end go back to their senders, those without a reply port are freed.
class MsgPort {
public:
    MsgPort();
    ~MsgPort();
    MsgPort(const MsgPort&) = delete;
    MsgPort& operator=(const MsgPort&) = delete;

    // False when the task had no signal left: messages arrive, but nobody is woken.
    [[nodiscard]] bool IsOpen() const noexcept { return SignalNumber >= 0; }
    // The signal that a new message sets; 0 when the port is not open.
    [[nodiscard]] SignalMask Mask() const noexcept;

private:
    friend class Task;
    friend void PutMsg(MsgPort&, std::unique_ptr<Message>);
    friend std::unique_ptr<Message> GetMsg(MsgPort&);
    friend void WaitPort(MsgPort&);
    explicit MsgPort(std::shared_ptr<Task> owner);

    std::shared_ptr<Task> Owner; // keeps a late Signal safe when the thread is already gone
    int SignalNumber;
    std::mutex Guard; // of Queue
    std::deque<std::unique_ptr<Message>> Queue;
};

// Appends a message to the port and signals its task; from any thread.
void PutMsg(MsgPort& port, std::unique_ptr<Message> message);
// The oldest message, null when there is none. One signal may stand for several messages, and a
// signal may find the port empty: fetch until null.
[[nodiscard]] std::unique_ptr<Message> GetMsg(MsgPort& port);
// Sends the message back to its reply port; without one it is freed.
void ReplyMsg(std::unique_ptr<Message> message);
// Sleeps until the port has a message, and leaves it there. For the port's own task.
void WaitPort(MsgPort& port);

} // namespace exec
