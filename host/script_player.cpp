#include "host/script_player.h"

#include <algorithm>
#include <array>

#include "platform/display/key_codes.h"
#include "platform/kernel/kernel.h"
#include "scenario/register_numbers.h"

namespace qv {

namespace {

using Verb = ScriptLine::Verb;
using Kind = DisplayEvent::Kind;

/// The device event that a line with a place stands for.
DisplayEvent eventAtItsPlace(const ScriptLine& line) {
  DisplayEvent event;
  event.x = line.x;
  event.y = line.y;
  switch (line.verb) {
    case Verb::Move:
      event.kind = Kind::PointerMove;
      break;
    case Verb::Click:
    case Verb::Press:
      event.kind = Kind::ButtonDown;
      break;
    case Verb::Release:
      event.kind = Kind::ButtonUp;
      break;
    case Verb::Right:
      event.kind = Kind::ButtonDown;
      event.button = PointerButton::Right;
      break;
    case Verb::Wheel:
      event.kind = Kind::Wheel;
      break;
    case Verb::Key:
      event.kind = Kind::KeyDown;
      event.key = line.key;
      break;
    case Verb::Minimise:
      event.kind = Kind::Minimised;
      break;
    case Verb::Restore:
      event.kind = Kind::Restored;
      break;
    case Verb::Close:
      event.kind = Kind::Close;
      break;
    default:
      break;
  }
  return event;
}

DisplayEvent moveTo(const ScriptLine& line) {
  DisplayEvent event;
  event.kind = Kind::PointerMove;
  event.x = line.x;
  event.y = line.y;
  return event;
}

/// The three events of a drag: press, move, release.
std::array<DisplayEvent, 3> dragOf(const ScriptLine& line) {
  std::array<DisplayEvent, 3> events;
  events[0].kind = Kind::ButtonDown;
  events[0].x = line.x;
  events[0].y = line.y;
  events[1].kind = Kind::PointerMove;
  events[2].kind = Kind::ButtonUp;
  for (size_t at : {1, 2}) {
    events[at].x = line.toX;
    events[at].y = line.toY;
  }
  return events;
}

bool pointsAtPlace(const ScriptLine& line) {
  return line.verb == Verb::Click || line.verb == Verb::Press || line.verb == Verb::Drag ||
         (line.verb == Verb::Right && line.hasPosition);
}

}  // namespace

ScriptPlayer::ScriptPlayer(std::vector<ScriptLine> lines, std::string fileName, ScriptStage& stage)
    : lines_(std::move(lines)), fileName_(std::move(fileName)), stage_(stage) {}

const ScriptLine* ScriptPlayer::unsupportedLine(const std::vector<ScriptLine>& lines) {
  const auto line = std::find_if(lines.begin(), lines.end(), [](const ScriptLine& candidate) {
    return candidate.verb == Verb::Type;
  });
  return line == lines.end() ? nullptr : &*line;
}

void ScriptPlayer::step() {
  while (failure_.empty() && !finished()) {
    const ScriptLine& line = lines_[at_];
    if (!lineBegun_) {
      lineBegun_ = true;
      moved_ = false;
      lineTick_ = tickCount();
    }
    const Outcome outcome = act(line);
    if (outcome == Outcome::Failed) return;
    if (outcome == Outcome::NotYet) {
      if (line.verb != Verb::Sleep && tickCount() - lineTick_ >= LineLimitMillis) {
        stalled_ = true;
        fail(line, "the game did not come to this line in ten minutes");
      }
      return;
    }
    ++at_;
    lineBegun_ = false;
  }
  if (failure_.empty() && !ended_) endOfScript();
}

/// The device event that a line stands for.
DisplayEvent ScriptPlayer::eventOf(const ScriptLine& line) {
  DisplayEvent event = eventAtItsPlace(line);
  if (line.verb == Verb::Right && !line.hasPosition) stage_.pointerPlace(event.x, event.y);
  return event;
}

ScriptPlayer::Outcome ScriptPlayer::act(const ScriptLine& line) {
  // Closing is the one thing that a game which has ended by itself still allows; what stands open
  // then is answered by it.
  const bool closes = line.verb == Verb::Quit || line.verb == Verb::Close;
  if (closes) ended_ = true;
  // A sleep at the end of a script is how it lets a game end by itself.
  if (stage_.gameEnded() && line.verb == Verb::Sleep) return Outcome::Done;
  if (stage_.gameEnded() && !closes) return fail(line, "the game has ended before this line");
  if (line.now) {
    deliverNow(line);
    return Outcome::Done;
  }
  switch (line.verb) {
    case Verb::Sleep:
      return sleep(line);
    case Verb::Answer:
      return answer(line);
    case Verb::Shot:
      return stage_.shoot(line.text) ? Outcome::Done : fail(line, "the picture cannot be written");
    case Verb::Quit:
      break;
    default: {
      const Outcome outcome = awaitScene(line);
      if (outcome != Outcome::Done || line.verb == Verb::Ready) return outcome;
      if (line.verb == Verb::Expect) return expect(line);
      return line.verb == Verb::Read ? read(line) : giveInput(line);
    }
  }
  if (line.waitOrdinal != 0) {
    const Outcome outcome = awaitScene(line);
    if (outcome != Outcome::Done) return outcome;
  }
  stage_.close();
  return Outcome::Done;
}

ScriptPlayer::Outcome ScriptPlayer::awaitScene(const ScriptLine& line) {
  if (stage_.boxHoldsScene()) return fail(line, "a box stands unanswered: " + stage_.boxText());
  if (!stage_.sceneWaits()) return Outcome::NotYet;
  if (line.waitOrdinal == 0 || stage_.waitOrdinal() == line.waitOrdinal) return Outcome::Done;
  if (stage_.waitOrdinal() < line.waitOrdinal) return Outcome::NotYet;
  return fail(line, "wait " + std::to_string(line.waitOrdinal) + " is over, now stands wait " +
                        std::to_string(stage_.waitOrdinal()));
}

ScriptPlayer::Outcome ScriptPlayer::giveInput(const ScriptLine& line) {
  // What is dragged answers no wait.
  if (line.verb == Verb::Drag) {
    stage_.movePointer(line.x, line.y);
    deliverNow(line);
    stage_.movePointer(line.toX, line.toY);
    return Outcome::Done;
  }
  if (pointsAtPlace(line) && !moved_) {
    moved_ = true;
    stage_.movePointer(line.x, line.y);
    // Where the game takes the move, the press belongs to the next wait. A line that names its wait
    // is the press alone, since moves that the game took have lines of their own; and so is a bare
    // press.
    const bool alone = line.waitOrdinal != 0 || line.verb == Verb::Press;
    if (!alone && stage_.offer(moveTo(line))) return Outcome::NotYet;
  }
  const DisplayEvent event = eventOf(line);
  switch (line.verb) {
    case Verb::Move:
    case Verb::Release:
      stage_.movePointer(line.x, line.y);
      stage_.offer(event);
      return Outcome::Done;
    case Verb::Click:
    case Verb::Right:
      return stage_.offerClick(event) ? Outcome::Done : Outcome::NotYet;
    default:
      return stage_.offer(event) ? Outcome::Done : Outcome::NotYet;
  }
}

ScriptPlayer::Outcome ScriptPlayer::answer(const ScriptLine& line) {
  if (!stage_.boxIsUp()) return Outcome::NotYet;
  if (stage_.answerBox(line.answer)) return Outcome::Done;
  return fail(line, "the box has no such button: " + stage_.boxText());
}

ScriptPlayer::Outcome ScriptPlayer::expect(const ScriptLine& line) {
  const std::optional<std::string> instead = stage_.whatIsInstead(line);
  if (!instead) return Outcome::NotYet;
  return instead->empty() ? Outcome::Done : fail(line, *instead);
}

/// Return at each line that stands, until what is read for stands: looked at between two waits.
ScriptPlayer::Outcome ScriptPlayer::read(const ScriptLine& line) {
  constexpr int64_t LeastChoices = 2, MostChoices = 3;
  ScriptLine question;
  question.verb = Verb::Expect;
  const auto holds = [&] {
    const std::optional<std::string> instead = stage_.whatIsInstead(question);
    return instead && instead->empty();
  };
  question.expectation = ScriptLine::Expectation::Scene;
  question.text = line.text;
  if (!line.text.empty() && holds()) return Outcome::Done;
  question.expectation = ScriptLine::Expectation::Reg;
  question.registerNumber = WaitKindRegister;
  for (question.value = LeastChoices; question.value <= MostChoices; ++question.value)
    if (holds()) return line.text.empty() ? Outcome::Done : fail(line, "a choice stands before it");
  ScriptLine key;
  key.verb = Verb::Key;
  key.key = KeyReturn;
  stage_.offer(eventOf(key));
  return Outcome::NotYet;
}

ScriptPlayer::Outcome ScriptPlayer::sleep(const ScriptLine& line) {
  return tickCount() - lineTick_ >= line.millis ? Outcome::Done : Outcome::NotYet;
}

void ScriptPlayer::deliverNow(const ScriptLine& line) {
  if (pointsAtPlace(line) && line.verb != Verb::Press) stage_.handle(moveTo(line));
  if (line.verb == Verb::Drag) {
    for (const DisplayEvent& part : dragOf(line))
      stage_.handle(part);
    return;
  }
  DisplayEvent event = eventOf(line);
  stage_.handle(event);
  if (line.verb != Verb::Click && line.verb != Verb::Right) return;
  event.kind = Kind::ButtonUp;
  stage_.handle(event);
}

ScriptPlayer::Outcome ScriptPlayer::fail(const ScriptLine& line, const std::string& what) {
  failure_ = fileName_ + ":" + std::to_string(line.number) + ": " + line.source + ": " + what;
  return Outcome::Failed;
}

void ScriptPlayer::endOfScript() {
  // With a window a person may go on; without one nobody is left.
  if (stage_.canShow()) {
    ended_ = true;
    return;
  }
  if (stage_.boxIsUp()) {
    failure_ = fileName_ + ": the script ends while a box stands unanswered: " + stage_.boxText();
    return;
  }
  ended_ = true;
  stage_.close();
}

uint32_t ScriptPlayer::nextStepMillis() const {
  if (finished() || !lineBegun_ || !failure_.empty()) return WaitForever;
  const ScriptLine& line = lines_[at_];
  const uint32_t limit = line.verb == Verb::Sleep ? line.millis : LineLimitMillis;
  return limit - std::min(limit, tickCount() - lineTick_);
}

}  // namespace qv
