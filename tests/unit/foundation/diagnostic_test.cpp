#include "foundation/diagnostic.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "platform/services.h"
#include "platform/text/shift_jis.h"
#include "tests/support/failing_heap.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

TEST(Diagnostic, KeepsPrivateCopiesOfItsTexts) {
  char title[] = "title", message[] = "message";
  const Diagnostic diagnostic(title, message);
  title[0] = message[0] = 'X';
  EXPECT_STREQ(diagnostic.title(), "title");
  EXPECT_STREQ(diagnostic.message(), "message");
}

TEST(Diagnostic, LeavesTheTitleWhenSetToNull) {
  Diagnostic diagnostic("title", "message");
  diagnostic.setTitle(nullptr);
  diagnostic.setMessage(nullptr);
  EXPECT_STREQ(diagnostic.title(), "title");
  EXPECT_STREQ(diagnostic.message(), "message");
}

TEST(Diagnostic, ReplacesItsTexts) {
  Diagnostic diagnostic("title", nullptr);
  diagnostic.setTitle("new title");
  diagnostic.setMessage("message");
  diagnostic.setMessage(diagnostic.message() + 4);
  EXPECT_STREQ(diagnostic.title(), "new title");
  EXPECT_STREQ(diagnostic.message(), "age");
}

TEST(Diagnostic, LeavesTheMessageWhenAnEmptyTextIsAppended) {
  Diagnostic diagnostic("title", "message");
  const char* before = diagnostic.message();
  diagnostic.appendMessage("");
  diagnostic.appendMessage(nullptr);
  EXPECT_EQ(diagnostic.message(), before);
}

TEST(Diagnostic, AppendsToTheMessageAndToNone) {
  Diagnostic diagnostic("title", nullptr);
  diagnostic.appendMessage("one");
  diagnostic.appendMessage(" two");
  EXPECT_STREQ(diagnostic.message(), "one two");
}

TEST(Diagnostic, SharesItsTextsWithACopyAndBothCanBeDestroyed) {
  auto first = std::make_unique<Diagnostic>("title", "message");
  const auto second = std::make_unique<Diagnostic>(*first);
  EXPECT_EQ(second->title(), first->title());
  EXPECT_EQ(second->message(), first->message());
  first.reset();
  EXPECT_STREQ(second->title(), "title");
  EXPECT_STREQ(second->message(), "message");
}

TEST(Diagnostic, LeavesACopysTextWhenItsOwnIsReplaced) {
  Diagnostic first("title", "message");
  const Diagnostic second(first);
  first.setTitle("other");
  EXPECT_STREQ(second.title(), "title");
}

TEST(Diagnostic, ShowsANoticeWithItsTitleAsCaption) {
  testing::RecordingDialogs dialogs;
  const ServicesScope scope(Services{.dialogs = &dialogs});
  Diagnostic("title", "message").showDefault();
  Diagnostic("other", "more").show(&dialogs);
  ASSERT_EQ(dialogs.shown.size(), 2u);
  EXPECT_EQ(dialogs.shown[0].caption, "title");
  EXPECT_EQ(dialogs.shown[0].text, "message");
  EXPECT_EQ(dialogs.shown[0].flags, BoxNotice);
  EXPECT_EQ(dialogs.shown[1].caption, "other");
}

TEST(Diagnostic, IsSilentWhereThereAreNoBoxes) {
  const ServicesScope scope(Services{});
  EXPECT_NO_THROW(Diagnostic("title", "message").showDefault());
}

TEST(DiagnosticWithoutMemory, HasNoTextsAndStillShows) {
  testing::RecordingDialogs dialogs;
  const ServicesScope scope(Services{.dialogs = &dialogs});
  const testing::FailingHeap heap;
  try {
    throw NotEnoughMemoryException("QVReg - create");
  } catch (const Diagnostic& diagnostic) {
    EXPECT_EQ(diagnostic.title(), nullptr);
    EXPECT_EQ(diagnostic.message(), nullptr);
    diagnostic.showDefault();
  }
  EXPECT_EQ(heap.refused(), 2);
  ASSERT_EQ(dialogs.shown.size(), 1u);
  EXPECT_EQ(dialogs.shown[0].text, "");
}

TEST(DiagnosticWithoutMemory, KeepsTheMessageThatCannotBeLengthened) {
  Diagnostic diagnostic("title", "message");
  const testing::FailingHeap heap;
  diagnostic.appendMessage(" more");
  EXPECT_STREQ(diagnostic.message(), "message");
}

template <class Exception>
void expectTexts(const Exception& exception, const std::string& title, const std::string& message) {
  EXPECT_EQ(exception.title(), title);
  EXPECT_EQ(exception.message(), message);
  // A catch selects by class, and the family is caught as one.
  EXPECT_THROW(throw Exception(exception), Exception);
  EXPECT_THROW(throw Exception(exception), Diagnostic);
}

TEST(DiagnosticFamily, SaysTheFixedTexts) {
  expectTexts(ExitScenarioException(), "ExitTavixScenario", sjis("シナリオが強制終了されました"));
  expectTexts(AbortDemoException(), "tavix manager", "abort demo");
  expectTexts(NotEnoughMemoryException("QVReg - create"), "QVReg - create",
              sjis("メモリが足りません！"));
  expectTexts(CannotOpenException("C:\\a.dat"), "cannot open", "C:\\a.dat");
  expectTexts(CannotReadException("C:\\a.dat"), "cannot read", "C:\\a.dat");
  expectTexts(CannotWriteException("C:\\a.dat"), "cannot write", "C:\\a.dat");
}

TEST(DiagnosticFamily, RunsNoCopyWhenThrownByValueAndCaughtByReference) {
  struct Counting : Diagnostic {
    explicit Counting(int& copies) : Diagnostic("title", "message"), copies_(copies) {}
    Counting(const Counting& other) : Diagnostic(other), copies_(other.copies_) { ++copies_; }
    int& copies_;
  };
  int copies = 0;
  try {
    throw Counting(copies);
  } catch (const Diagnostic& diagnostic) {
    EXPECT_STREQ(diagnostic.title(), "title");
  }
  EXPECT_EQ(copies, 0);
}

}  // namespace
}  // namespace qv
