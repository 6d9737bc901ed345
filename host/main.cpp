#include "host/machine_sound.h"
#include "host/options.h"
#include "host/run.h"

int main(int argc, char** argv) {
  qv::Options options;
  if (const auto status = qv::readOptions(argc, argv, QV_VERSION, options)) return *status;
  return qv::runGame(options, qv::makeMachineSound);
}
