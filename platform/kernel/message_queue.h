#pragma once

/// A thread's queue of posted and sent messages, on top of the kernel. Any thread may post and
/// send; one thread receives. When the receiver ends it closes the queue, which wakes every sender.

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "platform/kernel/kernel.h"

namespace qv {

struct Message {
  uint32_t id = 0;
  uintptr_t first = 0;
  uintptr_t second = 0;
};

class MessageQueue {
  struct Pending;  ///< a sent message that waits for its answer

 public:
  /// A message out of the queue. A sent one is answered by `reply`, or with 0 by the destructor.
  class Received {
   public:
    Received() = default;
    ~Received();
    Received(const Received&) = delete;
    Received& operator=(const Received&) = delete;
    Message message;
    void reply(uintptr_t result);

   private:
    friend class MessageQueue;
    std::shared_ptr<Pending> pending_;
  };

  explicit MessageQueue(const char* name);
  ~MessageQueue();
  MessageQueue(const MessageQueue&) = delete;
  MessageQueue& operator=(const MessageQueue&) = delete;

  /// False when the queue is closed: the message is dropped.
  bool post(const Message& message);
  /// Blocks until the receiver has answered. False when the queue is or becomes closed, and when
  /// the sender is asked to end before the receiver has taken the message, which is then withdrawn.
  /// A message that the receiver has taken is waited for in any case: it may point into the
  /// sender's stack. Never called by the receiver.
  bool send(const Message& message, uintptr_t* result = nullptr);
  /// Takes the oldest message; false when there is none within the limit, when the queue is closed,
  /// and when there is none and the receiver is asked to end. The receiver only.
  bool receive(Received& received, uint32_t limitMillis, WaitKind kind = WaitKind::Service);
  /// Set while messages wait, and after the close: for waits on several things.
  Event& arrived() { return arrived_; }
  /// Called after each post and send, on the sender's thread, without a lock: wakes a receiver
  /// that waits somewhere else (in the display's event wait). Set before the first post.
  void setWakeHook(std::function<void()> hook);
  /// Drops what waits. Every sender wakes, also the one whose message is in work; what that message
  /// points to is not to be touched afterwards.
  void close();
  bool closed() const;

 private:
  struct Entry {
    Message message;
    std::shared_ptr<Pending> pending;  ///< null for a posted message
  };

  bool put(Entry entry);
  bool take(Received& received);

  mutable Lock lock_;  ///< guards entries_, taken_ and closed_
  Event arrived_;
  std::deque<Entry> entries_;
  std::vector<std::shared_ptr<Pending>> taken_;  ///< received and perhaps not yet answered
  bool closed_ = false;
  std::function<void()> wakeHook_;
};

}  // namespace qv
