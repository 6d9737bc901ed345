#pragma once

/// What a writer did that cannot be compiled, with its place. The generator goes on after a
/// problem, so that one run tells all of them. One thread.

#include <string>
#include <vector>

namespace qv::scenec {

struct Place {
  int file = 0;  ///< index into Problems::files
  int line = 0;  ///< from 1; 0 stands for the file as a whole
};

struct Problem {
  Place place;
  std::string what;  ///< what is wrong and what to do, UTF-8, one line
};

class Problems {
 public:
  std::vector<std::string> files;  ///< names as the writer knows them

  void add(Place place, std::string what);
  /// ` Did you mean "..."?` for the nearest known word, else the text `otherwise`. A text full of
  /// unknown words gets no more guesses after some hundreds, because each looks at all that is
  /// known.
  std::string suggestion(const std::string& word, const std::vector<std::string>& known,
                         const std::string& otherwise);
  bool empty() const { return problems_.empty(); }
  size_t count() const { return problems_.size(); }
  /// "file:line: what" by file and line, as editors understand it. Beyond a hundred only their
  /// number is told. `root` stands before the names.
  std::vector<std::string> lines(const std::string& root = {}) const;

 private:
  std::vector<Problem> problems_;
  int guesses_ = 0;
};

/// The entry of `known` that is closest to `word`, or nothing when none is close: at most a third
/// of its characters differ. Characters are UTF-8.
std::string nearest(const std::string& word, const std::vector<std::string>& known);

}  // namespace qv::scenec
