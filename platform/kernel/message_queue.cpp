#include "platform/kernel/message_queue.h"

#include <atomic>
#include <mutex>
#include <utility>

namespace qv {

/// Shared by the sender and the queue, so that neither needs the other to be alive once the message
/// is decided. The state moves on by comparison: exactly one party decides it.
struct MessageQueue::Pending {
  enum State { Queued, Taken, Answered, Withdrawn, Refused };

  bool move(State from, State to) { return state.compare_exchange_strong(from, to); }

  std::atomic<State> state = Queued;
  uintptr_t result = 0;  ///< written before Answered, read after it
  Event done{"answer to a sent message", Event::Reset::Manual};
};

MessageQueue::Received::~Received() {
  reply(0);
}

void MessageQueue::Received::reply(uintptr_t result) {
  if (!pending_) return;
  pending_->result = result;
  pending_->move(Pending::Taken, Pending::Answered);
  pending_->done.set();
  pending_.reset();
}

MessageQueue::MessageQueue(const char* name)
    : lock_(name, LockRank::Leaf), arrived_(name, Event::Reset::Manual) {}

MessageQueue::~MessageQueue() {
  close();
}

void MessageQueue::setWakeHook(std::function<void()> hook) {
  wakeHook_ = std::move(hook);
}

bool MessageQueue::put(Entry entry) {
  {
    const std::lock_guard guard(lock_);
    if (closed_) return false;
    entries_.push_back(std::move(entry));
    arrived_.set();
  }
  if (wakeHook_) wakeHook_();
  return true;
}

bool MessageQueue::post(const Message& message) {
  return put({message, nullptr});
}

bool MessageQueue::send(const Message& message, uintptr_t* result) {
  const auto pending = std::make_shared<Pending>();
  if (!put({message, pending})) return false;
  // From here on the queue may be gone; only `pending` is touched.
  if (pending->done.wait() == WaitTerminated &&
      !pending->move(Pending::Queued, Pending::Withdrawn)) {
    EventBody* const done = pending->done.body();
    Kernel::current().waitAny({&done, 1}, WaitForever, WaitKind::Work, WaitCut::Never);
  }
  if (pending->state.load() != Pending::Answered) return false;
  if (result) *result = pending->result;
  return true;
}

bool MessageQueue::take(Received& received) {
  const std::lock_guard guard(lock_);
  std::erase_if(taken_, [](const auto& pending) { return pending->state != Pending::Taken; });
  bool found = false;
  while (!found && !entries_.empty()) {
    Entry entry = std::move(entries_.front());
    entries_.pop_front();
    found = !entry.pending || entry.pending->move(Pending::Queued, Pending::Taken);
    if (!found) continue;  // its sender gave up
    received.message = entry.message;
    if (entry.pending) taken_.push_back(entry.pending);
    received.pending_ = std::move(entry.pending);
  }
  if (entries_.empty() && !closed_) arrived_.reset();
  return found;
}

bool MessageQueue::receive(Received& received, uint32_t limitMillis, WaitKind kind) {
  received.reply(0);
  if (take(received)) return true;
  // Once is enough unless a sender withdraws; then what is left of the limit is waited for.
  const bool limited = limitMillis != 0 && limitMillis != WaitForever;
  const uint32_t start = limited ? tickCount() : 0;
  uint32_t rest = limitMillis;
  while (arrived_.wait(rest, kind) == 0) {
    if (take(received)) return true;
    if (closed()) return false;
    if (!limited) continue;
    const uint32_t passed = tickCount() - start;
    rest = limitMillis > passed ? limitMillis - passed : 0;
  }
  return false;
}

void MessageQueue::close() {
  std::deque<Entry> dropped;
  std::vector<std::shared_ptr<Pending>> refused;
  {
    const std::lock_guard guard(lock_);
    closed_ = true;
    dropped.swap(entries_);
    refused.swap(taken_);
    arrived_.set();
  }
  for (Entry& entry : dropped) {
    if (entry.pending) refused.push_back(std::move(entry.pending));
  }
  for (const auto& pending : refused) {
    if (pending->move(Pending::Queued, Pending::Refused) ||
        pending->move(Pending::Taken, Pending::Refused))
      pending->done.set();
  }
}

bool MessageQueue::closed() const {
  const std::lock_guard guard(lock_);
  return closed_;
}

}  // namespace qv
