#pragma once

/// A manager with its registers and no host, for cases about what commands leave in them.

#include <memory>
#include <string>

#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"
#include "tests/vectors/case.h"

namespace qv::vectors {

class Registers {
 public:
  explicit Registers(Case& given) {
    given.platform();
    manager_ = std::make_unique<QVScenario>();
    manager_->Open("Vorlane", RegisterCount, StringRegisterCount, SystemRegisterCount);
    setTheScenario(manager_.get());
  }
  ~Registers() { setTheScenario(nullptr); }
  Registers(const Registers&) = delete;
  Registers& operator=(const Registers&) = delete;

  void set(int32_t number, const Json& hex) {
    manager_->StrReg(number).create(QVString::DefaultGrain,
                                    bytesOfHex(hex.get<std::string>()).c_str());
  }
  std::string text(int32_t number) { return std::string(manager_->StrReg(number).view()); }
  int32_t historyLines() {
    int32_t lines = 0;
    while (lines < HistoryLength && !text(HistoryNames + lines).empty())
      ++lines;
    return lines;
  }

 private:
  std::unique_ptr<QVScenario> manager_;
};

}  // namespace qv::vectors
