/// The kinds of 15_clickmap.json.

#include "input/click_map.h"
#include "scenario/click_map_objects.h"
#include "tests/vectors/case.h"
#include "tests/vectors/files.h"

namespace qv::vectors {

namespace {

/// The map's pixels row by row, top row first.
std::string regionsOf(QVClickMap& map) {
  std::string bytes;
  const QVVSurface::Access access(map);
  for (int32_t y = 0; y < map.height(); ++y)
    bytes.append(reinterpret_cast<const char*>(access.row(y)), static_cast<size_t>(map.width()));
  return bytes;
}

void fillMap(Case& given, QVClickMap& map) {
  const int32_t width = given.int32("w"), height = given.int32("h");
  map.create(width, height, 0, 0, nullptr);
  const auto pixels = static_cast<size_t>(width) * static_cast<size_t>(height);
  std::string rows;
  if (given.has("rows")) {
    if (given["rows"].is_array())
      for (const Json& row : given["rows"])
        rows += bytesOfHex(row.get<std::string>());
    else
      rows = bytesOfHex(given.ascii("rows"));
  } else {
    rows = testBytes(given.uint32("rows_seed"), pixels);
    if (given.has("colours"))
      for (char& byte : rows)
        byte = static_cast<char>(static_cast<uint8_t>(byte) % given.uint32("colours"));
  }
  expectEqual("number of pixels", rows.size(), pixels);
  const QVVSurface::Access access(map);
  for (int32_t y = 0; y < height; ++y)
    std::copy_n(rows.data() + static_cast<size_t>(y) * static_cast<size_t>(width), width,
                reinterpret_cast<char*>(access.row(y)));
}

void mapFile(Case& given) {
  testing::TestPlatform& platform = given.platform();
  QVClickMap map;
  fillMap(given, map);
  const std::string palette = given.bytes("palette");
  ColourTable colours{};
  std::copy_n(palette.data(), std::min(palette.size(), sizeof colours),
              reinterpret_cast<char*>(colours.data()));
  map.setColours(colours, 0, 0, 256);
  map.setOrigin(given["origin"][0].get<int32_t>(), given["origin"][1].get<int32_t>());
  const std::string written = bytesWritten(platform, [&](QVFile& file) { map.write(file); });
  given.expectBytes("expect", written);

  QVFile file;
  openInput(platform, file, written);
  QVClickMap again;
  again.loadFromFile(file, 1, nullptr);
  expectEqual("origin read", Json({again.originX(), again.originY()}), given["origin"]);
  expectSameBytes("regions read", regionsOf(again), regionsOf(map));
}

void mapSignature(Case& given) {
  QVFile file;
  openInput(given.platform(), file, given.bytes("input"), given.integer("position"));
  expectEqual("ok", QVClickMap::readSignature(file), given["ok"]);
  expectEqual("position_after", file.position(), given["position_after"]);
}

void input(Case& given) {
  given.platform();
  QVClickMap map;
  map.create(8, 8, 0, given.int32("hover"), nullptr);
  map.inputCallback(given.uint32("message"), given.int32("region"));
  expectEqual("last_message", map.lastMessage(), given["last_message"]);
  expectEqual("last_region", map.lastRegion(), given["last_region"]);
  expectEqual("event", map.eventIsSet(), given["event"]);
  if (given.has("wait_result"))
    expectEqual("wait_result", map.resultOf(QVClickMap::Leg::MapEvent, 0), given["wait_result"]);
}

QVClickMap::Leg legNamed(const std::string& name) {
  if (name == "timeout") return QVClickMap::Leg::Timeout;
  if (name == "event") return QVClickMap::Leg::MapEvent;
  if (name == "key") return QVClickMap::Leg::Key;
  throw Mismatch("no wait ends by \"" + name + "\"");
}

void wait(Case& given) {
  given.platform();
  QVClickMap map;
  map.create(8, 8, 0, given.int32("hover"), nullptr);
  Json log = Json::array(), posted = Json::array();
  for (const Json& entry : given["script"]) {
    const auto what = entry[0].get<std::string>();
    if (what == "input") {
      map.inputCallback(entry[1].get<uint32_t>(), entry[2].get<int32_t>());
      log.push_back({map.lastMessage(), map.lastRegion(), map.eventIsSet()});
    } else if (what == "post") {
      posted.push_back(entry[1]);
      map.postResult(entry[1].get<int32_t>());
      log.push_back({posted, map.eventIsSet()});
    } else {
      const int32_t key = entry.size() > 2 ? entry[2].get<int32_t>() : 0;
      const int32_t result = map.resultOf(legNamed(entry[1].get<std::string>()), key);
      if (!posted.empty()) posted.erase(0);
      log.push_back(Json::array({result}));
    }
  }
  expectEqual("log", log, given["log"]);
}

void tickWait(Case& given) {
  for (const Json& row : given["rows"]) {
    const auto time = row[0].get<uint32_t>(), tick = row[1].get<uint32_t>();
    const uint32_t millis = QVClickMap::tickWaitMillis(
        time == 0 ? tick : time, row[2].get<uint32_t>(), row[3].get<uint32_t>());
    expectEqual("wait of " + row.dump(), millis, row[4]);
  }
}

void waitUnits(Case& given) {
  for (const Json& row : given["rows"]) {
    const uint32_t millis = clickWaitMillis(row[0].get<int32_t>());
    const Json actual = millis == WaitForever ? Json(-1) : Json(millis);
    expectEqual("wait of " + row.dump(), actual, row[1]);
  }
}

constexpr Kind Kinds[] = {
    {"input", input},        {"map_file", mapFile}, {"map_signature", mapSignature},
    {"tick_wait", tickWait}, {"wait", wait},        {"wait_units", waitUnits},
};

}  // namespace

std::span<const Kind> clickMapKinds() {
  return Kinds;
}

}  // namespace qv::vectors
