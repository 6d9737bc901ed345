/// vectors_test FOLDER: runs every worked case of a folder against the engine. Prints a line for
/// each case that fails and closes with the counts. Status 0 when none failed, 1 when one did,
/// 2 when the folder cannot be read.

#include <algorithm>
#include <fstream>
#include <iostream>
#include <map>

#include "foundation/diagnostic.h"
#include "tests/vectors/case.h"

namespace qv::vectors {
namespace {

namespace fs = std::filesystem;

/// The kinds of one topic, where two files run them.
template <auto... lists>
std::span<const Kind> together() {
  static const std::vector<Kind> all = [] {
    std::vector<Kind> kinds;
    for (const std::span<const Kind> list : {lists()...})
      kinds.insert(kinds.end(), list.begin(), list.end());
    return kinds;
  }();
  return all;
}

/// Kinds wait by name until their code is built, so that a kind nobody has heard of is a failure
/// and no case is passed over unnoticed.
const std::vector<Topic>& topics() {
  static const std::vector<Topic> all = {
      {"mcg", mcgKinds(), {}},
      {"dib", together<bitmapKinds, surfaceKinds>(), {}},
      {"kernels", together<kernelKinds, blendLevelKinds>(), {}},
      {"palette", paletteKinds(), {}},
      {"views", together<effectKinds, viewKinds>(), {}},
      {"sequence", sequenceKinds(), {}},
      {"registers", registerKinds(), {}},
      {"save",
       saveKinds(),
       {"date_rule", "load_screen_marks", "newest_quick", "quick_load_file", "quick_rotation",
        "slots"}},
      {"midi", midiKinds(), {}},
      {"sound", soundKinds(), {}},
      {"layout", layoutKinds(), {}},
      {"message", messageKinds(), {"scroll"}},
      {"screens",
       standingKinds(),
       {"calendar", "char_list", "gallery_buttons", "gallery_cells", "gallery_pages",
        "gallery_percent", "list_cell", "palette_grid", "palette_keys", "row_places", "row_text"}},
      {"strings", stringKinds(), {}},
      {"clickmap", clickMapKinds(), {}},
  };
  return all;
}

struct Counts {
  int passed = 0, failed = 0, skipped = 0;
  /// Why and the topic, to kinds with their number of cases.
  std::map<std::string, std::map<std::string, int>> skippedKinds;
};

/// A topic whose code stands in two places has a row for each.
template <class Wanted>
auto foundIn(const std::string& topicName, Wanted wanted) -> decltype(wanted(topics().front())) {
  for (const Topic& topic : topics())
    if (topic.name == topicName)
      if (const auto found = wanted(topic)) return found;
  return {};
}

const Kind* kindNamed(const std::string& topicName, const std::string& name) {
  return foundIn(topicName, [&](const Topic& topic) {
    const auto found = std::find_if(topic.kinds.begin(), topic.kinds.end(),
                                    [&](const Kind& kind) { return kind.name == name; });
    return found == topic.kinds.end() ? nullptr : &*found;
  });
}

bool isAwaited(const std::string& topicName, const std::string& name) {
  return foundIn(topicName, [&](const Topic& topic) {
    return std::find(topic.awaited.begin(), topic.awaited.end(), name) != topic.awaited.end();
  });
}

/// What differed, or nothing.
std::string run(const Kind& kind, const Json& fields, const fs::path& folder) {
  try {
    Case given(fields, folder);
    kind.run(given);
    return "";
  } catch (const Mismatch& mismatch) {
    return mismatch.what();
  } catch (const Diagnostic& diagnostic) {
    return std::string("raised ") + (diagnostic.title() ? diagnostic.title() : "a diagnostic");
  } catch (const std::exception& error) {
    return std::string("cannot be run: ") + error.what();
  }
}

void runCase(const std::string& topicName, const Json& fields, const fs::path& folder,
             Counts& counts) {
  const auto id = fields.at("id").get<std::string>(), name = fields.at("kind").get<std::string>();
  const Kind* kind = kindNamed(topicName, name);
  const bool awaited = isAwaited(topicName, name);
  if (!kind && !awaited) {
    ++counts.failed;
    std::cout << id << ": the kind \"" << topicName << " " << name << "\" is in no list\n";
    return;
  }
  const bool ambiguous = fields.at("ambiguous").get<bool>();
  if (ambiguous || awaited) {
    ++counts.skipped;
    ++counts.skippedKinds[(ambiguous ? "ambiguous, " : "not built yet, ") + topicName][name];
    return;
  }
  const std::string difference = run(*kind, fields, folder);
  if (difference.empty()) {
    ++counts.passed;
  } else {
    ++counts.failed;
    std::cout << id << ": " << difference << "\n";
  }
}

/// Names of the folder's case files in their order.
std::vector<fs::path> caseFiles(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder))
    if (entry.path().extension() == ".json") files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  if (files.empty()) throw std::runtime_error("no case files in " + folder.string());
  return files;
}

void runFile(const fs::path& path, Counts& counts) {
  std::ifstream stream(path);
  if (!stream) throw std::runtime_error(path.string() + " cannot be read");
  Json file;
  try {
    file = Json::parse(stream);
    for (const Json& fields : file.at("cases"))
      runCase(file.at("topic"), fields, path.parent_path(), counts);
  } catch (const Json::exception& error) {
    throw std::runtime_error(path.string() + " is no file of cases: " + error.what());
  }
}

int runFolder(const fs::path& folder) {
  Counts counts;
  try {
    for (const fs::path& file : caseFiles(folder))
      runFile(file, counts);
  } catch (const std::exception& error) {
    std::cerr << "vectors_test: " << error.what() << "\n";
    return 2;
  }
  for (const auto& [reason, kinds] : counts.skippedKinds) {
    std::cout << "skipped, " << reason << ":";
    for (const auto& [kind, count] : kinds)
      std::cout << " " << kind << " (" << count << ")";
    std::cout << "\n";
  }
  std::cout << counts.passed << " passed, " << counts.failed << " failed, " << counts.skipped
            << " skipped\n";
  return counts.failed ? 1 : 0;
}

}  // namespace
}  // namespace qv::vectors

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: vectors_test FOLDER\n";
    return 2;
  }
  return qv::vectors::runFolder(arguments[1]);
}
