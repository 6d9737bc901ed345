#include "scenes/generator/writer.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <set>

#include "scenes/generator/story_rows.h"
#include "scenes/generator/text.h"

namespace qv::scenec {

namespace {

constexpr size_t ScenesPerUnit = 20;
constexpr const char* Areas[] = {"select01Title", "select02Title", "select03Title"};

/// Which unit takes a scene: FNV-1a of its key.
size_t unitOf(const std::string& key, size_t units) {
  uint32_t hash = 2166136261u;
  for (const char byte : key)
    hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619u;
  return hash % units;
}

class UnitWriter {
 public:
  UnitWriter(std::string name, const std::vector<std::string>& files, std::string root)
      : name_(std::move(name)), files_(files), root_(std::move(root)) {}

  std::string take() { return std::move(text_); }

  void line(const std::string& code, const std::string& comment = {}) {
    text_ += std::string(static_cast<size_t>(indent_) * 2, ' ') + code;
    // The closing quote keeps a backslash from joining the comment with the next line.
    if (!comment.empty()) text_ += "  // \"" + comment + "\"";
    text_ += '\n';
    ++number_;
  }
  void blank() {
    text_ += '\n';
    ++number_;
  }

  void globalCpp(const Act& act) { cpp(act); }
  void scene(const Scene& scene);

 private:
  void chain(const Scene& scene);
  void steps(const Scene& scene);
  void list(const StepList& list);
  void acts(const std::vector<Act>& list);
  void act(const Act& act);
  void message(const Act& act);
  void wait(const std::string& arguments);
  void branches(const Act& act);
  void choose(const Act& act);
  void places(const Act& act);
  void cpp(const Act& act);

