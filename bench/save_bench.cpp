// A durable save of all registers against a plain write, fsync and rename of the same bytes with a
// flush of the folder, without which a power cut may take the rename back; and the system file's
// rewrite, which is not flushed, against the same without both flushes.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "bench/ground.h"
#include "bench/ratio.h"
#include "foundation/file.h"
#include "scenario/register_numbers.h"
#include "scenario/registers.h"
#include "scenario/scenario.h"

namespace {

void check(bool well) {
  if (well) return;
  std::perror("save_bench");
  std::abort();
}

void writePlainly(const std::filesystem::path& path, const std::string& bytes, bool durable) {
  const std::string beside = path.string() + ".beside";
  const int file = open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  check(file >= 0);
  check(write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
  if (durable) check(fsync(file) == 0);
  check(close(file) == 0);
  check(rename(beside.c_str(), path.c_str()) == 0);
  if (!durable) return;
  const int folder = open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  check(folder >= 0);
  check(fsync(folder) == 0);
  check(close(folder) == 0);
}

std::string contents(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

struct Registers {
  qv::QVReg numbers;
  qv::QVStrReg strings;
  Registers() {
    numbers.create(qv::RegisterCount);
    strings.create(qv::StringRegisterCount);
    for (int number = 0; number < qv::RegisterCount; ++number)
      numbers.item(number) = number;
    for (int number = 0; number < qv::StringRegisterCount; ++number)
      strings.item(number).append("a line of the story, as long as such lines are");
  }
  void save(const char* name) {
    qv::QVFile file;
    file.openName(name, qv::CreateAlways, qv::GenericRead | qv::GenericWrite, qv::ShareRead,
                  qv::AttributeNormal);
    numbers.save(file);
    strings.save(file);
    file.close();
  }
};

}  // namespace

int main() {
  qv::bench::Table table;
  const qv::bench::Ground ground;
  const std::filesystem::path player = ground.root.folder("player");

  Registers registers;
  registers.save("save0.dat");
  const std::string saved = contents(player / "save0.dat");
  check(saved.size() > 4 * qv::RegisterCount);
  table.note("bytes of a save", static_cast<double>(saved.size()));
  table.atMost("durable save / plain write, fsync, rename and fsync", 1.1,
               qv::bench::measure([&] { registers.save("save0.dat"); },
                                  [&] { writePlainly(player / "plain.dat", saved, true); }, 101));

  qv::QVScenario scenario;
  scenario.Open("Bench", qv::RegisterCount, qv::StringRegisterCount, qv::SystemRegisterCount);
  scenario.SetSysReg(300, 1, 1);
  const std::string system = contents(player / "Bench.system.dat");
  check(system.size() == 8206);
  const qv::bench::Pair rewrite =
      qv::bench::measure([&] { scenario.SetSysReg(300, 1, 1); },
                         [&] { writePlainly(player / "plain.dat", system, false); }, 101);
  table.note("system file's rewrite, microseconds", rewrite.ours * 1e6);
  table.note("system file's rewrite / plain write and rename", rewrite.ours / rewrite.theirs);
  return table.status();
}