  std::string name_;
  const std::vector<std::string>& files_;
  std::string root_;
  std::string text_;
  int number_ = 1;
  int indent_ = 0;
};

void UnitWriter::wait(const std::string& arguments) {
  line("if (const Leaving leaving = afterClick(WaitClick(" + arguments +
       "))) return leaving.next;");
}

void UnitWriter::message(const Act& act) {
  const std::string voice = act.voice.empty() ? "nullptr" : literal(act.voice);
  line("SpeakLine(" + literal(act.speaker) + ", " + voice + ");", act.speaker);
  for (size_t index = 0; index < act.lines.size(); ++index) {
    std::string bytes = literal(act.lines[index]);
    if (index + 1 < act.lines.size()) bytes.insert(bytes.size() - 1, "\\n");
    line("PrintMessage(" + bytes + ");", act.lines[index]);
  }
  wait(act.code);
}

void UnitWriter::branches(const Act& act) {
  for (size_t index = 0; index < act.branches.size(); ++index) {
    const Branch& branch = act.branches[index];
    const std::string test = branch.condition.empty() ? "" : "if (" + branch.condition + ") ";
    line((index == 0 ? "" : "} else ") + test + "{");
    ++indent_;
    acts(branch.acts);
    --indent_;
  }
  line("}");
}

void UnitWriter::choose(const Act& act) {
  line(act.options.size() == 2 ? "Select2Setup();" : "Select3Setup();");
  std::string targets;
  for (size_t index = 0; index < act.options.size(); ++index) {
    const Option& option = act.options[index];
    line(std::string("AreaText(standing.") + Areas[index] + ", " + literal(option.text) + ", 0);",
         option.text);
    targets += ", " + option.target;
  }
  line("return afterSelection(SelectMain(" + std::to_string(act.options.size()) + ")" + targets +
       ");");
}

void UnitWriter::places(const Act& act) {
  std::string names, targets, comment = act.code;
  for (const Option& option : act.options) {
    names += ", " + literal(option.text);
    targets += (targets.empty() ? "" : ", ") + option.target;
    comment += ", " + option.text;
  }
  line("return afterPlaces(LocationRing(" + literal(act.code) + names + "), {" + targets + "});",
       comment);
}

void UnitWriter::cpp(const Act& act) {
  // Errors of the compiler in the writer's own lines name the scene text.
  std::string file = root_ + files_[static_cast<size_t>(act.place.file)];
  std::string escaped;
  for (const char byte : file) {
    if (byte == '"' || byte == '\\') escaped += '\\';
    escaped += byte;
  }
  text_ += "#line " + std::to_string(act.place.line + 1) + " \"" + escaped + "\"\n";
  ++number_;
  for (const std::string& raw : act.lines) {
    text_ += raw + '\n';
    ++number_;
  }
  ++number_;
  text_ += "#line " + std::to_string(number_) + " \"" + name_ + "\"\n";
}

void UnitWriter::act(const Act& act) {
  switch (act.kind) {
    case Act::Kind::Call:
      line(act.code, act.comment);
      break;
    case Act::Kind::Cpp:
      cpp(act);
      break;
    case Act::Kind::Message:
      message(act);
      break;
    case Act::Kind::Click:
      wait(act.code);
      break;
    case Act::Kind::If:
      branches(act);
      break;
    case Act::Kind::Go:
      line("return " + (act.code.empty() ? act.options[0].target : act.code) + ";");
      break;
    case Act::Kind::Choose:
      choose(act);
      break;
    case Act::Kind::Places:
      places(act);
      break;
    case Act::Kind::SavePoint:
      line("savePoint();");
      break;
    case Act::Kind::SaveOffer:
      line("offerSave();");
      break;
  }
}

void UnitWriter::acts(const std::vector<Act>& list) {
  for (const Act& one : list)
    act(one);
}

void UnitWriter::list(const StepList& steps) {
  line("switch (Reg(StepRegister)) {");
  ++indent_;
  for (size_t index = 0; index < steps.steps.size(); ++index) {
    line("case " + std::to_string(index + 1) + ": {");
    ++indent_;
    acts(steps.steps[index]);
    if (index + 1 < steps.steps.size()) line("break;");
    --indent_;
    line("}");
  }
  line("default:");
  line("  passOver(" + std::to_string(steps.steps.size()) + ");");
  --indent_;
  line("}");
}

void UnitWriter::steps(const Scene& scene) {
  line("SetSceneName(\"" + scene.name + "\");");
  line("[[maybe_unused]] StandingHandles standing;");
  if (scene.hasFilm) line("timekeeper film(\"timekeeper\");");
  line("SceneEnter();");
  const std::string chapter = chapterOf(scene.name);
  if (!chapter.empty()) line("SetChapter(\"" + chapter + "\");");
  line("for (;; nextStep()) {");
  ++indent_;
  if (scene.lists.size() == 1) {
    list(scene.lists[0]);
  } else {
    for (size_t index = 0; index < scene.lists.size(); ++index) {
      const StepList& part = scene.lists[index];
      const std::string test = part.condition.empty() ? "" : "if (" + part.condition + ") ";
      line((index == 0 ? "" : "} else ") + test + "{");
      ++indent_;
      list(part);
      --indent_;
    }
    line("}");
  }
  --indent_;
  line("}");
}

void UnitWriter::chain(const Scene& scene) {
  line("SetSceneName(\"" + scene.name + "\");");
  const std::string chapter = chapterOf(scene.name);
  if (scene.chapter && !chapter.empty()) line("SetChapter(\"" + chapter + "\");");
  acts(scene.lists[0].steps[0]);
}

void UnitWriter::scene(const Scene& scene) {
  blank();
  line("// " + files_[static_cast<size_t>(scene.place.file)] + ", line " +
       std::to_string(scene.place.line) + ".");
  line("SceneFunction " + scene.name + "() {");
  ++indent_;
  if (scene.form == Scene::Form::Chain)
    chain(scene);
  else
    steps(scene);
  --indent_;
  line("}");
}

/// `ownCpp` becomes true where the writer's own C++ stands, which may name any scene.
void collectTargets(const Act& act, std::set<std::string>& targets, bool& ownCpp) {
  ownCpp = ownCpp || act.kind == Act::Kind::Cpp;
  for (const Option& option : act.options)
    if (!option.target.empty()) targets.insert(option.target);
}

bool holds(const Story& story, int file) {
  return std::ranges::any_of(story.scenes,
                             [file](const Scene& scene) { return scene.place.file == file; });
}

/// The writer's own C++ of a text goes with its scenes, or into every unit if the text has none.
bool belongsTo(int file, const std::vector<const Scene*>& scenes, const Story& story) {
  const bool here =
      std::ranges::any_of(scenes, [file](const Scene* scene) { return scene->place.file == file; });
  return here || !holds(story, file);
}

/// Scenes go by their own name; those of a text with C++ of its own stay together, by the text's.
const std::string& unitKey(const Scene& scene, const Story& story,
                           const std::vector<std::string>& files) {
  const bool ownCpp = std::ranges::any_of(
      story.globals, [&](const Act& act) { return act.place.file == scene.place.file; });
  return ownCpp ? files[static_cast<size_t>(scene.place.file)] : scene.name;
}

std::string unitText(const std::string& name, const Story& story,
                     const std::vector<const Scene*>& scenes, const std::vector<std::string>& files,
                     const std::string& root) {
  UnitWriter writer(name, files, root);
  writer.line("// Written by scenec: change the scene texts instead.");
  writer.line("#include \"scenes/scene_form.h\"");
  if (std::any_of(scenes.begin(), scenes.end(), [](const Scene* scene) { return scene->hasFilm; }))
    writer.line("#include \"scenario/timekeeper.h\"");
  writer.blank();
  std::set<std::string> declared;
  bool ownCpp = !story.globals.empty();
  for (const Scene* scene : scenes) {
    declared.insert(scene->name);
    eachAct(*scene, [&](const Act& act) { collectTargets(act, declared, ownCpp); });
  }
  if (ownCpp)
    for (const Scene& scene : story.scenes)
      declared.insert(scene.name);
  writer.line("extern \"C\" {");
  declared.insert("END");
  for (const std::string& scene : declared)
    writer.line("qv::SceneFunction " + scene + "();");
  writer.line("}");
  writer.line("using namespace qv;  // NOLINT: a unit of scenes holds nothing else");
  for (const Act& act : story.globals)
    if (belongsTo(act.place.file, scenes, story)) writer.globalCpp(act);
  for (const Scene* scene : scenes)
    writer.scene(*scene);
  return writer.take();
}

std::string tableText(const Story& story) {
  std::set<std::string> names;  // sorted by byte order, as the table must be
  for (const Scene& scene : story.scenes)
    names.insert(scene.name);
  std::string text =
      "// Written by scenec: the table by which a host knows this story.\n"
      "#include \"scenes/module_entry.h\"\n\n"
      "extern \"C\" {\n";
  for (const std::string& name : names)
    text += "qv::SceneFunction " + name + "();\n";
  text += "}\n\nnamespace {\n\nconstexpr qv::SceneEntry SceneTable[] = {\n";
  for (const std::string& name : names)
    text += "    {\"" + name + "\", " + name + "},\n";
  text += "};\n\n" + tablesCode(story) + "}  // namespace\n\n";
  text += "extern \"C\" {\nextern const qv::StoryStart qvStoryStart{\"" + story.application +
          "\", " + story.firstScene + ", &StoryData" + (story.bare ? ", true" : "") + "};\n";
  text +=
      "extern const qv::GameModule qvGameModule{\n"
      "    .abi = qv::ModuleAbi,\n"
      "    .applicationName = \"" +
      story.application +
      "\",\n"
      "    .start = sc_start,\n"
      "    .end = END,\n"
      "    .exceptionEntry = EXCEPTION_ENTRY,\n"
      "    .createManager = qv::createManager,\n"
      "    .destroyManager = qv::destroyManager,\n"
      "    .scenes = SceneTable,\n"
      "    .sceneCount = " +
      std::to_string(names.size()) +
      ",\n"
      "};\n}\n";
  return text;
}

}  // namespace

int unitsFor(size_t scenes) {
  return static_cast<int>(std::max<size_t>(1, (scenes + ScenesPerUnit - 1) / ScenesPerUnit));
}

std::vector<SourceFile> writeStory(const Story& story, const std::vector<std::string>& files,
                                   const std::string& root, int units) {
  const size_t count = static_cast<size_t>(std::max(units, 1));
  std::vector<std::vector<const Scene*>> parts(count);
  for (const Scene& scene : story.scenes)
    if (scene.form != Scene::Form::Handwritten)
      parts[unitOf(unitKey(scene, story, files), count)].push_back(&scene);
  std::vector<SourceFile> sources;
  for (size_t index = 0; index < count; ++index) {
    char name[32];
    std::snprintf(name, sizeof name, "scenes_%03zu.cpp", index);
    sources.push_back({name, unitText(name, story, parts[index], files, root)});
  }
  sources.push_back({"scene_table.cpp", tableText(story)});
  return sources;
}

}  // namespace qv::scenec
